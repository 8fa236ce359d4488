#ifndef UNITFLOW_TESTS_PATTERNS_NASTYPATTERNS_H
#define UNITFLOW_TESTS_PATTERNS_NASTYPATTERNS_H

#include <QStringList>

namespace patterns {

/// Patterns in which something is not what it looks like, written by hand. Each finds a match in at
/// least one of `nastyUrls`.
const QStringList& nastyPatterns();

/// Patterns that never find a match: invalid ones, and some that only look as if they could.
const QStringList& hopelessPatterns();

/// URLs that the patterns above are about, and some that no pattern likes.
const QStringList& nastyUrls();

} // namespace patterns

#endif
