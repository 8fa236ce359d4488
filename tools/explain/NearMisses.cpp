#include "tools/explain/NearMisses.h"

#include "DependencyWalker.h"
#include "DependencyWalkerDefinitions.h"
#include "Nodes/NodeBase.h"
#include "filehost/NearestNames.h"
#include "tools/console/Messages.h"
#include "tools/console/Text.h"

#include <QMap>
#include <QRegularExpression>

#include <optional>

namespace tools {

namespace {

using Option = QRegularExpression::PatternOption;

/// The top-level nodes by their names, and what each of them watches.
QMap<QString, QStringList> watchersIn(const QString& description)
{
    QMap<QString, QStringList> watchers;
    const auto build = [&] {
        DependencyWalker walker;
        walker.initDependencyGraphByJsonString(description);
        for (const QSharedPointer<NodeBase>& node : walker.getNodeMap()) {
            watchers.insert(node->getNodeName(), node->getConditionUrls());
        }
    };
    Messages::during(build); // whoever runs the description reports them
    return watchers;
}

bool finds(const QString& pattern, const QString& url, Option option = Option::NoPatternOption)
{
    const QRegularExpression expression(pattern, option);
    return expression.isValid() && expression.match(url).hasMatch();
}

std::optional<NearMiss> nearMissOf(const QString& node, const QString& pattern, const QString& url)
{
    if (finds(pattern, url)) {
        return std::nullopt;
    }
    if (finds(pattern, url, Option::CaseInsensitiveOption)) {
        return NearMiss{NearMiss::Kind::OtherCase, node, pattern, url};
    }
    for (int slash = url.indexOf(QLatin1Char('/')); slash >= 0;
         slash = url.indexOf(QLatin1Char('/'), slash + 1)) {
        const QString part = url.mid(slash + 1);
        if (finds(pattern, part)) {
            return NearMiss{NearMiss::Kind::LeadingPart, node, pattern, part};
        }
    }
    return std::nullopt;
}

} // namespace

QList<NearMiss> nearMisses(const QString& description, const QString& url,
                           const QStringList& sourceUrls)
{
    QList<NearMiss> misses;
    const QString& prefix = DependencyWalkerDefinitions::getPrefixRegularExpression();
    const QMap<QString, QStringList> watchers = watchersIn(description);
    for (auto watcher = watchers.begin(); watcher != watchers.end(); ++watcher) {
        QStringList candidates;
        for (const QString& watched : watcher.value()) {
            if (!watched.startsWith(prefix)) {
                candidates.append(watched);
            } else if (const auto miss =
                           nearMissOf(watcher.key(), watched.mid(prefix.size()), url)) {
                misses.append(*miss);
            }
        }
        for (const QString& near : filehost::nearestNames(url, candidates)) {
            const bool isAlike = !filehost::nearestName(url, {near}).isEmpty();
            if (isAlike && near != url && !sourceUrls.contains(near)) {
                misses.append({NearMiss::Kind::Url, watcher.key(), near, {}});
            }
        }
    }
    return misses;
}

QString wordsFor(const NearMiss& miss)
{
    const QString node = printable(miss.node);
    switch (miss.kind) {
    case NearMiss::Kind::Url:
        return QStringLiteral("near miss: %1 watches %2").arg(node, printable(miss.watched));
    case NearMiss::Kind::OtherCase:
        return QStringLiteral("near miss: %1 has %2, which matches in another case")
            .arg(node, quoted(miss.watched));
    case NearMiss::Kind::LeadingPart:
        break;
    }
    return QStringLiteral("near miss: %1 has %2, which matches %3 alone")
        .arg(node, quoted(miss.watched), printable(miss.part));
}

} // namespace tools
