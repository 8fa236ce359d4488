#include "TraversalObserver.h"

#include "CommandFixture.h"
#include "Commands/CommandSetUnitByConfigurationParameter.h"
#include "Commands/CommandSetUnitByConfigurationParameterArray.h"
#include "Commands/CommandSetUnitByConfigurationParameterInstRegExp.h"
#include "Commands/CommandSetUnitProperties.h"
#include "Commands/CommandSetUnitPropertiesRegExp.h"
#include "Conditions/ConditionValueComparatorRegExp.h"
#include "Conditions/ConditionWriteOnUrlsRegExp.h"
#include "DependencyWalker.h"
#include "EventLog.h"
#include "Nodes/NodeCommand.h"
#include "Nodes/NodeSwitch.h"
#include "Probe.h"

#include <cstdio>
#include <memory>
#include <thread>

using testhost::Registered;
using testhost::table;
using testhost::tree;
using testhost::Unregistered;

namespace {

/// A test under an observer that writes down everything.
class Observed : public testhost::GraphTest {
protected:
    void build(const QString& json) { walker.initDependencyGraph(tree("d", json)); }

    bool traverse(const QString& url)
    {
        return walker.traverseDependencyGraph(url, source, target, results, changed, parameters,
                                              manipulator);
    }

    bool run(NodeBase& node, const QString& url = "x")
    {
        return node.traverseNode(source, target, url, results, changed, parameters, manipulator);
    }

    /// The events of one traversal of a graph.
    QStringList eventsOf(const QString& json, const QString& url)
    {
        build(json);
        log.take();
        traverse(url);
        return log.take();
    }

    /// What a condition says of its rows.
    QStringList rowsOf(const ConditionBase& condition, const QString& url = "x")
    {
        log.take();
        condition.checkCondition(source, target, url);
        return log.take();
    }

    /// What a command says of its rows.
    QStringList rowsOf(CommandBase& command, const QString& url = "x")
    {
        log.take();
        command.executeCommand(source, target, url, results, changed, parameters, manipulator);
        messages.take(); // some warn; what they say has tests of its own
        return log.take();
    }

    DependencyWalker walker;
    testhost::NodePointer source = tree("source", "{}");
    testhost::NodePointer target = tree("target", "{}");
    QVariantList results;
    QVariantList parameters;
    QSharedPointer<UnitManipulatorBase> manipulator;
    bool changed = false;
    EventLog log;
    std::unique_ptr<TraversalObservation> observation{std::make_unique<TraversalObservation>(log)};
};
using ObservedTraversal = Observed;
using ObservedNode = Observed;
using ObservedEdge = Observed;
using ObservedCondition = Observed;
using ObservedCommand = Observed;
using ObservedCommandDeathTest = Observed;

// --- a traversal as a whole

TEST_F(ObservedTraversal, is_told_step_by_step_nested_like_the_calls)
{
    source = tree("source", R"({"s": "K"})");
    target = tree("target", R"({"t": 1})");

    EXPECT_EQ(
        eventsOf(R"({"Top": {"Type": "SwitchNode", "Next": {"Set": {"Type": "CommandNode",
                  "ConditionWriteOnUrls": [["s"]],
                  "Commands": {"CommandSetUnitProperties": [["t", "K"]]}}}}})",
                 "s"),
        (QStringList{"start s", "selected Top by URL s", "enter Top SwitchNode",
                     "ask 0 ConditionWriteOnUrls", "row 0 holds: s",
                     "asked 0 ConditionWriteOnUrls true", "edge 0 'Set' followed by condition",
                     "enter Set CommandNode", "run 0 CommandSetUnitProperties",
                     "row 0 changed: t 'K' status 0", "ran 0 CommandSetUnitProperties true",
                     "leave Set CommandNode true", "leave Top SwitchNode true", "end true true"}));
}

TEST_F(ObservedTraversal, that_finds_no_node_starts_and_ends)
{
    EXPECT_EQ(eventsOf("{}", "s"), (QStringList{"start s", "end false false"}));
}

