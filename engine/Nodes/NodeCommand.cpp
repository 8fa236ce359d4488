#include "Nodes/NodeCommand.h"

#include "Commands/CommandBase.h"
#include "DependencyWalkerDefinitions.h"
#include "DependencyWalkerFactory.h"
#include "internal/Children.h"

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
    for (const QSharedPointer<CommandBase>& command : qAsConst(commands)) {
        if (command->executeCommand(sourceRoot, targetRoot, url, results, changed, parameters,
                                    manipulator)) {
            outcome = true;
        }
    }
    // Several edges lead nowhere: only a switch node chooses. Edges that a command added count,
    // those that are added below do not.
    const QList<SuccessorType> edges = successors;
    if (edges.size() != 1 || edges.constFirst().node.isNull()) {
        return outcome;
    }
    const bool below = edges.constFirst().node->traverseNode(sourceRoot, targetRoot, url, results,
                                                             changed, parameters, manipulator);
    return outcome || below;
}
