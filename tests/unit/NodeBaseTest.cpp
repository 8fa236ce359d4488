#include "Nodes/NodeBase.h"

#include "Conditions/ConditionBase.h"
#include "Conditions/ConditionWriteOnUrls.h"
#include "Nodes/NodeCommand.h"
#include "Nodes/NodeSwitch.h"
#include "Probe.h"

#include <vector>

using testhost::Registered;
using testhost::tree;
using testhost::Unregistered;

namespace {

class GraphNode : public testhost::GraphTest {
protected:
    /// The names of the successors, "-" for an edge without node.
    static QStringList successors(const NodeBase& node)
    {
        QStringList names;
        for (const NodeBase::SuccessorType& edge : node.getSucessorList()) {
            names.append(edge.node.isNull() ? "-" : edge.node->getNodeName());
        }
        return names;
    }

    static QStringList paths(const NodeBase& node, QString path = {})
    {
        QStringList lines;
        EXPECT_TRUE(node.printSuccessors(path, lines));
        return lines;
    }
};

TEST_F(GraphNode, has_edges_of_conditions_and_a_node)
{
    const QSharedPointer<NodeBase> node = QSharedPointer<NodeSwitch>::create("A", nullptr);
    const NodeBase::SuccessorType edge{{nullptr, nullptr}, node};

    EXPECT_EQ(edge.conditions.size(), 2);
    EXPECT_EQ(edge.node, node);
}

TEST_F(GraphNode, without_next_is_a_leaf)
{
    for (const char* description :
         {"{}", R"({"Type": "SwitchNode", "next": {"A": {"Type": "SwitchNode"}}})",
          R"({"NEXT": {"A": {"Type": "SwitchNode"}}})", R"({"Next": {}})"}) {
        SCOPED_TRACE(description);
        const NodeSwitch node("Leaf", tree("description", description));
        EXPECT_EQ(successors(node), QStringList());
        EXPECT_EQ(node.getConditionUrls(), QStringList());
        EXPECT_EQ(paths(node), QStringList{"Leaf"});
    }
}

TEST_F(GraphNode, without_description_is_a_leaf)
{
    NodeSwitch node("Leaf", nullptr);

    EXPECT_EQ(node.getNodeName(), "Leaf");
    EXPECT_EQ(successors(node), QStringList());
    EXPECT_TRUE(node.initNodeEdges(nullptr));
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(GraphNode, takes_a_null_next_for_none)
{
    const testhost::NodePointer description = tree("description", "{}");
    description->setChild("Next", nullptr);
    const NodeSwitch node("Leaf", description);

    EXPECT_EQ(successors(node), QStringList());
}

TEST_F(GraphNode, asks_the_host_for_children_and_types_in_this_order)
{
    const testhost::NodePointer description = tree("d", R"({
        "Type": "SwitchNode",
        "Next": {
            "B": {"Type": "SwitchNode", "ConditionWriteOnUrls": [["x"]]},
            "A": {"Type": "Unknown"}}})");

    const NodeSwitch node("Top", description);

    EXPECT_EQ(host.takeCalls(), (QStringList{
                                    "getChildMap(d)",
                                    "getChildMap(d/Next)",
                                    "extractConfigValue(Type, d/Next/A)",
                                    "extractConfigValue(Type, d/Next/B)",
                                    "getChildMap(d/Next/B)",
                                    "hasChildData(d/Next/B, ConditionValueComparator)",
                                    "hasChildData(d/Next/B, ConditionValueComparatorRegExp)",
                                    "hasChildData(d/Next/B, ConditionWriteOnUrls)",
                                    "getChildData(d/Next/B, ConditionWriteOnUrls)",
                                    "getDataProperty(d/Next/B/ConditionWriteOnUrls, @val)",
                                    "getArrayValueContent(1 rows, 0 columns described)",
                                    "hasChildData(d/Next/B, ConditionWriteOnUrlsRegExp)",
                                }));
}

TEST_F(GraphNode, does_not_keep_its_description)
{
    testhost::NodePointer description =
        tree("d", R"({"Next": {"A": {"Type": "CommandNode", "Commands": {"Probe": "a"}}}})");
    const QWeakPointer<testhost::Node> watched = description;
    const NodeSwitch node("Top", description);
    description.reset();

    EXPECT_TRUE(watched.isNull());
    EXPECT_EQ(successors(node), QStringList{"A"});
}

TEST_F(GraphNode, has_its_edges_in_ascending_order_of_the_names)
{
    const NodeSwitch node("Top", tree("d", R"({"Next": {
        "b": {"Type": "SwitchNode"}, "B": {"Type": "SwitchNode"}, "10": {"Type": "SwitchNode"},
        "9": {"Type": "SwitchNode"}, "a": {"Type": "SwitchNode"}, "": {"Type": "SwitchNode"},
        "ä": {"Type": "SwitchNode"}, "aa": {"Type": "SwitchNode"}}})"));

