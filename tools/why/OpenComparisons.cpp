#include "tools/why/OpenComparisons.h"

#include "DependencyWalkerDefinitions.h"
#include "TypeDescription.h"
#include "host/ConfigurationAndProcessDataTools.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>

namespace tools {

namespace {

using Keywords = DependencyWalkerDefinitions;
using Kind = TypeDescription::Kind;

// The conditions that ask for the written URL alone.
const QString writtenUrls = QStringLiteral("ConditionWriteOnUrls");
const QString writtenPatterns = QStringLiteral("ConditionWriteOnUrlsRegExp");

/// The value of a leaf in either of its forms.
QJsonValue valueOf(const QJsonValue& leaf)
{
    return leaf.isObject() ? leaf.toObject().value(QStringLiteral("@value")) : leaf;
}

/// The rows of a condition that its type keeps.
QList<QVariantList> rowsOf(const TypeDescription& type, const QJsonValue& condition)
{
    const QVariantList table = valueOf(condition).toArray().toVariantList();
    QList<QVariantList> rows;
    for (const int row : type.table.keptRows(table)) {
        rows.append(table.at(row).toList());
    }
    return rows;
}

bool watchesPatterns(const TypeDescription& type)
{
    return type.table.columns.first().role == CellRole::Pattern;
}

/// Which cell of a row is the comparator; negative when the type compares nothing.
int comparatorOf(const TypeDescription& type)
{
    const QList<int>& layout = type.table.layouts.first();
    const auto found = std::find_if(layout.begin(), layout.end(), [&](int column) {
        return type.table.columns.at(column).role == CellRole::Comparator;
    });
    return found == layout.end() ? -1 : static_cast<int>(found - layout.begin());
}

bool isComparator(const QString& text)
{
    return text == QLatin1String("==") || text == QLatin1String("!=");
}

/// The conditions of an edge, taken out of the node that it leads to.
class EdgeOpener {
public:
    EdgeOpener(QJsonObject& node, const BaseClassSharedPointer& source) : node(node), source(source)
    {}

    /// Puts conditions in their place that ask for the written URL alone.
    void open()
    {
        for (const TypeDescription& type : TypeCatalog::types(Kind::Condition)) {
            if (node.contains(type.name)) {
                take(type, node.take(type.name));
            }
        }
        if (!isGuarded || isAlwaysOpen) {
            return;
        }
        // Without any row it never holds: an edge without conditions would be open.
        node[writtenUrls] = urls;
        if (!patterns.isEmpty()) {
            node[writtenPatterns] = patterns;
        }
    }

    /// What the conditions watched, as rows of plain URLs.
    QJsonArray watched() const { return allWatched; }

private:
    void take(const TypeDescription& type, const QJsonValue& condition)
    {
        isGuarded = true;
        const int comparator = comparatorOf(type);
        const QString prefix =
            watchesPatterns(type) ? Keywords::getPrefixRegularExpression() : QString();
        for (const QVariantList& row : rowsOf(type, condition)) {
            const QString url = row.first().toString();
            allWatched.append(QJsonArray{prefix + url});
            if (comparator >= 0 && !isComparator(row.at(comparator).toString())) {
                continue;
            }
            if (watchesPatterns(type)) {
                patterns.append(QJsonArray{url});
            } else if (comparator < 0) {
                urls.append(QJsonArray{url});
            } else if (source.isNull() ||
                       ConfigurationAndProcessDataTools::extractConfigValue(url, source)
                           .isValid()) {
                isAlwaysOpen = true;
            }
        }
    }

    QJsonObject& node;
    const BaseClassSharedPointer& source;
    QJsonArray allWatched;
    QJsonArray urls;
    QJsonArray patterns;
    bool isGuarded = false;
    bool isAlwaysOpen = false;
};

const TypeDescription* typeOf(const QJsonObject& node)
{
    return TypeCatalog::find(
        Kind::Node, valueOf(node.value(Keywords::getNodeTypeString())).toVariant().toString());
}

/// A name that no edge has.
QString freeName(const QJsonObject& edges)
{
    QString name = QStringLiteral("watched");
    while (edges.contains(name)) {
        name += QLatin1Char('\'');
    }
    return name;
}

QJsonObject opened(QJsonObject node, const BaseClassSharedPointer& source)
{
    const TypeDescription* const type = typeOf(node);
    if (type == nullptr || !node.value(Keywords::getNextNodeKeyword()).isObject()) {
        return node;
    }
    QJsonObject edges = node.value(Keywords::getNextNodeKeyword()).toObject();
    QJsonArray watched;
    for (const QString& name : edges.keys()) {
        const QJsonObject successor = edges.value(name).toObject();
        if (name.startsWith(QLatin1Char('@')) || typeOf(successor) == nullptr) {
            continue;
        }
        QJsonObject openedSuccessor = opened(successor, source);
        if (type->asksConditions) {
            EdgeOpener opener(openedSuccessor, source);
            opener.open();
            for (const QJsonValue row : opener.watched()) {
                watched.append(row);
            }
        }
        edges[name] = openedSuccessor;
    }
    if (!watched.isEmpty()) {
        // A node that does nothing keeps the URLs of conditions that are gone. It stands where no
        // way leads, so that none of them is asked.
        const QJsonObject watching{{Keywords::getNodeTypeString(), type->name},
                                   {writtenUrls, watched}};
        edges[freeName(edges)] = QJsonObject{
            {Keywords::getNodeTypeString(), type->name},
            {writtenUrls, QJsonArray()},
            {Keywords::getNextNodeKeyword(), QJsonObject{{QStringLiteral("urls"), watching}}}};
    }
    node[Keywords::getNextNodeKeyword()] = edges;
    return node;
}

} // namespace

QString withOpenComparisons(const QString& description, const BaseClassSharedPointer& source)
{
    const QJsonDocument document = QJsonDocument::fromJson(description.toUtf8());
    if (!document.isObject()) {
        return {};
    }
    QJsonObject nodes = document.object();
    for (const QString& name : nodes.keys()) {
        if (!name.startsWith(QLatin1Char('@')) && nodes.value(name).isObject()) {
            nodes[name] = opened(nodes.value(name).toObject(), source);
        }
    }
    return QString::fromUtf8(QJsonDocument(nodes).toJson(QJsonDocument::Compact));
}

} // namespace tools
