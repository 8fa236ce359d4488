#ifndef UNITFLOW_NODES_NODECOMMAND_H
#define UNITFLOW_NODES_NODECOMMAND_H

#include "Nodes/NodeBase.h"
#include "TypeDescription.h"

class CommandBase;

/// A node that runs commands ("CommandNode").
class UNITFLOW_EXPORT NodeCommand : public NodeBase {
public:
    /// Reads the commands below "Commands", in ascending order of their type names. Commands of an
    /// unknown type are left out.
    NodeCommand(const QString& name, const BaseClassSharedPointer& description);
    ~NodeCommand() override;

    /// The commands as text, run together.
    QString getCommandAsString() const;

    /// Runs every command, then the successor if there is exactly one. The conditions on that edge
    /// are not asked; with two or more edges none is followed.
    bool traverseNode(const BaseClassSharedPointer& sourceRoot,
                      const BaseClassSharedPointer& targetRoot, const QString& url,
                      QVariantList& results, bool& changed, const QVariantList& parameters,
                      const QSharedPointer<UnitManipulatorBase>& manipulator) override;

    /// What it is for; `name` is left to the registration.
    static TypeDescription typeDescription();

private:
    QList<QSharedPointer<CommandBase>> commands; // in creation order
};

#endif
