#ifndef UNITFLOW_TOOLS_GRAPH_DOTTEXT_H
#define UNITFLOW_TOOLS_GRAPH_DOTTEXT_H

#include "tools/graph/Graph.h"

#include <QString>

namespace tools {

/// A graph for Graphviz, laid out from left to right: what is watched, then the nodes. Everything
/// has an id and a class, which an SVG made of it keeps.
QString dotText(const Graph& graph);

} // namespace tools

#endif
