#include "Nodes/NodeCommand.h"

#include "Commands/CommandBase.h"
#include "DependencyWalkerDefinitions.h"
#include "DependencyWalkerFactory.h"
#include "internal/Children.h"
#include "internal/Observing.h"
#include "internal/Running.h"
#include "internal/Types.h"

using Decision = TraversalObserver::EdgeDecision;

namespace {

/// Executes a command, and tells the observer before and after.
template <class Execute>
bool observed(int index, CommandBase& command, const Execute& execute)
{
    TraversalObserver* const listener = internal::observer();
    if (listener == nullptr) {
        return execute(command);
    }
    const TraversalObserver::Command told{index, internal::typeName(typeid(command))};
    listener->commandStarted(told);
    const bool outcome = execute(command);
    listener->commandFinished(told, outcome);
    return outcome;
}

} // namespace

NodeCommand::NodeCommand(const QString& name, const BaseClassSharedPointer& description)
    : NodeBase(name, description)
{
    if (description.isNull()) {
        return;
    }
    const BaseClassSharedPointer commandsDescription =
        description->getChildData(DependencyWalkerDefinitions::getCommandKeyword());
    if (commandsDescription.isNull()) {
        return;
    }
    for (const auto& [type, commandDescription] : internal::sortedChildren(*commandsDescription)) {
        QSharedPointer<CommandBase> command;
        DependencyWalkerFactory::generateCommand(type, commandDescription, command);
        if (!command.isNull()) {
            commands.append(command);
        }
    }
}

NodeCommand::~NodeCommand() = default;

QString NodeCommand::getCommandAsString() const
{
    QString text;
    for (const QSharedPointer<CommandBase>& command : commands) {
        text.append(command->getCommandAsString());
    }
    return text;
}

bool NodeCommand::traverseNode(const BaseClassSharedPointer& sourceRoot,
                               const BaseClassSharedPointer& targetRoot, const QString& url,
                               QVariantList& results, bool& changed, const QVariantList& parameters,
                               const QSharedPointer<UnitManipulatorBase>& manipulator)
{
    if (sourceRoot.isNull()) {
        return false;
    }
    bool outcome = false;
    for (int index = 0; index < commands.size(); ++index) {
        const auto execute = [&](CommandBase& command) {
            return command.executeCommand(sourceRoot, targetRoot, url, results, changed, parameters,
                                          manipulator);
        };
        if (observed(index, *commands.at(index), execute)) {
            outcome = true;
        }
    }
    // Several edges lead nowhere: only a switch node chooses. Edges that a command added count,
    // those that are added below do not.
    const QList<SuccessorType> edges = successors;
    if (edges.size() != 1) {
        for (int index = 0; index < edges.size(); ++index) {
            internal::reportEdge(index, edges.at(index).node.data(), Decision::OneOfSeveral);
        }
        return outcome;
    }
    const QSharedPointer<NodeBase>& successor = edges.constFirst().node;
    if (successor.isNull()) {
        internal::reportEdge(0, nullptr, Decision::LeadsNowhere);
        return outcome;
    }
    internal::reportEdge(0, successor.data(), Decision::FollowedAsOnly);
    const bool below = internal::runNode(*successor, sourceRoot, targetRoot, url, results, changed,
                                         parameters, manipulator);
    return outcome || below;
}

TypeDescription NodeCommand::typeDescription()
{
    TypeDescription type{
        TypeDescription::Kind::Node,
        {},
        QStringLiteral("Runs its commands, then the node behind its edge if it has just one."),
        {}};
    type.runsCommands = true;
    return type;
}
