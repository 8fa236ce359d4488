#ifndef UNITFLOW_TOOLS_EXPLAIN_TRACETREE_H
#define UNITFLOW_TOOLS_EXPLAIN_TRACETREE_H

#include "trace/Event.h"

#include <QList>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace tools {

// What a trace tells, put together: each node with its edges, each edge with its conditions and
// with what came of following it.

struct ConditionRun {
    TraversalObserver::Condition condition{0, {}};
    QList<TraversalObserver::ConditionRow> rows;
    bool holds = false;
};

struct CommandRun {
    TraversalObserver::Command command{0, {}};
    QList<TraversalObserver::CommandRow> rows;
};

struct NodeRun;

struct EdgeRun {
    /// Nothing when the process ended, or the trace, before it was told.
    std::optional<TraversalObserver::Edge> edge;
    std::vector<ConditionRun> conditions;          ///< those that were asked
    std::vector<std::unique_ptr<NodeRun>> follows; ///< once for each time that it was followed
};

struct NodeRun {
    TraversalObserver::Node node;
    std::optional<TraversalObserver::SelectedNode> selected; ///< of a top-level node
    std::vector<CommandRun> commands;
    std::vector<EdgeRun> edges;
};

struct TraversalRun {
    QString url;
    std::vector<std::unique_ptr<NodeRun>> nodes; ///< the top-level ones that ran
    std::optional<bool> outcome;                 ///< nothing when its end is not told
};

/// What ran for one link, or before the first one.
struct LinkTrace {
    std::optional<trace::Link> link;
    std::vector<TraversalRun> traversals; ///< in the order in which they started
};

/// Puts events together, those of traversals within others included. Events that do not belong
/// where they stand, as in a trace that somebody changed, are passed over.
std::vector<LinkTrace> traceTree(const QList<trace::Event>& events);

/// Whether anything below changed a unit.
bool changesAnything(const NodeRun& node);
bool changesAnything(const LinkTrace& trace);
/// Whether any node ran, one that watches nothing included.
bool runsAnything(const LinkTrace& trace);
/// Whether a node ran that watches the URL.
bool isAnswered(const LinkTrace& trace);
/// Whether all that was started is told to its end.
bool isComplete(const LinkTrace& trace);

} // namespace tools

#endif
