#ifndef UNITFLOW_TOOLS_CONSOLE_TEXT_H
#define UNITFLOW_TOOLS_CONSOLE_TEXT_H

#include <QString>
#include <QStringList>

namespace tools {

/// The columns of what is written for people, however wide their terminal is.
constexpr int lineWidth = 80;

/// The columns that `text` takes on a terminal: two for each wide character, none for one that
/// combines with the one before it or has no shape, one for every other. Code points are counted
/// one by one; what a font joins into a single sign is not looked for.
int displayWidth(const QString& text);

/// `text` followed by as many blanks as it lacks to `width`.
QString padded(const QString& text, int width);

/// `text` cut down to `width` columns, with an ellipsis where something is missing.
QString elided(const QString& text, int width);

/// `text` as lines of at most `width` columns, broken at blanks and indented by some of them. A
/// word that is wider gets a line of its own.
QString wrapped(const QString& text, int width, int indentation = 4);

/// `text` with its control and format characters spelled as JSON spells them, so that a name found
/// in a file can neither break a line, nor command a terminal, nor pass for another name.
QString printable(const QString& text);

/// `text` in double quotes, printable.
QString quoted(const QString& text);

/// "1 leaf", "2 leaves".
QString counted(int count, const QString& one, const QString& many);

/// "a", "a and b", "a, b and c".
QString enumerated(const QStringList& items);

/// Words that name what `name` may mean among `candidates`; empty when there are none.
QString nearestNamesText(const QString& name, const QStringList& candidates);

} // namespace tools

#endif
