#ifndef UNITFLOW_TOOLS_GRAPH_GRAPHENTRIES_H
#define UNITFLOW_TOOLS_GRAPH_GRAPHENTRIES_H

#include "tools/graph/Graph.h"

#include <QString>

#include <vector>

namespace tools {

/// What stands in front of top-level nodes in a picture: why they run.
struct GraphEntry {
    QString id;       ///< "w1"
    GraphWatch watch; ///< empty for every write
    bool isEveryWrite = false;
    std::vector<int> nodes; ///< ascending
    bool ran = false;       ///< in the trace
};

/// Every watched URL and pattern once, in the order of the text; every write last.
std::vector<GraphEntry> entriesOf(const Graph& graph);

} // namespace tools

#endif
