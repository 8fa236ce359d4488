#ifndef UNITFLOW_PATTERNS_TEXTHASH_H
#define UNITFLOW_PATTERNS_TEXTHASH_H

#include <QString>

#include <array>
#include <cstddef>
#include <cstring>

namespace patterns {

/// A hash whose upper bits are the good ones. Several times as fast as `qHash`, which takes one
/// unit after the other.
inline quint64 textHash(const QString& text)
{
    constexpr int blockSize = 8; // units, half of them for each lane
    constexpr std::array<quint64, 2> factors{0x9E3779B97F4A7C15U, 0xBF58476D1CE4E5B9U};
    std::array<quint64, 2> lanes{quint64(text.size()), 0};
    const auto mix = [&](const QChar* units, int count) {
        std::array<quint64, 2> block{};
        std::memcpy(block.data(), units, std::size_t(count) * sizeof(QChar));
        for (std::size_t lane = 0; lane < lanes.size(); ++lane) {
            lanes[lane] = (lanes[lane] ^ block[lane]) * factors[lane];
        }
    };
    const QChar* const units = text.constData();
    if (text.size() < blockSize) {
        mix(units, text.size());
    } else {
        for (int at = 0; at < text.size() - blockSize; at += blockSize) {
            mix(units + at, blockSize);
        }
        mix(units + text.size() - blockSize, blockSize); // may overlap the one before
    }
    return lanes[0] ^ lanes[1];
}

} // namespace patterns

#endif
