#include "Nodes/NodeCommand.h"

#include "NodeFixture.h"

#include <vector>

using testhost::Message;
using testhost::tree;

namespace {

using CommandNode = NodeTest;

TEST_F(CommandNode, runs_its_commands_in_ascending_order_of_their_type_names)
{
    NodeCommand node("Top", tree("d", R"({"Commands": {
        "Probe3": "third", "Probe": "first", "Probe2": "second"}})"));

    EXPECT_TRUE(traverse(node));
    EXPECT_EQ(executed(), (QStringList{"first", "second", "third"}));
    EXPECT_EQ(node.getCommandAsString(), "first;second;third;");
}

TEST_F(CommandNode, runs_every_command_and_returns_whether_any_succeeded)
{
    struct Row {
        const char* title;
        const char* commands;
        bool result;
    };
    const std::vector<Row> table{
        {"all fail",
         R"({"Probe": {"@val": "1", "@result": false}, "Probe2": {"@val": "2", "@result": false}})",
         false},
        {"the first fails",
         R"({"Probe": {"@val": "1", "@result": false}, "Probe2": {"@val": "2"}})", true},
        {"the last fails", R"({"Probe": {"@val": "1"}, "Probe2": {"@val": "2", "@result": false}})",
         true},
        {"none fails", R"({"Probe": {"@val": "1"}, "Probe2": {"@val": "2"}})", true},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        NodeCommand node("Top", tree("d", QString(R"({"Commands": %1})").arg(row.commands)));

        EXPECT_EQ(traverse(node), row.result);
        EXPECT_EQ(executed(), (QStringList{"1", "2"}));
    }
}

TEST_F(CommandNode, asks_the_host_for_its_commands_after_its_edges)
{
    const NodeCommand node("Top", tree("d", R"({
        "Commands": {"CommandSetUnitProperties": [["a", "K"]]},
        "Next": {"A": {}}})"));

    EXPECT_EQ(
        host.takeCalls(),
        (QStringList{"getChildMap(d)", "getChildMap(d/Next)", "extractConfigValue(Type, d/Next/A)",
                     "getChildData(d, Commands)", "getChildMap(d/Commands)",
                     "getDataProperty(d/Commands/CommandSetUnitProperties, @val)",
                     "getArrayValueContent(1 rows, 0 columns described)"}));
}

TEST_F(CommandNode, without_commands_does_nothing)
{
    for (const char* description :
         {"{}", R"({"Commands": {}})", R"({"commands": {"Probe": "a"}})", R"({"Commands": 5})"}) {
        SCOPED_TRACE(description);
        NodeCommand node("Top", tree("d", description));
        EXPECT_FALSE(traverse(node));
        EXPECT_EQ(node.getCommandAsString(), "");
        EXPECT_EQ(executed(), QStringList());
    }
}

TEST_F(CommandNode, without_description_does_nothing)
{
    NodeCommand node("Top", nullptr);

    EXPECT_FALSE(traverse(node));
    EXPECT_EQ(node.getNodeName(), "Top");
    EXPECT_EQ(node.getCommandAsString(), "");
}

TEST_F(CommandNode, leaves_unknown_commands_out_and_warns_in_order)
{
    NodeCommand node("Top", tree("d", R"({"Commands": {
        "Zero": "z", "Probe": "a", "Another": "b"}})"));

    EXPECT_EQ(node.getCommandAsString(), "a;");
    const QList<Message> written = messages.take();
    ASSERT_EQ(written.size(), 2);
    EXPECT_EQ(written.at(0).text, R"(Unknown command "Another")");
    EXPECT_EQ(written.at(1).text, R"(Unknown command "Zero")");
}

