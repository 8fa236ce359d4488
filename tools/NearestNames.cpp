#include "tools/NearestNames.h"

#include "tools/Text.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace tools {

namespace {

constexpr std::size_t mostNames = 3;
constexpr int farBehind = 6;

/// Insertions, deletions, replacements and swaps of neighbors.
int editDistance(const QString& from, const QString& to)
{
    const auto columns = static_cast<std::size_t>(to.size()) + 1;
    std::vector<int> beforeLast(columns);
    std::vector<int> last(columns);
    std::vector<int> current(columns);
    std::iota(last.begin(), last.end(), 0);

    for (int row = 0; row < from.size(); ++row) {
        current[0] = row + 1;
        for (int column = 0; column < to.size(); ++column) {
            const auto at = static_cast<std::size_t>(column);
            const int replaced = last[at] + (from.at(row) == to.at(column) ? 0 : 1);
            current[at + 1] = std::min({last[at + 1] + 1, current[at] + 1, replaced});
            const bool swapped = row > 0 && column > 0 && from.at(row) == to.at(column - 1) &&
                                 from.at(row - 1) == to.at(column);
            if (swapped) {
                current[at + 1] = std::min(current[at + 1], beforeLast[at - 1] + 1);
            }
        }
        std::swap(beforeLast, last);
        std::swap(last, current);
    }
    return last.back();
}

/// The last `count` parts of a path.
QString tail(const QString& path, int count)
{
    return path.section(QLatin1Char('/'), -count);
}

/// A typing error weighs two, a difference in case or a missing front part of the path one.
int unlikeness(const QString& name, const QString& candidate)
{
    const QString wanted = name.toCaseFolded();
    const QString offered = candidate.toCaseFolded();
    const int otherCase = wanted == offered && name != candidate ? 1 : 0;
    const int whole = 2 * editDistance(wanted, offered) + otherCase;

    const int parts = wanted.count(QLatin1Char('/')) + 1;
    const QString offeredTail = tail(offered, parts);
    if (offeredTail == offered) {
        return whole;
    }
    return std::min(whole, 2 * editDistance(wanted, offeredTail) + 1);
}

} // namespace

QStringList nearestNames(const QString& name, const QStringList& candidates)
{
    std::vector<std::pair<int, QString>> ranked;
    ranked.reserve(static_cast<std::size_t>(candidates.size()));
    for (const QString& candidate : candidates) {
        ranked.emplace_back(unlikeness(name, candidate), candidate);
    }

    const auto shown =
        ranked.begin() + static_cast<std::ptrdiff_t>(std::min(mostNames, ranked.size()));
    std::partial_sort(ranked.begin(), shown, ranked.end());

    QStringList names;
    std::for_each(ranked.begin(), shown, [&](const std::pair<int, QString>& entry) {
        if (entry.first <= ranked.front().first + farBehind) {
            names.append(entry.second);
        }
    });
    return names;
}

QString nearestNamesSentence(const QString& name, const QStringList& candidates)
{
    QStringList names = nearestNames(name, candidates);
    if (names.isEmpty()) {
        return {};
    }

    std::transform(names.begin(), names.end(), names.begin(), quoted);
    return (names.size() == 1 ? QStringLiteral("The nearest is %1.")
                              : QStringLiteral("The nearest are %1."))
        .arg(enumerated(names));
}

} // namespace tools
