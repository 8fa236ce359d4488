#include "Conditions/ConditionWriteOnUrls.h"

#include "EngineTest.h"

#include <vector>

using testhost::table;
using testhost::tree;

namespace {

class WriteOnUrls : public testhost::EngineTest {};

TEST_F(WriteOnUrls, reads_its_table_once_and_through_the_array_wrapper)
{
    const ConditionWriteOnUrls condition(table(R"([["a/b"], ["a/c"]])"));

    EXPECT_EQ(host.takeCalls(), (QStringList{"getDataProperty(description, @val)",
                                             "getArrayValueContent(2 rows, 0 columns described)"}));
}

TEST_F(WriteOnUrls, holds_for_a_write_at_exactly_one_of_its_urls)
{
    struct Row {
        const char* title;
        const char* written;
        bool holds;
    };
    const std::vector<Row> table{
        {"the first URL", "a/b", true},        {"the last URL", "a/c", true},
        {"a place below one", "a/b/x", false}, {"a place above one", "a", false},
        {"another case", "A/b", false},        {"no URL at all", "", false},
    };
    const ConditionWriteOnUrls condition(testhost::table(R"([["a/b"], ["a/c"]])"));
    host.takeCalls();
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(condition.checkCondition(nullptr, nullptr, row.written), row.holds);
    }
}

TEST_F(WriteOnUrls, looks_at_no_tree)
{
    const ConditionWriteOnUrls condition(table(R"([["a"]])"));
    host.takeCalls();

    EXPECT_TRUE(condition.checkCondition(tree("source", R"({"a": 1})"), tree("target", "{}"), "a"));
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(WriteOnUrls, holds_for_odd_urls)
{
    const QString withNul = QString("a") + QChar(0) + "b";
    const QString loneSurrogate = QString("a") + QChar(0xD800);
    host.rowsOf = [&](const QVariantList&) {
        return QVariantList{QVariantList{withNul}, QVariantList{loneSurrogate}, QVariantList{""}};
    };
    const ConditionWriteOnUrls condition(table("[]"));

    EXPECT_TRUE(condition.checkCondition(nullptr, nullptr, withNul));
    EXPECT_TRUE(condition.checkCondition(nullptr, nullptr, loneSurrogate));
    EXPECT_TRUE(condition.checkCondition(nullptr, nullptr, ""));
    EXPECT_TRUE(condition.checkCondition(nullptr, nullptr, QString()));
    EXPECT_FALSE(condition.checkCondition(nullptr, nullptr, "a"));
    EXPECT_EQ(condition.getConditionUrls(), (QStringList{withNul, loneSurrogate, ""}));
}

TEST_F(WriteOnUrls, never_holds_without_rows)
{
    for (const BaseClassSharedPointer& description :
         {BaseClassSharedPointer(), BaseClassSharedPointer(tree("description", "{}")),
          BaseClassSharedPointer(table("[]")),
          BaseClassSharedPointer(table(R"([["a", "b"], [], "a"])"))}) {
        const ConditionWriteOnUrls condition(description);
        EXPECT_FALSE(condition.checkCondition(nullptr, nullptr, "a"));
        EXPECT_FALSE(condition.checkCondition(nullptr, nullptr, ""));
        EXPECT_EQ(condition.getConditionUrls(), QStringList());
        EXPECT_EQ(condition.getConditionAsString(), "");
    }
}

TEST_F(WriteOnUrls, skips_rows_of_other_lengths_than_one)
{
    const ConditionWriteOnUrls condition(table(R"([["a", "b"], ["c"], [], "d", 5, ["e"]])"));

    EXPECT_EQ(condition.getConditionUrls(), (QStringList{"c", "e"}));
}

TEST_F(WriteOnUrls, always_initializes_with_success)
{
    ConditionWriteOnUrls condition(nullptr);

    EXPECT_TRUE(condition.initCondition(nullptr));
    EXPECT_TRUE(condition.initCondition(tree("description", "{}")));
    EXPECT_TRUE(condition.initCondition(table(R"([["a", "b"]])")));
    EXPECT_TRUE(condition.initCondition(table(R"([["a"]])")));
    EXPECT_EQ(condition.getConditionUrls(), QStringList{"a"});
}

TEST_F(WriteOnUrls, watches_each_url_once)
{
    const ConditionWriteOnUrls condition(table(R"([["y"], ["x"], ["y"], ["X"]])"));

    EXPECT_EQ(condition.getConditionUrls(), (QStringList{"y", "x", "X"}));
}

TEST_F(WriteOnUrls, watches_a_prefixed_url_as_it_is_written)
{
    const ConditionWriteOnUrls condition(table(R"([["RE:a.*"]])"));

    EXPECT_EQ(condition.getConditionUrls(), QStringList{"RE:a.*"});
    EXPECT_TRUE(condition.checkCondition(nullptr, nullptr, "RE:a.*"));
    EXPECT_FALSE(condition.checkCondition(nullptr, nullptr, "abc"));
}

TEST_F(WriteOnUrls, prints_its_urls_joined_by_bars)
{
    EXPECT_EQ(ConditionWriteOnUrls(table(R"([["a/b"], ["a/c"]])")).getConditionAsString(),
              "a/b||a/c");
    EXPECT_EQ(ConditionWriteOnUrls(table(R"([["y"], ["y"]])")).getConditionAsString(), "y||y");
}

} // namespace
