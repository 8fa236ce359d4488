// Every type that a description can name, entered into the registries when the library is loaded.
// The keys are the contract with existing descriptions: two of them differ from their class names.

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
#include "Nodes/NodeCommand.h"
#include "Nodes/NodeSwitch.h"
#include "internal/Types.h"

#include <utility>

namespace {

template <class Factory, class T>
struct Registration {
    explicit Registration(const QString& key)
    {
        Factory::template registerType<T>(key);
        TypeDescription description = T::typeDescription();
        description.name = key;
        internal::registeredTypes().push_back({std::move(description), typeid(T)});
    }
};

template <class T>
using Node = Registration<DependencyWalkerFactory::NodeFactory, T>;
template <class T>
using Command = Registration<DependencyWalkerFactory::CommandFactory, T>;
template <class T>
using Condition = Registration<DependencyWalkerFactory::ConditionFactory, T>;

const Node<NodeSwitch> switchNode(QStringLiteral("SwitchNode"));
const Node<NodeCommand> commandNode(QStringLiteral("CommandNode"));

const Command<CommandSetUnitProperties>
    setUnitProperties(QStringLiteral("CommandSetUnitProperties"));
const Command<CommandSetUnitPropertiesRegExp>
    setUnitPropertiesRegExp(QStringLiteral("CommandSetUnitPropertiesRegExp"));
const Command<CommandSetUnitByConfigurationParameter>
    setUnitByConfigurationParameter(QStringLiteral("CommandSetUnitByConfigurationParameter"));
const Command<CommandSetUnitByConfigurationParameterRegExp> setUnitByConfigurationParameterRegExp(
    QStringLiteral("CommandSetUnitByConfigurationParameterInstRegExp"));
const Command<CommandSetUnitByConfigurationParameterArray> setUnitByConfigurationParameterArray(
    QStringLiteral("CommandSetUnitByConfigurationParameterArray"));

const Condition<ConditionValueComparators>
    valueComparator(QStringLiteral("ConditionValueComparator"));
const Condition<ConditionValueComparatorRegExp>
    valueComparatorRegExp(QStringLiteral("ConditionValueComparatorRegExp"));
const Condition<ConditionWriteOnUrls> writeOnUrls(QStringLiteral("ConditionWriteOnUrls"));
const Condition<ConditionWriteOnUrlsRegExp>
    writeOnUrlsRegExp(QStringLiteral("ConditionWriteOnUrlsRegExp"));

} // namespace
