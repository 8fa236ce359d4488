#ifndef UNITFLOW_TOOLS_GRAPH_GRAPHJSON_H
#define UNITFLOW_TOOLS_GRAPH_GRAPHJSON_H

#include "tools/graph/Graph.h"

namespace tools {

class JsonDocument;

/// Adds a graph as members of a document.
void addGraph(JsonDocument& document, const Graph& graph);

} // namespace tools

#endif
