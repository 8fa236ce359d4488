#ifndef UNITFLOW_INTERNAL_RUNNING_H
#define UNITFLOW_INTERNAL_RUNNING_H

#include "Nodes/NodeBase.h"
#include "internal/Observing.h"

namespace internal {

bool runObserved(TraversalObserver& listener, NodeBase& node,
                 const BaseClassSharedPointer& sourceRoot, const BaseClassSharedPointer& targetRoot,
                 const QString& url, QVariantList& results, bool& changed,
                 const QVariantList& parameters,
                 const QSharedPointer<UnitManipulatorBase>& manipulator);

/// Runs a node, and tells the observer before and after.
inline bool runNode(NodeBase& node, const BaseClassSharedPointer& sourceRoot,
                    const BaseClassSharedPointer& targetRoot, const QString& url,
                    QVariantList& results, bool& changed, const QVariantList& parameters,
                    const QSharedPointer<UnitManipulatorBase>& manipulator)
{
    TraversalObserver* const listener = observer();
    if (listener == nullptr) {
        return node.traverseNode(sourceRoot, targetRoot, url, results, changed, parameters,
                                 manipulator);
    }
    return runObserved(*listener, node, sourceRoot, targetRoot, url, results, changed, parameters,
                       manipulator);
}

} // namespace internal

#endif
