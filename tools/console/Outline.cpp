#include "tools/console/Outline.h"

#include "tools/console/Style.h"
#include "tools/console/Text.h"

#include <QStringList>

#include <algorithm>

namespace tools {

namespace {

constexpr int leastPlaceColumn = 28;
constexpr int indentation = 2;
constexpr int gap = 2;

QString blanks(int count)
{
    return {count, QLatin1Char(' ')};
}

/// `text` as lines, the later ones deeper.
QStringList broken(const QString& text, int indent)
{
    QStringList lines;
    QString line = blanks(indent);
    bool isBlank = true;
    for (const QString& word : text.split(QLatin1Char(' '))) {
        if (!isBlank && displayWidth(line) + 1 + displayWidth(word) > lineWidth) {
            lines.append(line);
            line = blanks(indent + 2 * indentation);
            isBlank = true;
        }
        line += (isBlank ? QString() : QStringLiteral(" ")) + word;
        isBlank = false;
    }
    return lines + QStringList{line};
}

} // namespace

void Outline::addHeading(const QString& text, const QString& place)
{
    lines.push_back({0, text, place});
}

void Outline::addLine(int level, const QString& text, const QString& place)
{
    lines.push_back({level, text, place});
}

QStringList Outline::textsFrom(std::size_t line) const
{
    QStringList texts;
    for (; line < lines.size(); ++line) {
        texts.append(lines[line].text);
    }
    return texts;
}

void Outline::removeFrom(std::size_t line)
{
    lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(line), lines.end());
}

QString Outline::toText(bool color) const
{
    const int column = placeColumn();
    QString text;
    for (const Line& line : lines) {
        const QStringList parts = broken(line.text, line.level * indentation);
        const bool isHeading = line.level == 0;
        if (isHeading && !text.isEmpty()) {
            text += QLatin1Char('\n');
        }
        for (const QString& part : parts) {
            text += isHeading ? styled(part, Style::Heading, color) : part;
            if (&part != &parts.last()) {
                text += QLatin1Char('\n');
            }
        }
        if (!line.place.isEmpty()) {
            const int width = displayWidth(parts.last());
            const bool fits = width + gap <= column;
            text += fits ? blanks(column - width) : QLatin1Char('\n') + blanks(column);
            text += line.place;
        }
        text += QLatin1Char('\n');
    }
    return text;
}

int Outline::placeColumn() const
{
    int widest = 0;
    for (const Line& line : lines) {
        widest = std::max(widest, displayWidth(line.place));
    }
    return std::max(leastPlaceColumn, lineWidth - widest);
}

} // namespace tools
