#ifndef UNITFLOW_CHECKER_PATTERNS_H
#define UNITFLOW_CHECKER_PATTERNS_H

#include <QHash>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace checker {

/// In front of a pattern it changes nothing but the time that compiling and matching take.
QString withoutMachineCode();

/// A pattern as the engine understands it. Matching an invalid one is an error that Qt writes
/// about.
struct Pattern {
    QRegularExpression expression;
    bool isValid = false;
    QStringList groups; ///< by number, from the one for the whole match; "" without a name

    /// Where in the pattern an invalid one is.
    int errorOffset() const;
    bool hasGroups() const { return groups.size() > 1; }
    bool findsMatch(const QString& url) const;
};

/// Compiles each pattern once.
class Patterns {
public:
    /// Stays valid until another pattern is asked for.
    const Pattern& operator[](const QString& pattern);

    /// For each of the patterns the number of the first URL in which it finds a match, -1 when
    /// there is none. Only those pairs are tried in which the URL has what each match of the
    /// pattern needs.
    std::vector<int> firstMatches(const QStringList& texts, const QStringList& urls);

    /// A text on which matching takes too many steps; none when no such was found.
    const std::optional<QString>& slowText(const QString& pattern);

private:
    QHash<QString, Pattern> compiled;
    QHash<QString, std::optional<QString>> slowTexts;
};

} // namespace checker

#endif
