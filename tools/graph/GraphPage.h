#ifndef UNITFLOW_TOOLS_GRAPH_GRAPHPAGE_H
#define UNITFLOW_TOOLS_GRAPH_GRAPHPAGE_H

#include <QByteArray>
#include <QString>

namespace tools {

/// One self-contained HTML page that shows a graph: `json` is the graph's JSON form and `svg` what
/// Graphviz made of its DOT form. Nothing of either is taken for markup or code of the page, except
/// that `svg` is its drawing, with Graphviz having escaped the texts in it. The page loads nothing
/// and runs no script but its own.
QString graphPage(const QByteArray& json, const QString& svg);

} // namespace tools

#endif
