#include "tools/explain/NearMisses.h"

#include "Fixture.h"

#include <gtest/gtest.h>

using tools::NearMiss;
using tools::nearMisses;

namespace {

/// A description with one node that watches these URLs and patterns, given as rows.
QString watching(const QString& urls, const QString& patterns = {})
{
    return QStringLiteral(R"({"N": {"Type": "SwitchNode", "Next": {"A": {"Type": "CommandNode",
        "ConditionWriteOnUrls": [%1], "ConditionWriteOnUrlsRegExp": [%2]}}}})")
        .arg(urls, patterns);
}

QStringList wordsOf(const QString& description, const QString& url,
                    const QStringList& sourceUrls = {})
{
    QStringList words;
    for (const NearMiss& miss : nearMisses(description, url, sourceUrls)) {
        words.append(tools::wordsFor(miss));
    }
    return words;
}

TEST(NearMisses, are_urls_that_are_spelled_alike)
{
    const QString description =
        watching(R"(["Settings/Ofset"], ["settings/offset"], ["Zones/Cure"])");
    EXPECT_EQ(wordsOf(description, "Settings/Offset"),
              (QStringList{"near miss: N watches settings/offset",
                           "near miss: N watches Settings/Ofset"}));
    EXPECT_EQ(wordsOf(description, "Belt/Speed"), QStringList());
}

TEST(NearMisses, are_no_urls_of_other_leaves_of_the_source)
{
    const QString description = watching(R"(["Zones/Zone1"], ["Zones/Zone3"])");
    EXPECT_EQ(wordsOf(description, "Zones/Zone2", {"Zones/Zone1", "Zones/Zone2"}),
              QStringList{"near miss: N watches Zones/Zone3"});
}

TEST(NearMisses, are_not_what_is_watched_exactly)
{
    EXPECT_EQ(wordsOf(watching(R"(["A/B"])", R"(["^A/B$"], ["B"])"), "A/B"), QStringList());
}

TEST(NearMisses, are_patterns_that_match_in_another_case)
{
    EXPECT_EQ(wordsOf(watching({}, R"(["^settings/"], ["^zones/"])"), "Settings/Offset"),
              QStringList{"near miss: N has \"^settings/\", which matches in another case"});
}

TEST(NearMisses, are_patterns_that_match_without_the_first_names)
{
    EXPECT_EQ(
        wordsOf(watching({}, R"(["^Cure/[A-Z][a-z]+$"], ["^Signal$"], ["^ones"])"),
                "Zones/Cure/Signal"),
        (QStringList{"near miss: N has \"^Cure/[A-Z][a-z]+$\", which matches Cure/Signal alone",
                     "near miss: N has \"^Signal$\", which matches Signal alone"}));
}

TEST(NearMisses, pass_over_patterns_that_are_none)
{
    EXPECT_EQ(wordsOf(watching({}, R"(["("], ["^signal$"])"), "Signal"),
              QStringList{"near miss: N has \"^signal$\", which matches in another case"});
}

TEST(NearMisses, of_several_nodes_are_told_in_the_order_of_their_names)
{
    const QString description = QStringLiteral(R"({
        "B": {"Type": "SwitchNode", "Next": {"A": {"Type": "CommandNode",
              "ConditionWriteOnUrls": [["Offse"]]}}},
        "A": {"Type": "SwitchNode", "Next": {"A": {"Type": "CommandNode",
              "ConditionWriteOnUrls": [["Ofset"]]}}},
        "C": {"Type": "CommandNode"}})");
    EXPECT_EQ(wordsOf(description, "Offset"),
              (QStringList{"near miss: A watches Ofset", "near miss: B watches Offse"}));
}

TEST(NearMisses, of_a_description_that_cannot_be_read_are_none)
{
    EXPECT_EQ(wordsOf("no JSON", "A"), QStringList());
    EXPECT_EQ(wordsOf("", "A"), QStringList());
}

} // namespace