TEST_F(ObservedTraversal, ends_with_the_callers_flag_which_may_have_been_set_before)
{
    changed = true;
    EXPECT_EQ(eventsOf("{}", "s"), (QStringList{"start s", "end false true"}));
}

TEST_F(ObservedTraversal, is_told_the_URL_even_when_it_is_empty)
{
    EXPECT_EQ(eventsOf("{}", ""), (QStringList{"start ", "end false false"}));
}

TEST_F(ObservedTraversal, of_a_copied_walker_is_told_alike)
{
    build(R"({"A": {"Type": "CommandNode", "Commands": {"Probe": "a"}}})");
    traverse("s");
    const QStringList events = log.take();
    walker = DependencyWalker(walker);
    traverse("s");
    EXPECT_EQ(log.take(), events);
    EXPECT_EQ(events.size(), 7);
}

// --- which top-level nodes run

TEST_F(ObservedTraversal, tells_of_each_node_how_it_was_selected_before_it_runs)
{
    const QStringList events = eventsOf(R"({
        "Url": {"Type": "SwitchNode", "Next": {"N": {"Type": "CommandNode",
            "ConditionWriteOnUrls": [["s"], ["other"]]}}},
        "Pattern": {"Type": "SwitchNode", "Next": {"N": {"Type": "CommandNode",
            "ConditionWriteOnUrlsRegExp": [["^other$"], ["^s$"]]}}},
        "Always": {"Type": "CommandNode"}})",
                                        "s");
    QStringList selections;
    for (int i = 0; i < events.size(); ++i) {
        if (events.at(i).startsWith("selected")) {
            selections.append(events.at(i));
            EXPECT_TRUE(events.at(i + 1).startsWith("enter "));
        }
    }
    EXPECT_EQ(selections, (QStringList{"selected Url by URL s", "selected Pattern by pattern ^s$",
                                       "selected Always unconditional"}));
}

TEST_F(ObservedTraversal, tells_of_no_node_that_is_not_selected)
{
    EXPECT_EQ(eventsOf(R"({"Top": {"Type": "SwitchNode", "Next": {"N": {"Type": "CommandNode",
                  "ConditionWriteOnUrls": [["other"]], "ConditionWriteOnUrlsRegExp": [["^o"]]}}}})",
                       "s"),
              (QStringList{"start s", "end false false"}));
}

TEST_F(ObservedTraversal, tells_of_a_node_once_for_its_URL_and_once_for_each_pattern)
{
    eventsOf(R"({"Top": {"Type": "SwitchNode", "Next": {"N": {"Type": "CommandNode",
        "ConditionWriteOnUrls": [["s"]],
        "ConditionWriteOnUrlsRegExp": [["s"], ["["], ["^s"], ["s"]]}}}})",
             "s");
    traverse("s");
    EXPECT_EQ(log.take({"selected", "enter Top"}),
              (QStringList{"selected Top by URL s", "enter Top SwitchNode",
                           "selected Top by pattern s", "enter Top SwitchNode",
                           "selected Top by pattern ^s", "enter Top SwitchNode"}));
}

TEST_F(ObservedTraversal, tells_the_right_pattern_when_several_nodes_share_some)
{
    eventsOf(R"({
        "A": {"Type": "SwitchNode", "Next": {"N": {"Type": "CommandNode",
            "ConditionWriteOnUrlsRegExp": [["s"], ["^s"]]}}},
        "B": {"Type": "SwitchNode", "Next": {"N": {"Type": "CommandNode",
            "ConditionWriteOnUrlsRegExp": [["^s"], ["s"]]}}}})",
             "s");
    traverse("s");
    EXPECT_EQ(log.take({"selected"}),
              (QStringList{"selected A by pattern s", "selected A by pattern ^s",
                           "selected B by pattern ^s", "selected B by pattern s"}));
}

// --- nodes

