#ifndef UNITFLOW_TOOLS_GRAPH_GRAPHWORDS_H
#define UNITFLOW_TOOLS_GRAPH_GRAPHWORDS_H

#include "tools/graph/Graph.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace tools {

// What is written into a picture of a graph, and behind it. All of it is printable.

/// A line of a picture.
struct GraphLine {
    enum class Mood {
        Plain,
        Quiet,  ///< has no effect, or tells of something else
        Strong, ///< ran
        Bad,    ///< a mistake, or a target that is not there
    };

    QString text;
    Mood mood = Mood::Plain;
};

/// The name of a node; what stands for it when it is empty.
QString nameText(const GraphNode& node);

/// A URL, or a pattern after a sign that says so.
QString watchText(const GraphWatch& watch);

/// What stands under the name of a node: its rows in short, and what is wrong there.
std::vector<GraphLine> nodeLines(const GraphNode& node);

/// The conditions of the edge to a node in short; none when it is always followed.
std::vector<GraphLine> edgeLines(const GraphNode& node);

/// All there is to say of a node, or of the edge to it, one thing in a line.
QStringList nodeTooltip(const GraphNode& node);
QStringList edgeTooltip(const GraphNode& node);

/// "n1", as all forms of a graph call a node; "e1", the edge to it.
QString nodeId(int number);
QString edgeId(const GraphNode& node);

/// "switch", "command" or "unknown".
QString kindOf(const GraphNode& node);

} // namespace tools

#endif
