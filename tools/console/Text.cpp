#include "tools/console/Text.h"

#include "filehost/NearestNames.h"
#include "tools/console/WideCharacters.h"

#include <QChar>
#include <QVector>

#include <algorithm>
#include <numeric>

namespace tools {

namespace {

constexpr uint firstUnusual = 0x0300; // every character before it takes one column

/// QString::fromUcs4 takes U+FEFF for a byte order mark and drops it.
QString textOf(uint codePoint)
{
    return QChar::requiresSurrogates(codePoint) ? QString(QChar(QChar::highSurrogate(codePoint))) +
                                                      QChar(QChar::lowSurrogate(codePoint))
                                                : QString(QChar(codePoint));
}

/// Whether a character would command the terminal, or change how those around it are shown: turn
/// their direction, begin a line, or hide between them.
bool isToBeSpelled(uint codePoint)
{
    switch (QChar::category(codePoint)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

/// As JSON spells it: a code point beyond 16 bits takes two.
QString spelled(uint codePoint)
{
    QString spelling;
    for (const QChar unit : textOf(codePoint)) {
        spelling += QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
    }
    return spelling;
}

/// The vowels and final consonants of Hangul syllables that are written letter by letter: they
/// are drawn into the two columns of the first letter.
bool isInsideSyllable(uint codePoint)
{
    return (codePoint >= 0x1160 && codePoint <= 0x11FF) ||
           (codePoint >= 0xD7B0 && codePoint <= 0xD7FF);
}

int columnsOf(uint codePoint)
{
    if (codePoint < firstUnusual) {
        return 1;
    }
    switch (QChar::category(codePoint)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
        return 0;
    default:
        break;
    }
    if (isInsideSyllable(codePoint)) {
        return 0;
    }
    return isWide(codePoint) ? 2 : 1;
}

} // namespace

int displayWidth(const QString& text)
{
    const auto isUsual = [](QChar character) { return character < QChar(firstUnusual); };
    if (std::all_of(text.begin(), text.end(), isUsual)) {
        return text.size();
    }
    const QVector<uint> codePoints = text.toUcs4();
    return std::accumulate(codePoints.begin(), codePoints.end(), 0,
                           [](int width, uint codePoint) { return width + columnsOf(codePoint); });
}

QString padded(const QString& text, int width)
{
    return text + QString(std::max(0, width - displayWidth(text)), QLatin1Char(' '));
}

QString elided(const QString& text, int width)
{
    if (displayWidth(text) <= width) {
        return text;
    }

    QString kept;
    int room = width - 1;
    for (const uint codePoint : text.toUcs4()) {
        room -= columnsOf(codePoint);
        if (room < 0) {
            break;
        }
        kept += textOf(codePoint);
    }
    return kept + QChar(0x2026);
}

QString wrapped(const QString& text, int width, int indentation)
{
    const QString margin(indentation, QLatin1Char(' '));
    QString lines;
    QString line;
    for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (!line.isEmpty() && displayWidth(line) + 1 + displayWidth(word) > width) {
            lines += line + QLatin1Char('\n');
            line.clear();
        }
        line += (line.isEmpty() ? margin : QStringLiteral(" ")) + word;
    }
    return line.isEmpty() ? lines : lines + line + QLatin1Char('\n');
}

QString printable(const QString& text)
{
    const auto isPlain = [](QChar character) {
        return character >= QLatin1Char(' ') && character <= QLatin1Char('~');
    };
    if (std::all_of(text.begin(), text.end(), isPlain)) {
        return text; // as nearly all are, which the general way would take apart
    }
    const QVector<uint> codePoints = text.toUcs4();
    if (std::none_of(codePoints.begin(), codePoints.end(), isToBeSpelled)) {
        return text;
    }
    QString shown;
    shown.reserve(text.size());
    for (const uint codePoint : codePoints) {
        shown += isToBeSpelled(codePoint) ? spelled(codePoint) : textOf(codePoint);
    }
    return shown;
}

QString quoted(const QString& text)
{
    return QLatin1Char('"') + printable(text) + QLatin1Char('"');
}

QString counted(int count, const QString& one, const QString& many)
{
    return QString::number(count) + QLatin1Char(' ') + (count == 1 ? one : many);
}

QString enumerated(const QStringList& items)
{
    if (items.size() < 2) {
        return items.join(QString());
    }
    return items.mid(0, items.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" and ") +
           items.last();
}

QString nearestNamesText(const QString& name, const QStringList& candidates)
{
    QStringList names = filehost::nearestNames(name, candidates);
    if (names.isEmpty()) {
        return {};
    }

    std::transform(names.begin(), names.end(), names.begin(), quoted);
    return (names.size() == 1 ? QStringLiteral("the nearest is %1")
                              : QStringLiteral("the nearest are %1"))
        .arg(enumerated(names));
}

} // namespace tools