TEST_F(ObservedNode, is_told_with_its_outcome)
{
    EXPECT_EQ(eventsOf(R"({"A": {"Type": "CommandNode", "Commands": {
                  "Probe": {"@val": "a", "@result": false}}},
                  "B": {"Type": "CommandNode", "Commands": {"Probe": "b"}}})",
                       "s"),
              (QStringList{"start s", "selected A unconditional", "enter A CommandNode", "run 0 ",
                           "ran 0  false", "leave A CommandNode false", "selected B unconditional",
                           "enter B CommandNode", "run 0 ", "ran 0  true",
                           "leave B CommandNode true", "end true false"}));
}

TEST_F(ObservedNode, without_a_source_is_entered_and_left_with_nothing_between)
{
    source = nullptr;
    EXPECT_EQ(eventsOf(R"({
        "A": {"Type": "CommandNode", "Commands": {"Probe": "a"},
              "Next": {"N": {"Type": "CommandNode"}}},
        "B": {"Type": "SwitchNode", "Next": {"N": {"Type": "CommandNode"}}}})",
                       "s"),
              (QStringList{"start s", "selected A unconditional", "enter A CommandNode",
                           "leave A CommandNode false", "selected B unconditional",
                           "enter B SwitchNode", "leave B SwitchNode false", "end false false"}));
}

/// A node as a host may add one.
class HostNode final : public NodeBase {
public:
    using NodeBase::NodeBase;
    bool traverseNode(const BaseClassSharedPointer&, const BaseClassSharedPointer&, const QString&,
                      QVariantList&, bool&, const QVariantList&,
                      const QSharedPointer<UnitManipulatorBase>&) override
    {
        return true;
    }
};

TEST_F(ObservedNode, of_a_host_has_no_type_name)
{
    const Registered<DependencyWalkerFactory::NodeFactory, HostNode> registered("HostNode");
    EXPECT_EQ(eventsOf(R"({"A": {"Type": "HostNode"}})", "s"),
              (QStringList{"start s", "selected A unconditional", "enter A ", "leave A  true",
                           "end true false"}));
}

TEST_F(ObservedNode, is_told_below_every_other)
{
    eventsOf(R"({"A": {"Type": "CommandNode", "Next": {
        "B": {"Type": "SwitchNode", "Next": {"C": {"Type": "CommandNode"}}}}}})",
             "s");
    traverse("s");
    EXPECT_EQ(log.take({"enter", "leave"}),
              (QStringList{"enter A CommandNode", "enter B SwitchNode", "enter C CommandNode",
                           "leave C CommandNode false", "leave B SwitchNode false",
                           "leave A CommandNode false"}));
}

// --- edges

TEST_F(ObservedEdge, of_a_switch_without_conditions_is_followed_always)
{
    NodeSwitch node("Top", tree("d", R"({"Next": {"A": {"Type": "CommandNode"}}})"));
    run(node);
    EXPECT_EQ(log.take(), (QStringList{"edge 0 'A' followed always", "enter A CommandNode",
                                       "leave A CommandNode false"}));
}

TEST_F(ObservedEdge, is_told_once_for_each_condition_that_holds)
{
    NodeSwitch node("Top", tree("d", R"({"Next": {"A": {"Type": "CommandNode",
        "ConditionValueComparator": [["s", "==", 1]],
        "ConditionWriteOnUrls": [["x"]], "ConditionWriteOnUrlsRegExp": [["x"]]}}})"));
    run(node);
    EXPECT_EQ(log.take({"asked", "edge", "enter"}),
              (QStringList{"asked 0 ConditionValueComparator false",
                           "asked 1 ConditionWriteOnUrls true", "edge 0 'A' followed by condition",
                           "enter A CommandNode", "asked 2 ConditionWriteOnUrlsRegExp true",
                           "edge 0 'A' followed by condition", "enter A CommandNode"}));
}

TEST_F(ObservedEdge, is_told_once_when_no_condition_holds_and_after_all_were_asked)
{
    NodeSwitch node("Top", tree("d", R"({"Next": {"A": {"Type": "CommandNode",
        "ConditionWriteOnUrls": [["y"]], "ConditionWriteOnUrlsRegExp": [["y"]]}}})"));
    run(node);
    EXPECT_EQ(
        log.take({"asked", "edge", "enter"}),
        (QStringList{"asked 0 ConditionWriteOnUrls false",
                     "asked 1 ConditionWriteOnUrlsRegExp false", "edge 0 'A' no condition holds"}));
}

