#ifndef UNITFLOW_TOOLS_GRAPH_MERMAIDTEXT_H
#define UNITFLOW_TOOLS_GRAPH_MERMAIDTEXT_H

#include "tools/graph/Graph.h"

#include <QString>

namespace tools {

/// A graph as a flowchart for Mermaid, from left to right. Names and cells are spelled so that
/// none can be taken for something of the language.
QString mermaidText(const Graph& graph);

} // namespace tools

#endif
