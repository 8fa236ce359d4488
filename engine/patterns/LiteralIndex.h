#ifndef UNITFLOW_PATTERNS_LITERALINDEX_H
#define UNITFLOW_PATTERNS_LITERALINDEX_H

#include "patterns/Literals.h"

#include <QString>
#include <QVarLengthArray>

#include <array>
#include <vector>

namespace patterns {

/// Finds those of many numbers whose literals may stand in a text, without looking at the others.
///
/// Each number is entered under a short piece of its literals (a gram) that few others have. A
/// search looks up the grams of the text and checks the whole literal around those that it knows.
/// So it costs one step for every other character of the text, and one for each number that shares
/// a gram with it, however many numbers there are.
///
/// Immutable once built; any thread.
class LiteralIndex {
public:
    using Numbers = QVarLengthArray<int, 64>;

    /// A number, and which of many literals are its own: each of them stands in every text that
    /// the number is to be found in.
    struct Item {
        int number = 0; ///< distinct
        std::size_t firstLiteral = 0;
        std::size_t lastLiteral = 0; ///< the one behind the last
    };

    /// Whether the item's literals are long enough to enter it under.
    static bool canHold(const Literals& literals, const Item& item);

    LiteralIndex() = default;
    /// The index can hold every item. Costs a few passes over the literals and one sort.
    LiteralIndex(const Literals& literals, const std::vector<Item>& items);

    /// The numbers whose literals all stand in `text`, in ascending order, each once; and maybe
    /// others. None of the former is ever left out.
    Numbers find(const QString& text) const;

private:
    using Gram = quint64; // up to four units

    /// A number, and its literal around a gram under which it is entered. There are two for each
    /// number, under neighboring grams: one of them stands at an even place of the text, and
    /// searching looks at even places only.
    struct Entry {
        Gram gram;
        quint64 checkedUnits; // of the literal; they tell most of those apart that share the gram
        int number;
        int start; // of the literal in `entered`
        quint16 length;
        quint16 gramLength;
        quint16 gramOffset; // in the literal
        quint16 checkedOffset;
    };

    void fillTable();
    std::size_t placeOf(Gram gram) const;
    template <int length>
    void collect(const QString& text, Numbers& numbers) const;
    template <int length>
    void collectAround(int position, const QString& text, Numbers& numbers) const;
    template <int length>
    bool stands(const Entry& entry, const QString& text, int start) const;

    std::array<bool, 7> hasLength{}; // whether there are grams of a length
    std::vector<Entry> entries;      // by gram
    QString entered;                 // the literals of the entries, run together
    std::vector<int> table;          // the first entry of each gram; open addressing
    std::vector<quint64> filter;     // two bits for each gram in the table, in one word
    int tableShift = 0;
    int filterShift = 0;
};

} // namespace patterns

#endif
