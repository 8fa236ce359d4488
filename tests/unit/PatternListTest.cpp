#include "patterns/PatternList.h"

#include "EngineTest.h"

using patterns::PatternList;

namespace {

class KeptPatterns : public testhost::EngineTest {
protected:
    KeptPatterns()
    {
        list.append("a(.)");
        list.append("b(.)");
    }

    PatternList list;
};

TEST_F(KeptPatterns, answer_for_their_rows)
{
    EXPECT_TRUE(list.findsMatch(0, "a(.)", "ax"));
    EXPECT_FALSE(list.findsMatch(0, "a(.)", "bx"));
    EXPECT_TRUE(list.findsMatch(1, "b(.)", "bx"));
    EXPECT_EQ(list.matchGroups(1, "b(.)", "by")->match.captured(1), "y");
}

TEST_F(KeptPatterns, give_way_to_what_a_row_holds_by_now)
{
    EXPECT_TRUE(list.findsMatch(0, "c(.)", "cx"));
    EXPECT_FALSE(list.findsMatch(0, "c(.)", "ax"));
    EXPECT_EQ(list.matchGroups(0, "c(.)", "cx")->match.captured(1), "x");
    EXPECT_FALSE(list.matchGroups(0, "c(.)", "ax"));
    EXPECT_TRUE(list.findsMatch(0, "a(.)", "ax")) << "and stay";
}

TEST_F(KeptPatterns, need_not_be_there)
{
    EXPECT_TRUE(list.findsMatch(2, "c(.)", "cx"));
    EXPECT_EQ(list.matchGroups(2, "c(.)", "cx")->match.captured(1), "x");
    EXPECT_FALSE(list.findsMatch(2, "(", "("));
}

TEST_F(KeptPatterns, may_be_joined_by_more_after_they_were_asked)
{
    EXPECT_TRUE(list.findsMatch(0, "a(.)", "ax"));
    for (int row = 2; row < 100; ++row) {
        list.append(QString::number(row) + "(.)");
    }
    EXPECT_TRUE(list.findsMatch(0, "a(.)", "ax"));
    EXPECT_TRUE(list.findsMatch(99, "99(.)", "99x"));
}

} // namespace
