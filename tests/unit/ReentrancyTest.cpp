// What a host may do inside a call of the engine: everything. These tests are at their best under
// the address sanitizer.

#include "CommandFixture.h"
#include "Commands/CommandSetUnitByConfigurationParameter.h"
#include "Commands/CommandSetUnitProperties.h"
#include "Conditions/ConditionValueComparators.h"
#include "DependencyResolverBaseClass.h"
#include "DependencyWalker.h"
#include "Nodes/NodeCommand.h"
#include "Nodes/NodeSwitch.h"
#include "Probe.h"

#include <memory>
#include <vector>

using testhost::table;
using testhost::tree;

namespace {

/// Three unconditional nodes that write one leaf each.
const char* const threeWrites = R"({
    "A": {"Type": "CommandNode", "Commands": {"CommandSetUnitProperties": [["a", "K"]]}},
    "B": {"Type": "CommandNode", "Commands": {"CommandSetUnitProperties": [["b", "K"]]}},
    "C": {"Type": "CommandNode", "Commands": {"CommandSetUnitProperties": [["c", "K"]]}}})";

/// One node that writes two leaves in one command.
const char* const twoRows = R"({"A": {"Type": "CommandNode", "Commands": {
    "CommandSetUnitProperties": [["a", "K"], ["b", "K"]]}}})";

/// Two watchers of the URL s, each behind a condition, and two patterns that match it.
const char* const fourWatchers = R"({
    "A": {"Type": "SwitchNode", "Next": {"N": {"Type": "CommandNode", "Commands": {"Probe": "a"},
        "ConditionWriteOnUrls": [["s"]]}}},
    "B": {"Type": "SwitchNode", "Next": {"N": {"Type": "CommandNode", "Commands": {"Probe": "b"},
        "ConditionWriteOnUrls": [["s"]]}}},
    "C": {"Type": "SwitchNode", "Next": {"N": {"Type": "CommandNode", "Commands": {"Probe": "c"},
        "ConditionWriteOnUrlsRegExp": [["s"]]}}},
    "D": {"Type": "SwitchNode", "Next": {"N": {"Type": "CommandNode", "Commands": {"Probe": "d"},
        "ConditionWriteOnUrlsRegExp": [["s"]]}}}})";

class Reentrancy : public testhost::GraphTest {
protected:
    bool build(const QString& json) { return walker.initDependencyGraph(tree("d", json)); }

    bool traverse(const QString& url = "s")
    {
        return walker.traverseDependencyGraph(url, source, target, results, changed, {}, {});
    }

    bool execute(CommandBase& command)
    {
        return command.executeCommand(source, target, "s", results, changed, {}, {});
    }

    QStringList writes() { return host.takeCalls({"setDataProperty"}); }

    DependencyWalker walker;
    BaseClassSharedPointer source = tree("source", R"({"s": "K"})");
    BaseClassSharedPointer target = tree("target", R"({"a": 1, "b": 1, "c": 1})");
    QVariantList results;
    bool changed = false;
};

const QStringList writesOfThree{"setDataProperty(target/a, @unit, 'K') -> 0",
                                "setDataProperty(target/b, @unit, 'K') -> 0",
                                "setDataProperty(target/c, @unit, 'K') -> 0"};

TEST_F(Reentrancy, a_write_may_rebuild_the_walker_that_runs)
{
    build(threeWrites);
    host.insideNext("setDataProperty(target/a", [this] {
        build(R"({"Z": {"Type": "CommandNode", "Commands": {"Probe": "z"}}})");
    });

    EXPECT_TRUE(traverse());
    EXPECT_EQ(writes(), writesOfThree) << "the nodes under way finish";
    EXPECT_TRUE(traverse());
    EXPECT_EQ(executed(), QStringList{"z"});
}

TEST_F(Reentrancy, a_command_may_reset_the_walker_that_runs)
{
    build(fourWatchers);
    host.insideNext("execute(b)", [this] { walker.reset(); });

    EXPECT_TRUE(traverse());
    EXPECT_EQ(executed().mid(0, 2), (QStringList{"b", "a"})) << "the nodes under way finish";
    EXPECT_FALSE(walker.isValid());
    EXPECT_FALSE(traverse());
}

