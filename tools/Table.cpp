#include "tools/Table.h"

#include "tools/Style.h"
#include "tools/Text.h"

#include <algorithm>

namespace tools {

namespace {

// Leaves room for a unit or a change beside the widest URL of a common tree in 80 columns.
constexpr int widestAlignedCell = 44;

QString rowText(const QStringList& cells, const QList<int>& widths)
{
    QString text;
    for (int column = 0; column < cells.size(); ++column) {
        text += QStringLiteral("  ") + padded(cells.at(column), widths.at(column));
    }
    while (text.endsWith(QLatin1Char(' '))) {
        text.chop(1);
    }
    return text;
}

} // namespace

void Table::addHeading(const QString& text)
{
    lines.append({true, {text}});
}

void Table::addRow(const QStringList& cells)
{
    lines.append({false, cells});
}

QString Table::toText(bool color) const
{
    const QList<int> widths = columnWidths();
    QString text;
    for (const Line& line : lines) {
        text += line.isHeading ? styled(line.cells.first(), Style::Heading, color)
                               : rowText(line.cells, widths);
        text += QLatin1Char('\n');
    }
    return text;
}

QList<int> Table::columnWidths() const
{
    QList<int> widths;
    for (const Line& line : lines) {
        if (line.isHeading) {
            continue;
        }
        while (widths.size() < line.cells.size()) {
            widths.append(0);
        }
        for (int column = 0; column < line.cells.size(); ++column) {
            const int width = displayWidth(line.cells.at(column));
            if (width <= widestAlignedCell) {
                widths[column] = std::max(widths.at(column), width);
            }
        }
    }
    return widths;
}

} // namespace tools