    EXPECT_EQ(successors(node), (QStringList{"", "10", "9", "B", "a", "aa", "b", "ä"}));
}

TEST_F(GraphNode, makes_the_kind_of_node_that_the_type_names)
{
    const NodeSwitch node("Top", tree("d", R"({"Next": {
        "A": {"Type": "CommandNode"}, "B": {"Type": "SwitchNode"}}})"));

    EXPECT_TRUE(node.getSucessorList().at(0).node.dynamicCast<NodeCommand>());
    EXPECT_TRUE(node.getSucessorList().at(1).node.dynamicCast<NodeSwitch>());
}

TEST_F(GraphNode, keeps_an_empty_edge_where_no_node_can_be_made)
{
    struct Row {
        const char* title;
        const char* successor;
    };
    const std::vector<Row> table{
        {"no type", R"({"ConditionWriteOnUrls": [["x"]]})"},
        {"a type in another case", R"({"type": "SwitchNode", "ConditionWriteOnUrls": [["x"]]})"},
        {"a type that is not known", R"({"Type": "Node", "ConditionWriteOnUrls": [["x"]]})"},
        {"a type that is a list", R"({"Type": ["SwitchNode"], "ConditionWriteOnUrls": [["x"]]})"},
        {"a type that is a number", R"({"Type": 5, "ConditionWriteOnUrls": [["x"]]})"},
        {"a type without a value", R"({"Type": {}, "ConditionWriteOnUrls": [["x"]]})"},
        {"a plain value", R"("SwitchNode")"},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        const NodeSwitch node("Top",
                              tree("d", QString(R"({"Next": {"A": %1}})").arg(row.successor)));
        ASSERT_EQ(node.getSucessorList().size(), 1);
        EXPECT_TRUE(node.getSucessorList().constFirst().node.isNull());
        EXPECT_TRUE(node.getSucessorList().constFirst().conditions.isEmpty());
        EXPECT_EQ(node.getConditionUrls(), QStringList());
    }
}

TEST_F(GraphNode, keeps_an_empty_edge_for_a_null_successor)
{
    const testhost::NodePointer description = tree("d", R"({"Next": {}})");
    description->at("Next").setChild("A", nullptr);
    const NodeSwitch node("Top", description);

    EXPECT_EQ(successors(node), QStringList{"-"});
}

TEST_F(GraphNode, guards_an_edge_by_the_conditions_inside_the_successor)
{
    const NodeSwitch node("Top", tree("d", R"({"Next": {"A": {
        "Type": "SwitchNode",
        "ConditionWriteOnUrlsRegExp": [["c"]],
        "ConditionWriteOnUrls": [["b"]],
        "ConditionValueComparator": [["a", "==", 1]],
        "conditionWriteOnUrls": [["no"]],
        "ConditionOther": [["no"]]}}})"));

    QStringList conditions;
    for (const auto& condition : node.getSucessorList().constFirst().conditions) {
        conditions.append(condition->getConditionAsString());
    }
    EXPECT_EQ(conditions, (QStringList{"a==1", "b", "c"}));
    EXPECT_EQ(node.getConditionUrls(), (QStringList{"a", "b", "RE:c"}));
}

