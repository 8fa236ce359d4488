#include "tools/console/Names.h"

#include "tools/console/Json.h"
#include "tools/console/Text.h"
#include "tools/console/Value.h"

#include <QStringList>

namespace tools {

QString titleOf(const filehost::Instance& instance)
{
    return instance.kind == filehost::Kind::Process
               ? printable(instance.name) + QStringLiteral(" (process)")
               : printable(instance.name);
}

QString describe(const filehost::Link& link)
{
    const filehost::Kind kind =
        link.isProcess ? filehost::Kind::Process : filehost::Kind::Configuration;
    QStringList parameters;
    for (const QVariant& parameter : link.parameters) {
        parameters.append(valueText(parameter));
    }
    const QString text =
        QStringLiteral("%1 → %2 through %3")
            .arg(printable(link.source), titleOf({kind, link.target}), printable(link.dependency));
    return parameters.isEmpty()
               ? text
               : text + QStringLiteral(" (%1)").arg(parameters.join(QStringLiteral(", ")));
}

QString placeOf(const filehost::Link& link)
{
    return link.line == 0 ? QString()
                          : QStringLiteral("links.json:%1:%2: ").arg(link.line).arg(link.column);
}

void addLink(JsonDocument& document, const filehost::Link& link)
{
    document.add(QStringLiteral("source"), link.source);
    document.add(QStringLiteral("target"), link.target);
    document.add(QStringLiteral("dependency"), link.dependency);
    document.add(QStringLiteral("process"), link.isProcess);
    document.add(QStringLiteral("parameters"), link.parameters);
}

} // namespace tools
