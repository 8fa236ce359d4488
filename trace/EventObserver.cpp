#include "trace/EventObserver.h"

namespace trace {

void EventObserver::traversalStarted(const QString& url)
{
    take(TraversalStarted{url});
}

void EventObserver::nodeSelected(const SelectedNode& node)
{
    take(NodeSelected{node});
}

void EventObserver::nodeEntered(const Node& node)
{
    take(NodeEntered{node});
}

void EventObserver::nodeLeft(const Node& node, bool outcome)
{
    take(NodeLeft{node, outcome});
}

void EventObserver::edgeDecided(const Edge& edge)
{
    take(EdgeDecided{edge});
}

void EventObserver::conditionStarted(const Condition& condition)
{
    take(ConditionStarted{condition});
}

void EventObserver::conditionFinished(const Condition& condition, bool holds)
{
    take(ConditionFinished{condition, holds});
}

void EventObserver::conditionRowChecked(const ConditionRow& row)
{
    take(ConditionRowChecked{row});
}

void EventObserver::commandStarted(const Command& command)
{
    take(CommandStarted{command});
}

void EventObserver::commandFinished(const Command& command, bool outcome)
{
    take(CommandFinished{command, outcome});
}

void EventObserver::commandRowExecuted(const CommandRow& row)
{
    take(CommandRowExecuted{row});
}

void EventObserver::traversalFinished(bool outcome, bool changed)
{
    take(TraversalFinished{outcome, changed});
}

} // namespace trace