TEST_F(GraphNode, looks_for_no_condition_but_those_of_the_list_of_types)
{
    const Registered<DependencyWalkerFactory::ConditionFactory, ConditionWriteOnUrls> registered(
        "HostCondition");
    const NodeSwitch node("Top", tree("d", R"({"Next": {"A": {
        "Type": "SwitchNode", "HostCondition": [["x"]]}}})"));

    EXPECT_TRUE(node.getSucessorList().constFirst().conditions.isEmpty());
    EXPECT_FALSE(DependencyWalkerFactory::getConditionTypeNames().contains("HostCondition"));
}

TEST_F(GraphNode, makes_no_condition_of_a_child_that_the_host_announced_and_does_not_have)
{
    const testhost::NodePointer description = tree("d", R"({"Next": {"A": {
        "Type": "SwitchNode", "ConditionWriteOnUrls": [["x"]],
        "ConditionValueComparator": [["y", "==", 1]],
        "ConditionValueComparatorRegExp": [["z", "==", 1]],
        "ConditionWriteOnUrlsRegExp": [["z"]]}}})");
    host.insideNext("hasChildData(d/Next/A, ConditionWriteOnUrls)",
                    [&] { description->at("Next/A").removeChild("ConditionWriteOnUrls"); });
    const NodeSwitch node("Top", description);

    EXPECT_EQ(node.getSucessorList().constFirst().conditions.size(), 3) << "the others are made";
}

TEST_F(GraphNode, does_not_read_conditions_of_its_own_description)
{
    const NodeSwitch node("Top", tree("d", R"({"ConditionWriteOnUrls": [["x"]]})"));

    EXPECT_EQ(node.getConditionUrls(), QStringList());
}

TEST_F(GraphNode, keeps_a_condition_without_rows)
{
    const NodeSwitch node("Top", tree("d", R"({"Next": {"A": {
        "Type": "SwitchNode", "ConditionWriteOnUrls": {}}}})"));

    EXPECT_EQ(node.getSucessorList().constFirst().conditions.size(), 1);
    EXPECT_EQ(node.getConditionUrls(), QStringList());
}

TEST_F(GraphNode, keeps_a_condition_that_cannot_be_made_as_null)
{
    const Unregistered<DependencyWalkerFactory::ConditionFactory> unregistered(
        "ConditionWriteOnUrls");
    const NodeSwitch node("Top", tree("d", R"({"Next": {"A": {
        "Type": "SwitchNode", "ConditionWriteOnUrls": [["x"]],
        "ConditionWriteOnUrlsRegExp": [["y"]]}}})"));

    const auto conditions = node.getSucessorList().constFirst().conditions;
    ASSERT_EQ(conditions.size(), 2);
    EXPECT_TRUE(conditions.at(0).isNull());
    EXPECT_EQ(node.getConditionUrls(), QStringList{"RE:y"});
    EXPECT_EQ(node.printConditionString("A"), "y");
    const QList<testhost::Message> written = messages.take();
    ASSERT_EQ(written.size(), 1);
    EXPECT_EQ(written.constFirst().text, R"(Unknown condition "ConditionWriteOnUrls")");
}

TEST_F(GraphNode, watches_what_its_whole_subgraph_watches_each_once)
{
    const NodeSwitch node("Top", tree("d", R"({"Next": {
        "A": {"Type": "SwitchNode", "ConditionWriteOnUrls": [["a"], ["shared"]], "Next": {
            "A1": {"Type": "SwitchNode", "ConditionWriteOnUrlsRegExp": [["p"], ["p"]], "Next": {
                "A2": {"Type": "CommandNode", "ConditionWriteOnUrls": [["deep"]]}}}}},
        "B": {"Type": "CommandNode", "ConditionValueComparator": [["shared", "==", 1], ["b", "==", 1]]}}})"));

    EXPECT_EQ(node.getConditionUrls(), (QStringList{"deep", "RE:p", "a", "shared", "b"}));
}

