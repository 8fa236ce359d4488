#include "tools/graph/GraphJson.h"

#include "tools/console/Json.h"
#include "tools/console/Names.h"
#include "tools/graph/GraphEntries.h"
#include "tools/graph/GraphWords.h"
#include "trace/internal/EventNames.h"

#include <QHash>
#include <QPair>

#include <algorithm>
#include <set>

namespace tools {

namespace {

class GraphWriter {
public:
    GraphWriter(JsonDocument& json, const Graph& graph)
        : json(json), graph(graph), entries(entriesOf(graph))
    {
        for (std::size_t number = 0; number < entries.size(); ++number) {
            const GraphEntry& entry = entries[number];
            if (!entry.isEveryWrite) {
                entryNumbers.insert({entry.watch.text, entry.watch.isPattern}, number);
            }
        }
    }

    void write()
    {
        json.add(QStringLiteral("description"), graph.description);
        if (graph.link) {
            json.addObject(QStringLiteral("link"), [&] {
                addLink(json, *graph.link);
                json.add(QStringLiteral("place"), QStringLiteral("links.json:%1:%2")
                                                      .arg(graph.link->line)
                                                      .arg(graph.link->column));
            });
        } else {
            json.add(QStringLiteral("link"), {});
        }
        int number = 0;
        json.addObjects(QStringLiteral("nodes"), graph.nodes,
                        [&](const GraphNode& node) { addNode(node, number++); });
        json.beginList(QStringLiteral("edges"));
        number = 0;
        for (const GraphNode& node : graph.nodes) {
            if (!node.isTopLevel()) {
                json.addItem([&] { addEdge(node, number); });
            }
            ++number;
        }
        json.endList();
        json.addObjects(QStringLiteral("writes"), graph.writes, [&](const GraphWrite& write) {
            json.add(QStringLiteral("text"), write.watch.text);
            json.add(QStringLiteral("pattern"), write.watch.isPattern);
            json.add(QStringLiteral("entries"), entryIds(write));
            addWays(write.nodes);
        });
        addTrace();
    }

private:
    void addNode(const GraphNode& node, int number)
    {
        json.add(QStringLiteral("id"), nodeId(number));
        json.add(QStringLiteral("name"), node.name);
        json.add(QStringLiteral("path"), node.path);
        json.add(QStringLiteral("type"), node.typeName);
        json.add(QStringLiteral("kind"), kindOf(node));
        json.add(QStringLiteral("topLevel"), node.isTopLevel());
        json.add(QStringLiteral("reachable"), node.isReachable);
        json.add(QStringLiteral("unconditional"), node.isUnconditional);
        json.addObjects(QStringLiteral("watches"), node.watches, [&](const GraphWatch& watch) {
            json.add(QStringLiteral("text"), watch.text);
            json.add(QStringLiteral("pattern"), watch.isPattern);
            json.add(QStringLiteral("place"), watch.place);
        });
        json.add(QStringLiteral("place"), node.place);
        json.add(QStringLiteral("pointer"), node.pointer);
        addTables(QStringLiteral("commands"), node.commands, true);
        json.addObjects(QStringLiteral("findings"), node.findings,
                        [&](const checker::Finding& finding) { addFinding(finding); });
    }

    void addEdge(const GraphNode& node, int number)
    {
        json.add(QStringLiteral("id"), edgeId(node));
        json.add(QStringLiteral("from"), nodeId(node.parent));
        json.add(QStringLiteral("to"), nodeId(number));
        json.add(QStringLiteral("reachable"), node.isReachable);
        addTables(QStringLiteral("conditions"), node.conditions, false);
    }

    void addTables(const QString& key, const std::vector<GraphTable>& tables, bool areCommands)
    {
        json.addObjects(key, tables, [&](const GraphTable& table) {
            QStringList columns;
            for (const ColumnDescription& column : table.type->table.columns) {
                columns.append(column.name);
            }
            json.add(QStringLiteral("type"), table.type->name);
            json.add(QStringLiteral("place"), table.place);
            json.add(QStringLiteral("columns"), columns);
            json.addObjects(QStringLiteral("rows"), table.rows,
                            [&](const GraphRow& row) { addRow(*table.type, row, areCommands); });
        });
    }

