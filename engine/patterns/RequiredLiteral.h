#ifndef UNITFLOW_PATTERNS_REQUIREDLITERAL_H
#define UNITFLOW_PATTERNS_REQUIREDLITERAL_H

#include "patterns/Literals.h"

#include <QString>

namespace patterns {

/// Adds texts that stand, each of them, in every text in which `pattern` finds a match; in the
/// order of the pattern. Adds none when nothing can be said.
///
/// What it says holds without exception, so it is timid: whatever in the pattern it does not know
/// for certain makes it say nothing at all. That are options, verbs, references, quotes and
/// character codes, among others. Alternatives and optional parts contribute nothing.
///
/// One pass over the pattern, no expression is compiled. Any thread.
void addRequiredLiterals(const QString& pattern, Literals& literals);

} // namespace patterns

#endif
