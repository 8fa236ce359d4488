#ifndef UNITFLOW_TRACE_EVENTOBSERVER_H
#define UNITFLOW_TRACE_EVENTOBSERVER_H

#include "trace/Event.h"

namespace trace {

/// An observer that gets every event at one place, as a value that it may keep.
class EventObserver : public TraversalObserver {
public:
    /// Called for each event, while the engine waits.
    virtual void take(const Event& event) = 0;

    void traversalStarted(const QString& url) final;
    void nodeSelected(const SelectedNode& node) final;
    void nodeEntered(const Node& node) final;
    void nodeLeft(const Node& node, bool outcome) final;
    void edgeDecided(const Edge& edge) final;
    void conditionStarted(const Condition& condition) final;
    void conditionFinished(const Condition& condition, bool holds) final;
    void conditionRowChecked(const ConditionRow& row) final;
    void commandStarted(const Command& command) final;
    void commandFinished(const Command& command, bool outcome) final;
    void commandRowExecuted(const CommandRow& row) final;
    void traversalFinished(bool outcome, bool changed) final;
};

} // namespace trace

#endif