TEST_F(Reentrancy, a_command_may_assign_to_the_walker_that_runs)
{
    build(fourWatchers);
    host.insideNext("execute(c)", [this] { walker = DependencyWalker(); });

    EXPECT_TRUE(traverse());
    EXPECT_EQ(executed(), (QStringList{"b", "a", "c", "d"})) << "the nodes under way finish";
    EXPECT_FALSE(walker.isValid());
}

TEST_F(Reentrancy, a_read_may_rebuild_the_walker_that_is_being_built)
{
    host.insideNext("extractConfigValue(Type, d/B)", [this] { build(fourWatchers); });

    EXPECT_TRUE(build(threeWrites));
    EXPECT_TRUE(traverse());
    EXPECT_TRUE(build(threeWrites));
    host.takeCalls();
    EXPECT_TRUE(traverse());
    EXPECT_EQ(writes().size(), 3) << "a later build is not disturbed";
}

TEST_F(Reentrancy, a_command_may_traverse_the_walker_that_runs)
{
    build(fourWatchers);
    host.insideNext("execute(a)", [this] { traverse(); });

    EXPECT_TRUE(traverse());
    EXPECT_EQ(executed(), (QStringList{"b", "a", "b", "a", "c", "d", "c", "d"}));
}

TEST_F(Reentrancy, a_write_may_build_and_run_another_walker)
{
    build(threeWrites);
    host.insideNext("setDataProperty(target/b", [this] {
        DependencyWalker other;
        other.initDependencyGraph(tree("other", threeWrites));
        QVariantList otherResults;
        EXPECT_TRUE(other.traverseDependencyGraph("t", source, target, otherResults, {}, {}));
    });

    EXPECT_TRUE(traverse());
    EXPECT_EQ(writes().size(), 6);
}

TEST_F(Reentrancy, a_read_may_empty_the_description_that_is_being_built)
{
    const testhost::NodePointer description = tree("d", R"({
        "A": {"Type": "CommandNode", "Commands": {"Probe": "a", "Probe2": "a2"}, "Next": {
            "N": {"Type": "CommandNode", "Commands": {"Probe": "n"}}}},
        "B": {"Type": "CommandNode", "Commands": {"Probe": "b"}}})");
    host.insideNext("extractConfigValue(Type, d/A)", [&] { description->removeChild("B"); });
    host.insideNext("extractConfigValue(Type, d/A/Next/N)", [&] {
        testhost::Node& a = description->at("A");
        a.removeChild("Next");
        description->removeChild("A");
    });

    EXPECT_TRUE(walker.initDependencyGraph(description));
    EXPECT_TRUE(traverse());
    EXPECT_EQ(executed(), (QStringList{"a", "a2", "n", "b"}));
}

TEST_F(Reentrancy, a_read_may_drop_the_description_that_is_being_built)
{
    BaseClassSharedPointer description = tree("d", fourWatchers);
    host.insideNext("getChildMap(d)", [&] { description = nullptr; });

    EXPECT_TRUE(walker.initDependencyGraph(description));
    EXPECT_TRUE(traverse());
    EXPECT_EQ(executed(), (QStringList{"b", "a", "c", "d"}));
}

TEST_F(Reentrancy, a_write_may_drop_every_reference_of_the_caller)
{
    QString url = "s";
    QVariantList parameters{""};
    QSharedPointer<UnitManipulatorBase> manipulator =
        QSharedPointer<ScriptedManipulator>::create([&](bool&, bool&) { manipulator = nullptr; });
    build(twoRows);
    host.takeCalls();
    host.insideNext("setDataProperty(target/a", [&] {
        source = nullptr;
        target = nullptr;
        url = "other";
        parameters = {"other/"};
    });

    EXPECT_TRUE(walker.traverseDependencyGraph(url, source, target, results, changed, parameters,
                                               manipulator));
    EXPECT_EQ(host.takeCalls({"setDataProperty", "manipulateUnit"}),
              (QStringList{"setDataProperty(target/a, @unit, 'K') -> 0",
                           "manipulateUnit(target/a, K, 1, 1)",
                           "setDataProperty(target/b, @unit, 'K') -> 0",
                           "manipulateUnit(target/b, K, 1, 1)"}));
}

