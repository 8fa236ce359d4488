#include "tools/Table.h"

#include "tools/Style.h"
#include "tools/Text.h"

#include <algorithm>
#include <cstddef>

namespace tools {

namespace {

// Leaves room for a unit or a change beside the widest URL of a common tree in 80 columns.
constexpr int widestAlignedCell = 44;

void appendRow(QString& text, const QStringList& cells, const std::vector<int>& widths)
{
    const int start = text.size();
    auto width = widths.begin();
    for (const QString& cell : cells) {
        text += QLatin1String("  ");
        appendPadded(text, cell, *width++);
    }
    int end = text.size();
    while (end > start && text.at(end - 1) == QLatin1Char(' ')) {
        --end;
    }
    text.truncate(end);
}

} // namespace

void Table::addHeading(const QString& text)
{
    lines.push_back({true, {text}});
}

void Table::addRow(const QStringList& cells)
{
    lines.push_back({false, cells});
    widths.resize(std::max(widths.size(), static_cast<std::size_t>(cells.size())), 0);
    auto widest = widths.begin();
    for (const QString& cell : cells) {
        const int width = displayWidth(cell);
        if (width <= widestAlignedCell) {
            *widest = std::max(*widest, width);
        }
        ++widest;
    }
}

QString Table::toText(bool color) const
{
    QString text;
    for (const Line& line : lines) {
        if (line.isHeading) {
            text += styled(line.cells.first(), Style::Heading, color);
        } else {
            appendRow(text, line.cells, widths);
        }
        text += QLatin1Char('\n');
    }
    return text;
}

} // namespace tools
