#include "Nodes/NodeSwitch.h"

#include "Conditions/ConditionBase.h"
#include "NodeFixture.h"

#include <vector>

using testhost::tree;
using testhost::Unregistered;

namespace {

using SwitchNode = NodeTest;

TEST_F(SwitchNode, follows_an_edge_without_conditions)
{
    NodeSwitch node("Top", tree("d", R"({"Next": {
        "A": {"Type": "CommandNode", "Commands": {"Probe": "a"}}}})"));

    EXPECT_TRUE(traverse(node, "any/url"));
    EXPECT_EQ(executed(), QStringList{"a"});
}

TEST_F(SwitchNode, visits_successor_once_per_condition_that_holds)
{
    NodeSwitch node("Top", tree("d", R"({"Next": {"A": {
        "Type": "CommandNode", "Commands": {"Probe": "a"},
        "ConditionWriteOnUrls": [["x"], ["both"]],
        "ConditionWriteOnUrlsRegExp": [["y"], ["both"]]}}})"));

    EXPECT_TRUE(traverse(node, "both"));
    EXPECT_EQ(executed(), (QStringList{"a", "a"}));
    EXPECT_TRUE(traverse(node, "x"));
    EXPECT_EQ(executed(), QStringList{"a"});
    EXPECT_TRUE(traverse(node, "y"));
    EXPECT_EQ(executed(), QStringList{"a"});
    EXPECT_FALSE(traverse(node, "neither"));
    EXPECT_EQ(executed(), QStringList());
}

TEST_F(SwitchNode, checks_a_condition_after_the_visits_for_the_ones_before_it)
{
    source = tree("source", R"({"s": 1})");
    NodeSwitch node("Top", tree("d", R"({"Next": {"A": {
        "Type": "CommandNode", "Commands": {"Probe": "a"},
        "ConditionValueComparator": [["s", "==", 1]],
        "ConditionWriteOnUrls": [["x"]]}}})"));
    host.takeCalls();

    traverse(node, "x");
    EXPECT_EQ(host.takeCalls(),
              (QStringList{"extractConfigValue(s, source)", "execute(a)", "execute(a)"}));
}

TEST_F(SwitchNode, visits_unguarded_successors_always_and_guarded_ones_when_a_condition_holds)
{
    NodeSwitch node("Top", tree("d", R"({"Next": {
        "A": {"Type": "CommandNode", "Commands": {"Probe": "a"}, "ConditionWriteOnUrls": [["x"]]},
        "B": {"Type": "CommandNode", "Commands": {"Probe": "b"}},
        "C": {"Type": "CommandNode", "Commands": {"Probe": "c"}, "ConditionWriteOnUrls": [["x"]]},
        "D": {"Type": "CommandNode", "Commands": {"Probe": "d"}}}})"));

    traverse(node, "x");
    EXPECT_EQ(executed(), (QStringList{"a", "b", "c", "d"}));
    traverse(node, "y");
    EXPECT_EQ(executed(), (QStringList{"b", "d"}));
}

TEST_F(SwitchNode, finishes_a_subgraph_before_it_looks_at_the_next_edge)
{
    source = tree("source", R"({"s": 1})");
    NodeSwitch node("Top", tree("d", R"({"Next": {
        "A": {"Type": "SwitchNode", "Next": {
            "A1": {"Type": "CommandNode", "Commands": {"Probe": "a1"},
                   "Next": {"A2": {"Type": "CommandNode", "Commands": {"Probe": "a2"}}}}}},
        "B": {"Type": "CommandNode", "Commands": {"Probe": "b"},
              "ConditionValueComparator": [["s", "==", 1]]}}})"));
    host.takeCalls();

    traverse(node);
    EXPECT_EQ(host.takeCalls(), (QStringList{"execute(a1)", "execute(a2)",
                                             "extractConfigValue(s, source)", "execute(b)"}));
}

TEST_F(SwitchNode, looks_at_every_edge_and_returns_whether_any_command_succeeded)
{
    struct Row {
        const char* title;
        bool first, second;
    };
    const std::vector<Row> table{
        {"both fail", false, false},
        {"the first succeeds", true, false},
        {"the second succeeds", false, true},
        {"both succeed", true, true},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        const testhost::NodePointer description = tree("d", R"({"Next": {
            "A": {"Type": "CommandNode", "Commands": {"Probe": {"@val": "a"}}},
            "B": {"Type": "CommandNode", "Commands": {"Probe": {"@val": "b"}}}}})");
        description->at("Next/A/Commands/Probe").setProperty("@result", row.first);
        description->at("Next/B/Commands/Probe").setProperty("@result", row.second);
        NodeSwitch node("Top", description);

        EXPECT_EQ(traverse(node), row.first || row.second);
        EXPECT_EQ(executed(), (QStringList{"a", "b"}));
    }
}

