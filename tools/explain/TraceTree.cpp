#include "tools/explain/TraceTree.h"

#include <algorithm>
#include <utility>

namespace tools {

namespace {

using Decision = TraversalObserver::EdgeDecision;
using RowOutcome = TraversalObserver::RowOutcome;
using Selection = TraversalObserver::Selection;

class TreeBuilder {
public:
    std::vector<LinkTrace> take() { return std::move(links); }

    void operator()(const trace::Link& link)
    {
        links.push_back({link, {}});
        running.clear();
    }

    void operator()(const trace::TraversalStarted& event)
    {
        if (links.empty()) {
            links.emplace_back();
        }
        links.back().traversals.push_back({event.url, {}, {}});
        running.push_back({links.back().traversals.size() - 1, {}, {}});
    }

    void operator()(const trace::TraversalFinished& event)
    {
        if (!running.empty()) {
            links.back().traversals[running.back().number].outcome = event.outcome;
            running.pop_back();
        }
    }

    void operator()(const trace::NodeSelected& event)
    {
        if (!running.empty()) {
            running.back().selected = event.node;
        }
    }

    void operator()(const trace::NodeEntered& event)
    {
        if (running.empty()) {
            return;
        }
        auto run = std::make_unique<NodeRun>();
        run->node = event.node;
        Running& traversal = running.back();
        run->selected = std::exchange(traversal.selected, std::nullopt);
        NodeRun* const entered = run.get();
        if (NodeRun* const above = node()) {
            if (above->edges.empty()) {
                return;
            }
            above->edges.back().follows.push_back(std::move(run));
        } else {
            links.back().traversals[traversal.number].nodes.push_back(std::move(run));
        }
        traversal.nodes.push_back(entered);
    }

    void operator()(const trace::NodeLeft& /*event*/)
    {
        if (node() != nullptr) {
            running.back().nodes.pop_back();
        }
    }

    void operator()(const trace::EdgeDecided& event)
    {
        if (node() == nullptr) {
            return;
        }
        const Decision decision = event.edge.decision;
        const bool wasAsked =
            decision == Decision::FollowedByCondition || decision == Decision::NoConditionHolds;
        if (wasAsked && !node()->edges.empty()) {
            node()->edges.back().edge = event.edge; // again, if another condition holds, too
        } else {
            node()->edges.push_back({event.edge, {}, {}});
        }
    }

    /// The first condition of an edge is the first that is told of the edge.
    void operator()(const trace::ConditionStarted& event)
    {
        if (node() == nullptr) {
            return;
        }
        if (event.condition.index == 0 || node()->edges.empty()) {
            node()->edges.emplace_back();
        }
        node()->edges.back().conditions.push_back({event.condition, {}, false});
    }

    void operator()(const trace::ConditionRowChecked& event)
    {
        if (ConditionRun* const run = condition()) {
            run->rows.append(event.row);
        }
    }

    void operator()(const trace::ConditionFinished& event)
    {
        if (ConditionRun* const run = condition()) {
            run->holds = event.holds;
        }
    }

    void operator()(const trace::CommandStarted& event)
    {
        if (node() != nullptr) {
            node()->commands.push_back({event.command, {}});
        }
    }

    void operator()(const trace::CommandRowExecuted& event)
    {
        if (node() != nullptr && !node()->commands.empty()) {
            node()->commands.back().rows.append(event.row);
        }
    }

    void operator()(const trace::CommandFinished& /*event*/) {}

private:
    /// A traversal under way.
    struct Running {
        std::size_t number; // among those of the link
        std::optional<TraversalObserver::SelectedNode> selected;
        std::vector<NodeRun*> nodes; // entered and not left
    };

    NodeRun* node()
    {
        return running.empty() || running.back().nodes.empty() ? nullptr
                                                               : running.back().nodes.back();
    }

    ConditionRun* condition()
    {
        const bool isThere =
            node() != nullptr && !node()->edges.empty() && !node()->edges.back().conditions.empty();
        return isThere ? &node()->edges.back().conditions.back() : nullptr;
    }

    std::vector<LinkTrace> links;
    std::vector<Running> running; // the innermost last
};

} // namespace

std::vector<LinkTrace> traceTree(const QList<trace::Event>& events)
{
    TreeBuilder builder;
    for (const trace::Event& event : events) {
        std::visit(builder, event);
    }
    return builder.take();
}

bool changesAnything(const NodeRun& node)
{
    const auto isChange = [](const TraversalObserver::CommandRow& row) {
        return row.outcome == RowOutcome::Changed;
    };
    return std::any_of(node.commands.begin(), node.commands.end(),
                       [&](const CommandRun& command) {
                           return std::any_of(command.rows.begin(), command.rows.end(), isChange);
                       }) ||
           std::any_of(node.edges.begin(), node.edges.end(), [](const EdgeRun& edge) {
               return std::any_of(edge.follows.begin(), edge.follows.end(),
                                  [](const auto& run) { return changesAnything(*run); });
           });
}

bool changesAnything(const LinkTrace& trace)
{
    return std::any_of(trace.traversals.begin(), trace.traversals.end(), [](const auto& traversal) {
        return std::any_of(traversal.nodes.begin(), traversal.nodes.end(),
                           [](const auto& node) { return changesAnything(*node); });
    });
}

bool runsAnything(const LinkTrace& trace)
{
    return std::any_of(trace.traversals.begin(), trace.traversals.end(),
                       [](const auto& traversal) { return !traversal.nodes.empty(); });
}

bool isComplete(const LinkTrace& trace)
{
    return std::all_of(trace.traversals.begin(), trace.traversals.end(),
                       [](const auto& traversal) { return traversal.outcome.has_value(); });
}

bool isAnswered(const LinkTrace& trace)
{
    return std::any_of(trace.traversals.begin(), trace.traversals.end(), [](const auto& traversal) {
        return std::any_of(traversal.nodes.begin(), traversal.nodes.end(), [](const auto& node) {
            return node->selected && node->selected->selection != Selection::Unconditional;
        });
    });
}

} // namespace tools
