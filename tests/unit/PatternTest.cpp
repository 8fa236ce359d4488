#include "patterns/Pattern.h"

#include "EngineTest.h"

#include <QRegularExpression>

#include <atomic>
#include <thread>
#include <vector>

using patterns::Pattern;

namespace {

class KeptPattern : public testhost::EngineTest {};

const QChar highSurrogate(0xD83D);
const QChar lowSurrogate(0xDE00);

TEST_F(KeptPattern, finds_what_a_fresh_expression_finds)
{
    const QString nul(QChar(0));
    for (const QString& text :
         {QString(), QString(""), QString("a/b"), QString("^a/b$"), QString("(?i)A/B"),
          QString("(?x)a / b # comment"), QString("(?<n>.*)/"), QString("a|b"), QString("b(?=c)"),
          "a" + nul + "b", nul, QString::fromUtf8("ä"), QString::fromUtf8("😀"), QString("$")}) {
        const Pattern pattern(text);
        for (const QString& url : {QString("a/b"), QString("A/B"), QString("x/a/b/c"),
                                   QString("a/b\n"), QString(), QString(""), "a" + nul + "b",
                                   QString::fromUtf8("ä😀"), QString("bc"), QString("a/b")}) {
            SCOPED_TRACE((text + " in " + url).toStdString());
            const bool matches = QRegularExpression(text).match(url).hasMatch();
            EXPECT_EQ(pattern.findsMatch(url), matches);
            EXPECT_EQ(pattern.findsMatch(url), matches) << "asked again";
            EXPECT_EQ(pattern.findsMatchInWellFormed(url), matches);
        }
    }
}

TEST_F(KeptPattern, matches_before_a_final_line_end_by_a_dollar_sign)
{
    EXPECT_TRUE(Pattern("b$").findsMatch("a/b\n"));
    EXPECT_FALSE(Pattern("b$").findsMatch("a/b\n\n"));
}

TEST_F(KeptPattern, that_is_invalid_finds_nothing_and_says_nothing)
{
    for (const char* text : {"(", "[", "*", "a{2,1}", "(?<n>a)(?<n>b)", "\\"}) {
        SCOPED_TRACE(text);
        const Pattern pattern{QString(text)};
        for (const char* url : {"", "a", "(", "a"}) {
            EXPECT_FALSE(pattern.findsMatch(url));
            EXPECT_FALSE(pattern.findsMatchInWellFormed(url));
            EXPECT_FALSE(pattern.matchGroups(url));
        }
    }
}

TEST_F(KeptPattern, finds_nothing_in_a_url_with_a_lone_surrogate)
{
    for (const char* text : {"", ".*", "a", "(a)", "^"}) {
        SCOPED_TRACE(text);
        const Pattern pattern{QString(text)};
        for (const QString& url : {QString("a") + lowSurrogate, QString("a") + highSurrogate,
                                   highSurrogate + QString("a"), QString("a") + lowSurrogate}) {
            EXPECT_FALSE(pattern.findsMatch(url));
            EXPECT_FALSE(pattern.matchGroups(url));
        }
        EXPECT_TRUE(pattern.findsMatch(QString("a") + highSurrogate + lowSurrogate));
    }
}

TEST_F(KeptPattern, tells_what_each_group_captured_in_each_url)
{
    const Pattern pattern("^(?<inst>[^/]+)/([a-z]*)(?<rest>.*)$");

    for (const char* inst : {"A", "B", "B", "A"}) {
        const auto found = pattern.matchGroups(QString(inst) + "/xyzW");
        ASSERT_TRUE(found);
        EXPECT_EQ(found->groupNames, (QStringList{"", "inst", "", "rest"}));
        EXPECT_EQ(found->match.captured("inst"), inst);
        EXPECT_EQ(found->match.captured(2), "xyz");
        EXPECT_EQ(found->match.captured("rest"), "W");
    }
    EXPECT_FALSE(pattern.matchGroups("A"));
    EXPECT_FALSE(pattern.matchGroups(""));
    EXPECT_TRUE(pattern.matchGroups("A/"));
}

TEST_F(KeptPattern, has_no_groups_to_tell_of_without_a_group)
{
    const Pattern pattern("a/(?:b)");

    EXPECT_FALSE(pattern.matchGroups("a/b"));
    EXPECT_TRUE(pattern.findsMatch("a/b"));
    EXPECT_TRUE(Pattern("a/(b)").matchGroups("a/b"));
}

TEST_F(KeptPattern, tells_the_null_url_from_the_empty_one)
{
    const Pattern pattern("(?<all>.*)");

    EXPECT_FALSE(pattern.matchGroups("")->match.captured("all").isNull());
    EXPECT_EQ(pattern.matchGroups(QString())->match.captured("all").isNull(),
              QRegularExpression("(?<all>.*)").match(QString()).captured("all").isNull());
    EXPECT_FALSE(pattern.matchGroups("")->match.captured("all").isNull());
}

TEST_F(KeptPattern, is_copied_with_its_text)
{
    const Pattern pattern("(?<n>a)");
    EXPECT_TRUE(pattern.findsMatch("a"));

    const Pattern copy(pattern); // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(copy.text(), "(?<n>a)");
    EXPECT_TRUE(copy.findsMatch("a"));
    EXPECT_FALSE(copy.findsMatch("b"));
}

TEST_F(KeptPattern, takes_two_words_before_it_is_asked)
{
    EXPECT_LE(sizeof(Pattern), 2 * sizeof(void*));
}

TEST_F(KeptPattern, answers_many_threads_at_a_time)
{
    for (int round = 0; round < 20; ++round) {
        const Pattern pattern("^(?<inst>[^/]+)/Value$");
        std::atomic<int> wrong{0};
        std::vector<std::thread> threads;
        threads.reserve(4);
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&pattern, &wrong, thread] {
                for (int i = 0; i < 200; ++i) {
                    const QString inst = QString::number((i + thread) % 3);
                    const auto found = pattern.matchGroups(inst + "/Value");
                    const bool right = found && found->match.captured("inst") == inst &&
                                       pattern.findsMatch(inst + "/Value") &&
                                       !pattern.findsMatch(inst + "/Other");
                    wrong += right ? 0 : 1;
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_EQ(wrong, 0);
    }
}

} // namespace
