#ifndef UNITFLOW_TRACE_EVENT_H
#define UNITFLOW_TRACE_EVENT_H

#include "TraversalObserver.h"

#include <QString>
#include <QVariantList>

#include <variant>

namespace trace {

/// What the traversals that follow are made for. The engine does not know it: whoever runs the
/// engine tells it, or leaves it out.
struct Link {
    QString source;
    QString target;
    QString dependency; ///< the description
    bool isProcess = false;
    QVariantList parameters;
};

// One struct for each event of a `TraversalObserver`, which says when it comes.

struct TraversalStarted {
    QString url;
};
struct NodeSelected {
    TraversalObserver::SelectedNode node;
};
struct NodeEntered {
    TraversalObserver::Node node;
};
struct NodeLeft {
    TraversalObserver::Node node;
    bool outcome = false;
};
struct EdgeDecided {
    TraversalObserver::Edge edge;
};
struct ConditionStarted {
    TraversalObserver::Condition condition;
};
struct ConditionRowChecked {
    TraversalObserver::ConditionRow row;
};
struct ConditionFinished {
    TraversalObserver::Condition condition;
    bool holds = false;
};
struct CommandStarted {
    TraversalObserver::Command command;
};
struct CommandRowExecuted {
    TraversalObserver::CommandRow row;
};
struct CommandFinished {
    TraversalObserver::Command command;
    bool outcome = false;
};
struct TraversalFinished {
    bool outcome = false;
    bool changed = false;
};

using Event = std::variant<Link, TraversalStarted, NodeSelected, NodeEntered, NodeLeft, EdgeDecided,
                           ConditionStarted, ConditionRowChecked, ConditionFinished, CommandStarted,
                           CommandRowExecuted, CommandFinished, TraversalFinished>;

} // namespace trace

#endif
