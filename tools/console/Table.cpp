#include "tools/console/Table.h"

#include "tools/console/Style.h"
#include "tools/console/Text.h"

#include <algorithm>
#include <cstddef>

namespace tools {

namespace {

// Leaves room for a unit or a change beside the widest URL of a common tree in 80 columns.
constexpr int widestAlignedCell = 44;
constexpr int betweenCells = 2;
const QLatin1Char blank(' ');

} // namespace

void Table::addHeading(const QString& text)
{
    lines.push_back({true, cells.size()});
    cells.push_back({text, 0});
}

void Table::addRow(const QStringList& texts)
{
    beginRow();
    for (const QString& text : texts) {
        addCell(text);
    }
}

void Table::addRow(std::initializer_list<QString> texts, const QString& last)
{
    beginRow();
    for (const QString& text : texts) {
        addCell(text);
    }
    cells.push_back({last, 0});
    widths.resize(std::max(widths.size(), texts.size() + 1), 0);
}

void Table::beginRow()
{
    lines.push_back({false, cells.size()});
}

void Table::addCell(const QString& text)
{
    const std::size_t column = cells.size() - lines.back().firstCell;
    if (column == widths.size()) {
        widths.push_back(0);
    }
    const int width = displayWidth(text);
    if (width <= widestAlignedCell) {
        widths[column] = std::max(widths[column], width);
    }
    cells.push_back({text, width});
}

QString Table::toText(bool color) const
{
    QString text;
    for (std::size_t line = 0; line < lines.size(); ++line) {
        const bool isLast = line + 1 == lines.size();
        const std::size_t begin = lines[line].firstCell;
        const std::size_t end = isLast ? cells.size() : lines[line + 1].firstCell;
        if (lines[line].isHeading) {
            text += styled(cells[begin].text, Style::Heading, color);
        } else {
            appendRow(text, begin, end);
        }
        text += QLatin1Char('\n');
    }
    return text;
}

void Table::appendRow(QString& text, std::size_t begin, std::size_t end) const
{
    const int start = text.size();
    int length = start;
    for (std::size_t at = begin; at < end; ++at) {
        length += betweenCells + cells[at].text.size() + blanksBehind(at, begin);
    }
    text.resize(length);
    QChar* to = text.data() + start;
    for (std::size_t at = begin; at < end; ++at) {
        to = std::fill_n(to, betweenCells, blank);
        to = std::copy(cells[at].text.begin(), cells[at].text.end(), to);
        to = std::fill_n(to, blanksBehind(at, begin), blank);
    }
    while (length > start && text.at(length - 1) == blank) {
        --length;
    }
    text.truncate(length);
}

int Table::blanksBehind(std::size_t cell, std::size_t firstOfRow) const
{
    return std::max(0, widths[cell - firstOfRow] - cells[cell].width);
}

} // namespace tools
