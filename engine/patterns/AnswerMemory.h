#ifndef UNITFLOW_PATTERNS_ANSWERMEMORY_H
#define UNITFLOW_PATTERNS_ANSWERMEMORY_H

#include "patterns/TextHash.h"

#include <QString>

#include <array>
#include <cstddef>
#include <cstring>
#include <vector>

namespace patterns {

/// The answers for the URLs that were asked about of late, a fixed number of them. A new answer
/// takes the place of an old one.
///
/// An answer that is remembered costs one hash and one comparison of the URL. The memory keeps no
/// string alive that it was asked with. One thread at a time.
template <class Answer>
class AnswerMemory {
public:
    static constexpr std::size_t capacity = 256;

    AnswerMemory() : rows(capacity / rowSize) {}

    /// The answer for `url`: the remembered one, or what `work()` returns, which is remembered. The
    /// empty URL is not. `work` does not use this memory.
    template <class Work>
    Answer get(const QString& url, Work work)
    {
        if (url.isEmpty()) {
            return work();
        }
        const quint64 hash = textHash(url);
        Row& row = rows[hash >> hashShift];
        for (std::size_t i = 0; i < rowSize; ++i) {
            if (row.hashes[i] == hash && row.slots[i].holds(url)) {
                return row.slots[i].answer;
            }
        }
        const std::size_t i = oldest++ % rowSize;
        Slot& slot = row.slots[i];
        slot.answer = work();
        slot.url.assign(url.cbegin(), url.cend());
        row.hashes[i] = hash;
        return slot.answer;
    }

private:
    static constexpr std::size_t rowSize = 8;
    static constexpr int rowBits = 5;
    static constexpr int hashShift = 64 - rowBits;
    static_assert(capacity == rowSize << rowBits);

    struct Slot {
        bool holds(const QString& other) const
        {
            return url.size() == std::size_t(other.size()) &&
                   std::memcmp(url.data(), other.constData(), url.size() * sizeof(QChar)) == 0;
        }

        std::vector<QChar> url; // empty in an unused one; its room is used again
        Answer answer;
    };

    struct Row {
        std::array<quint64, rowSize>
            hashes{}; // of the URLs in the slots, for a look at all of them
        std::array<Slot, rowSize> slots;
    };

    std::vector<Row> rows;  // an answer stands in the row of its URL
    std::size_t oldest = 0; // counts over all rows, which is near enough
};

} // namespace patterns

#endif
