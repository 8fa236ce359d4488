#ifndef UNITFLOW_TOOLS_CONSOLE_TABLE_H
#define UNITFLOW_TOOLS_CONSOLE_TABLE_H

#include <QString>
#include <QStringList>

#include <cstddef>
#include <initializer_list>
#include <vector>

namespace tools {

/// Lines of aligned cells, with headings between them.
class Table {
public:
    /// A line of its own, which takes no part in the alignment.
    void addHeading(const QString& text);
    void addRow(const QStringList& texts);
    /// A row of many that are made at once; the last of its cells aligns nothing and stands last in
    /// every row.
    void addRow(std::initializer_list<QString> texts, const QString& last);

    /// One line for each heading and row, each ended by a line feed and without trailing blanks.
    /// Rows are indented by two blanks, cells two blanks apart. A cell far wider than the others
    /// pushes its own line out instead of all lines.
    QString toText(bool color) const;

private:
    struct Line {
        bool isHeading;
        std::size_t firstCell;
    };

    struct Cell {
        QString text;
        int width;
    };

    void beginRow();
    void addCell(const QString& text);
    void appendRow(QString& text, std::size_t begin, std::size_t end) const;
    int blanksBehind(std::size_t cell, std::size_t firstOfRow) const;

    std::vector<Line> lines;
    std::vector<Cell> cells;
    std::vector<int> widths; ///< by column
};

} // namespace tools

#endif