TEST_F(ObservedEdge, is_counted_in_ascending_order_of_the_names)
{
    NodeSwitch node("Top", tree("d", R"({"Next": {"C": {"Type": "CommandNode"},
        "A": {"Type": "CommandNode"}, "B": {"Type": "nothing"}}})"));
    run(node);
    EXPECT_EQ(log.take({"edge"}),
              (QStringList{"edge 0 'A' followed always", "edge 1 '' leads nowhere",
                           "edge 2 'C' followed always"}));
}

TEST_F(ObservedEdge, of_a_command_node_is_followed_as_the_only_one_without_asking)
{
    NodeCommand node("Top", tree("d", R"({"Next": {"A": {"Type": "CommandNode",
        "ConditionWriteOnUrls": [["y"]]}}})"));
    run(node);
    EXPECT_EQ(log.take(), (QStringList{"edge 0 'A' followed as only", "enter A CommandNode",
                                       "leave A CommandNode false"}));
}

TEST_F(ObservedEdge, of_a_command_node_with_several_is_told_for_each_of_them)
{
    NodeCommand node("Top", tree("d", R"({"Next": {"A": {"Type": "CommandNode"},
        "B": {"Type": "nothing"}, "C": {"Type": "CommandNode"}}})"));
    run(node);
    EXPECT_EQ(log.take(), (QStringList{"edge 0 'A' one of several", "edge 1 '' one of several",
                                       "edge 2 'C' one of several"}));
}

TEST_F(ObservedEdge, that_leads_nowhere_is_told_of_either_node)
{
    const BaseClassSharedPointer description = tree("d", R"({"Next": {"A": {"Type": "nothing"}}})");
    NodeCommand command("Top", description);
    run(command);
    NodeSwitch choice("Top", description);
    run(choice);
    EXPECT_EQ(log.take(), (QStringList{"edge 0 '' leads nowhere", "edge 0 '' leads nowhere"}));
}

TEST_F(ObservedEdge, of_a_node_without_edges_is_not_told)
{
    NodeCommand command("Top", nullptr);
    run(command);
    NodeSwitch choice("Top", nullptr);
    run(choice);
    EXPECT_EQ(log.take(), QStringList());
}

// --- conditions

TEST_F(ObservedCondition, that_could_not_be_made_is_told_without_a_type_and_holds)
{
    const Unregistered<DependencyWalkerFactory::ConditionFactory> unknown("ConditionWriteOnUrls");
    NodeSwitch node("Top", tree("d", R"({"Next": {"A": {"Type": "CommandNode",
        "ConditionWriteOnUrls": [["y"]]}}})"));
    messages.take();
    run(node);
    EXPECT_EQ(log.take(),
              (QStringList{"ask 0 ", "asked 0  true", "edge 0 'A' followed by condition",
                           "enter A CommandNode", "leave A CommandNode false"}));
}

class HostCondition final : public ConditionBase {
public:
    explicit HostCondition(const BaseClassSharedPointer&) {}
    bool checkCondition(const BaseClassSharedPointer&, const BaseClassSharedPointer&,
                        const QString&) const override
    {
        return false;
    }
    QStringList getConditionUrls() const override { return {}; }
    QString getConditionAsString() const override { return {}; }
};

TEST_F(ObservedCondition, of_a_host_is_told_without_a_type)
{
    const Registered<DependencyWalkerFactory::ConditionFactory, HostCondition> host(
        "ConditionWriteOnUrls");
    NodeSwitch node("Top", tree("d", R"({"Next": {"A": {"Type": "CommandNode",
        "ConditionWriteOnUrls": [["y"]]}}})"));
    run(node);
    EXPECT_EQ(log.take(),
              (QStringList{"ask 0 ", "asked 0  false", "edge 0 'A' no condition holds"}));
}

