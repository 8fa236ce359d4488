#include "tools/resolve/Summary.h"

#include "tools/console/Json.h"
#include "tools/console/Text.h"

#include <QStringList>

namespace tools {

void Summary::count(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Resolved:
        ++resolved;
        return;
    case Outcome::Unresolved:
        ++unresolved;
        return;
    case Outcome::Failed:
        ++failed;
        return;
    }
}

QString linksText(const Summary& summary)
{
    QStringList parts{
        QStringLiteral("%1 of %2 resolved")
            .arg(QString::number(summary.resolved),
                 counted(summary.links(), QStringLiteral("link"), QStringLiteral("links")))};
    const auto add = [&parts](int count, const QString& what) {
        if (count > 0) {
            parts.append(QStringLiteral("%1 %2").arg(count).arg(what));
        }
    };
    add(summary.unresolved, QStringLiteral("not resolved"));
    add(summary.failed, QStringLiteral("failed"));
    add(summary.left, QStringLiteral("left"));
    QString text = parts.join(QStringLiteral(", "));
    if (summary.files > 0) {
        text += QStringLiteral("; %1 written")
                    .arg(counted(summary.files, QStringLiteral("file"), QStringLiteral("files")));
    }
    return text;
}

void addSummary(JsonDocument& document, const Summary& summary)
{
    document.addObject(QStringLiteral("summary"), [&] {
        document.add(QStringLiteral("resolved"), summary.resolved);
        document.add(QStringLiteral("unresolved"), summary.unresolved);
        document.add(QStringLiteral("failed"), summary.failed);
        document.add(QStringLiteral("left"), summary.left);
        document.add(QStringLiteral("leaves"), summary.changed.leaves);
        document.add(QStringLiteral("instances"), summary.changed.instances);
        document.add(QStringLiteral("files"), summary.files);
    });
}

} // namespace tools
