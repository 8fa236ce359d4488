#include "Commands/CommandSetUnitByConfigurationParameter.h"
#include "Commands/CommandSetUnitByConfigurationParameterArray.h"
#include "Commands/CommandSetUnitByConfigurationParameterInstRegExp.h"
#include "Commands/CommandSetUnitProperties.h"
#include "Commands/CommandSetUnitPropertiesRegExp.h"
#include "Conditions/ConditionValueComparatorRegExp.h"
#include "Conditions/ConditionValueComparators.h"
#include "Conditions/ConditionWriteOnUrls.h"
#include "Conditions/ConditionWriteOnUrlsRegExp.h"
#include "DependencyWalkerFactory.h"
#include "EngineTest.h"
#include "Nodes/NodeCommand.h"
#include "Nodes/NodeSwitch.h"

#include <map>
#include <memory>
#include <string>
#include <typeinfo>

using testhost::Message;

namespace {

/// What a test knows of the registered types of one family: the class that each type name makes.
using Classes = std::map<QString, std::string>;

const Classes nodes{{"SwitchNode", typeid(NodeSwitch).name()},
                    {"CommandNode", typeid(NodeCommand).name()}};

const Classes commands{
    {"CommandSetUnitProperties", typeid(CommandSetUnitProperties).name()},
    {"CommandSetUnitPropertiesRegExp", typeid(CommandSetUnitPropertiesRegExp).name()},
    {"CommandSetUnitByConfigurationParameter",
     typeid(CommandSetUnitByConfigurationParameter).name()},
    {"CommandSetUnitByConfigurationParameterInstRegExp",
     typeid(CommandSetUnitByConfigurationParameterRegExp).name()},
    {"CommandSetUnitByConfigurationParameterArray",
     typeid(CommandSetUnitByConfigurationParameterArray).name()}};

const Classes conditions{
    {"ConditionValueComparator", typeid(ConditionValueComparators).name()},
    {"ConditionValueComparatorRegExp", typeid(ConditionValueComparatorRegExp).name()},
    {"ConditionWriteOnUrls", typeid(ConditionWriteOnUrls).name()},
    {"ConditionWriteOnUrlsRegExp", typeid(ConditionWriteOnUrlsRegExp).name()}};

/// The class that each registered type makes from `args`.
template <class Factory, class Base, class... Args>
Classes registered(const Args&... args)
{
    Classes classes;
    for (const auto& entry : Factory::instance()) {
        const std::unique_ptr<Base> object(Factory::create(entry.first, args...));
        const Base& made = *object;
        classes.emplace(entry.first, typeid(made).name());
    }
    return classes;
}

class Registrations : public testhost::EngineTest {
protected:
    BaseClassSharedPointer nothing;
};

TEST_F(Registrations, hold_exactly_the_eleven_types_each_under_its_type_name)
{
    using Factory = DependencyWalkerFactory;

    EXPECT_EQ((registered<Factory::NodeFactory, NodeBase>(QString("name"), nothing)), nodes);
    EXPECT_EQ((registered<Factory::CommandFactory, CommandBase>(nothing)), commands);
    EXPECT_EQ((registered<Factory::ConditionFactory, ConditionBase>(nothing)), conditions);
    EXPECT_EQ(nodes.size() + commands.size() + conditions.size(), 11U);
}

TEST_F(Registrations, differ_from_the_class_name_for_two_types_only)
{
    QSharedPointer<CommandBase> command;
    DependencyWalkerFactory::generateCommand("CommandSetUnitByConfigurationParameterInstRegExp",
                                             testhost::table(R"([["p", "t"]])"), command);
    ASSERT_TRUE(command.dynamicCast<CommandSetUnitByConfigurationParameterRegExp>());
    DependencyWalkerFactory::generateCommand("CommandSetUnitByConfigurationParameterRegExp",
                                             nothing, command);
    EXPECT_TRUE(command.isNull());

    QSharedPointer<ConditionBase> condition;
    DependencyWalkerFactory::generateConditions("ConditionValueComparator", nothing, condition);
    ASSERT_TRUE(condition.dynamicCast<ConditionValueComparators>());
    EXPECT_FALSE(condition.dynamicCast<ConditionValueComparatorRegExp>());
    DependencyWalkerFactory::generateConditions("ConditionValueComparators", nothing, condition);
    EXPECT_TRUE(condition.isNull());

    QStringList texts;
    for (const Message& message : messages.take()) {
        texts.append(message.text);
    }
    EXPECT_EQ(texts,
              (QStringList{R"(Unknown command "CommandSetUnitByConfigurationParameterRegExp")",
                           R"(Unknown condition "ConditionValueComparators")"}));
}

TEST_F(Registrations, hand_its_description_to_every_command_and_condition)
{
    const BaseClassSharedPointer description =
        testhost::table(R"([["a"], ["a", "b"], ["a", "==", "c"], ["a", "b", "c", "d"]])");
    const BaseClassSharedPointer longRows = testhost::table(R"([["a", "b", "c"]])");
    int walked = 0;
    for (const auto& type : commands) {
        QSharedPointer<CommandBase> command;
        DependencyWalkerFactory::generateCommand(type.first, longRows, command);
        ASSERT_TRUE(command) << type.first.toStdString();
        const bool twoCells =
            type.first == QLatin1String("CommandSetUnitByConfigurationParameterInstRegExp");
        EXPECT_EQ(command->getCommandAsString().contains("a,b"), !twoCells)
            << type.first.toStdString();
        ++walked;
    }
    for (const auto& type : conditions) {
        QSharedPointer<ConditionBase> condition;
        DependencyWalkerFactory::generateConditions(type.first, description, condition);
        ASSERT_TRUE(condition) << type.first.toStdString();
        EXPECT_TRUE(condition->getConditionAsString().startsWith('a')) << type.first.toStdString();
        ++walked;
    }
    EXPECT_EQ(walked, 9);
}

TEST_F(Registrations, let_one_node_of_a_description_carry_every_type)
{
    const auto description = testhost::tree("description", R"-({
        "Next": {"Below": {
            "Type": "CommandNode",
            "ConditionValueComparator": [["v", "==", 1]],
            "ConditionValueComparatorRegExp": [["vr", "==", 1]],
            "ConditionWriteOnUrls": [["w"]],
            "ConditionWriteOnUrlsRegExp": [["wr"]],
            "Commands": {
                "CommandSetUnitProperties": [["a", "b"]],
                "CommandSetUnitPropertiesRegExp": [["a", "b", "c"]],
                "CommandSetUnitByConfigurationParameter": [["a", "b", "c"]],
                "CommandSetUnitByConfigurationParameterInstRegExp": [["a", "b"]],
                "CommandSetUnitByConfigurationParameterArray": [["a", "b"]]
            }}}})-");
    QSharedPointer<NodeBase> node;
    DependencyWalkerFactory::generateNode("SwitchNode", "Top", description, node);

    ASSERT_TRUE(node);
    EXPECT_EQ(node->getConditionUrls(), (QStringList{"v", "RE:vr", "w", "RE:wr"}));
    EXPECT_EQ(node->printConditionString("Below"), "v==1vr==1wwr");
    ASSERT_EQ(node->getSucessorList().size(), 1);
    const auto below = node->getSucessorList().constFirst().node.dynamicCast<NodeCommand>();
    ASSERT_TRUE(below);
    EXPECT_EQ(below->getCommandAsString(), "SetUnitByConfigurationParameter(a,b,c);"
                                           "CommandSetUnitByConfigurationParameterArray(a,,b);"
                                           "CommandSetUnitByConfigurationParameterRegExp(a,b);"
                                           "SetUnit(a,b,);SetUnitRegExp(a,b,c,);");
}

} // namespace
