#ifndef UNITFLOW_INTERNAL_OBSERVING_H
#define UNITFLOW_INTERNAL_OBSERVING_H

#include "Nodes/NodeBase.h"
#include "TraversalObserver.h"
#include "patterns/PatternList.h"

#include <atomic>

namespace internal {

extern std::atomic<int> observations; // in the whole process
TraversalObserver* observerOfThread();

/// Who watches this thread; null for nobody, which is found out without a look at the thread.
inline TraversalObserver* observer()
{
    const bool isObserved = observations.load(std::memory_order_relaxed) != 0;
    return Q_UNLIKELY(isObserved) ? observerOfThread() : nullptr;
}

/// Tells the observer, if there is one, what became of the rows of a command.
class RowReport {
public:
    using Outcome = TraversalObserver::RowOutcome;

    void skipped(int row, Outcome outcome) const
    {
        if (listener != nullptr) {
            listener->commandRowExecuted({row, outcome, {}, {}});
        }
    }

    void skipped(int row, Outcome outcome, const QString& targetUrl) const
    {
        if (listener != nullptr) {
            listener->commandRowExecuted({row, outcome, targetUrl, {}});
        }
    }

    /// Of a row that asks for captured groups, and whose pattern gives none.
    void notMatched(int row, const patterns::PatternList& kept, const QString& pattern) const
    {
        if (listener != nullptr) {
            const Outcome outcome = !kept.isValid(row, pattern)     ? Outcome::InvalidPattern
                                    : !kept.hasGroups(row, pattern) ? Outcome::PatternWithoutGroup
                                                                    : Outcome::NoMatch;
            listener->commandRowExecuted({row, outcome, {}, {}});
        }
    }

    void written(int row, int status, const QString& targetUrl, const QVariant& unit) const
    {
        if (listener != nullptr) {
            listener->commandRowExecuted({row, outcomeOf(status), targetUrl, unit, status});
        }
    }

    void row(const TraversalObserver::CommandRow& told) const
    {
        if (listener != nullptr) {
            listener->commandRowExecuted(told);
        }
    }

    static Outcome outcomeOf(int status)
    {
        return status == 0 ? Outcome::Changed : status == 1 ? Outcome::Unchanged : Outcome::Refused;
    }

private:
    TraversalObserver* const listener = observer();
};

/// Tells the observer, if there is one, whether an edge is followed to `successor`.
inline void reportEdge(int index, const NodeBase* successor,
                       TraversalObserver::EdgeDecision decision)
{
    if (TraversalObserver* const listener = observer()) {
        listener->edgeDecided(
            {index, successor == nullptr ? QString() : successor->getNodeName(), decision});
    }
}

/// Tells the observer, if there is one, that the pattern of a condition's row finds nothing.
void reportMismatch(int row, const patterns::PatternList& kept, const QString& pattern,
                    const QString& writtenUrl);

/// Tells the observer, if there is one, whether a row of a condition names the written URL.
void reportWrittenUrl(int row, bool holds, const QString& url);

} // namespace internal

#endif
