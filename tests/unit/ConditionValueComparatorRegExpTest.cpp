#include "Conditions/ConditionValueComparatorRegExp.h"

#include "EngineTest.h"

#include <vector>

using testhost::table;
using testhost::tree;

namespace {

class ValueComparatorRegExp : public testhost::EngineTest {
protected:
    bool holds(const QString& rows, const QString& url)
    {
        const ConditionValueComparatorRegExp condition(table(rows));
        return condition.checkCondition(source, nullptr, url);
    }

    static QStringList watched(const QString& rows)
    {
        return ConditionValueComparatorRegExp(table(rows)).getConditionUrls();
    }

    testhost::NodePointer source =
        tree("source", R"({"a": {"b": 1, "c": 2, "text": "x"}, "folder": {}})");
};

TEST_F(ValueComparatorRegExp, compares_the_value_that_was_written_where_its_pattern_matches)
{
    struct Row {
        const char* title;
        const char* rows;
        const char* written;
        bool holds;
    };
    const std::vector<Row> table{
        {"the value is equal", R"([["^a/.*$", "==", 1]])", "a/b", true},
        {"the value is another one", R"([["^a/.*$", "==", 1]])", "a/c", false},
        {"unequal finds the other one", R"([["^a/.*$", "!=", 1]])", "a/c", true},
        {"unequal does not find the same one", R"([["^a/.*$", "!=", 1]])", "a/b", false},
        {"no pattern matches, whatever the value", R"([["^b", "==", 1], ["x", "!=", 9]])", "a/b",
         false},
        {"a pattern without anchors matches in the middle", R"([["/", "==", 1]])", "a/b", true},
        {"an anchored pattern does not", R"([["^/", "==", 1]])", "a/b", false},
        {"a pattern keeps its case", R"([["^A", "==", 1]])", "a/b", false},
        {"a pattern needs no group", R"([["b", "==", 1]])", "a/b", true},
        {"an empty pattern matches every URL", R"([["", "==", 1]])", "a/b", true},
        {"the prefix is part of the pattern here", R"([["RE:a", "==", 1]])", "a/b", false},
        {"a value that is not there equals nothing", R"([["a", "==", 1]])", "a/missing", false},
        {"and is not unequal to anything either", R"([["a", "!=", 1]])", "a/missing", false},
        {"a node without value counts as not there", R"([["folder", "!=", 1]])", "folder", false},
        {"= is no comparator", R"([["a", "=", 1]])", "a/b", false},
        {"the constant is read in the type of the value", R"([["a", "==", "1"]])", "a/b", true},
        {"texts are compared", R"([["a", "==", "x"]])", "a/text", true},
        {"only a later row holds", R"([["a", "==", 5], ["x", "==", 1], ["b", "==", 1]])", "a/b",
         true},
        {"only the first row holds", R"([["b", "==", 1], ["a", "==", 5]])", "a/b", true},
        {"no row holds", R"([["a", "==", 5], ["b", "==", 6]])", "a/b", false},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(holds(row.rows, row.written), row.holds);
    }
}

TEST_F(ValueComparatorRegExp, reads_the_value_of_every_row_that_matches_even_after_one_that_holds)
{
    const ConditionValueComparatorRegExp condition(
        table(R"([["a", "==", 1], ["x", "==", 1], ["b", "<", 1], ["/", "!=", 1]])"));
    host.takeCalls();

    EXPECT_TRUE(condition.checkCondition(source, tree("target", R"({"a": 1})"), "a/b"));
    EXPECT_EQ(host.takeCalls(),
              (QStringList{"extractConfigValue(a/b, source)", "extractConfigValue(a/b, source)",
                           "extractConfigValue(a/b, source)"}));
}

TEST_F(ValueComparatorRegExp, never_matches_by_an_invalid_pattern_and_says_nothing)
{
    for (const char* pattern : {"(", "[", "*", "a{2,1}", "(?<n>a)(?<n>b)", "(?<>a)"}) {
        SCOPED_TRACE(pattern);
        EXPECT_FALSE(holds(QString(R"([["%1", "==", 1]])").arg(pattern), "a/b"));
        EXPECT_TRUE(holds(QString(R"([["%1", "==", 1], ["a", "==", 1]])").arg(pattern), "a/b"));
    }
}

TEST_F(ValueComparatorRegExp, meets_odd_urls_and_patterns_in_silence)
{
    const QString nul = QString("x") + QChar(0) + "y";
    const QString loneSurrogate = QString("a") + QChar(0xD800);
    for (const QString& name : {nul, loneSurrogate}) {
        source->addChild(name)->setProperty("@val", 1);
    }

    EXPECT_TRUE(holds(R"([["x.y", "==", 1]])", nul)) << "a NUL is a character like any other";
    EXPECT_FALSE(holds(R"([["a", "==", 1]])", loneSurrogate)) << "nothing is found in no text";
    host.rowsOf = [&](const QVariantList&) {
        return QVariantList{QVariantList{loneSurrogate, "==", 1}};
    };
    EXPECT_FALSE(holds("[]", loneSurrogate)) << "no valid pattern";
}

TEST_F(ValueComparatorRegExp, does_not_hold_without_a_source)
{
    const ConditionValueComparatorRegExp condition(table(R"([["a", "==", 1], ["a", "!=", 9]])"));

    EXPECT_FALSE(condition.checkCondition(nullptr, tree("target", "{}"), "a/b"));
}

TEST_F(ValueComparatorRegExp, never_holds_without_rows)
{
    for (const BaseClassSharedPointer& description :
         {BaseClassSharedPointer(), BaseClassSharedPointer(tree("description", "{}")),
          BaseClassSharedPointer(table(R"([["a", "=="], ["a", "==", 1, 2], "a"])"))}) {
        const ConditionValueComparatorRegExp condition(description);
        EXPECT_FALSE(condition.checkCondition(source, nullptr, "a/b"));
        EXPECT_EQ(condition.getConditionUrls(), QStringList());
        EXPECT_EQ(condition.getConditionAsString(), "");
    }
}

TEST_F(ValueComparatorRegExp, watches_its_patterns_with_the_prefix)
{
    EXPECT_EQ(watched(R"([["b.*", "==", 1], ["a", "<", 1]])"), (QStringList{"RE:b.*", "RE:a"}));
    EXPECT_EQ(watched(R"([["", "==", 1]])"), QStringList{"RE:"});
}

TEST_F(ValueComparatorRegExp, watches_a_pattern_twice_that_two_rows_carry)
{
    EXPECT_EQ(watched(R"([["x", "==", 1], ["x", "==", 2]])"), (QStringList{"RE:x", "RE:x"}));
    EXPECT_EQ(watched(R"([["x", "==", 1], ["y", "==", 1], ["x", "!=", 1]])"),
              (QStringList{"RE:x", "RE:y", "RE:x"}));
}

TEST_F(ValueComparatorRegExp, drops_a_prefixed_pattern_after_the_same_without_prefix)
{
    EXPECT_EQ(watched(R"([["x", "==", 1], ["RE:x", "==", 1]])"), QStringList{"RE:x"});
    EXPECT_EQ(watched(R"([["RE:x", "==", 1], ["x", "==", 1]])"), (QStringList{"RE:RE:x", "RE:x"}));
}

TEST_F(ValueComparatorRegExp, prints_its_patterns_without_prefix)
{
    const ConditionValueComparatorRegExp condition(
        table(R"([["^a/.*$", "==", 1], ["b", "!=", "text"]])"));

    EXPECT_EQ(condition.getConditionAsString(), "^a/.*$==1||b!=text");
}

TEST_F(ValueComparatorRegExp, goes_on_with_its_rows_when_the_host_adds_some_meanwhile)
{
    ConditionValueComparatorRegExp condition(table(R"([["a", "==", 1], ["a", "==", 2]])"));
    host.takeCalls();
    host.insideNext("extractConfigValue", [&] {
        for (int i = 0; i < 100; ++i) {
            condition.initCondition(table(R"([["a", "==", 3]])"));
        }
    });

    EXPECT_TRUE(condition.checkCondition(source, nullptr, "a/b"));
    EXPECT_EQ(host.takeCalls({"extractConfigValue"}).size(), 2);
}

} // namespace