    void addRow(const TypeDescription& type, const GraphRow& row, bool isCommand)
    {
        const QList<int>* const layout = type.table.layoutFor(row.cells.size());
        QVariantList columns;
        for (int at = 0; layout != nullptr && at < layout->size() && at < row.cells.size(); ++at) {
            columns.append(layout->at(at));
        }
        json.add(QStringLiteral("number"), row.number);
        json.add(QStringLiteral("cells"), row.cells);
        json.add(QStringLiteral("layout"), columns);
        json.add(QStringLiteral("place"), row.place);
        json.add(QStringLiteral("counts"), row.counts);
        json.add(QStringLiteral("note"), row.note.isEmpty() ? QVariant() : QVariant(row.note));
        if (!isCommand) {
            return;
        }
        if (!graph.link) {
            json.add(QStringLiteral("targets"), {});
            return;
        }
        json.addObjects(QStringLiteral("targets"), row.targets, [&](const GraphTarget& target) {
            json.add(QStringLiteral("url"), target.url);
            json.add(QStringLiteral("arrayColumn"),
                     target.column < 0 ? QVariant() : QVariant(target.column));
            json.add(QStringLiteral("exists"), target.exists);
            json.add(QStringLiteral("unit"), target.unit);
        });
    }

    void addFinding(const checker::Finding& finding)
    {
        const checker::CodeDescription& code = checker::describe(finding.code);
        json.add(QStringLiteral("severity"), checker::nameOf(code.severity));
        json.add(QStringLiteral("code"), code.name);
        json.add(QStringLiteral("message"), finding.message);
        json.add(QStringLiteral("advice"), finding.advice);
        json.add(QStringLiteral("line"), finding.place.line);
        json.add(QStringLiteral("column"), finding.place.column);
    }

    /// Of those by which a write starts anything, in their order.
    QStringList entryIds(const GraphWrite& write) const
    {
        std::set<std::size_t> numbers;
        for (const GraphWatch& watch : write.started) {
            const auto found = entryNumbers.find({watch.text, watch.isPattern});
            if (found != entryNumbers.end()) {
                numbers.insert(*found);
            }
        }
        if (!entries.empty() && entries.back().isEveryWrite) {
            numbers.insert(entries.size() - 1);
        }
        QStringList ids;
        for (const std::size_t number : numbers) {
            ids.append(entries[number].id);
        }
        return ids;
    }

    /// The nodes, and the edges to them.
    void addWays(const std::vector<int>& nodes)
    {
        QStringList ids;
        QStringList edges;
        for (const int number : nodes) {
            const GraphNode& node = graph.node(number);
            ids.append(nodeId(number));
            if (!node.isTopLevel()) {
                edges.append(edgeId(node));
            }
        }
        json.add(QStringLiteral("nodes"), ids);
        json.add(QStringLiteral("edges"), edges);
    }

    void addTrace()
    {
        if (!graph.trace) {
            json.add(QStringLiteral("trace"), {});
            return;
        }
        std::vector<int> ran;
        for (std::size_t number = 0; number < graph.nodes.size(); ++number) {
            if (graph.nodes[number].ran) {
                ran.push_back(static_cast<int>(number));
            }
        }
        QStringList started;
        for (const GraphEntry& entry : entries) {
            if (entry.ran) {
                started.append(entry.id);
            }
        }
        json.addObject(QStringLiteral("trace"), [&] {
            if (graph.trace->link) {
                json.addObject(QStringLiteral("link"), [&] { addLink(json, *graph.trace->link); });
            } else {
                json.add(QStringLiteral("link"), {});
            }
            json.add(QStringLiteral("url"), graph.trace->url);
            json.add(QStringLiteral("value"), graph.trace->value);
            json.add(QStringLiteral("entries"), started);
            addWays(ran);
            json.addObjects(QStringLiteral("rows"), graph.trace->rows,
                            [&](const GraphTrace::Row& row) {
                                json.add(QStringLiteral("node"), nodeId(row.node));
                                json.add(QStringLiteral("command"), row.command);
                                json.add(QStringLiteral("row"), row.number);
                                json.add(QStringLiteral("outcome"), nameOf(row.outcome));
                                json.add(QStringLiteral("target"), row.target);
                                json.add(QStringLiteral("text"), row.words);
                            });
        });
    }

    /// As a trace calls it.
    static QString nameOf(TraversalObserver::RowOutcome outcome)
    {
        const auto& names = trace::internal::rowOutcomeNames();
        const auto found = std::find_if(names.begin(), names.end(),
                                        [&](const auto& named) { return named.value == outcome; });
        return found->name;
    }

    JsonDocument& json;
    const Graph& graph;
    const std::vector<GraphEntry> entries;
    QHash<QPair<QString, bool>, std::size_t> entryNumbers; ///< of what is watched
};

} // namespace

void addGraph(JsonDocument& document, const Graph& graph)
{
    GraphWriter(document, graph).write();
}

} // namespace tools