TEST_F(GraphNode, makes_independent_nodes_of_one_name_at_two_places)
{
    const NodeSwitch node("Top", tree("d", R"({"Next": {
        "A": {"Type": "SwitchNode", "Next": {"Same": {"Type": "CommandNode"}}},
        "B": {"Type": "SwitchNode", "Next": {"Same": {"Type": "CommandNode"}}}}})"));

    const auto inA = node.getSucessorList().at(0).node->getSucessorList().at(0).node;
    const auto inB = node.getSucessorList().at(1).node->getSucessorList().at(0).node;
    EXPECT_EQ(inA->getNodeName(), inB->getNodeName());
    EXPECT_NE(inA, inB);
}

TEST_F(GraphNode, appends_edges_when_it_is_initialized_again)
{
    NodeSwitch node("Top", tree("d", R"({"Next": {"B": {"Type": "SwitchNode"}}})"));

    EXPECT_TRUE(node.initNodeEdges(tree("d", R"({"Next": {"A": {"Type": "SwitchNode"}}})")));
    EXPECT_EQ(successors(node), (QStringList{"B", "A"}));
    EXPECT_TRUE(node.initNodeEdges(tree("d", "{}")));
    EXPECT_EQ(successors(node), (QStringList{"B", "A"}));
}

TEST_F(GraphNode, hands_out_a_copy_of_its_edges)
{
    const NodeSwitch node("Top", tree("d", R"({"Next": {"A": {"Type": "SwitchNode"}}})"));

    node.getSucessorList().clear();
    EXPECT_EQ(successors(node), QStringList{"A"});
}

TEST_F(GraphNode, lives_as_long_as_somebody_holds_it)
{
    QSharedPointer<NodeBase> below;
    {
        const NodeSwitch node("Top", tree("d", R"({"Next": {"A": {"Type": "SwitchNode", "Next": {
            "B": {"Type": "CommandNode"}}}}})"));
        below = node.getSucessorList().constFirst().node;
    }
    EXPECT_EQ(paths(*below), QStringList{"A->B"});
}

TEST_F(GraphNode, prints_the_conditions_of_an_edge_run_together)
{
    const NodeSwitch node("Top", tree("d", R"({"Next": {
        "A": {"Type": "SwitchNode", "ConditionValueComparator": [["a", "==", 1], ["b", "!=", "x"]],
              "ConditionWriteOnUrls": [["c"], ["d"]]},
        "B": {"Type": "SwitchNode"},
        "C": {"Type": "Unknown"}}})"));

    EXPECT_EQ(node.printConditionString("A"), "a==1||b!=xc||d");
    EXPECT_EQ(node.printConditionString("B"), "");
    EXPECT_EQ(node.printConditionString("C"), "");
    EXPECT_EQ(node.printConditionString("a"), "");
    EXPECT_EQ(node.printConditionString("no successor"), "");
}

TEST_F(GraphNode, prints_the_conditions_of_all_edges_to_one_name)
{
    NodeSwitch node("Top", tree("d", R"({"Next": {
        "A": {"Type": "SwitchNode", "ConditionWriteOnUrls": [["a"]]}}})"));
    node.initNodeEdges(tree("d", R"({"Next": {
        "A": {"Type": "SwitchNode", "ConditionWriteOnUrls": [["b"]]}}})"));

    EXPECT_EQ(node.printConditionString("A"), "ab");
}

TEST_F(GraphNode, prints_the_conditions_of_an_edge_behind_others_and_an_empty_one)
{
    const NodeSwitch node("Top", tree("d", R"({"Next": {
        "A": {"Type": "SwitchNode", "ConditionWriteOnUrls": [["a"]]}, "B": {},
        "C": {"Type": "SwitchNode", "ConditionWriteOnUrls": [["c"]]}}})"));

    EXPECT_EQ(node.printConditionString("C"), "c");
}

