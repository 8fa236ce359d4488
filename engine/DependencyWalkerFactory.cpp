#include "DependencyWalkerFactory.h"

#include "Commands/CommandBase.h"
#include "Conditions/ConditionBase.h"
#include "Nodes/NodeBase.h"
#include "internal/Warning.h"

template class VelmarFactories::Factory<NodeBase, const QString&, const BaseClassSharedPointer&>;
template class VelmarFactories::Factory<CommandBase, const BaseClassSharedPointer&>;
template class VelmarFactories::Factory<ConditionBase, const BaseClassSharedPointer&>;

namespace {

constexpr internal::WarningPlace unknownCommand{
    "DependencyWalkerFactory", 63,
    "static void DependencyWalkerFactory::generateCommand(const QString&, "
    "const BaseClassSharedPointer&, QSharedPointer<CommandBase>&)"};

constexpr internal::WarningPlace unknownCondition{
    "DependencyWalkerFactory", 74,
    "static void DependencyWalkerFactory::generateConditions(const QString&, "
    "const BaseClassSharedPointer&, QSharedPointer<ConditionBase>&)"};

} // namespace

void DependencyWalkerFactory::generateNode(const QString& type, const QString& name,
                                           const BaseClassSharedPointer& description,
                                           QSharedPointer<NodeBase>& node)
{
    node = QSharedPointer<NodeBase>(NodeFactory::create(type, name, description));
}

void DependencyWalkerFactory::generateCommand(const QString& type,
                                              const BaseClassSharedPointer& description,
                                              QSharedPointer<CommandBase>& command)
{
    command = QSharedPointer<CommandBase>(CommandFactory::create(type, description));
    if (command.isNull()) {
        internal::warning(unknownCommand) << "Unknown command" << type;
    }
}

void DependencyWalkerFactory::generateConditions(const QString& type,
                                                 const BaseClassSharedPointer& description,
                                                 QSharedPointer<ConditionBase>& condition)
{
    condition = QSharedPointer<ConditionBase>(ConditionFactory::create(type, description));
    if (condition.isNull()) {
        internal::warning(unknownCondition) << "Unknown condition" << type;
    }
}

const QStringList& DependencyWalkerFactory::getConditionTypeNames()
{
    static const QStringList names{QStringLiteral("ConditionValueComparator"),
                                   QStringLiteral("ConditionValueComparatorRegExp"),
                                   QStringLiteral("ConditionWriteOnUrls"),
                                   QStringLiteral("ConditionWriteOnUrlsRegExp")};
    return names;
}
