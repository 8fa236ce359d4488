#include "Engine.h"
#include "MessageCapture.h"
#include "NastyPatterns.h"
#include "PatternGenerator.h"
#include "Plain.h"
#include "Shrink.h"
#include "TraversalObserver.h"

#include <QtGlobal>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

using patterns::Answers;
using patterns::DrawnPattern;
using patterns::Graph;
using patterns::PlainMatcher;
using patterns::Random;
using patterns::Round;
using patterns::Step;

namespace {

std::uint64_t fromEnvironment(const char* name, std::uint64_t otherwise)
{
    bool ok = false;
    const qulonglong number = qEnvironmentVariable(name).toULongLong(&ok);
    return ok ? number : otherwise;
}

bool differ(const Round& round)
{
    return patterns::askEngine(round) != patterns::answerPlainly(round);
}

/// What to look at when engine and plain loop differ: the least that shows it.
std::string report(const Round& round)
{
    const Round least = patterns::shrink(round, differ);
    std::ostringstream text;
    text << "the least that differs:\n"
         << least << "engine:\n"
         << patterns::askEngine(least) << "plain loop:\n"
         << patterns::answerPlainly(least);
    return text.str();
}

qint64 pairsIn(const Round& round)
{
    qint64 patterns = 0;
    for (const patterns::Node& node : round.graphs.front()) {
        for (const patterns::Edge& edge : node.edges) {
            patterns += edge.patterns.size() + edge.compared.size();
        }
    }
    return patterns * round.urls.size();
}

/// One node for each pattern; every URL is asked and run, and asked again in the other order.
Round roundOf(const QStringList& patterns, const QStringList& urls)
{
    Graph graph;
    for (const QString& pattern : patterns) {
        const QString name = QStringLiteral("N%1").arg(int(graph.size()), 5, 10, QChar('0'));
        graph.push_back({name, {{{pattern}, {}, {}}}});
    }
    Round round{{graph}, urls, {}};
    Step step;
    step.action = Step::Action::Build;
    round.steps.push_back(step);
    for (step.url = 0; step.url < urls.size(); ++step.url) {
        step.action = Step::Action::Filter;
        round.steps.push_back(step);
        step.action = Step::Action::Traverse;
        round.steps.push_back(step);
    }
    step.action = Step::Action::Filter;
    for (step.url = urls.size() - 1; step.url >= 0; --step.url) {
        round.steps.push_back(step);
    }
    return round;
}

/// Qt writes a message for a group name that stands twice, as often as it compiles the pattern.
class QuietTest : public testing::Test {
private:
    testhost::MessageCapture messages;
};

class Patterns : public QuietTest {};
class NastyPatterns : public QuietTest {};
class PatternGenerator : public QuietTest {};

// ---- The engine against the plain loop ----------------------------------------------------------

TEST_F(Patterns, walkers_answer_like_a_plain_loop_over_fresh_expressions)
{
    const std::uint64_t first = fromEnvironment("UNITFLOW_PATTERNS_SEED", 1);
    const std::uint64_t rounds = fromEnvironment("UNITFLOW_PATTERNS_COUNT", 100);
    qint64 pairs = 0;
    for (std::uint64_t seed = first; seed < first + rounds; ++seed) {
        const Round round = patterns::drawRound(seed);
        pairs += pairsIn(round);
        ASSERT_EQ(differ(round), false) << "seed " << seed << "; " << report(round);
    }
    EXPECT_GE(pairs, qint64(rounds) * 10'000);
}

/// Looks whether the pattern by which a node is selected finds a match in the written URL.
class SelectionCheck final : public TraversalObserver {
public:
    void traversalStarted(const QString& url) override { urls.append(url); }
    void traversalFinished(bool /*outcome*/, bool /*changed*/) override { urls.removeLast(); }
    void nodeSelected(const SelectedNode& node) override
    {
        if (node.selection == Selection::Pattern) {
            ++selections;
            EXPECT_TRUE(matcher.findsMatch(node.watched, urls.last()))
                << patterns::visible(node.watched).toStdString() << " in "
                << patterns::visible(urls.last()).toStdString();
        }
    }
    int selections = 0;

private:
    PlainMatcher matcher;
    QStringList urls; // of the traversals under way
};

TEST_F(Patterns, an_observer_is_told_the_pattern_that_matches_and_changes_no_answer)
{
    SelectionCheck check;
    const TraversalObservation observed(check);
    for (std::uint64_t seed = 1; seed <= 10; ++seed) {
        const Round round = patterns::drawRound(seed);
        ASSERT_EQ(differ(round), false) << "seed " << seed;
    }
    EXPECT_GT(check.selections, 1000);
}

TEST_F(Patterns, nasty_patterns_are_matched_like_in_a_plain_loop)
{
    const Round round =
        roundOf(patterns::nastyPatterns() + patterns::hopelessPatterns(), patterns::nastyUrls());
    ASSERT_FALSE(differ(round)) << report(round);
}

TEST_F(Patterns, a_nasty_pattern_alone_is_matched_like_in_a_plain_loop)
{
    for (const QString& pattern : patterns::nastyPatterns() + patterns::hopelessPatterns()) {
        const Round round = roundOf({pattern}, patterns::nastyUrls());
        ASSERT_FALSE(differ(round)) << report(round);
    }
}

TEST_F(Patterns, more_urls_than_anybody_remembers_are_answered_like_in_a_plain_loop)
{
    Random random(1);
    QStringList drawn;
    QStringList urls;
    for (int i = 0; i < 20; ++i) {
        const DrawnPattern pattern = patterns::drawPattern(random);
        drawn.append(pattern.pattern);
        for (int copy = 0; copy < 1000; ++copy) {
            urls.append(patterns::drawUrl(random, pattern.sample) + QString::number(copy));
        }
    }
    const Round round = roundOf(drawn, urls);
    ASSERT_FALSE(differ(round)) << report(round);
}

TEST_F(Patterns, ten_thousand_patterns_are_matched_like_in_a_plain_loop)
{
    Random random(1);
    QStringList drawn;
    QStringList urls;
    for (int i = 0; i < 10'000; ++i) {
        const DrawnPattern pattern = patterns::drawPattern(random);
        drawn.append(pattern.pattern);
        if (i % 200 == 0) {
            urls.append(patterns::drawUrl(random, pattern.sample));
        }
    }
    const Round round = roundOf(drawn, urls);
    ASSERT_FALSE(differ(round)) << report(round);
}

// ---- What the comparison is made of -------------------------------------------------------------

TEST_F(NastyPatterns, find_a_match_in_one_of_the_nasty_urls)
{
    PlainMatcher matcher;
    const QStringList& urls = patterns::nastyUrls();
    for (const QString& pattern : patterns::nastyPatterns()) {
        EXPECT_TRUE(std::any_of(urls.begin(), urls.end(), [&](const QString& url) {
            return matcher.findsMatch(pattern, url);
        })) << patterns::visible(pattern).toStdString();
    }
}

TEST_F(NastyPatterns, find_none_when_they_are_hopeless)
{
    PlainMatcher matcher;
    for (const QString& pattern : patterns::hopelessPatterns()) {
        for (const QString& url : patterns::nastyUrls()) {
            EXPECT_FALSE(matcher.findsMatch(pattern, url))
                << patterns::visible(pattern).toStdString() << " in "
                << patterns::visible(url).toStdString();
        }
    }
}

TEST_F(PatternGenerator, makes_patterns_of_every_construct_that_find_matches)
{
    Random random(1);
    PlainMatcher matcher;
    std::set<std::string> matched;
    for (int i = 0; i < 10'000; ++i) {
        DrawnPattern drawn = patterns::drawPattern(random);
        if (matcher.findsMatch(drawn.pattern, drawn.sample)) {
            matched.merge(drawn.constructs);
        }
    }
    EXPECT_EQ(matched, patterns::constructsOfTheDialect());
}

TEST_F(PatternGenerator, makes_samples_that_mostly_match)
{
    Random random(1);
    PlainMatcher matcher;
    int matches = 0;
    for (int i = 0; i < 2000; ++i) {
        const DrawnPattern drawn = patterns::drawPattern(random);
        matches += matcher.findsMatch(drawn.pattern, drawn.sample) ? 1 : 0;
    }
    EXPECT_GE(matches, 1000);
}

TEST(Rounds, are_drawn_the_same_again_from_a_seed)
{
    const auto text = [](std::uint64_t seed) {
        std::ostringstream out;
        out << patterns::drawRound(seed);
        return out.str();
    };
    EXPECT_EQ(text(7), text(7));
    EXPECT_NE(text(7), text(8));
}

TEST(Rounds, shrink_to_what_shows_the_difference)
{
    // As if the engine lost the second node where the URL is just this.
    const auto fails = [](const Round& round) {
        const Answers answers = patterns::answerPlainly(round);
        return std::any_of(answers.begin(), answers.end(), [](const patterns::Answer& answer) {
            return answer.question == "walker 0: filter \"zone\"" && answer.told.contains("N00001");
        });
    };
    const Round round = roundOf({"temp", "(zo)ne|temp", "a"}, {"temp", "zone", "zonetemp"});
    ASSERT_TRUE(fails(round));

    const Round least = patterns::shrink(round, fails);
    std::ostringstream text;
    text << least;
    EXPECT_EQ(text.str(), "graph 0:\n"
                          "  N00001.0 patterns \"\"\n"
                          "walker 0: build graph 0\n"
                          "walker 0: filter \"zone\"\n");
}

} // namespace
