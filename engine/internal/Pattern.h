#ifndef UNITFLOW_INTERNAL_PATTERN_H
#define UNITFLOW_INTERNAL_PATTERN_H

#include <QRegularExpressionMatch>
#include <QString>
#include <QStringList>

#include <optional>

namespace internal {

/// Whether `pattern` finds a match anywhere in `url`. An invalid pattern finds nothing, and nobody
/// is told, by Qt neither.
bool findsMatch(const QString& pattern, const QString& url);

/// What the groups of a pattern captured in a URL.
struct GroupMatch {
    QStringList groupNames; ///< by group number, empty for an unnamed group
    QRegularExpressionMatch match;
};

/// The match that `pattern` finds in `url`. A pattern without any capture group has none, even when
/// it matches: it could not tell one target from another.
std::optional<GroupMatch> matchGroups(const QString& pattern, const QString& url);

} // namespace internal

#endif
