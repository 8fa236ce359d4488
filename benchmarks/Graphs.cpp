#include "Graphs.h"

#include "host/ConfigurationAndProcessDataParser.h"
#include "host/PropertyManagerConst.h"

#include <QStringList>

namespace graphs {

namespace {

QString letters(int serial)
{
    QString text;
    for (int i = 0; i < 6; ++i) {
        text.prepend(QChar('a' + serial % 26));
        serial /= 26;
    }
    return text;
}

QString zoneName(int zone)
{
    return QStringLiteral("Zone%1").arg(zone, 5, 10, QChar('0'));
}

QString condition(int node, Watching watching)
{
    if (watching == Watching::Urls) {
        return QStringLiteral(R"("ConditionWriteOnUrls": [["%1"]])").arg(zoneUrl(node, 0));
    }
    const bool shares = watching == Watching::SharingPatterns && node < sharingCount;
    QString pattern = shares ? sharedPattern(node) : zonePattern(node);
    return QStringLiteral(R"("ConditionWriteOnUrlsRegExp": [["%1"]])")
        .arg(pattern.replace('\\', QLatin1String(R"(\\)")));
}

QString row(int leaf, const QString& unit)
{
    return QStringLiteral(R"(["%1", "%2"])").arg(leafUrl(leaf), unit);
}

} // namespace

QString leafUrl(int number)
{
    return QStringLiteral("Section%1/Zone%2/Temperature%3")
        .arg(number / 100)
        .arg(number / 10 % 10)
        .arg(number % 10);
}

QString unit(int node)
{
    return node % 2 == 0 ? QStringLiteral("K") : QStringLiteral("\u00B0C");
}

int leafOf(int node)
{
    return node / 2 % leafCount;
}

QString zoneUrl(int zone, int serial)
{
    return zoneName(zone) + QStringLiteral("/Temperature/MeasuredValue") + letters(serial);
}

QString zonePattern(int zone)
{
    return '^' + zoneName(zone) + QStringLiteral("/(?<group>[^/]+)/(?<leaf>[^/]+)$");
}

QString sharedUrl(int serial)
{
    return QStringLiteral("SharedSection/TemperatureMeasuredVa") + letters(serial);
}

QString sharedPattern(int length)
{
    return QStringLiteral(R"(^SharedSection/\w{%1}$)").arg(length);
}

QString description(int nodeCount, Watching watching)
{
    QStringList nodes;
    for (int node = 0; node < nodeCount; ++node) {
        nodes.append(QStringLiteral(R"("Node%1": {"Type": "SwitchNode", "Next": {"Follow": {
    "Type": "CommandNode", %2, "Commands": {"CommandSetUnitProperties": [%3]}}}})")
                         .arg(QStringLiteral("%1").arg(node, 5, 10, QChar('0')),
                              condition(node, watching), row(leafOf(node), unit(node))));
    }
    return '{' + nodes.join(QLatin1String(",\n")) + '}';
}

QString rowsDescription(const QString& unit)
{
    QStringList rows;
    for (int leaf = 0; leaf < leafCount; ++leaf) {
        rows.append(row(leaf, unit));
    }
    return QStringLiteral(R"({"Rows": {"Type": "CommandNode",
    "Commands": {"CommandSetUnitProperties": [%1]}}})")
        .arg(rows.join(QLatin1String(",\n")));
}

BaseClassSharedPointer parsed(const QString& text)
{
    return ConfigurationAndProcessDataParser().parseFromJson(
        text, PropertyManagerConst::getConfigFileExtension());
}

} // namespace graphs