TEST_F(Reentrancy, a_command_may_change_the_url_that_the_caller_passed)
{
    QString url = "s";
    build(fourWatchers);
    host.insideNext("execute(b)", [&url] { url = "other"; });

    EXPECT_TRUE(walker.traverseDependencyGraph(url, source, target, results, changed, {}, {}));
    EXPECT_EQ(executed(), (QStringList{"b", "a", "c", "d"}));
}

TEST_F(Reentrancy, a_lookup_may_drop_every_reference_of_the_caller)
{
    build(R"({"A": {"Type": "CommandNode", "Commands": {
        "CommandSetUnitByConfigurationParameter": [["s", "", "a"], ["s", "", "b"]]}}})");
    host.insideNext("getChildData(target, a)", [this] { source = target = nullptr; });

    EXPECT_TRUE(traverse());
    EXPECT_EQ(writes().size(), 2);
}

TEST_F(Reentrancy, a_condition_may_drop_every_reference_of_the_caller)
{
    build(R"({"A": {"Type": "SwitchNode", "Next": {
        "N": {"Type": "CommandNode", "Commands": {"CommandSetUnitProperties": [["a", "K"]]},
              "ConditionValueComparator": [["s", "==", "K"], ["s", "!=", "m"]]},
        "O": {"Type": "CommandNode", "Commands": {"CommandSetUnitProperties": [["b", "K"]]},
              "ConditionValueComparator": [["s", "==", "K"]]}}}})");
    host.insideNext("extractConfigValue(s, source)", [this] { source = target = nullptr; });

    EXPECT_TRUE(traverse());
    EXPECT_EQ(writes().size(), 2);
}

TEST_F(Reentrancy, a_write_may_remove_its_leaf_from_the_tree)
{
    auto& root = dynamic_cast<testhost::Node&>(*target);
    build(threeWrites);
    host.insideNext("setDataProperty(target/a", [&root] { root.removeChild("a"); });
    host.insideNext("getChildData(target, b)", [&root] { root.removeChild("b"); });

    EXPECT_TRUE(traverse());
    EXPECT_EQ(writes(), writesOfThree);
}

TEST_F(Reentrancy, a_write_may_give_a_running_command_more_rows)
{
    CommandSetUnitProperties fixed(table(R"([["a", "K"], ["b", "K"]])"));
    host.insideNext("setDataProperty(target/a", [&] {
        for (int i = 0; i < 100; ++i) {
            fixed.initCommand(table(R"([["c", "K"]])"));
        }
    });
    EXPECT_TRUE(execute(fixed));
    EXPECT_EQ(writes(), writesOfThree.mid(0, 2));

    CommandSetUnitByConfigurationParameter following(table(R"([["s", "", "a"], ["s", "", "b"]])"));
    host.insideNext("setDataProperty(target/a", [&] {
        for (int i = 0; i < 100; ++i) {
            following.initCommand(table(R"([["s", "", "c"]])"));
        }
    });
    EXPECT_TRUE(execute(following));
    EXPECT_EQ(writes().size(), 2);
}

TEST_F(Reentrancy, a_read_may_give_a_running_condition_more_rows)
{
    ConditionValueComparators condition(table(R"([["s", "==", "no"], ["s", "==", "K"]])"));
    host.insideNext("extractConfigValue(s, source)", [&] {
        for (int i = 0; i < 100; ++i) {
            condition.initCondition(table(R"([["s", "==", "no"]])"));
        }
    });
    host.takeCalls();

    EXPECT_TRUE(condition.checkCondition(source, target, "s"));
    EXPECT_EQ(host.takeCalls({"extractConfigValue"}).size(), 2);
}

