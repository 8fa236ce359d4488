#ifndef UNITFLOW_INTERNAL_PATTERN_H
#define UNITFLOW_INTERNAL_PATTERN_H

#include <QString>

namespace internal {

/// Whether `pattern` finds a match anywhere in `url`. An invalid pattern finds nothing, and nobody
/// is told, by Qt neither.
bool findsMatch(const QString& pattern, const QString& url);

} // namespace internal

#endif