TEST_F(ObservedCondition, on_values_tells_every_row_with_both_sides)
{
    source = tree("source", R"({"n": 1, "t": "K", "folder": {}})");
    const ConditionValueComparators condition(table(R"([
        ["n", "==", 1], ["n", "==", "2"], ["n", "!=", 1], ["t", "!=", "C"],
        ["folder", "==", 1], ["missing", "!=", 1], ["n", "=", 1], ["missing", "=", 1]])"));
    EXPECT_EQ(
        rowsOf(condition),
        (QStringList{"row 0 holds: n qlonglong(1) == qlonglong(1)",
                     "row 1 differs: n qlonglong(1) == '2'",
                     "row 2 differs: n qlonglong(1) != qlonglong(1)", "row 3 holds: t 'K' != 'C'",
                     "row 4 no value: folder invalid == qlonglong(1)",
                     "row 5 no value: missing invalid != qlonglong(1)",
                     "row 6 unknown comparator: n qlonglong(1) = qlonglong(1)",
                     "row 7 no value: missing invalid = qlonglong(1)"}));
}

TEST_F(ObservedCondition, counts_only_the_rows_that_it_keeps)
{
    source = tree("source", R"({"n": 1})");
    const ConditionValueComparators condition(
        table(R"([["n"], 5, ["n", "==", 1], ["n", "==", 1, 1], ["n", "==", 2]])"));
    EXPECT_EQ(rowsOf(condition), (QStringList{"row 0 holds: n qlonglong(1) == qlonglong(1)",
                                              "row 1 differs: n qlonglong(1) == qlonglong(2)"}));
}

TEST_F(ObservedCondition, on_written_values_tells_of_the_written_URL_and_of_patterns)
{
    source = tree("source", R"({"x": 1})");
    const ConditionValueComparatorRegExp condition(table(R"([
        ["^x", "==", 1], ["^x", "==", 2], ["^y", "==", 1], ["[", "==", 1], ["x", "?", 1]])"));
    EXPECT_EQ(rowsOf(condition),
              (QStringList{"row 0 holds: x qlonglong(1) == qlonglong(1)",
                           "row 1 differs: x qlonglong(1) == qlonglong(2)", "row 2 no match: x",
                           "row 3 invalid pattern: x",
                           "row 4 unknown comparator: x qlonglong(1) ? qlonglong(1)"}));
    EXPECT_EQ(rowsOf(condition, "xz").first(), "row 0 no value: xz invalid == qlonglong(1)");
}

TEST_F(ObservedCondition, on_written_URLs_stops_at_the_first_row_that_holds)
{
    const ConditionWriteOnUrls condition(table(R"([["y"], ["x"], ["z"], ["x"]])"));
    EXPECT_EQ(rowsOf(condition), (QStringList{"row 0 differs: y", "row 1 holds: x"}));
    EXPECT_EQ(rowsOf(condition, "none"), (QStringList{"row 0 differs: y", "row 1 differs: x",
                                                      "row 2 differs: z", "row 3 differs: x"}));
}

TEST_F(ObservedCondition, on_written_patterns_stops_at_the_first_row_that_holds)
{
    const ConditionWriteOnUrlsRegExp condition(table(R"([["y"], ["("], ["x"], ["y"]])"));
    EXPECT_EQ(rowsOf(condition),
              (QStringList{"row 0 no match: x", "row 1 invalid pattern: x", "row 2 holds: x"}));
    EXPECT_EQ(rowsOf(condition, "none").size(), 4);
}

TEST_F(ObservedCondition, without_rows_tells_none)
{
    EXPECT_EQ(rowsOf(ConditionValueComparators(nullptr)), QStringList());
    EXPECT_EQ(rowsOf(ConditionValueComparatorRegExp(nullptr)), QStringList());
    EXPECT_EQ(rowsOf(ConditionWriteOnUrls(nullptr)), QStringList());
    EXPECT_EQ(rowsOf(ConditionWriteOnUrlsRegExp(nullptr)), QStringList());
}

// --- commands

TEST_F(ObservedCommand, of_a_host_is_told_by_its_number_among_those_that_could_be_made)
{
    NodeCommand node("Top", tree("d", R"({"Commands": {"A": 1, "Probe": "a", "Probe2":
        {"@val": "b", "@result": false}}})"));
    messages.take();
    run(node);
    EXPECT_EQ(log.take(), (QStringList{"run 0 ", "ran 0  true", "run 1 ", "ran 1  false"}));
}

