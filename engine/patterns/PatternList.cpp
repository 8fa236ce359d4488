#include "patterns/PatternList.h"

namespace patterns {

void PatternList::append(const QString& pattern)
{
    patterns.emplace_back(pattern);
}

bool PatternList::findsMatch(int row, const QString& pattern, const QString& url) const
{
    const Pattern* known = kept(row, pattern);
    return known == nullptr ? Pattern(pattern).findsMatch(url) : known->findsMatch(url);
}

std::optional<GroupMatch> PatternList::matchGroups(int row, const QString& pattern,
                                                   const QString& url) const
{
    const Pattern* known = kept(row, pattern);
    return known == nullptr ? Pattern(pattern).matchGroups(url) : known->matchGroups(url);
}

bool PatternList::isValid(int row, const QString& pattern) const
{
    const Pattern* known = kept(row, pattern);
    return known == nullptr ? Pattern(pattern).isValid() : known->isValid();
}

bool PatternList::hasGroups(int row, const QString& pattern) const
{
    const Pattern* known = kept(row, pattern);
    return known == nullptr ? Pattern(pattern).hasGroups() : known->hasGroups();
}

const Pattern* PatternList::kept(int row, const QString& pattern) const
{
    const auto index = static_cast<std::size_t>(row);
    if (index >= patterns.size() || patterns[index].text() != pattern) {
        return nullptr;
    }
    return &patterns[index];
}

} // namespace patterns
