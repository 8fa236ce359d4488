#ifndef UNITFLOW_NODES_NODEBASE_H
#define UNITFLOW_NODES_NODEBASE_H

#include "Export.h"
#include "host/ConfigurationAndProcessDataBase.h"

#include <QList>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QVariantList>

class ConditionBase;
class UnitManipulatorBase;

/// A node of the dependency graph: a name and outgoing edges. A node builds its whole subgraph in
/// its constructor and is not changed afterwards.
class UNITFLOW_EXPORT NodeBase {
public:
    /// One edge.
    struct SuccessorType {
        QList<QSharedPointer<ConditionBase>> conditions; ///< alternatives; a null one always holds
        QSharedPointer<NodeBase> node;                   ///< null when no node could be made
    };

    /// `description` may be null, which gives a node without edges.
    NodeBase(const QString& name, const BaseClassSharedPointer& description);
    NodeBase(const NodeBase&) = delete;
    NodeBase& operator=(const NodeBase&) = delete;
    virtual ~NodeBase();

    /// Runs this node and what follows it; returns whether any command below succeeded. The
    /// arguments are those of `DependencyWalker::traverseDependencyGraph` and are passed on
    /// unchanged. A null `sourceRoot` gives false at once.
    virtual bool traverseNode(const BaseClassSharedPointer& sourceRoot,
                              const BaseClassSharedPointer& targetRoot, const QString& url,
                              QVariantList& results, bool& changed, const QVariantList& parameters,
                              const QSharedPointer<UnitManipulatorBase>& manipulator) = 0;

    /// What the conditions of the whole subgraph watch, each entry once. Patterns carry their
    /// prefix.
    virtual QStringList getConditionUrls() const;

    virtual QString getNodeName() const;

    /// The edges, in build order. The spelling is part of the interface.
    virtual QList<SuccessorType> getSucessorList() const;

    /// Appends to `lines` one line for each path from this node down to a leaf: names joined by
    /// "->", after what `path` holds. Always true. An edge without a node adds `path` as it stands
    /// and empties it; a leaf empties it too.
    virtual bool printSuccessors(QString& path, QStringList& lines) const;

    /// Appends the edges that `description` holds under "Next". Always true, also for null.
    bool initNodeEdges(const BaseClassSharedPointer& description);

    /// The conditions, as text and run together, of every edge to a successor of that name.
    QString printConditionString(const QString& successorName) const;

protected:
    QList<SuccessorType> successors; ///< outgoing edges, in build order
    QString name;                    ///< the node's name
};

#endif
