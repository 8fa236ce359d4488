#include "Nodes/NodeSwitch.h"

#include "Conditions/ConditionBase.h"
#include "internal/Observing.h"
#include "internal/Running.h"
#include "internal/Types.h"

using Decision = TraversalObserver::EdgeDecision;

namespace {

/// Asks a condition, and tells the observer. A null one always holds.
bool holds(int index, const ConditionBase* condition, const BaseClassSharedPointer& sourceRoot,
           const BaseClassSharedPointer& targetRoot, const QString& url)
{
    const auto check = [&] {
        return condition == nullptr || condition->checkCondition(sourceRoot, targetRoot, url);
    };
    TraversalObserver* const listener = internal::observer();
    if (listener == nullptr) {
        return check();
    }
    const TraversalObserver::Condition told{
        index, condition == nullptr ? QString() : internal::typeName(typeid(*condition))};
    listener->conditionStarted(told);
    const bool isHeld = check();
    listener->conditionFinished(told, isHeld);
    return isHeld;
}

} // namespace

NodeSwitch::NodeSwitch(const QString& name, const BaseClassSharedPointer& description)
    : NodeBase(name, description)
{}

NodeSwitch::~NodeSwitch() = default;

bool NodeSwitch::traverseNode(const BaseClassSharedPointer& sourceRoot,
                              const BaseClassSharedPointer& targetRoot, const QString& url,
                              QVariantList& results, bool& changed, const QVariantList& parameters,
                              const QSharedPointer<UnitManipulatorBase>& manipulator)
{
    if (sourceRoot.isNull()) {
        return false;
    }
    bool outcome = false;
    const auto follow = [&](NodeBase& node) {
        if (internal::runNode(node, sourceRoot, targetRoot, url, results, changed, parameters,
                              manipulator)) {
            outcome = true;
        }
    };

    const QList<SuccessorType> edges = successors; // the host may add edges meanwhile
    for (int index = 0; index < edges.size(); ++index) {
        const SuccessorType& edge = edges.at(index);
        NodeBase* const node = edge.node.data();
        if (node == nullptr) {
            internal::reportEdge(index, node, Decision::LeadsNowhere);
            continue;
        }
        if (edge.conditions.isEmpty()) {
            internal::reportEdge(index, node, Decision::FollowedAlways);
            follow(*node);
            continue;
        }
        bool isFollowed = false;
        // Conditions are alternatives and each one that holds counts: two run the successor twice.
        for (int number = 0; number < edge.conditions.size(); ++number) {
            const ConditionBase* const condition = edge.conditions.at(number).data();
            if (holds(number, condition, sourceRoot, targetRoot, url)) {
                internal::reportEdge(index, node, Decision::FollowedByCondition);
                follow(*node);
                isFollowed = true;
            }
        }
        if (!isFollowed) {
            internal::reportEdge(index, node, Decision::NoConditionHolds);
        }
    }
    return outcome;
}

TypeDescription NodeSwitch::typeDescription()
{
    TypeDescription type{TypeDescription::Kind::Node,
                         {},
                         QStringLiteral("Follows each edge whose conditions allow it."),
                         {}};
    type.asksConditions = true;
    return type;
}
