#ifndef UNITFLOW_TOOLS_GRAPH_GRAPHVIZ_H
#define UNITFLOW_TOOLS_GRAPH_GRAPHVIZ_H

#include <QByteArray>
#include <QString>

#include <optional>

namespace tools {

class Console;

/// Lets the program `dot` of Graphviz draw a graph, as "svg" or "png". Nothing, reported, when it
/// is not installed, fails, or is not done within a minute.
std::optional<QByteArray> drawnByGraphviz(const QString& dot, const QString& format,
                                          Console& console);

} // namespace tools

#endif
