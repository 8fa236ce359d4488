#include "DependencyWalkerFactory.h"

#include "Commands/CommandSetUnitByConfigurationParameter.h"
#include "Commands/CommandSetUnitProperties.h"
#include "Conditions/ConditionValueComparators.h"
#include "Conditions/ConditionWriteOnUrls.h"
#include "Conditions/ConditionWriteOnUrlsRegExp.h"
#include "EngineTest.h"
#include "Nodes/NodeCommand.h"
#include "Nodes/NodeSwitch.h"
#include "Probe.h"

using testhost::Message;
using testhost::table;
using testhost::tree;

namespace {

class WalkerFactory : public testhost::EngineTest {
protected:
    static Message unknownCommand(const QString& text)
    {
        return {QtWarningMsg,
                text,
                "DependencyWalkerFactory",
                63,
                "static void DependencyWalkerFactory::generateCommand(const QString&, "
                "const BaseClassSharedPointer&, QSharedPointer<CommandBase>&)",
                "default"};
    }

    static Message unknownCondition(const QString& text)
    {
        return {QtWarningMsg,
                text,
                "DependencyWalkerFactory",
                74,
                "static void DependencyWalkerFactory::generateConditions(const QString&, "
                "const BaseClassSharedPointer&, QSharedPointer<ConditionBase>&)",
                "default"};
    }
};

template <class Type>
QSharedPointer<NodeBase> nodeOf(const char* type)
{
    QSharedPointer<NodeBase> node;
    DependencyWalkerFactory::generateNode(type, "name", tree("description", "{}"), node);
    EXPECT_TRUE(node.dynamicCast<Type>()) << type;
    return node;
}

template <class Type>
void expectCommand(const char* type)
{
    QSharedPointer<CommandBase> command;
    DependencyWalkerFactory::generateCommand(type, table("[]"), command);
    EXPECT_TRUE(command.dynamicCast<Type>()) << type;
}

template <class Type>
void expectCondition(const char* type)
{
    QSharedPointer<ConditionBase> condition;
    DependencyWalkerFactory::generateConditions(type, table("[]"), condition);
    EXPECT_TRUE(condition.dynamicCast<Type>()) << type;
}

TEST_F(WalkerFactory, makes_each_type_from_the_name_that_descriptions_use)
{
    nodeOf<NodeSwitch>("SwitchNode");
    nodeOf<NodeCommand>("CommandNode");
    expectCommand<CommandSetUnitProperties>("CommandSetUnitProperties");
    expectCommand<CommandSetUnitByConfigurationParameter>("CommandSetUnitByConfigurationParameter");
    expectCondition<ConditionValueComparators>("ConditionValueComparator");
    expectCondition<ConditionWriteOnUrls>("ConditionWriteOnUrls");
    expectCondition<ConditionWriteOnUrlsRegExp>("ConditionWriteOnUrlsRegExp");
}

TEST_F(WalkerFactory, hands_name_and_description_to_the_node)
{
    QSharedPointer<NodeBase> node;
    DependencyWalkerFactory::generateNode(
        "SwitchNode", "Oven", tree("description", R"({"Next": {"A": {"Type": "CommandNode"}}})"),
        node);

    ASSERT_TRUE(node);
    EXPECT_EQ(node->getNodeName(), "Oven");
    EXPECT_EQ(node->getSucessorList().size(), 1);
}

TEST_F(WalkerFactory, hands_the_description_to_the_command_and_the_condition)
{
    QSharedPointer<CommandBase> command;
    DependencyWalkerFactory::generateCommand("CommandSetUnitProperties", table(R"([["a", "K"]])"),
                                             command);
    QSharedPointer<ConditionBase> condition;
    DependencyWalkerFactory::generateConditions("ConditionWriteOnUrls", table(R"([["a"]])"),
                                                condition);

    ASSERT_TRUE(command);
    EXPECT_EQ(command->getCommandAsString(), "SetUnit(a,K,);");
    ASSERT_TRUE(condition);
    EXPECT_EQ(condition->getConditionAsString(), "a");
}

TEST_F(WalkerFactory, makes_no_node_of_an_unknown_type_and_says_nothing)
{
    QSharedPointer<NodeBase> node = nodeOf<NodeSwitch>("SwitchNode");

    DependencyWalkerFactory::generateNode("Unknown", "name", tree("description", "{}"), node);

    EXPECT_TRUE(node.isNull()) << "what the caller held is gone";
}

TEST_F(WalkerFactory, takes_a_node_type_in_another_case_for_unknown)
{
    for (const char* type : {"switchnode", "SWITCHNODE", "switchNode", "NodeSwitch", ""}) {
        QSharedPointer<NodeBase> node;
        DependencyWalkerFactory::generateNode(type, "name", tree("description", "{}"), node);
        EXPECT_TRUE(node.isNull()) << type;
    }
}

TEST_F(WalkerFactory, warns_of_an_unknown_command_and_returns_null)
{
    QSharedPointer<CommandBase> command;
    DependencyWalkerFactory::generateCommand("CommandSetUnitProperties", table("[]"), command);
    ASSERT_TRUE(command);

    DependencyWalkerFactory::generateCommand("Unknown", table("[]"), command);

    EXPECT_TRUE(command.isNull());
    EXPECT_EQ(messages.take(), QList<Message>{unknownCommand(R"(Unknown command "Unknown")")});
}

TEST_F(WalkerFactory, warns_of_an_unknown_condition_and_returns_null)
{
    QSharedPointer<ConditionBase> condition;
    DependencyWalkerFactory::generateConditions("ConditionWriteOnUrls", table("[]"), condition);
    ASSERT_TRUE(condition);

    DependencyWalkerFactory::generateConditions("Unknown", table("[]"), condition);

    EXPECT_TRUE(condition.isNull());
    EXPECT_EQ(messages.take(), QList<Message>{unknownCondition(R"(Unknown condition "Unknown")")});
}

TEST_F(WalkerFactory, does_not_know_class_names_that_differ_from_the_type_names)
{
    QSharedPointer<CommandBase> command;
    DependencyWalkerFactory::generateCommand("CommandSetUnitByConfigurationParameterRegExp",
                                             table("[]"), command);
    QSharedPointer<ConditionBase> condition;
    DependencyWalkerFactory::generateConditions("ConditionValueComparators", table("[]"),
                                                condition);

    EXPECT_TRUE(command.isNull());
    EXPECT_TRUE(condition.isNull());
    EXPECT_EQ(
        messages.take(),
        (QList<Message>{
            unknownCommand(R"(Unknown command "CommandSetUnitByConfigurationParameterRegExp")"),
            unknownCondition(R"(Unknown condition "ConditionValueComparators")")}));
}

TEST_F(WalkerFactory, takes_types_in_another_case_for_unknown)
{
    QSharedPointer<CommandBase> command;
    DependencyWalkerFactory::generateCommand("commandsetunitproperties", table("[]"), command);
    QSharedPointer<ConditionBase> condition;
    DependencyWalkerFactory::generateConditions("conditionWriteOnUrls", table("[]"), condition);

    EXPECT_TRUE(command.isNull());
    EXPECT_TRUE(condition.isNull());
    EXPECT_EQ(messages.take(),
              (QList<Message>{unknownCommand(R"(Unknown command "commandsetunitproperties")"),
                              unknownCondition(R"(Unknown condition "conditionWriteOnUrls")")}));
}

TEST_F(WalkerFactory, quotes_the_type_in_its_warnings_as_qt_does)
{
    QSharedPointer<CommandBase> command;
    DependencyWalkerFactory::generateCommand("a \"b\"\n\\ °C\x01", table("[]"), command);
    DependencyWalkerFactory::generateCommand("", table("[]"), command);

    EXPECT_EQ(messages.take(),
              (QList<Message>{unknownCommand(R"(Unknown command "a \"b\"\n\\ °C\u0001")"),
                              unknownCommand(R"(Unknown command "")")}));
}

TEST_F(WalkerFactory, lists_the_condition_types_in_the_order_of_an_edge)
{
    EXPECT_EQ(DependencyWalkerFactory::getConditionTypeNames(),
              (QStringList{"ConditionValueComparator", "ConditionValueComparatorRegExp",
                           "ConditionWriteOnUrls", "ConditionWriteOnUrlsRegExp"}));
    EXPECT_EQ(&DependencyWalkerFactory::getConditionTypeNames(),
              &DependencyWalkerFactory::getConditionTypeNames());
}

TEST_F(WalkerFactory, lists_every_condition_type_that_is_registered)
{
    const auto& registry = DependencyWalkerFactory::ConditionFactory::instance();
    ASSERT_FALSE(registry.empty());
    for (const auto& entry : registry) {
        EXPECT_TRUE(DependencyWalkerFactory::getConditionTypeNames().contains(entry.first))
            << entry.first.toStdString() << " would never be looked for on an edge";
    }
}

TEST_F(WalkerFactory, makes_every_registered_type_from_nothing)
{
    ASSERT_FALSE(DependencyWalkerFactory::NodeFactory::instance().empty());
    for (const auto& entry : DependencyWalkerFactory::NodeFactory::instance()) {
        SCOPED_TRACE(entry.first.toStdString());
        QSharedPointer<NodeBase> node;
        DependencyWalkerFactory::generateNode(entry.first, "name", nullptr, node);
        ASSERT_TRUE(node);
        EXPECT_TRUE(node->getSucessorList().isEmpty());
    }
    ASSERT_FALSE(DependencyWalkerFactory::CommandFactory::instance().empty());
    for (const auto& entry : DependencyWalkerFactory::CommandFactory::instance()) {
        SCOPED_TRACE(entry.first.toStdString());
        QSharedPointer<CommandBase> command;
        DependencyWalkerFactory::generateCommand(entry.first, nullptr, command);
        ASSERT_TRUE(command);
        EXPECT_EQ(command->getCommandAsString(), "");
        QVariantList results;
        bool changed = false;
        EXPECT_FALSE(command->executeCommand(tree("source", "{}"), tree("target", "{}"), "",
                                             results, changed, {}, {}));
    }
    ASSERT_FALSE(DependencyWalkerFactory::ConditionFactory::instance().empty());
    for (const auto& entry : DependencyWalkerFactory::ConditionFactory::instance()) {
        SCOPED_TRACE(entry.first.toStdString());
        QSharedPointer<ConditionBase> condition;
        DependencyWalkerFactory::generateConditions(entry.first, nullptr, condition);
        ASSERT_TRUE(condition);
        EXPECT_EQ(condition->getConditionAsString(), "");
        EXPECT_EQ(condition->getConditionUrls(), QStringList());
        EXPECT_FALSE(condition->checkCondition(nullptr, nullptr, ""));
    }
}

TEST_F(WalkerFactory, makes_types_that_the_host_registered)
{
    const testhost::Registered<DependencyWalkerFactory::CommandFactory, testhost::ProbeCommand>
        registered("HostCommand");
    QSharedPointer<CommandBase> command;
    DependencyWalkerFactory::generateCommand("HostCommand",
                                             tree("description", R"({"@val": "hello"})"), command);

    ASSERT_TRUE(command.dynamicCast<testhost::ProbeCommand>());
    EXPECT_EQ(command->getCommandAsString(), "hello;");
}

TEST_F(WalkerFactory, makes_what_the_host_registered_over_a_type_of_the_engine)
{
    QSharedPointer<CommandBase> command;
    {
        const testhost::Registered<DependencyWalkerFactory::CommandFactory, testhost::ProbeCommand>
            registered("CommandSetUnitProperties");
        DependencyWalkerFactory::generateCommand("CommandSetUnitProperties", table("[]"), command);
        EXPECT_TRUE(command.dynamicCast<testhost::ProbeCommand>());
    }
    expectCommand<CommandSetUnitProperties>("CommandSetUnitProperties");
}

TEST_F(WalkerFactory, lets_an_object_outlive_its_registration)
{
    QSharedPointer<CommandBase> command;
    {
        const testhost::Registered<DependencyWalkerFactory::CommandFactory, testhost::ProbeCommand>
            registered("HostCommand");
        DependencyWalkerFactory::generateCommand("HostCommand", table(R"("hello")"), command);
    }
    EXPECT_EQ(command->getCommandAsString(), "hello;");
}

} // namespace
