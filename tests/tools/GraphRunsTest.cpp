#include "tools/graph/GraphRuns.h"

#include "filehost/json/JsonText.h"

#include <gtest/gtest.h>

namespace {

using filehost::DescriptionPlaces;

tools::Graph graphOf(const char* description)
{
    QList<filehost::Problem> problems;
    const auto text =
        filehost::json::JsonText::parse(description, QStringLiteral("d.json"), problems);
    EXPECT_TRUE(text);
    tools::Graph graph = tools::readGraph(DescriptionPlaces(text), QStringLiteral("d"));
    tools::addRuns(graph);
    return graph;
}

QStringList namesOf(const tools::Graph& graph, const std::vector<int>& nodes)
{
    QStringList names;
    for (const int node : nodes) {
        names.append(graph.node(node).name);
    }
    return names;
}

/// What a write of a URL, or of one that a pattern matches, may run.
QStringList runBy(const tools::Graph& graph, const char* text)
{
    for (const tools::GraphWrite& write : graph.writes) {
        if (write.watch.text == QLatin1String(text)) {
            return namesOf(graph, write.nodes);
        }
    }
    return {QStringLiteral("nothing watches it")};
}

QStringList reachable(const tools::Graph& graph)
{
    std::vector<int> nodes;
    for (std::size_t number = 0; number < graph.nodes.size(); ++number) {
        if (graph.nodes[number].isReachable) {
            nodes.push_back(static_cast<int>(number));
        }
    }
    return namesOf(graph, nodes);
}

QStringList names(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

TEST(GraphRuns, of_a_url_goes_through_the_patterns_that_match_it)
{
    const tools::Graph graph = graphOf(R"({"Top": {"Type": "SwitchNode", "Next": {
        "P": {"Type": "SwitchNode", "ConditionWriteOnUrlsRegExp": [["^A"]], "Next": {
            "U": {"Type": "CommandNode", "ConditionWriteOnUrls": [["AB"]]},
            "V": {"Type": "CommandNode", "ConditionWriteOnUrls": [["CD"]]}}}}}})");
    EXPECT_EQ(runBy(graph, "AB"), names("Top P U"));
    EXPECT_EQ(runBy(graph, "CD"), names("Top"));
    EXPECT_EQ(runBy(graph, "^A"), names("Top P"));
    EXPECT_EQ(reachable(graph), names("Top P U"));
}

TEST(GraphRuns, take_patterns_behind_one_another_to_match_together)
{
    const tools::Graph graph = graphOf(R"({"Top": {"Type": "SwitchNode", "Next": {
        "P": {"Type": "SwitchNode", "ConditionWriteOnUrlsRegExp": [["^A"]], "Next": {
            "Q": {"Type": "CommandNode", "ConditionWriteOnUrlsRegExp": [["B$"]]}}}}}})");
    EXPECT_EQ(runBy(graph, "^A"), names("Top P"));
    EXPECT_EQ(reachable(graph), names("Top P Q"));
}

TEST(GraphRuns, never_match_an_invalid_pattern)
{
    const tools::Graph graph = graphOf(R"({"Top": {"Type": "SwitchNode", "Next": {
        "P": {"Type": "CommandNode", "ConditionWriteOnUrlsRegExp": [["("]]}}}})");
    EXPECT_EQ(runBy(graph, "("), QStringList());
    EXPECT_EQ(reachable(graph), QStringList());
}

TEST(GraphRuns, take_comparisons_to_hold_unless_the_comparator_is_unknown)
{
    const tools::Graph graph = graphOf(R"({"Top": {"Type": "SwitchNode", "Next": {
        "Known": {"Type": "CommandNode", "ConditionValueComparator": [["A", "==", "x"]]},
        "Unknown": {"Type": "CommandNode", "ConditionValueComparator": [["A", "=", "x"]]},
        "Pattern": {"Type": "CommandNode",
                    "ConditionValueComparatorRegExp": [["^A", "!=", "x"]]}}}})");
    EXPECT_EQ(runBy(graph, "A"), names("Top Known Pattern"));
    EXPECT_EQ(runBy(graph, "^A"), names("Top Known Pattern"));
    EXPECT_EQ(reachable(graph), names("Top Known Pattern"));
}

TEST(GraphRuns, have_what_runs_with_every_write_in_each)
{
    const tools::Graph graph = graphOf(R"({
        "Always": {"Type": "CommandNode", "Next": {"Next": {"Type": "CommandNode"}}},
        "Top": {"Type": "SwitchNode", "Next": {
            "U": {"Type": "CommandNode", "ConditionWriteOnUrls": [["A"]]}}}})");
    EXPECT_EQ(runBy(graph, "A"), names("Always Next Top U"));
    EXPECT_TRUE(graph.nodes.front().isUnconditional);
}

TEST(GraphRuns, leave_out_rows_that_would_end_the_process)
{
    const tools::Graph graph = graphOf(R"({"Top": {"Type": "CommandNode", "Commands": {
        "CommandSetUnitProperties": [["A"]]}}})");
    EXPECT_EQ(reachable(graph), names("Top"));
    EXPECT_FALSE(graph.nodes.front().commands.front().rows.front().counts);
}

TEST(GraphRuns, know_nodes_that_are_called_like_conditions)
{
    const tools::Graph graph = graphOf(R"({"Top": {"Type": "SwitchNode", "Next": {
        "ConditionWriteOnUrlsRegExp": {"Type": "CommandNode",
                                       "ConditionWriteOnUrlsRegExp": [["^A"]]},
        "watched": {"Type": "CommandNode", "ConditionWriteOnUrls": [["B"]]}}}})");
    EXPECT_EQ(runBy(graph, "^A"), names("Top ConditionWriteOnUrlsRegExp"));
    EXPECT_EQ(runBy(graph, "B"), names("Top watched"));
}

TEST(GraphRuns, tell_where_a_watched_url_stands_first)
{
    const tools::Graph graph = graphOf("{\"Top\": {\"Type\": \"SwitchNode\", \"Next\": {\n"
                                       "\"B\": {\"Type\": \"CommandNode\",\n"
                                       "\"ConditionWriteOnUrls\": [[\"A\"]]},\n"
                                       "\"C\": {\"Type\": \"CommandNode\",\n"
                                       "\"ConditionWriteOnUrls\": [[\"A\"]]}}}}");
    ASSERT_EQ(graph.nodes.front().watches.size(), 1U);
    EXPECT_EQ(graph.nodes.front().watches.front().place, QStringLiteral("d.json:3:26"));
}

} // namespace
