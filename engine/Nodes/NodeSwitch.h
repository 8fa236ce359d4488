#ifndef UNITFLOW_NODES_NODESWITCH_H
#define UNITFLOW_NODES_NODESWITCH_H

#include "Nodes/NodeBase.h"
#include "TypeDescription.h"

/// A node that branches ("SwitchNode").
class UNITFLOW_EXPORT NodeSwitch : public NodeBase {
public:
    NodeSwitch(const QString& name, const BaseClassSharedPointer& description);
    ~NodeSwitch() override;

    /// Follows each edge without conditions once, and each other edge once for every condition of
    /// it that holds: conditions are alternatives, and two that hold run the successor twice.
    bool traverseNode(const BaseClassSharedPointer& sourceRoot,
                      const BaseClassSharedPointer& targetRoot, const QString& url,
                      QVariantList& results, bool& changed, const QVariantList& parameters,
                      const QSharedPointer<UnitManipulatorBase>& manipulator) override;

    /// What it is for; `name` is left to the registration.
    static TypeDescription typeDescription();
};

#endif
