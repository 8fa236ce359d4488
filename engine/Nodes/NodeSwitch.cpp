#include "Nodes/NodeSwitch.h"

#include "Conditions/ConditionBase.h"

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
    const auto follow = [&](const SuccessorType& edge) {
        if (!edge.node.isNull() && edge.node->traverseNode(sourceRoot, targetRoot, url, results,
                                                           changed, parameters, manipulator)) {
            outcome = true;
        }
    };

    const QList<SuccessorType> edges = successors; // the host may add edges meanwhile
    for (const SuccessorType& edge : edges) {
        if (edge.conditions.isEmpty()) {
            follow(edge);
        }
        // Conditions are alternatives and each one that holds counts: two run the successor twice.
        for (const QSharedPointer<ConditionBase>& condition : edge.conditions) {
            if (condition.isNull() || condition->checkCondition(sourceRoot, targetRoot, url)) {
                follow(edge);
            }
        }
    }
    return outcome;
}
