#ifndef UNITFLOW_CHECKER_BACKTRACKING_H
#define UNITFLOW_CHECKER_BACKTRACKING_H

#include <QString>
#include <QStringList>

#include <optional>

namespace checker {

/// How many steps of backtracking a match may take on a text of some dozen characters.
constexpr int stepLimit = 500000;

/// Texts that go through a valid pattern up to one of its repetitions, stay in it for a while and
/// then fail: where a pattern can be taken apart in many ways, it is on such texts. Made from how
/// the pattern is written; what it means is left to the matching. None for a pattern that repeats
/// two characters at most and no group, since that takes no more steps than such a text has
/// characters, cubed.
QStringList temptingTexts(const QString& pattern);

/// One of those texts on which matching takes more than `stepLimit` steps, found by matching.
std::optional<QString> findSlowText(const QString& pattern);

} // namespace checker

#endif
