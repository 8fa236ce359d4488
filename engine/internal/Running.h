#ifndef UNITFLOW_INTERNAL_RUNNING_H
#define UNITFLOW_INTERNAL_RUNNING_H

#include "Nodes/NodeBase.h"

namespace internal {

/// Runs a node, and tells the observer before and after.
bool runNode(NodeBase& node, const BaseClassSharedPointer& sourceRoot,
             const BaseClassSharedPointer& targetRoot, const QString& url, QVariantList& results,
             bool& changed, const QVariantList& parameters,
             const QSharedPointer<UnitManipulatorBase>& manipulator);

} // namespace internal

#endif