TEST_F(ObservedCommand, of_the_engine_is_told_by_its_type_as_descriptions_write_it)
{
    NodeCommand node("Top", tree("d", R"({"Commands": {
        "CommandSetUnitByConfigurationParameterInstRegExp": {}, "CommandSetUnitProperties": {}}})"));
    run(node);
    EXPECT_EQ(log.take({"run"}),
              (QStringList{"run 0 CommandSetUnitByConfigurationParameterInstRegExp",
                           "run 1 CommandSetUnitProperties"}));
}

TEST_F(ObservedCommand, without_both_roots_tells_no_row)
{
    CommandSetUnitProperties command(table(R"([["t", "K"]])"));
    target = nullptr;
    EXPECT_EQ(rowsOf(command), QStringList());
    target = tree("target", R"({"t": 1})");
    source = nullptr;
    EXPECT_EQ(rowsOf(command), QStringList());
    source = tree("source", "{}");
    EXPECT_EQ(rowsOf(command).size(), 1);
}

TEST_F(ObservedCommand, tells_what_the_host_says_to_each_write)
{
    target = tree("target", R"({"t": 1})");
    target->at("t").answerWritesWith({0, 1, 2, -7});
    CommandSetUnitProperties command(table(R"([["t", "a"], ["t", "b"], ["t", "c"], ["t", "d"]])"));
    EXPECT_EQ(rowsOf(command),
              (QStringList{"row 0 changed: t 'a' status 0", "row 1 unchanged: t 'b' status 1",
                           "row 2 refused: t 'c' status 2", "row 3 refused: t 'd' status -7"}));
}

TEST_F(ObservedCommand, tells_a_row_before_it_calls_the_manipulator)
{
    target = tree("target", R"({"t": 1})");
    manipulator.reset(new ScriptedManipulator([this](bool&, bool&) { log.add("manipulated"); }));
    CommandSetUnitProperties command(table(R"([["t", "a"], ["t", "b"]])"));
    EXPECT_EQ(rowsOf(command), (QStringList{"row 0 changed: t 'a' status 0", "manipulated",
                                            "row 1 changed: t 'b' status 0", "manipulated"}));
}

TEST_F(ObservedCommand, of_fixed_units_tells_each_row)
{
    target = tree("target", R"({"F": {"t": 1}})");
    parameters = {"F/"};
    CommandSetUnitProperties command(
        table(R"([["t", "K"], ["t", "K"], ["missing", "K"], ["t", ""], ["missing", ""]])"));
    EXPECT_EQ(rowsOf(command),
              (QStringList{"row 0 changed: F/t 'K' status 0", "row 1 unchanged: F/t 'K' status 1",
                           "row 2 no target: F/missing", "row 3 no unit: F/t",
                           "row 4 no target: F/missing"}));
}

TEST_F(ObservedCommand, of_fixed_units_by_pattern_tells_each_row)
{
    target = tree("target", R"({"F": {"x": 1}})");
    CommandSetUnitPropertiesRegExp command(table(R"-([
        ["^(?<n>.)$", "F/(?<n>)", "K"], ["^(y)$", "F/x", "K"], ["(", "F/x", "K"],
        ["^x$", "F/x", "K"], ["(?<n>y)?", "(?<n>)", "K"], ["(?<n>.)", "G/(?<n>)", "K"],
        ["(?<n>.)", "F/(?<n>)", ""]])-"));
    EXPECT_EQ(rowsOf(command),
              (QStringList{"row 0 changed: F/x 'K' status 0",
                           "row 1 no match: ", "row 2 invalid pattern: ", "row 3 no group: ",
                           "row 4 no target URL: ", "row 5 no target: G/x", "row 6 no unit: F/x"}));
}

