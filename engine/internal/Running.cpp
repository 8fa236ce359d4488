#include "internal/Running.h"

#include "internal/Observing.h"
#include "internal/Types.h"

namespace internal {

bool runNode(NodeBase& node, const BaseClassSharedPointer& sourceRoot,
             const BaseClassSharedPointer& targetRoot, const QString& url, QVariantList& results,
             bool& changed, const QVariantList& parameters,
             const QSharedPointer<UnitManipulatorBase>& manipulator)
{
    const auto run = [&] {
        return node.traverseNode(sourceRoot, targetRoot, url, results, changed, parameters,
                                 manipulator);
    };
    TraversalObserver* const listener = observer();
    if (listener == nullptr) {
        return run();
    }
    const TraversalObserver::Node told{node.getNodeName(), typeName(typeid(node))};
    listener->nodeEntered(told);
    const bool outcome = run();
    listener->nodeLeft(told, outcome);
    return outcome;
}

} // namespace internal