TEST_F(CommandNode, takes_a_null_command_for_one_without_rows)
{
    const testhost::NodePointer description = tree("d", R"({"Commands": {"Probe": "own"}})");
    description->at("Commands").setChild("CommandSetUnitProperties", nullptr);
    description->at("Commands").setChild("Unknown", nullptr);
    NodeCommand node("Top", description);

    EXPECT_EQ(node.getCommandAsString(), "own;");
    EXPECT_TRUE(traverse(node));
    EXPECT_EQ(executed(), QStringList{"own"});
    const QList<Message> written = messages.take();
    ASSERT_EQ(written.size(), 1);
    EXPECT_EQ(written.constFirst().text, R"(Unknown command "Unknown")");
}

TEST_F(CommandNode, without_commands_visits_its_only_successor_and_returns_its_result)
{
    NodeCommand succeeding("Top", tree("d", R"({"Next": {
        "A": {"Type": "CommandNode", "Commands": {"Probe": "a"}}}})"));
    NodeCommand failing("Top", tree("d", R"({"Next": {
        "A": {"Type": "CommandNode", "Commands": {"Probe": {"@val": "a", "@result": false}}}}})"));

    EXPECT_TRUE(traverse(succeeding));
    EXPECT_EQ(executed(), QStringList{"a"});
    EXPECT_FALSE(traverse(failing));
    EXPECT_EQ(executed(), QStringList{"a"});
}

TEST_F(CommandNode, visits_its_only_successor_after_its_commands_whatever_they_returned)
{
    NodeCommand node("Top", tree("d", R"({
        "Commands": {"Probe": {"@val": "own", "@result": false}},
        "Next": {"A": {"Type": "CommandNode", "Commands": {"Probe": "a"}}}})"));

    EXPECT_TRUE(traverse(node));
    EXPECT_EQ(executed(), (QStringList{"own", "a"}));
}

TEST_F(CommandNode, keeps_its_own_success_when_the_successor_fails)
{
    NodeCommand node("Top", tree("d", R"({
        "Commands": {"Probe": "own"},
        "Next": {"A": {"Type": "CommandNode", "Commands": {"Probe": {"@val": "a", "@result": false}}}}})"));

    EXPECT_TRUE(traverse(node));
    EXPECT_EQ(executed(), (QStringList{"own", "a"}));
}

TEST_F(CommandNode, with_two_successors_runs_its_commands_and_visits_neither)
{
    NodeCommand node("Top", tree("d", R"({
        "Commands": {"Probe": "own"},
        "Next": {"A": {"Type": "CommandNode", "Commands": {"Probe": "a"}},
                 "B": {"Type": "CommandNode", "Commands": {"Probe": "b"}}}})"));

    EXPECT_TRUE(traverse(node));
    EXPECT_EQ(executed(), QStringList{"own"});
}

TEST_F(CommandNode, counts_an_empty_edge_among_its_successors)
{
    NodeCommand node("Top", tree("d", R"({
        "Next": {"A": {"Type": "CommandNode", "Commands": {"Probe": "a"}}, "B": {}}})"));

    EXPECT_FALSE(traverse(node));
    EXPECT_EQ(executed(), QStringList());
}

TEST_F(CommandNode, with_a_single_empty_edge_ends_there)
{
    NodeCommand node("Top", tree("d", R"({"Commands": {"Probe": "own"}, "Next": {"A": {}}})"));

    EXPECT_TRUE(traverse(node));
    EXPECT_EQ(executed(), QStringList{"own"});
}

TEST_F(CommandNode, follows_its_only_edge_without_asking_the_conditions)
{
    source = tree("source", R"({"s": 1})");
    NodeCommand node("Top", tree("d", R"({"Next": {"A": {
        "Type": "CommandNode", "Commands": {"Probe": "a"},
        "ConditionValueComparator": [["s", "==", 2]], "ConditionWriteOnUrls": [["x"]]}}})"));
    host.takeCalls();

    EXPECT_TRUE(traverse(node, "elsewhere"));
    EXPECT_EQ(host.takeCalls(), QStringList{"execute(a)"});
    EXPECT_EQ(node.getConditionUrls(), (QStringList{"s", "x"})) << "they are watched all the same";
}