TEST_F(ObservedCommand, of_source_values_tells_each_row)
{
    source = tree("source", R"({"u": "K", "n": 5})");
    target = tree("target", R"({"A": {"B": 1}})");
    parameters = {"A", "B"};
    CommandSetUnitByConfigurationParameter command(table(R"([
        ["u", "", "%1/%2"], ["n", "", "A/B"], ["u", "", "%1"], ["u", "", "A/C"],
        ["", "", "A/B"], ["missing", "", "A/B"]])"));
    EXPECT_EQ(rowsOf(command), (QStringList{"row 0 changed: A/B 'K' status 0",
                                            "row 1 changed: A/B qlonglong(5) status 0",
                                            "row 2 changed: A 'K' status 0", "row 3 no target: A/C",
                                            "row 4 no parameter: A/B", "row 5 no value: A/B"}));
}

TEST_F(ObservedCommand, of_the_written_value_tells_each_row)
{
    source = tree("source", R"({"x": "K"})");
    target = tree("target", R"({"F": {"x": 1, "y": 1}})");
    CommandSetUnitByConfigurationParameterRegExp command(table(R"-([
        ["^(?<n>.)$", "F/(?<n>)"], ["^(y)$", "F/x"], ["(", "F/x"], ["^x$", "F/x"],
        ["(?<n>.)", "G/(?<n>)"], ["(?<n>q)?", "(?<n>)"]])-"));
    EXPECT_EQ(rowsOf(command), (QStringList{"row 0 changed: F/x 'K' status 0", "row 1 no match: ",
                                            "row 2 invalid pattern: ", "row 3 no group: ",
                                            "row 4 no target: G/x", "row 5 no target: "}));
    EXPECT_EQ(rowsOf(command, "y").first(), "row 0 no value: F/y") << "the source has no y";
}

TEST_F(ObservedCommand, of_columns_tells_each_row)
{
    source = tree("source", R"({"u": "bar", "list": {"@val": [["x"]]}})");
    target = tree("target", R"({"T": {"@dataType": "an array", "@columns": ["m", "s"]},
                                "plain": 1, "bare": {"@dataType": "an array"}})");
    CommandSetUnitByConfigurationParameterArray command(table(R"([
        ["u", "T[1]"], ["u", "T[2-1]"], ["u", "T"], ["u", "T[x]"], ["u", "T[2-5]"],
        ["u", "missing[0]"], ["u", "plain[0]"], ["u", "bare[0]"], ["", "T[0]"],
        ["missing", "T[0]"], ["list", "T[0]"]])"));
    EXPECT_EQ(rowsOf(command),
              (QStringList{"row 0 changed: T column 1 'bar' status 0",
                           "row 1 unchanged: T column 1 'bar' status 1",
                           "row 2 malformed target: ", "row 3 invalid column: T",
                           "row 4 invalid column: T column -3", "row 5 no target: missing column 0",
                           "row 6 not an array: plain column 0", "row 7 no columns: bare column 0",
                           "row 8 no parameter: T column 0", "row 9 no value: T column 0",
                           "row 10 no value: T column 0"}));
}

TEST_F(ObservedCommand, of_columns_tells_when_the_host_does_not_take_them)
{
    source = tree("source", R"({"u": "bar"})");
    target = tree("target", R"({"T": {"@dataType": "an array", "@columns": ["m"]}})");
    target->at("T").answerWritesWith({2});
    CommandSetUnitByConfigurationParameterArray command(table(R"([["u", "T[0]"]])"));
    EXPECT_EQ(rowsOf(command), QStringList{"row 0 refused: T column 0 'bar' status 2"});
    host.takingColumnUnits = false;
    EXPECT_EQ(rowsOf(command), QStringList{"row 0 columns refused: T column 0 'bar'"});
}

