#ifndef UNITFLOW_INTERNAL_CHILDREN_H
#define UNITFLOW_INTERNAL_CHILDREN_H

#include "host/ConfigurationAndProcessDataBase.h"

#include <QString>
#include <QVarLengthArray>

#include <utility>

namespace internal {

using Child = std::pair<QString, BaseClassSharedPointer>;
using Children = QVarLengthArray<Child, 4>; // most nodes have few

/// The children of a node in ascending key order, so that a graph is built alike in every process
/// whatever the hash seed. A copy: the host may change its node while it is walked.
Children sortedChildren(const ConfigurationAndProcessDataBase& node);

/// The type that a node's description names; invalid when there is none.
QVariant nodeType(const BaseClassSharedPointer& description);

} // namespace internal

#endif
