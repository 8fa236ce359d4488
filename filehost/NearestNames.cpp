#include "filehost/NearestNames.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace filehost {

namespace {

constexpr std::size_t mostNames = 3;

// What is missing weighs less than what is wrong: people abbreviate.
constexpr int missingLetter = 1;
constexpr int wrongLetter = 2;

/// The least weight of letters missing, superfluous, replaced, or swapped with their neighbor in
/// `from` when `to` is meant.
int weightOfErrors(const QString& from, const QString& to)
{
    const auto columns = static_cast<std::size_t>(to.size()) + 1;
    std::vector<int> beforeLast(columns);
    std::vector<int> last(columns);
    std::vector<int> current(columns);
    std::iota(last.begin(), last.end(), 0);
    static_assert(missingLetter == 1, "the first row counts up in steps of one");

    for (int row = 0; row < from.size(); ++row) {
        current[0] = (row + 1) * wrongLetter;
        for (int column = 0; column < to.size(); ++column) {
            const auto at = static_cast<std::size_t>(column);
            const int same = last[at] + (from.at(row) == to.at(column) ? 0 : wrongLetter);
            current[at + 1] =
                std::min({last[at + 1] + wrongLetter, current[at] + missingLetter, same});
            const bool isSwapped = row > 0 && column > 0 && from.at(row) == to.at(column - 1) &&
                                   from.at(row - 1) == to.at(column);
            if (isSwapped) {
                current[at + 1] = std::min(current[at + 1], beforeLast[at - 1] + wrongLetter);
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

/// Small for a likely meaning. Another case, or a front part of the path left out, weighs little.
int unlikeness(const QString& name, const QString& candidate)
{
    const QString wanted = name.toCaseFolded();
    const QString offered = candidate.toCaseFolded();
    const int otherCase = wanted == offered && name != candidate ? 1 : 0;
    const int whole = weightOfErrors(wanted, offered) + otherCase;

    const int parts = wanted.count(QLatin1Char('/')) + 1;
    const QString offeredTail = tail(offered, parts);
    if (offeredTail == offered) {
        return whole;
    }
    return std::min(whole, weightOfErrors(wanted, offeredTail) + 1);
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
        const bool isFarBehind = entry.first > 2 * ranked.front().first + 2 * wrongLetter;
        if (!isFarBehind) {
            names.append(entry.second);
        }
    });
    return names;
}

QString nearestName(const QString& name, const QStringList& candidates)
{
    const QString nearest = nearestNames(name, candidates).value(0);
    const bool isAlike = unlikeness(name, nearest) <= name.size() * wrongLetter / 2;
    return isAlike ? nearest : QString();
}

} // namespace filehost