TEST_F(GraphNode, prints_one_line_for_each_path_to_a_leaf)
{
    const NodeSwitch node("A", tree("d", R"({"Next": {
        "C": {"Type": "CommandNode"}, "B": {"Type": "CommandNode"}}})"));

    EXPECT_EQ(paths(node), (QStringList{"A->B", "A->C"}));
}

TEST_F(GraphNode, prints_a_deep_graph)
{
    const NodeSwitch node("Line", tree("d", R"({"Next": {
        "Zone1": {"Type": "SwitchNode", "Next": {
            "Heat": {"Type": "SwitchNode", "Next": {
                "Celsius": {"Type": "CommandNode"},
                "Kelvin": {"Type": "CommandNode", "Next": {"Log": {"Type": "CommandNode"}}}}},
            "Flow": {"Type": "CommandNode"}}},
        "Zone2": {"Type": "SwitchNode", "Next": {
            "Heat": {"Type": "SwitchNode", "Next": {"Celsius": {"Type": "CommandNode"}}}}},
        "Alone": {"Type": "CommandNode"}}})"));

    EXPECT_EQ(paths(node),
              (QStringList{"Line->Alone", "Line->Zone1->Flow", "Line->Zone1->Heat->Celsius",
                           "Line->Zone1->Heat->Kelvin->Log", "Line->Zone2->Heat->Celsius"}));
}

TEST_F(GraphNode, prints_after_the_path_that_it_is_given)
{
    const NodeSwitch leaf("Leaf", nullptr);
    const NodeSwitch node("A", tree("d", R"({"Next": {"B": {"Type": "CommandNode"}}})"));

    EXPECT_EQ(paths(leaf, "before->"), QStringList{"before->Leaf"});
    EXPECT_EQ(paths(node, "before->"), QStringList{"before->A->B"});
}

TEST_F(GraphNode, appends_to_the_lines_that_are_there)
{
    const NodeSwitch node("Leaf", nullptr);
    QString path;
    QStringList lines{"first"};

    EXPECT_TRUE(node.printSuccessors(path, lines));
    EXPECT_EQ(lines, (QStringList{"first", "Leaf"}));
}

TEST_F(GraphNode, empties_the_path_at_a_leaf_and_keeps_it_above)
{
    const NodeSwitch leaf("Leaf", nullptr);
    const NodeSwitch node("A", tree("d", R"({"Next": {"B": {"Type": "CommandNode"}}})"));
    QStringList lines;
    QString path = "before->";

    node.printSuccessors(path, lines);
    EXPECT_EQ(path, "before->");
    leaf.printSuccessors(path, lines);
    EXPECT_EQ(path, "");
}

TEST_F(GraphNode, prints_the_path_above_an_empty_edge_and_starts_anew_after_it)
{
    const NodeSwitch node("Top", tree("d", R"({"Next": {"A": {"Type": "SwitchNode", "Next": {
        "1": {"Type": "CommandNode"}, "2": {}, "3": {"Type": "CommandNode"}, "4": {}}}}})"));

    EXPECT_EQ(paths(node), (QStringList{"Top->A->1", "Top->", "A->3", ""}));
    QStringList lines;
    QString path = "before->";
    node.getSucessorList().constFirst().node->printSuccessors(path, lines);
    EXPECT_EQ(lines, (QStringList{"before->A->1", "before->", "A->3", ""}));
    EXPECT_EQ(path, "");
}

TEST_F(GraphNode, can_be_of_a_type_that_the_host_registered)
{
    class HostNode : public NodeSwitch {
    public:
        using NodeSwitch::NodeSwitch;
        QString getNodeName() const override { return "host's " + NodeSwitch::getNodeName(); }
    };
    const Registered<DependencyWalkerFactory::NodeFactory, HostNode> registered("HostNode");
    const NodeSwitch node("Top", tree("d", R"({"Next": {"A": {"Type": "HostNode",
        "ConditionWriteOnUrls": [["a"]]}}})"));

    EXPECT_EQ(successors(node), QStringList{"host's A"});
    EXPECT_EQ(node.printConditionString("host's A"), "a");
}

} // namespace
