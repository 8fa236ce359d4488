#ifndef UNITFLOW_TOOLS_TABLE_H
#define UNITFLOW_TOOLS_TABLE_H

#include <QString>
#include <QStringList>

#include <vector>

namespace tools {

/// Lines of aligned cells, with headings between them.
class Table {
public:
    /// A line of its own, which takes no part in the alignment.
    void addHeading(const QString& text);
    void addRow(const QStringList& cells);

    /// One line for each heading and row, each ended by a line feed and without trailing blanks.
    /// Rows are indented by two blanks, cells two blanks apart. A cell far wider than the others
    /// pushes its own line out instead of all lines.
    QString toText(bool color) const;

private:
    struct Line {
        bool isHeading = false;
        QStringList cells;
    };

    std::vector<Line> lines;
    std::vector<int> widths; ///< by column
};

} // namespace tools

#endif
