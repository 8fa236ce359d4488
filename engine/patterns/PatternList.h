#ifndef UNITFLOW_PATTERNS_PATTERNLIST_H
#define UNITFLOW_PATTERNS_PATTERNLIST_H

#include "patterns/Pattern.h"

#include <vector>

namespace patterns {

/// The kept patterns behind the rows of a parameter table.
///
/// The rows decide, the list only saves compiling: a question comes with the pattern as its row
/// holds it now, and when that is not what the list keeps for the row, it is compiled anew. So the
/// rows may be changed behind the list's back.
///
/// Threads may ask at one time as of `Pattern`, but not while a row is appended.
class PatternList {
public:
    /// Keeps `pattern` for the next row.
    void append(const QString& pattern);

    /// What `Pattern::findsMatch` says for the pattern of a row.
    bool findsMatch(int row, const QString& pattern, const QString& url) const;

    /// What `Pattern::matchGroups` says for the pattern of a row.
    std::optional<GroupMatch> matchGroups(int row, const QString& pattern,
                                          const QString& url) const;

    /// Why there is no match for a row, or would be none.
    bool isValid(int row, const QString& pattern) const;
    bool hasGroups(int row, const QString& pattern) const;

private:
    const Pattern* kept(int row, const QString& pattern) const;

    std::vector<Pattern> patterns;
};

} // namespace patterns

#endif
