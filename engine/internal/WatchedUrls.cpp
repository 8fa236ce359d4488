#include "internal/WatchedUrls.h"

#include "DependencyWalkerDefinitions.h"

#include <QSet>

#include <algorithm>

namespace internal {

void keepFirsts(QStringList& texts)
{
    if (texts.size() > 1) { // most nodes watch one, for which Qt would make a set all the same
        texts.removeDuplicates();
    }
}

QStringList watchedUrls(const QStringList& urls)
{
    QStringList watched = urls;
    keepFirsts(watched);
    return watched;
}

QStringList watchedPatterns(const QStringList& patterns)
{
    const QString& prefix = DependencyWalkerDefinitions::getPrefixRegularExpression();
    // The pattern as written is looked for among prefixed entries. So a pattern written twice is
    // listed twice, which existing descriptions rely on, and only one that is written with the
    // prefix can be found at all.
    const bool looking =
        std::any_of(patterns.cbegin(), patterns.cend(),
                    [&](const QString& pattern) { return pattern.startsWith(prefix); });
    QSet<QString> listed;
    QStringList watched;
    watched.reserve(patterns.size());
    for (const QString& pattern : patterns) {
        if (looking && listed.contains(pattern)) {
            continue;
        }
        watched.append(prefix + pattern);
        if (looking) {
            listed.insert(watched.constLast());
        }
    }
    return watched;
}

} // namespace internal
