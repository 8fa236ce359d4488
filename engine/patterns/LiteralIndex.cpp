#include "patterns/LiteralIndex.h"

#include <QtAlgorithms>

#include <algorithm>
#include <cstring>
#include <limits>

namespace patterns {

namespace {

constexpr int longestGram = 6;
constexpr int shortestGram = 2;
constexpr int packedUnits = 4;
constexpr int longestLiteral = std::numeric_limits<quint16>::max();
constexpr std::size_t largestFilter = 2048; // words: half of what a core keeps closest
constexpr std::size_t largestCount = 65536;
constexpr int unused = -1;

/// The length of the grams for these literals; too short a one when they are too short. There must
/// be two neighboring grams in the longest.
int gramLengthFor(const QStringList& literals)
{
    int length = 0;
    for (const QString& literal : literals) {
        length = std::max(length, literal.size());
    }
    return std::min(length - 1, longestGram) / 2 * 2;
}

/// Up to four units as they are.
template <int length>
quint64 unitsAt(const QChar* units)
{
    quint64 packed = 0;
    std::memcpy(&packed, units, length * sizeof(QChar));
    return packed;
}

/// A gram, mixed so that the upper bits are the good ones. Different ones that come out equal only
/// cost time.
template <int length>
quint64 gramAt(const QChar* units)
{
    constexpr int half = std::min(length, packedUnits);
    const quint64 gram = unitsAt<half>(units) * 0x9E3779B97F4A7C15U;
    if constexpr (length == half) {
        return gram;
    } else {
        return (gram ^ unitsAt<length - half>(units + half)) * 0xBF58476D1CE4E5B9U;
    }
}

quint64 gramAt(const QChar* units, int length)
{
    switch (length) {
    case 6:
        return gramAt<6>(units);
    case 4:
        return gramAt<4>(units);
    default:
        return gramAt<2>(units);
    }
}

// The two bits of a gram in its word of the filter.
quint64 firstBit(quint64 gram)
{
    return gram >> 47U & 63U;
}
quint64 secondBit(quint64 gram)
{
    return gram >> 41U & 63U;
}

/// The power of two, at least 2, that is no less than `size`.
std::size_t powerOfTwo(std::size_t size)
{
    std::size_t power = 2;
    while (power < size) {
        power *= 2;
    }
    return power;
}

/// How far to shift a gram for an index into a table of `size`, a power of two.
int shiftFor(std::size_t size)
{
    return 64 - int(qCountTrailingZeroBits(quint64(size)));
}

void makeDistinct(LiteralIndex::Numbers& numbers)
{
    if (numbers.size() > 1) {
        std::sort(numbers.begin(), numbers.end());
        numbers.resize(int(std::unique(numbers.begin(), numbers.end()) - numbers.begin()));
    }
}

/// How often each gram stands in the literals of all items. Grams may share a count: a wrong one
/// only makes for a worse choice.
class GramCounts {
public:
    explicit GramCounts(const std::vector<LiteralIndex::Item>& items)
        : counts(std::min(largestCount, powerOfTwo(32 * items.size()))),
          shift(shiftFor(counts.size()))
    {
        for (const auto& item : items) {
            const int length = gramLengthFor(item.literals);
            for (const QString& literal : item.literals) {
                for (int offset = 0; offset + length <= literal.size(); ++offset) {
                    ++counts[placeOf(literal, offset, length)];
                }
            }
        }
    }

    int of(const QString& literal, int offset, int length) const
    {
        return counts[placeOf(literal, offset, length)];
    }

private:
    std::size_t placeOf(const QString& literal, int offset, int length) const
    {
        return gramAt(literal.constData() + offset, length) >> shift;
    }

