#include "internal/Running.h"

#include "internal/Types.h"

namespace internal {

bool runObserved(TraversalObserver& listener, NodeBase& node,
                 const BaseClassSharedPointer& sourceRoot, const BaseClassSharedPointer& targetRoot,
                 const QString& url, QVariantList& results, bool& changed,
                 const QVariantList& parameters,
                 const QSharedPointer<UnitManipulatorBase>& manipulator)
{
    const TraversalObserver::Node told{node.getNodeName(), typeName(typeid(node))};
    listener.nodeEntered(told);
    const bool outcome =
        node.traverseNode(sourceRoot, targetRoot, url, results, changed, parameters, manipulator);
    listener.nodeLeft(told, outcome);
    return outcome;
}

} // namespace internal