TEST_F(Reentrancy, a_command_may_give_running_nodes_more_edges)
{
    const char* const next = R"({"Next": {
        "N": {"Type": "CommandNode", "Commands": {"Probe": "n"}},
        "O": {"Type": "CommandNode", "Commands": {"Probe": "o"}}}})";
    NodeSwitch branching("Top", tree("d", next));
    host.insideNext("execute(n)", [&] {
        for (int i = 0; i < 100; ++i) {
            branching.initNodeEdges(tree("d", next));
        }
    });
    EXPECT_TRUE(branching.traverseNode(source, target, "s", results, changed, {}, {}));
    EXPECT_EQ(executed(), (QStringList{"n", "o"}));

    NodeCommand running("Top", tree("d", R"({"Commands": {"Probe": "own"}, "Next": {
        "N": {"Type": "CommandNode", "Commands": {"Probe": "n"}}}})"));
    host.insideNext("execute(own)", [&] { running.initNodeEdges(tree("d", next)); });
    EXPECT_TRUE(running.traverseNode(source, target, "s", results, changed, {}, {}));
    EXPECT_EQ(executed(), QStringList{"own"}) << "three edges lead nowhere";

    NodeCommand leaf("Top", tree("d", R"({"Commands": {"Probe": "own"}})"));
    host.insideNext("execute(own)", [&] {
        leaf.initNodeEdges(tree("d", R"({"Next": {
            "N": {"Type": "CommandNode", "Commands": {"Probe": "n"}}}})"));
    });
    host.insideNext("execute(n)", [&] { leaf.initNodeEdges(tree("d", next)); });
    EXPECT_TRUE(leaf.traverseNode(source, target, "s", results, changed, {}, {}));
    EXPECT_EQ(executed(), (QStringList{"own", "n"})) << "the edge is there when it is followed";
}

TEST_F(Reentrancy, a_read_may_register_types)
{
    using Nodes = DependencyWalkerFactory::NodeFactory;
    std::vector<std::unique_ptr<testhost::Registered<Nodes, NodeSwitch>>> registered;
    host.insideNext("getChildMap(d/A)", [&] {
        for (int i = 0; i < 100; ++i) {
            registered.push_back(std::make_unique<testhost::Registered<Nodes, NodeSwitch>>(
                QStringLiteral("HostNode%1").arg(i)));
        }
        registered.push_back(
            std::make_unique<testhost::Registered<Nodes, NodeSwitch>>("CommandNode"));
    });

    EXPECT_TRUE(build(threeWrites));
    EXPECT_TRUE(traverse());
    EXPECT_EQ(writes(), writesOfThree.mid(0, 1)) << "B and C became nodes without commands";
}

TEST_F(Reentrancy, every_call_of_a_resolution_may_run_another_resolution)
{
    const QString description = R"({"A": {"Type": "SwitchNode", "Next": {"N": {
        "Type": "CommandNode", "ConditionValueComparator": [["s", "==", "K"]],
        "Commands": {"CommandSetUnitProperties": [["a", "K"], ["b", "K"]]}}}}})";
    const DependencyResolverBaseClass resolver("/base", "", "");
    host.descriptions["both"] = description;
    host.instances["/base/configurations/Src"] = source;
    host.instances["/base/configurations/Tgt"] = target;
    const auto resolve = [&] {
        bool resolvedChange = false;
        return resolver.resolveDependency("Src", "Tgt", "both", resolvedChange, false, {"s", "s"},
                                          {}, {});
    };
    host.takeCalls();
    EXPECT_TRUE(resolve());
    const QStringList calls = host.takeCalls();
    ASSERT_GT(calls.size(), 20);

    for (const QString& call : calls) {
        SCOPED_TRACE(call.toStdString());
        const QString beginning = call.section(" -> ", 0, 0);
        bool inner = false;
        host.insideNext(beginning, [&] { inner = resolve(); });
        EXPECT_TRUE(resolve());
        EXPECT_TRUE(inner);
    }
}

TEST_F(Reentrancy, a_write_may_drop_the_trees_that_a_resolution_is_given)
{
    const DependencyResolverBaseClass resolver("/base", "", "");
    host.descriptions["three"] = threeWrites;
    QStringList urls{"s", "t"};
    host.insideNext("setDataProperty(target/a", [&] {
        source = target = nullptr;
        urls.clear();
    });

    EXPECT_TRUE(resolver.resolveDependency(source, target, "three", changed, urls, {}, {}));
    EXPECT_EQ(writes().size(), 6) << "both URLs ran on both trees";
}

} // namespace
