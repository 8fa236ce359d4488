#include "tools/graph/GraphEntries.h"

#include <QHash>
#include <QPair>

namespace tools {

std::vector<GraphEntry> entriesOf(const Graph& graph)
{
    std::vector<GraphEntry> entries;
    GraphEntry everyWrite;
    everyWrite.isEveryWrite = true;
    QHash<QPair<QString, bool>, std::size_t> known;
    for (std::size_t number = 0; number < graph.nodes.size(); ++number) {
        const GraphNode& node = graph.nodes[number];
        for (const GraphWatch& watch : node.watches) {
            const QPair<QString, bool> key{watch.text, watch.isPattern};
            if (!known.contains(key)) {
                known.insert(key, entries.size());
                entries.push_back({{}, watch, false, {}, false});
            }
            GraphEntry& entry = entries[known.value(key)];
            entry.nodes.push_back(static_cast<int>(number));
            entry.ran = graph.trace && graph.trace->started.contains(watch);
        }
        if (node.isUnconditional) {
            everyWrite.nodes.push_back(static_cast<int>(number));
            everyWrite.ran = everyWrite.ran || node.ran;
        }
    }
    if (!everyWrite.nodes.empty()) {
        entries.push_back(everyWrite);
    }
    int number = 0;
    for (GraphEntry& entry : entries) {
        entry.id = QStringLiteral("w%1").arg(++number);
    }
    return entries;
}

} // namespace tools
