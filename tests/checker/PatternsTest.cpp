#include "checker/Patterns.h"

#include "ExampleWorkspace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using checker::Patterns;

namespace {

/// What the search must find: each pattern on each URL.
std::vector<int> triedOneByOne(const QStringList& texts, const QStringList& urls)
{
    std::vector<int> found;
    for (const QString& text : texts) {
        const QRegularExpression expression(text);
        int first = -1;
        for (int at = urls.size() - 1; at >= 0; --at) {
            if (expression.isValid() && expression.match(urls.at(at)).hasMatch()) {
                first = at;
            }
        }
        found.push_back(first);
    }
    return found;
}

class RandomTexts {
public:
    explicit RandomTexts(unsigned seed) : random(seed) {}

    QStringList many(const QStringList& pieces, int mostPieces)
    {
        QStringList texts;
        for (int count = pick(20); count > 0; --count) {
            QString text;
            for (int length = pick(mostPieces + 1); length > 0; --length) {
                text += pieces.at(pick(pieces.size()));
            }
            texts.append(text);
        }
        return texts;
    }

private:
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); }

    std::mt19937 random;
};

} // namespace

TEST(Patterns, find_the_first_url_that_each_matches_like_one_after_the_other)
{
    const QStringList inUrls{"Zone", "Zones/", "1", "2", "/", "Mode", "Unit", "ö", " "};
    const QStringList inPatterns =
        inUrls + QStringList{"^", "$", "[0-9]+", ".*", "(a|Zone)", "?", "\\", "(", "[^/]+", "(?i)"};
    int matched = 0;
    for (unsigned seed = 0; seed < 300; ++seed) {
        RandomTexts texts(seed);
        const QStringList urls = texts.many(inUrls, 5);
        const QStringList patterns = texts.many(inPatterns, 4);
        const std::vector<int> found = Patterns().firstMatches(patterns, urls);
        ASSERT_EQ(found, triedOneByOne(patterns, urls)) << "seed " << seed;
        matched += static_cast<int>(
            std::count_if(found.begin(), found.end(), [](int url) { return url > 0; }));
    }
    EXPECT_GT(matched, 100) << "the comparison has nothing to compare";
}
