#ifndef UNITFLOW_TOOLS_GRAPH_GRAPHRUNS_H
#define UNITFLOW_TOOLS_GRAPH_GRAPHRUNS_H

#include "host/ConfigurationAndProcessDataBase.h"
#include "tools/graph/Graph.h"

#include <QStringList>

namespace tools {

// What the engine makes of a graph. It is asked by running it: on a description of the same nodes
// and rows in which each comparison holds, because values may become any.

/// The paths from the top-level nodes down, as the engine prints them and in its order. An edge
/// that leads nowhere ends a path above it, which may leave an empty one.
QStringList pathsOf(const Graph& graph);

/// Adds what is watched, what can be reached and what writes run. A write is a watched URL or one
/// that a watched pattern matches, and no other pattern and no other watched URL with it. A node is
/// reached if a write runs it; where patterns stand behind one another, they are taken to match
/// together.
///
/// Costs a run of the nodes that watch it for each URL and pattern.
void addRuns(Graph& graph);

/// The trees of a link.
struct GraphTrees {
    BaseClassSharedPointer source;
    BaseClassSharedPointer target;
    BaseClassSharedPointer scratch; ///< like the target, to be changed
};

/// The same for the link of the graph: comparisons hold where the source has a value, and each leaf
/// of the source that something watches is a write as well. Adds the targets of rows too. Costs a
/// run for each leaf of the source and each watched URL.
void addRuns(Graph& graph, const GraphTrees& trees);

} // namespace tools

#endif
