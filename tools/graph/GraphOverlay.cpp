#include "tools/graph/GraphOverlay.h"

#include "checker/ColumnTarget.h"
#include "tools/explain/TraceWords.h"

#include <algorithm>

namespace tools {

namespace {

using ConditionOutcome = TraversalObserver::ConditionOutcome;
using Selection = TraversalObserver::Selection;

/// Whether a row can have told that target, as far as its text alone says it: what a link or a
/// pattern fills in is not known here, nor what stands before the whole.
bool canTell(const GraphTable& table, const GraphRow& row,
             const TraversalObserver::CommandRow& told)
{
    const QList<int>& layout = *table.type->table.layoutFor(row.cells.size());
    for (int at = 0; !told.targetUrl.isEmpty() && at < layout.size(); ++at) {
        const QString cell = row.cells.at(at).toString();
        const CellRole role = table.type->table.columns.at(layout.at(at)).role;
        const bool isFilledIn =
            (role == CellRole::TargetUrlTemplate && cell.contains(QLatin1Char('%'))) ||
            (role == CellRole::TargetUrlByGroups && cell.contains(QLatin1String("(?<")));
        const bool isUrl = role == CellRole::TargetUrl || role == CellRole::TargetUrlTemplate ||
                           role == CellRole::TargetUrlByGroups;
        if (isUrl && !isFilledIn && !told.targetUrl.endsWith(cell)) {
            return false;
        }
        if (role == CellRole::TargetColumn) {
            const checker::ColumnTarget target = checker::readColumnTarget(cell);
            return target.arrayUrl == told.targetUrl && target.column == told.column;
        }
    }
    return true;
}

class Overlay {
public:
    explicit Overlay(Graph& graph) : graph(graph), index(graph) { graph.trace.emplace(); }

    void add(const TraversalRun& run)
    {
        graph.trace->url = run.url;
        for (const auto& node : run.nodes) {
            if (node->selected && node->selected->selection != Selection::Unconditional) {
                graph.trace->started.append(
                    {node->selected->watched, node->selected->selection == Selection::Pattern, {}});
            }
            add(*node, -1);
        }
    }

    bool fits() const { return isFitting; }

private:
    void add(const NodeRun& run, int parent)
    {
        const int number = index.find(parent, run.node.name);
        if (number < 0) {
            isFitting = false;
            return;
        }
        graph.node(number).ran = true;
        for (const CommandRun& command : run.commands) {
            add(command, number);
        }
        for (const EdgeRun& edge : run.edges) {
            const int successor = edge.edge ? index.find(number, edge.edge->successor) : -1;
            for (const ConditionRun& condition : edge.conditions) {
                add(condition, successor);
            }
            for (const auto& followed : edge.follows) {
                add(*followed, number);
            }
        }
    }

    void add(const CommandRun& run, int number)
    {
        std::vector<GraphTable>& commands = graph.node(number).commands;
        for (const TraversalObserver::CommandRow& told : run.rows) {
            GraphRow* const row = rowOf(commands, run.command.type, told.row);
            if (row == nullptr) {
                continue;
            }
            const auto command =
                std::find_if(commands.begin(), commands.end(), [&](const GraphTable& table) {
                    return table.type->name == run.command.type;
                });
            isFitting = isFitting && canTell(*command, *row, told);
            row->ran = true;
            const QString words = wordsFor(told, run.command.type,
                                           {row->number, row->cells, row->place}, graph.trace->url);
            graph.trace->rows.append({number, static_cast<int>(command - commands.begin()),
                                      row->number, told.outcome, told.targetUrl, words});
        }
    }

    /// `successor` is the node behind the edge; negative when it is unknown.
    void add(const ConditionRun& run, int successor)
    {
        for (const TraversalObserver::ConditionRow& told : run.rows) {
            if (told.url == graph.trace->url && told.actual.isValid()) {
                graph.trace->value = told.actual;
            }
            GraphRow* const row = successor < 0 ? nullptr
                                                : rowOf(graph.node(successor).conditions,
                                                        run.condition.type, told.row);
            if (row != nullptr && told.outcome == ConditionOutcome::Holds) {
                row->ran = true;
            }
        }
    }

    /// Null, and the trace does not fit, when there is no such row.
    GraphRow* rowOf(std::vector<GraphTable>& tables, const QString& type, int row)
    {
        const auto table = std::find_if(tables.begin(), tables.end(), [&](const GraphTable& other) {
            return other.type->name == type;
        });
        if (table == tables.end() || row < 0 || row >= static_cast<int>(table->kept.size())) {
            isFitting = false;
            return nullptr;
        }
        return &table->keptRow(row);
    }

    Graph& graph;
    const GraphIndex index;
    bool isFitting = true;
};

} // namespace

bool addTrace(Graph& graph, const LinkTrace& run)
{
    Overlay overlay(graph);
    if (run.link) {
        graph.trace->link = {run.link->source,
                             run.link->target,
                             run.link->dependency,
                             run.link->isProcess,
                             run.link->parameters,
                             0,
                             0};
    }
    for (const TraversalRun& traversal : run.traversals) {
        overlay.add(traversal);
    }
    return overlay.fits();
}

} // namespace tools