TEST_F(CommandNode, follows_its_only_edge_once_however_many_conditions_hold)
{
    NodeCommand node("Top", tree("d", R"({"Next": {"A": {
        "Type": "CommandNode", "Commands": {"Probe": "a"},
        "ConditionWriteOnUrls": [["x"]], "ConditionWriteOnUrlsRegExp": [["x"]]}}})"));

    traverse(node, "x");
    EXPECT_EQ(executed(), QStringList{"a"});
}

TEST_F(CommandNode, does_nothing_without_a_source)
{
    NodeCommand node("Top", tree("d", R"({
        "Commands": {"Probe": "own"},
        "Next": {"A": {"Type": "CommandNode", "Commands": {"Probe": "a"}}}})"));
    source = nullptr;
    host.takeCalls();

    EXPECT_FALSE(traverse(node));
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(CommandNode, runs_its_commands_without_a_target)
{
    NodeCommand node("Top", tree("d", R"({"Commands": {"Probe": "own"}})"));
    target = nullptr;

    EXPECT_TRUE(traverse(node));
    EXPECT_EQ(executed(), QStringList{"own"});
}

TEST_F(CommandNode, carries_both_flags_across_several_nodes)
{
    struct Row {
        const char* title;
        const char* first;
        const char* second;
        bool result, changed;
    };
    const std::vector<Row> table{
        {"nothing succeeds and nothing changes", R"({"@val": "1", "@result": false})",
         R"({"@val": "2", "@result": false})", false, false},
        {"success above, change below", R"({"@val": "1"})",
         R"({"@val": "2", "@result": false, "@changed": true})", true, true},
        {"change above, success below", R"({"@val": "1", "@result": false, "@changed": true})",
         R"({"@val": "2"})", true, true},
        {"change without success", R"({"@val": "1", "@result": false, "@changed": true})",
         R"({"@val": "2", "@result": false})", false, true},
        {"success without change", R"({"@val": "1"})", R"({"@val": "2"})", true, false},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        NodeCommand node("Top", tree("d", QString(R"({"Commands": {"Probe": %1}, "Next": {
            "A": {"Type": "SwitchNode", "Next": {
                "B": {"Type": "CommandNode", "Commands": {"Probe": %2}}}}}})")
                                              .arg(row.first, row.second)));
        changed = false;
        EXPECT_EQ(traverse(node), row.result);
        EXPECT_EQ(changed, row.changed);

        changed = true;
        traverse(node);
        EXPECT_TRUE(changed) << "nobody takes it back";
    }
}

/// A command that keeps the addresses of what it was handed.
class HandedCommand : public CommandBase {
public:
    explicit HandedCommand(const BaseClassSharedPointer&) {}
    bool executeCommand(const BaseClassSharedPointer& sourceRoot,
                        const BaseClassSharedPointer& targetRoot, const QString& url,
                        QVariantList& results, bool& changed, const QVariantList& parameters,
                        const QSharedPointer<UnitManipulatorBase>& manipulator) override
    {
        handed = {&sourceRoot, &targetRoot, &url, &results, &changed, &parameters, &manipulator};
        return true;
    }
    QString getCommandAsString() const override { return {}; }
    bool initCommand(const BaseClassSharedPointer&) override { return true; }

    static inline Handed handed{};
};

TEST_F(CommandNode, hands_all_arguments_down_unchanged)
{
    const testhost::Registered<DependencyWalkerFactory::CommandFactory, HandedCommand> registered(
        "Handed");
    NodeCommand node("Top", tree("d", R"({"Next": {
        "A": {"Type": "CommandNode", "Commands": {"Handed": {}}}}})"));
    const BaseClassSharedPointer sourceRoot = source;
    const BaseClassSharedPointer targetRoot = target;
    const QString url = "x";

    EXPECT_TRUE(
        node.traverseNode(sourceRoot, targetRoot, url, results, changed, parameters, manipulator));
    const Handed all{&sourceRoot, &targetRoot, &url, &results, &changed, &parameters, &manipulator};
    EXPECT_TRUE(HandedCommand::handed == all);
}

} // namespace
