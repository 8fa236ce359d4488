#include "Nodes/NodeBase.h"

#include "Conditions/ConditionBase.h"
#include "DependencyWalkerDefinitions.h"
#include "DependencyWalkerFactory.h"
#include "internal/Children.h"
#include "internal/WatchedUrls.h"

namespace {

/// The conditions that guard the edge to a successor, written inside the successor's description.
/// A condition that cannot be made stays as a null one, which never blocks the edge.
QList<QSharedPointer<ConditionBase>> makeConditions(const BaseClassSharedPointer& description)
{
    QList<QSharedPointer<ConditionBase>> conditions;
    for (const QString& type : DependencyWalkerFactory::getConditionTypeNames()) {
        if (!description->hasChildData(type)) {
            continue;
        }
        const BaseClassSharedPointer conditionDescription = description->getChildData(type);
        if (conditionDescription.isNull()) {
            continue;
        }
        QSharedPointer<ConditionBase> condition;
        DependencyWalkerFactory::generateConditions(type, conditionDescription, condition);
        conditions.append(condition);
    }
    return conditions;
}

/// An edge without a node is kept: it counts among a command node's edges.
NodeBase::SuccessorType makeEdge(const QString& name, const BaseClassSharedPointer& description)
{
    NodeBase::SuccessorType edge;
    const QVariant type = internal::nodeType(description);
    if (type.canConvert(QMetaType::QString)) {
        DependencyWalkerFactory::generateNode(type.toString(), name, description, edge.node);
    }
    if (!edge.node.isNull()) {
        edge.conditions = makeConditions(description);
    }
    return edge;
}

} // namespace

NodeBase::NodeBase(const QString& name, const BaseClassSharedPointer& description) : name(name)
{
    initNodeEdges(description);
}

NodeBase::~NodeBase() = default;

bool NodeBase::initNodeEdges(const BaseClassSharedPointer& description)
{
    if (description.isNull()) {
        return true;
    }
    const BaseClassSharedPointer next =
        description->getChildMap().value(DependencyWalkerDefinitions::getNextNodeKeyword());
    if (next.isNull()) {
        return true;
    }
    for (const auto& [successorName, successor] : internal::sortedChildren(*next)) {
        successors.append(makeEdge(successorName, successor));
    }
    return true;
}

QStringList NodeBase::getConditionUrls() const
{
    QStringList urls;
    for (const SuccessorType& edge : successors) {
        if (!edge.node.isNull()) {
            urls.append(edge.node->getConditionUrls());
        }
        for (const QSharedPointer<ConditionBase>& condition : edge.conditions) {
            if (!condition.isNull()) {
                urls.append(condition->getConditionUrls());
            }
        }
    }
    internal::keepFirsts(urls);
    return urls;
}

QString NodeBase::getNodeName() const
{
    return name;
}

QList<NodeBase::SuccessorType> NodeBase::getSucessorList() const
{
    return successors;
}

QString NodeBase::printConditionString(const QString& successorName) const
{
    QString text;
    for (const SuccessorType& edge : successors) {
        if (edge.node.isNull() || edge.node->getNodeName() != successorName) {
            continue;
        }
        for (const QSharedPointer<ConditionBase>& condition : edge.conditions) {
            if (!condition.isNull()) {
                text.append(condition->getConditionAsString());
            }
        }
    }
    return text;
}

bool NodeBase::printSuccessors(QString& path, QStringList& lines) const
{
    if (successors.isEmpty()) {
        lines.append(path + name);
        path = QLatin1String("");
        return true;
    }
    for (const SuccessorType& edge : successors) {
        if (edge.node.isNull()) {
            // The line ends above this node, and later edges start anew: kept as it always was.
            lines.append(path);
            path = QLatin1String("");
            continue;
        }
        QString longerPath = path + name + QStringLiteral("->");
        edge.node->printSuccessors(longerPath, lines);
    }
    return true;
}
