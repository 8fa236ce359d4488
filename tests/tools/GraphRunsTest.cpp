#include "tools/graph/GraphRuns.h"

#include "DependencyWalker.h"
#include "TraversalObserver.h"
#include "filehost/json/JsonText.h"
#include "host/ConfigurationAndProcessDataParser.h"
#include "host/PropertyManagerConst.h"
#include "tools/why/OpenComparisons.h"

#include <QSet>
#include <gtest/gtest.h>

#include <random>

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
        "P": {"Type": "CommandNode", "ConditionWriteOnUrlsRegExp": [["("]]},
        "Q": {"Type": "CommandNode", "ConditionWriteOnUrlsRegExp": [["^A"]]}}}})");
    EXPECT_EQ(runBy(graph, "("), QStringList());
    EXPECT_EQ(runBy(graph, "^A"), names("Top Q"));
    EXPECT_EQ(reachable(graph), names("Top Q"));
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

// --- many edges, against the engine run on the whole

/// The names of the nodes that ran, from the top-level one down.
class PathObserver : public TraversalObserver {
public:
    void nodeEntered(const Node& node) override
    {
        way.append(node.name);
        paths.insert(way.join(QLatin1Char('/')));
    }
    void nodeLeft(const Node& /*node*/, bool /*outcome*/) override { way.removeLast(); }

    QSet<QString> paths;

private:
    QStringList way;
};

/// Up to three kinds of conditions, each with some of a few URLs.
QString randomConditions(std::mt19937& random)
{
    const auto rows = [&](const char* suffix) {
        QStringList texts;
        for (auto count = random() % 3; count > 0; --count) {
            texts.append(
                QStringLiteral("[\"U%1\"%2]").arg(random() % 9).arg(QLatin1String(suffix)));
        }
        return texts.join(QLatin1Char(','));
    };
    QString text;
    if (random() % 2 == 0) {
        text += QStringLiteral(", \"ConditionWriteOnUrls\": [%1]").arg(rows(""));
    }
    if (random() % 4 == 0) {
        text += QStringLiteral(", \"ConditionWriteOnUrlsRegExp\": [%1]").arg(rows(""));
    }
    if (random() % 6 == 0) {
        text += QStringLiteral(", \"ConditionValueComparator\": [%1]").arg(rows(", \"==\", 1"));
    }
    return text;
}

/// A switch node with about twice as many edges as are taken for many.
QString randomSwitch(std::mt19937& random)
{
    QStringList edges;
    for (int edge = 0; edge < 60; ++edge) {
        edges.append(
            QStringLiteral("\"E%1\": {\"Type\": \"SwitchNode\"%2, \"Next\": "
                           "{\"Inner\": {\"Type\": \"CommandNode\"%3}}}")
                .arg(QString::number(edge), randomConditions(random), randomConditions(random)));
    }
    return QStringLiteral("{\"Type\": \"SwitchNode\", \"Next\": {%1}}")
        .arg(edges.join(QLatin1Char(',')));
}

TEST(GraphRuns, of_switch_nodes_with_many_edges_are_those_of_the_engine)
{
    std::mt19937 random(20);
    const BaseClassSharedPointer root = ConfigurationAndProcessDataParser().parseFromJson(
        QStringLiteral("{}"), PropertyManagerConst::getConfigFileExtension());
    for (int round = 0; round < 20; ++round) {
        const QString description = QStringLiteral("{\"A\": %1, \"B\": %2}")
                                        .arg(randomSwitch(random), randomSwitch(random));
        const tools::Graph graph = graphOf(description.toUtf8().constData());
        DependencyWalker whole;
        ASSERT_TRUE(whole.initDependencyGraphByJsonString(
            tools::withOpenComparisons(description, BaseClassSharedPointer())));
        for (const tools::GraphWrite& write : graph.writes) {
            if (write.watch.isPattern) {
                continue;
            }
            PathObserver observer;
            const TraversalObservation observation(observer);
            QVariantList results;
            whole.traverseDependencyGraph(write.watch.text, root, root, results, {}, {});
            QSet<QString> paths;
            for (const int node : write.nodes) {
                QStringList path = graph.node(node).path;
                path.removeAll(QStringLiteral("Next"));
                paths.insert(path.join(QLatin1Char('/')));
            }
            EXPECT_EQ(paths, observer.paths) << write.watch.text.toStdString();
        }
    }
}

} // namespace