TEST_F(SwitchNode, takes_a_condition_that_could_not_be_made_for_one_that_holds)
{
    const Unregistered<DependencyWalkerFactory::ConditionFactory> unregistered(
        "ConditionWriteOnUrls");
    NodeSwitch node("Top", tree("d", R"({"Next": {"A": {
        "Type": "CommandNode", "Commands": {"Probe": "a"},
        "ConditionWriteOnUrls": [["x"]], "ConditionWriteOnUrlsRegExp": [["y"]]}}})"));
    EXPECT_EQ(messages.take().size(), 1) << "the unknown condition";

    EXPECT_TRUE(traverse(node, "elsewhere"));
    EXPECT_EQ(executed(), QStringList{"a"});
    EXPECT_TRUE(traverse(node, "y"));
    EXPECT_EQ(executed(), (QStringList{"a", "a"}));
}

TEST_F(SwitchNode, never_follows_an_edge_whose_only_condition_has_no_rows)
{
    NodeSwitch node("Top", tree("d", R"({"Next": {"A": {
        "Type": "CommandNode", "Commands": {"Probe": "a"}, "ConditionWriteOnUrls": {}}}})"));

    EXPECT_FALSE(traverse(node));
    EXPECT_EQ(executed(), QStringList());
}

TEST_F(SwitchNode, passes_over_empty_edges)
{
    NodeSwitch node("Top", tree("d", R"({"Next": {
        "A": {}, "B": {"Type": "CommandNode", "Commands": {"Probe": "b"}}, "C": {"Type": "?"}}})"));

    EXPECT_TRUE(traverse(node));
    EXPECT_EQ(executed(), QStringList{"b"});
}

TEST_F(SwitchNode, runs_no_commands_of_its_own)
{
    NodeSwitch node("Top", tree("d", R"({"Commands": {"Probe": "own"}})"));

    EXPECT_FALSE(traverse(node));
    EXPECT_EQ(host.takeCalls(), QStringList{"getChildMap(d)"}) << "while it was built";
}

TEST_F(SwitchNode, does_nothing_without_a_source)
{
    NodeSwitch node("Top", tree("d", R"({"Next": {
        "A": {"Type": "CommandNode", "Commands": {"Probe": "a"}},
        "B": {"Type": "CommandNode", "Commands": {"Probe": "b"},
              "ConditionValueComparator": [["s", "==", 1]]}}})"));
    source = nullptr;
    host.takeCalls();

    EXPECT_FALSE(traverse(node));
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(SwitchNode, goes_on_without_a_target)
{
    NodeSwitch node("Top", tree("d", R"({"Next": {
        "A": {"Type": "CommandNode", "Commands": {"Probe": "a"}}}})"));
    target = nullptr;

    EXPECT_TRUE(traverse(node));
    EXPECT_EQ(executed(), QStringList{"a"});
}

/// A condition that keeps the addresses of what it was handed.
class HandedCondition : public ConditionBase {
public:
    explicit HandedCondition(const BaseClassSharedPointer&) {}
    bool checkCondition(const BaseClassSharedPointer& sourceRoot,
                        const BaseClassSharedPointer& targetRoot, const QString& url) const override
    {
        handed = {&sourceRoot, &targetRoot, &url, nullptr, nullptr, nullptr, nullptr};
        return true;
    }
    QStringList getConditionUrls() const override { return {}; }
    QString getConditionAsString() const override { return {}; }

    static inline Handed handed{};
};

/// A node that keeps the addresses of what it was handed.
class HandedNode : public NodeBase {
public:
    using NodeBase::NodeBase;
    bool traverseNode(const BaseClassSharedPointer& sourceRoot,
                      const BaseClassSharedPointer& targetRoot, const QString& url,
                      QVariantList& results, bool& changed, const QVariantList& parameters,
                      const QSharedPointer<UnitManipulatorBase>& manipulator) override
    {
        handed = {&sourceRoot, &targetRoot, &url, &results, &changed, &parameters, &manipulator};
        return true;
    }

    static inline Handed handed{};
};

TEST_F(SwitchNode, hands_all_arguments_down_unchanged)
{
    const testhost::Registered<DependencyWalkerFactory::ConditionFactory, HandedCondition>
        condition("ConditionWriteOnUrls");
    const testhost::Registered<DependencyWalkerFactory::NodeFactory, HandedNode> handedNode(
        "HandedNode");
    NodeSwitch node("Top", tree("d", R"({"Next": {"A": {
        "Type": "HandedNode", "ConditionWriteOnUrls": [["x"]]}}})"));
    const BaseClassSharedPointer sourceRoot = source;
    const BaseClassSharedPointer targetRoot = target;
    const QString url = "x";

    EXPECT_TRUE(
        node.traverseNode(sourceRoot, targetRoot, url, results, changed, parameters, manipulator));

    const Handed all{&sourceRoot, &targetRoot, &url, &results, &changed, &parameters, &manipulator};
    EXPECT_TRUE(HandedNode::handed == all);
    const Handed three{&sourceRoot, &targetRoot, &url, nullptr, nullptr, nullptr, nullptr};
    EXPECT_TRUE(HandedCondition::handed == three);
}

} // namespace