/// Says at once that a column is out of range: nobody can be asked afterwards.
class DyingWords final : public TraversalObserver {
public:
    void commandRowExecuted(const CommandRow& row) override
    {
        if (row.outcome == RowOutcome::ColumnOutOfRange) {
            fprintf(stderr, "told of row %d, %s[%d] = %s; ", row.row, qUtf8Printable(row.targetUrl),
                    row.column, qUtf8Printable(row.unit.toString()));
        }
    }
};

TEST_F(ObservedCommandDeathTest, tells_of_a_column_out_of_range_before_the_process_ends)
{
    source = tree("source", R"({"u": "bar"})");
    target = tree("target", R"({"T": {"@dataType": "an array", "@columns": ["m"]}})");
    CommandSetUnitByConfigurationParameterArray command(table(R"([["u", "T[0]"], ["u", "T[1]"]])"));
    DyingWords words;
    const TraversalObservation dying(words);
    EXPECT_DEATH(command.executeCommand(source, target, "x", results, changed, {}, {}),
                 "told of row 1, T\\[1\\] = bar; .*index out of range");
}

// --- observations

TEST_F(ObservedTraversal, is_told_only_while_the_observation_lives)
{
    observation.reset();
    EXPECT_EQ(eventsOf("{}", "s"), QStringList());
    observation = std::make_unique<TraversalObservation>(log);
    EXPECT_EQ(eventsOf("{}", "s").size(), 2);
}

TEST_F(ObservedTraversal, is_told_to_the_inner_observer_only_until_its_observation_ends)
{
    EventLog inner;
    {
        const TraversalObservation within(inner);
        EXPECT_EQ(eventsOf("{}", "s"), QStringList());
        EXPECT_EQ(inner.take().size(), 2);
    }
    EXPECT_EQ(eventsOf("{}", "s").size(), 2);
    EXPECT_EQ(inner.take(), QStringList());
}

TEST_F(ObservedTraversal, of_another_thread_is_not_told)
{
    build("{}");
    bool othersObserved = false;
    std::thread([&] {
        traverse("s");
        othersObserved = !log.take().isEmpty();
        EventLog own;
        const TraversalObservation observed(own);
        traverse("s");
        EXPECT_EQ(own.take().size(), 2);
    }).join();
    EXPECT_FALSE(othersObserved);
    EXPECT_EQ(log.take(), QStringList());
    traverse("s");
    EXPECT_EQ(log.take().size(), 2) << "that one ended did not end this one";
}

TEST_F(ObservedTraversal, within_another_is_told_between_its_own_start_and_end)
{
    target = tree("target", R"({"t": 1})");
    build(R"({"A": {"Type": "CommandNode", "Commands": {
        "CommandSetUnitProperties": [["t", "K"]]}}})");
    host.insideNext("setDataProperty(target/t", [this] {
        DependencyWalker other;
        other.traverseDependencyGraph("inner", source, target, results, {}, {});
    });
    traverse("outer");
    EXPECT_EQ(log.take(),
              (QStringList{"start outer", "selected A unconditional", "enter A CommandNode",
                           "run 0 CommandSetUnitProperties", "start inner", "end false false",
                           "row 0 changed: t 'K' status 0", "ran 0 CommandSetUnitProperties true",
                           "leave A CommandNode true", "end true true"}));
}

TEST_F(ObservedTraversal, may_be_watched_by_an_observer_that_looks_at_nothing)
{
    class Blank final : public TraversalObserver {};
    Blank blank;
    const TraversalObservation observed(blank);
    source = tree("source", R"({"s": 1})");
    target = tree("target", R"({"t": 1})");
    build(R"({"Top": {"Type": "SwitchNode", "Next": {"A": {"Type": "CommandNode",
        "ConditionValueComparator": [["s", "==", 1]],
        "Commands": {"CommandSetUnitProperties": [["t", "K"]]}}}}})");
    EXPECT_TRUE(traverse("s"));
    EXPECT_EQ(target->at("t").unit(), "K");
}

} // namespace
