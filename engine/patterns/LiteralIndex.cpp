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
constexpr qsizetype longestLiteral = std::numeric_limits<quint16>::max();
constexpr std::size_t largestFilter = 2048; // words: half of what a core keeps closest
constexpr std::size_t largestCount = 65536;
constexpr int unused = -1;

/// The length of the grams of an item; too short a one when its literals are too short. There must
/// be two neighboring grams in the longest.
int gramLengthFor(const Literals& literals, const LiteralIndex::Item& item)
{
    qsizetype length = 0;
    for (std::size_t index = item.firstLiteral; index < item.lastLiteral; ++index) {
        length = std::max(length, literals.at(index).size());
    }
    return int(std::min<qsizetype>(length - 1, longestGram)) / 2 * 2;
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

template <int length, class Visit>
void forEachGramOf(QStringView text, Visit visit)
{
    for (qsizetype offset = 0; offset + length <= text.size(); ++offset) {
        visit(gramAt<length>(text.data() + offset), int(offset));
    }
}

/// Calls `visit(gram, offset)` for each gram of a literal.
template <class Visit>
void forEachGram(QStringView text, int length, Visit visit)
{
    switch (length) {
    case 6:
        return forEachGramOf<6>(text, visit);
    case 4:
        return forEachGramOf<4>(text, visit);
    default:
        return forEachGramOf<2>(text, visit);
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
    GramCounts(const Literals& literals, const std::vector<LiteralIndex::Item>& items)
        : counts(std::min(largestCount, powerOfTwo(32 * items.size()))),
          shift(shiftFor(counts.size()))
    {
        for (const auto& item : items) {
            const int length = gramLengthFor(literals, item);
            for (std::size_t index = item.firstLiteral; index < item.lastLiteral; ++index) {
                forEachGram(literals.at(index), length,
                            [this](quint64 gram, int) { ++counts[gram >> shift]; });
            }
        }
    }

    int of(quint64 gram) const { return counts[gram >> shift]; }

private:
    std::vector<int> counts;
    int shift;
};

/// Where an item is entered.
struct Choice {
    QStringView literal;
    int offset = 0; // of the first of the two neighboring grams
    int checkedOffset = 0;
};

/// The pair of neighbors that stands in the fewest literals, and the rarest gram beside it.
Choice choose(const Literals& literals, const LiteralIndex::Item& item, int length,
              const GramCounts& counts)
{
    Choice choice;
    int lowest = std::numeric_limits<int>::max();
    for (std::size_t index = item.firstLiteral; index < item.lastLiteral; ++index) {
        const QStringView literal =
            literals.at(index).left(std::min(literals.at(index).size(), longestLiteral));
        int before = 0;
        forEachGram(literal, length, [&](quint64 gram, int offset) {
            const int count = counts.of(gram);
            const int ofBoth = before + count;
            before = count;
            // A longer literal says more when the check comes to it.
            if (offset > 0 &&
                (ofBoth < lowest || (ofBoth == lowest && literal.size() > choice.literal.size()))) {
                lowest = ofBoth;
                choice = {literal, offset - 1, offset - 1};
            }
        });
    }
    lowest = std::numeric_limits<int>::max();
    forEachGram(choice.literal, length, [&](quint64 gram, int offset) {
        const int count = counts.of(gram);
        if (count < lowest && offset != choice.offset && offset != choice.offset + 1) {
            lowest = count;
            choice.checkedOffset = offset;
        }
    });
    return choice;
}

} // namespace

bool LiteralIndex::canHold(const Literals& literals, const Item& item)
{
    return gramLengthFor(literals, item) >= shortestGram;
}

LiteralIndex::LiteralIndex(const Literals& literals, const std::vector<Item>& items)
{
    const GramCounts counts(literals, items);
    entries.reserve(2 * items.size());
    for (const Item& item : items) {
        const int length = gramLengthFor(literals, item);
        const Choice choice = choose(literals, item, length, counts);
        const QChar* const checked = choice.literal.data() + choice.checkedOffset;
        Entry entry{0,
                    length < packedUnits ? unitsAt<shortestGram>(checked)
                                         : unitsAt<packedUnits>(checked),
                    item.number,
                    entered.size(),
                    quint16(choice.literal.size()),
                    quint16(length),
                    0,
                    quint16(choice.checkedOffset)};
        forEachGram(choice.literal.mid(choice.offset, length + 1), length,
                    [&](Gram gram, int offset) {
                        entry.gram = gram;
                        entry.gramOffset = quint16(choice.offset + offset);
                        entries.push_back(entry);
                    });
        entered.append(choice.literal.data(), int(choice.literal.size()));
        hasLength.at(std::size_t(length)) = true;
    }
    entered.squeeze();
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
           std::memcmp(units, entered.constData() + entry.start, entry.length * sizeof(QChar)) == 0;
}

} // namespace patterns
