#include "internal/WatchedUrls.h"

#include "DependencyWalkerDefinitions.h"

namespace internal {

QStringList watchedUrls(const QStringList& urls)
{
    QStringList watched = urls;
    watched.removeDuplicates();
    return watched;
}

QStringList watchedPatterns(const QStringList& patterns)
{
    QStringList watched;
    watched.reserve(patterns.size());
    for (const QString& pattern : patterns) {
        // The pattern as written is looked for among prefixed entries. So a pattern written twice
        // is listed twice, which existing descriptions rely on.
        if (!watched.contains(pattern)) {
            watched.append(DependencyWalkerDefinitions::getPrefixRegularExpression() + pattern);
        }
    }
    return watched;
}

} // namespace internal
