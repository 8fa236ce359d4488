#ifndef UNITFLOW_TOOLS_CONSOLE_WIDECHARACTERS_H
#define UNITFLOW_TOOLS_CONSOLE_WIDECHARACTERS_H

namespace tools {

/// Whether a character takes two columns of a terminal: what the East Asian Width of Unicode 14.0
/// calls wide or fullwidth.
///
/// The C library's `wcwidth` would answer as well, but by the locale: in that of plain C it knows
/// ASCII only, and the same workspace would be aligned in one shell and ragged in the next.
bool isWide(unsigned int codePoint);

} // namespace tools

#endif
