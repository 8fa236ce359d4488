#ifndef UNITFLOW_TOOLS_GRAPH_DOTTEXT_H
#define UNITFLOW_TOOLS_GRAPH_DOTTEXT_H

#include "tools/graph/Graph.h"

#include <QString>

namespace tools {

/// A graph for Graphviz, laid out from left to right: what is watched, then the nodes. Everything
/// has an id, and classes for what it is and in which state; in an SVG, Graphviz puts "node" or
/// "edge" in front of them.
QString dotText(const Graph& graph);

} // namespace tools

#endif
