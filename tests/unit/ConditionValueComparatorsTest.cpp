#include "Conditions/ConditionValueComparators.h"

#include "EngineTest.h"

#include <vector>

using testhost::table;
using testhost::tree;

namespace {

class ValueComparator : public testhost::EngineTest {
protected:
    bool holds(const QString& rows)
    {
        const ConditionValueComparators condition(table(rows));
        return condition.checkCondition(source, target, "written/url");
    }

    testhost::NodePointer source = tree("source", R"({"s": {"five": 5, "text": "abc"}})");
    testhost::NodePointer target = tree("target", "{}");
};

TEST_F(ValueComparator, has_rows_of_url_comparator_and_constant)
{
    const ConditionValueComparators::ConditionComparatorEntry row{"s", "==", 5};

    EXPECT_EQ(row.url, "s");
    EXPECT_EQ(row.comparator, "==");
    EXPECT_EQ(row.value, QVariant(5));
}

TEST_F(ValueComparator, reads_its_table_once_and_through_the_array_wrapper)
{
    const ConditionValueComparators condition(table(R"([["s/five", "==", 5]])"));

    EXPECT_EQ(host.takeCalls(), (QStringList{"getDataProperty(description, @val)",
                                             "getArrayValueContent(1 rows, 0 columns described)"}));
}

TEST_F(ValueComparator, holds_when_the_comparison_of_its_only_row_holds)
{
    struct Row {
        const char* title;
        const char* rows;
        bool holds;
    };
    const std::vector<Row> table{
        {"equal numbers are equal", R"([["s/five", "==", 5]])", true},
        {"other numbers are not", R"([["s/five", "==", 6]])", false},
        {"unequal finds another number", R"([["s/five", "!=", 6]])", true},
        {"unequal does not find the same number", R"([["s/five", "!=", 5]])", false},
        {"equal texts are equal", R"([["s/text", "==", "abc"]])", true},
        {"texts are compared with their case", R"([["s/text", "==", "ABC"]])", false},
        {"another text is unequal", R"([["s/text", "!=", "ABC"]])", true},
        {"= is no comparator", R"([["s/five", "=", 5]])", false},
        {"< is no comparator", R"([["s/five", "<", 6]])", false},
        {"an empty text is no comparator", R"([["s/five", "", 5]])", false},
        {"a comparator has no blanks", R"([["s/five", " ==", 5]])", false},
        {"a value that is not there equals nothing", R"([["missing", "==", 5]])", false},
        {"and is not unequal to anything either", R"([["missing", "!=", 5]])", false},
        {"a node without value counts as not there", R"([["s", "!=", 5]])", false},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(holds(row.rows), row.holds);
    }
}

TEST_F(ValueComparator, reads_the_constant_in_the_type_of_the_value)
{
    struct Row {
        const char* title;
        QVariant value;
        QVariant constant;
        bool equal;
    };
    const std::vector<Row> table{
        {"a number and a text that is this number", 5, "5", true},
        {"a text and a number", "5", 5, true},
        {"a number and a text with a fraction", 5, "5.0", false},
        {"a number and a text with a leading zero", 5, "05", true},
        {"a text with a leading zero and a number", "05", 5, false},
        {"an integer and a fraction of the same size", 5, 5.0, true},
        {"a fraction and an integer", 5.0, 5, true},
        {"a fraction and a text", 5.5, "5.5", true},
        {"integers of different width", 5, 5LL, true},
        {"an integer beyond 32 bits", 5000000000LL, "5000000000", true},
        {"a truth value and its name", true, "true", true},
        {"the name of a truth value", "true", true, true},
        {"a number and a text that is none", 5, "abc", false},
        {"empty text and zero", "", 0, false},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        source->addChild("x")->setProperty("@val", row.value);
        const ConditionValueComparators::ConditionComparatorEntry equal{"x", "==", row.constant};
        const ConditionValueComparators::ConditionComparatorEntry unequal{"x", "!=", row.constant};
        const ConditionValueComparators condition(nullptr);
        EXPECT_EQ(condition.valueComparator(source, "x", equal), row.equal);
        EXPECT_EQ(condition.valueComparator(source, "x", unequal), !row.equal);
    }
}

TEST_F(ValueComparator, holds_when_any_row_holds)
{
    EXPECT_TRUE(holds(R"([["s/five", "==", 6], ["s/text", "==", "abc"]])"));
    EXPECT_TRUE(holds(R"([["s/five", "==", 5], ["s/text", "==", "xyz"]])"));
    EXPECT_FALSE(holds(R"([["s/five", "==", 6], ["s/text", "==", "xyz"]])"));
}

TEST_F(ValueComparator, reads_the_value_of_every_row_even_after_one_that_holds)
{
    const ConditionValueComparators condition(
        table(R"([["s/five", "==", 5], ["missing", "!=", 5], ["s/text", "<", "x"]])"));
    host.takeCalls();

    EXPECT_TRUE(condition.checkCondition(source, target, "written/url"));
    EXPECT_EQ(host.takeCalls(), (QStringList{"extractConfigValue(s/five, source)",
                                             "extractConfigValue(missing, source)",
                                             "extractConfigValue(s/text, source)"}));
}

TEST_F(ValueComparator, looks_at_the_present_values_whatever_was_written)
{
    const ConditionValueComparators condition(table(R"([["s/five", "==", 5]])"));

    EXPECT_TRUE(condition.checkCondition(source, nullptr, ""));
    EXPECT_TRUE(condition.checkCondition(source, target, "s/five"));
    source->at("s/five").setProperty("@val", 6);
    EXPECT_FALSE(condition.checkCondition(source, target, "s/five"));
}

TEST_F(ValueComparator, does_not_hold_without_a_source)
{
    const ConditionValueComparators condition(
        table(R"([["s/five", "==", 5], ["s/five", "!=", 6]])"));

    EXPECT_FALSE(condition.checkCondition(nullptr, target, "s/five"));
}

TEST_F(ValueComparator, never_holds_without_rows)
{
    for (const BaseClassSharedPointer& description :
         {BaseClassSharedPointer(), BaseClassSharedPointer(tree("description", "{}")),
          BaseClassSharedPointer(table("[]"))}) {
        const ConditionValueComparators condition(description);
        EXPECT_FALSE(condition.checkCondition(source, target, "s/five"));
        EXPECT_EQ(condition.getConditionUrls(), QStringList());
        EXPECT_EQ(condition.getConditionAsString(), "");
    }
}

TEST_F(ValueComparator, skips_rows_of_other_lengths_than_three)
{
    const ConditionValueComparators condition(table(
        R"([["a", "=="], ["b", "==", 1, 2], [], "c", 5, {"d": 1}, ["e", "==", 1], ["f", "!=", 2]])"));

    EXPECT_EQ(condition.getConditionAsString(), "e==1||f!=2");
}

TEST_F(ValueComparator, always_initializes_with_success)
{
    ConditionValueComparators condition(nullptr);

    EXPECT_TRUE(condition.initCondition(nullptr));
    EXPECT_TRUE(condition.initCondition(tree("description", "{}")));
    EXPECT_TRUE(condition.initCondition(table(R"([["a", "=="]])")));
    EXPECT_TRUE(condition.initCondition(table(R"([["a", "==", 1]])")));
    EXPECT_EQ(condition.getConditionAsString(), "a==1");
}

TEST_F(ValueComparator, compares_the_value_at_the_url_it_is_given_and_not_at_that_of_the_entry)
{
    const ConditionValueComparators condition(nullptr);

    EXPECT_TRUE(condition.valueComparator(source, "s/five", {"s/text", "==", 5}));
    EXPECT_FALSE(condition.valueComparator(source, "s/text", {"s/five", "==", 5}));
}

TEST_F(ValueComparator, takes_a_missing_value_for_equal_to_nothing_not_even_to_no_value)
{
    const ConditionValueComparators condition(nullptr);

    EXPECT_FALSE(condition.valueComparator(source, "missing", {"missing", "==", QVariant()}));
    EXPECT_FALSE(condition.valueComparator(source, "missing", {"missing", "!=", QVariant()}));
}

TEST_F(ValueComparator, watches_the_url_of_each_row_once)
{
    const ConditionValueComparators condition(table(
        R"([["b", "==", 1], ["a", "==", 2], ["b", "!=", 3], ["B", "==", 1], ["a", "<", 1]])"));

    EXPECT_EQ(condition.getConditionUrls(), (QStringList{"b", "a", "B"}));
}

TEST_F(ValueComparator, prints_its_rows_joined_by_bars)
{
    const ConditionValueComparators condition(
        table(R"([["some/url", "==", 5], ["other/url", "!=", "text"]])"));

    EXPECT_EQ(condition.getConditionAsString(), "some/url==5||other/url!=text");
}

} // namespace
