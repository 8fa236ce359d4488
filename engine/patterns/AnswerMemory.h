#ifndef UNITFLOW_PATTERNS_ANSWERMEMORY_H
#define UNITFLOW_PATTERNS_ANSWERMEMORY_H

#include <QString>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <vector>

namespace patterns {

/// The answers for the URLs that were asked about of late, a fixed number of them. A new answer
/// takes the place of an old one.
///
/// An answer that is remembered costs one hash and one comparison of the URL. One thread at a time.
template <class Answer>
class AnswerMemory {
public:
    static constexpr std::size_t capacity = 256;

    AnswerMemory() : remembered(capacity) {}

    /// The answer for `url`: the remembered one, or what `work()` returns, which is remembered. The
    /// empty URL is not. `work` does not use this memory.
    template <class Work>
    Answer get(const QString& url, Work work)
    {
        if (url.isEmpty()) {
            return work();
        }
        const quint64 hash = hashOf(url);
        const auto row = remembered.begin() + (hash >> hashShift) * rowSize;
        const auto known = std::find_if(row, row + rowSize, [&](const Slot& slot) {
            return slot.hash == hash && slot.url == url;
        });
        if (known != row + rowSize) {
            return known->answer;
        }
        Slot& slot = *(row + oldest++ % rowSize);
        slot.answer = work();
        slot.hash = hash;
        slot.url = url;
        return slot.answer;
    }

private:
    static constexpr std::size_t rowSize = 8;
    static constexpr int rowBits = 5;
    static constexpr int hashShift = 64 - rowBits;
    static_assert(capacity == rowSize << rowBits);

    struct Slot {
        quint64 hash = 0;
        QString url; // empty in an unused one
        Answer answer;
    };

    /// The upper bits are the good ones. Several times as fast as `qHash`, which takes one unit
    /// after the other.
    static quint64 hashOf(const QString& url)
    {
        constexpr int blockSize = 8; // units, half of them for each lane
        constexpr std::array<quint64, 2> factors{0x9E3779B97F4A7C15U, 0xBF58476D1CE4E5B9U};
        std::array<quint64, 2> lanes{quint64(url.size()), 0};
        const auto mix = [&](const QChar* units, int count) {
            std::array<quint64, 2> block{};
            std::memcpy(block.data(), units, std::size_t(count) * sizeof(QChar));
            for (std::size_t lane = 0; lane < lanes.size(); ++lane) {
                lanes[lane] = (lanes[lane] ^ block[lane]) * factors[lane];
            }
        };
        const QChar* const units = url.constData();
        if (url.size() < blockSize) {
            mix(units, url.size());
        } else {
            for (int at = 0; at < url.size() - blockSize; at += blockSize) {
                mix(units + at, blockSize);
            }
            mix(units + url.size() - blockSize, blockSize); // may overlap the one before
        }
        return lanes[0] ^ lanes[1];
    }

    std::vector<Slot> remembered; // in rows; an answer stands in the row of its URL
    std::size_t oldest = 0;       // counts over all rows, which is near enough
};

} // namespace patterns

#endif