    std::vector<int> counts;
    int shift;
};

/// The grams under which a number is entered, and the one that is compared before all else.
struct Choice {
    QString literal;
    int offset = 0; // of the first of the two neighbors
    int checkedOffset = 0;
};

/// The pair that stands in the fewest literals, and the rarest other gram around it.
Choice choose(const QStringList& literals, int length, const GramCounts& counts)
{
    Choice choice;
    int lowest = std::numeric_limits<int>::max();
    for (const QString& whole : literals) {
        const QString literal = whole.left(longestLiteral);
        for (int offset = 0; offset + 1 + length <= literal.size(); ++offset) {
            const int count =
                counts.of(literal, offset, length) + counts.of(literal, offset + 1, length);
            // A longer literal says more when the check comes to it.
            if (count < lowest || (count == lowest && literal.size() > choice.literal.size())) {
                lowest = count;
                choice = {literal, offset, offset};
            }
        }
    }
    lowest = std::numeric_limits<int>::max();
    for (int offset = 0; offset + length <= choice.literal.size(); ++offset) {
        const int count = counts.of(choice.literal, offset, length);
        if (count < lowest && offset != choice.offset && offset != choice.offset + 1) {
            lowest = count;
            choice.checkedOffset = offset;
        }
    }
    return choice;
}

} // namespace

bool LiteralIndex::canHold(const QStringList& literals)
{
    return gramLengthFor(literals) >= shortestGram;
}

LiteralIndex::LiteralIndex(const std::vector<Item>& items)
{
    const GramCounts counts(items);
    entries.reserve(2 * items.size());
    for (const Item& item : items) {
        const int length = gramLengthFor(item.literals);
        const Choice choice = choose(item.literals, length, counts);
        const QChar* const units = choice.literal.constData();
        const QChar* const checked = units + choice.checkedOffset;
        for (const int offset : {choice.offset, choice.offset + 1}) {
            entries.push_back({gramAt(units + offset, length),
                               length < packedUnits ? unitsAt<shortestGram>(checked)
                                                    : unitsAt<packedUnits>(checked),
                               item.number, literals.size(), quint16(choice.literal.size()),
                               quint16(length), quint16(offset), quint16(choice.checkedOffset)});
        }
        literals.append(choice.literal);
        hasLength.at(std::size_t(length)) = true;
    }
    literals.squeeze();
    std::sort(entries.begin(), entries.end(),
              [](const Entry& left, const Entry& right) { return left.gram < right.gram; });
    fillTable();
}

void LiteralIndex::fillTable()
{
    table.assign(powerOfTwo(entries.size() + entries.size() / 2), unused);
    tableShift = shiftFor(table.size());
    filter.resize(std::min(largestFilter, powerOfTwo(entries.size() / 4)));
    filterShift = shiftFor(filter.size());
    for (std::size_t index = 0; index < entries.size(); ++index) {
        const Gram gram = entries[index].gram;
        if (index > 0 && entries[index - 1].gram == gram) {
            continue;
        }
        table[placeOf(gram)] = int(index);
        filter[gram >> filterShift] |= quint64(1) << firstBit(gram) | quint64(1) << secondBit(gram);
    }
}

/// Where the gram stands in the table, or the unused place where it would.
std::size_t LiteralIndex::placeOf(Gram gram) const
{
    std::size_t place = gram >> tableShift;
    while (table[place] != unused && entries[std::size_t(table[place])].gram != gram) {
        place = (place + 1) & (table.size() - 1);
    }
    return place;
}

LiteralIndex::Numbers LiteralIndex::find(const QString& text) const
{
    Numbers numbers;
    if (hasLength[6]) {
        collect<6>(text, numbers);
    }
    if (hasLength[4]) {
        collect<4>(text, numbers);
    }
    if (hasLength[2]) {
        collect<2>(text, numbers);
    }
    makeDistinct(numbers);
    return numbers;
}

template <int length>
void LiteralIndex::collect(const QString& text, Numbers& numbers) const
{
    const QChar* const units = text.constData();
    const quint64* const words = filter.data();
    const int shift = filterShift;
    const int last = text.size() - length;
    for (int position = 0; position <= last; position += 2) {
        const Gram gram = gramAt<length>(units + position);
        const quint64 word = words[gram >> shift];
        if ((word >> firstBit(gram) & word >> secondBit(gram) & 1U) != 0) {
            collectAround<length>(position, text, numbers);
        }
    }
}

/// The numbers whose literals stand around the gram at `position`.
template <int length>
void LiteralIndex::collectAround(int position, const QString& text, Numbers& numbers) const
{
    const Gram gram = gramAt<length>(text.constData() + position);
    const int first = table[placeOf(gram)];
    if (first == unused) {
        return;
    }
    for (auto entry = entries.cbegin() + first; entry != entries.cend() && entry->gram == gram;
         ++entry) {
        if (stands<length>(*entry, text, position - entry->gramOffset)) {
            numbers.append(entry->number);
        }
    }
    // A text may hold the same literals over and over.
    if (std::size_t(numbers.size()) > 2 * entries.size()) {
        makeDistinct(numbers);
    }
}

/// Whether the entry's literal stands at `start`, which may be outside of the text.
template <int length>
bool LiteralIndex::stands(const Entry& entry, const QString& text, int start) const
{
    // A gram of another length may look the same.
    if (entry.gramLength != length || start < 0 || start + entry.length > text.size()) {
        return false;
    }
    const QChar* const units = text.constData() + start;
    return unitsAt<std::min(length, packedUnits)>(units + entry.checkedOffset) ==
               entry.checkedUnits &&
           std::memcmp(units, literals.constData() + entry.start, entry.length * sizeof(QChar)) ==
               0;
}

} // namespace patterns
