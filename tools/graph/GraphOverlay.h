#ifndef UNITFLOW_TOOLS_GRAPH_GRAPHOVERLAY_H
#define UNITFLOW_TOOLS_GRAPH_GRAPHOVERLAY_H

#include "tools/explain/TraceTree.h"
#include "tools/graph/Graph.h"

namespace tools {

/// Lays what was run for a link, or for one that the trace does not name, over a graph: as its
/// trace, and on the nodes and rows that ran. False when something ran that the graph does not
/// have, as when its description was changed since.
bool addTrace(Graph& graph, const LinkTrace& run);

} // namespace tools

#endif
