#include "Conditions/ConditionWriteOnUrlsRegExp.h"

#include "EngineTest.h"

#include <vector>

using testhost::table;
using testhost::tree;

namespace {

class WriteOnUrlsRegExp : public testhost::EngineTest {
protected:
    static bool holds(const QString& rows, const QString& url)
    {
        return ConditionWriteOnUrlsRegExp(table(rows)).checkCondition(nullptr, nullptr, url);
    }

    static QStringList watched(const QString& rows)
    {
        return ConditionWriteOnUrlsRegExp(table(rows)).getConditionUrls();
    }
};

TEST_F(WriteOnUrlsRegExp, holds_when_a_pattern_finds_a_match_anywhere_in_the_url)
{
    struct Row {
        const char* title;
        const char* rows;
        const char* written;
        bool holds;
    };
    const std::vector<Row> table{
        {"a match of the whole URL", R"([["a/b"], ["a/c"]])", "a/c", true},
        {"a match of its beginning", R"([["a/b"], ["a/c"]])", "a/b/x", true},
        {"a match in its middle", R"([["a/b"]])", "x/a/b/x", true},
        {"no match", R"([["a/b"], ["a/c"]])", "a/d", false},
        {"another case", R"([["a/b"]])", "A/B", false},
        {"another case that the pattern allows", R"([["(?i)a/b"]])", "A/B", true},
        {"an anchored pattern at its place", R"([["^a/b$"]])", "a/b", true},
        {"an anchored pattern elsewhere", R"([["^a/b$"]])", "a/b/x", false},
        {"a pattern for everything and an empty URL", R"([[".*"]])", "", true},
        {"an empty pattern", R"([[""]])", "a", true},
        {"an empty pattern and an empty URL", R"([[""]])", "", true},
        {"a pattern that needs a character and an empty URL", R"([["."]])", "", false},
        {"only a later pattern", R"([["x"], ["y"], ["a"]])", "a", true},
        {"look-ahead is understood", R"-([["a(?=/b)"]])-", "a/b", true},
        {"the prefix is part of the pattern here", R"([["RE:a"]])", "a", false},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(holds(row.rows, row.written), row.holds);
    }
}

TEST_F(WriteOnUrlsRegExp, never_matches_by_an_invalid_pattern_and_says_nothing)
{
    for (const char* pattern : {"(", "[", "*", "a{2,1}", "(?<n>a)(?<n>b)", "(?<>a)"}) {
        SCOPED_TRACE(pattern);
        EXPECT_FALSE(holds(QString(R"([["%1"]])").arg(pattern), pattern));
        EXPECT_FALSE(holds(QString(R"([["%1"]])").arg(pattern), "a"));
        EXPECT_TRUE(holds(QString(R"([["%1"], ["a"]])").arg(pattern), "a"));
    }
}

TEST_F(WriteOnUrlsRegExp, meets_odd_urls_and_patterns_in_silence)
{
    const QString withNul = QString("xa") + QChar(0) + "by";
    const QString loneSurrogate = QString("a") + QChar(0xD800);
    EXPECT_TRUE(holds(R"([["a\\x00b"]])", withNul));
    EXPECT_FALSE(holds(R"([["a"]])", loneSurrogate)) << "no text, so nothing is found in it";

    host.rowsOf = [&](const QVariantList&) { return QVariantList{QVariantList{loneSurrogate}}; };
    EXPECT_FALSE(holds("[]", loneSurrogate)) << "no valid pattern";
    host.rowsOf = [&](const QVariantList&) {
        return QVariantList{QVariantList{withNul.mid(1, 3)}};
    };
    EXPECT_TRUE(holds("[]", withNul));
}

TEST_F(WriteOnUrlsRegExp, holds_by_rows_that_are_added_later)
{
    ConditionWriteOnUrlsRegExp condition(table(R"([["^a"]])"));
    EXPECT_FALSE(condition.checkCondition(nullptr, nullptr, "b"));
    condition.initCondition(table(R"([["^b"]])"));
    EXPECT_TRUE(condition.checkCondition(nullptr, nullptr, "b"));
    EXPECT_TRUE(condition.checkCondition(nullptr, nullptr, "a"));
    EXPECT_FALSE(condition.checkCondition(nullptr, nullptr, "c"));
}

/// A host's condition that takes its rows from elsewhere.
class HostCondition : public ConditionWriteOnUrlsRegExp {
public:
    explicit HostCondition(const BaseClassSharedPointer& description)
        : ConditionWriteOnUrlsRegExp(description)
    {}
    void take(const QStringList& patterns) { urls = patterns; }
};

TEST_F(WriteOnUrlsRegExp, holds_by_the_rows_that_a_derived_class_set)
{
    HostCondition condition(table(R"([["^a"], ["^b"]])"));
    EXPECT_TRUE(condition.checkCondition(nullptr, nullptr, "b"));
    condition.take({"^b", "^c", "^d"});
    EXPECT_FALSE(condition.checkCondition(nullptr, nullptr, "a"));
    EXPECT_TRUE(condition.checkCondition(nullptr, nullptr, "b"));
    EXPECT_TRUE(condition.checkCondition(nullptr, nullptr, "d"));
    condition.take({});
    EXPECT_FALSE(condition.checkCondition(nullptr, nullptr, "b"));
}

TEST_F(WriteOnUrlsRegExp, looks_at_no_tree)
{
    const ConditionWriteOnUrlsRegExp condition(table(R"([["a"]])"));
    host.takeCalls();

    EXPECT_TRUE(condition.checkCondition(tree("source", R"({"a": 1})"), tree("target", "{}"), "a"));
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(WriteOnUrlsRegExp, never_holds_without_rows)
{
    for (const BaseClassSharedPointer& description :
         {BaseClassSharedPointer(), BaseClassSharedPointer(tree("description", "{}")),
          BaseClassSharedPointer(table(R"([["a", "b"], [], "a"])"))}) {
        const ConditionWriteOnUrlsRegExp condition(description);
        EXPECT_FALSE(condition.checkCondition(nullptr, nullptr, "a"));
        EXPECT_FALSE(condition.checkCondition(nullptr, nullptr, ""));
        EXPECT_EQ(condition.getConditionUrls(), QStringList());
        EXPECT_EQ(condition.getConditionAsString(), "");
    }
}

TEST_F(WriteOnUrlsRegExp, watches_its_patterns_with_the_prefix)
{
    EXPECT_EQ(watched(R"([["b.*"], ["a"], ["x", "y"]])"), (QStringList{"RE:b.*", "RE:a"}));
    EXPECT_EQ(watched(R"([[""]])"), QStringList{"RE:"});
}

TEST_F(WriteOnUrlsRegExp, watches_a_pattern_twice_that_is_written_twice)
{
    EXPECT_EQ(watched(R"([["x"], ["x"]])"), (QStringList{"RE:x", "RE:x"}));
    EXPECT_EQ(watched(R"([["x"], ["y"], ["x"]])"), (QStringList{"RE:x", "RE:y", "RE:x"}));
}

TEST_F(WriteOnUrlsRegExp, drops_a_prefixed_pattern_after_the_same_without_prefix)
{
    EXPECT_EQ(watched(R"([["x"], ["RE:x"]])"), QStringList{"RE:x"});
    EXPECT_EQ(watched(R"([["RE:x"], ["x"]])"), (QStringList{"RE:RE:x", "RE:x"}));
}

TEST_F(WriteOnUrlsRegExp, prints_its_patterns_without_prefix)
{
    EXPECT_EQ(ConditionWriteOnUrlsRegExp(table(R"([["a.*"], ["b"]])")).getConditionAsString(),
              "a.*||b");
}

} // namespace
