#ifndef UNITFLOW_TESTS_PATTERNS_PLAIN_H
#define UNITFLOW_TESTS_PATTERNS_PLAIN_H

#include "Round.h"

#include <QHash>
#include <QRegularExpression>

namespace patterns {

/// Matches one pattern after the other, with no thought to how long that takes. It keeps what it
/// compiled, and nothing else.
class PlainMatcher {
public:
    /// An invalid pattern finds nothing.
    bool findsMatch(const QString& pattern, const QString& url);

private:
    QHash<QString, QRegularExpression> compiled;
};

/// What every step of the round has to tell, worked out without any of the engine's code: a loop
/// over all nodes and all their patterns.
Answers answerPlainly(const Round& round);

} // namespace patterns

#endif
