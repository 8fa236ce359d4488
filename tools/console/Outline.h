#ifndef UNITFLOW_TOOLS_CONSOLE_OUTLINE_H
#define UNITFLOW_TOOLS_CONSOLE_OUTLINE_H

#include <QString>
#include <QStringList>

#include <cstddef>
#include <vector>

namespace tools {

/// Indented lines, with a place behind each that has one.
class Outline {
public:
    /// A line that is not indented, after a blank one unless it is the first.
    void addHeading(const QString& text, const QString& place);
    /// A line that is indented by two blanks for each level, of which 1 is the outermost.
    void addLine(int level, const QString& text, const QString& place = {});

    std::size_t size() const { return lines.size(); }
    /// The texts of the lines from one on.
    QStringList textsFrom(std::size_t line) const;
    void removeFrom(std::size_t line);

    /// For 80 columns: places begin in one column; where a text leaves no room for its place, that
    /// stands in a line of its own below. Longer texts are broken at blanks.
    QString toText(bool color) const;

private:
    struct Line {
        int level; ///< 0 for a heading
        QString text;
        QString place;
    };

    int placeColumn() const;

    std::vector<Line> lines;
};

} // namespace tools

#endif
