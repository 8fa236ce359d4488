#include "TraversalObserver.h"

#include "internal/Observing.h"

namespace {

thread_local TraversalObserver* observerOfThisThread = nullptr;

} // namespace

TraversalObserver::~TraversalObserver() = default;

void TraversalObserver::traversalStarted(const QString& /*url*/) {}
void TraversalObserver::nodeSelected(const SelectedNode& /*node*/) {}
void TraversalObserver::nodeEntered(const Node& /*node*/) {}
void TraversalObserver::nodeLeft(const Node& /*node*/, bool /*outcome*/) {}
void TraversalObserver::edgeDecided(const Edge& /*edge*/) {}
void TraversalObserver::conditionStarted(const Condition& /*condition*/) {}
void TraversalObserver::conditionFinished(const Condition& /*condition*/, bool /*holds*/) {}
void TraversalObserver::conditionRowChecked(const ConditionRow& /*row*/) {}
void TraversalObserver::commandStarted(const Command& /*command*/) {}
void TraversalObserver::commandFinished(const Command& /*command*/, bool /*outcome*/) {}
void TraversalObserver::commandRowExecuted(const CommandRow& /*row*/) {}
void TraversalObserver::traversalFinished(bool /*outcome*/, bool /*changed*/) {}

TraversalObservation::TraversalObservation(TraversalObserver& observer)
    : outer(observerOfThisThread)
{
    observerOfThisThread = &observer;
    internal::observations.fetch_add(1, std::memory_order_relaxed);
}

TraversalObservation::~TraversalObservation()
{
    internal::observations.fetch_sub(1, std::memory_order_relaxed);
    observerOfThisThread = outer;
}

namespace internal {

std::atomic<int> observations{0};

TraversalObserver* observerOfThread()
{
    return observerOfThisThread;
}

void reportMismatch(int row, const patterns::PatternList& kept, const QString& pattern,
                    const QString& writtenUrl)
{
    if (TraversalObserver* const listener = observer()) {
        using Outcome = TraversalObserver::ConditionOutcome;
        const Outcome outcome =
            kept.isValid(row, pattern) ? Outcome::NoMatch : Outcome::InvalidPattern;
        listener->conditionRowChecked({row, outcome, writtenUrl, {}, {}, {}});
    }
}

void reportWrittenUrl(int row, bool holds, const QString& url)
{
    if (TraversalObserver* const listener = observer()) {
        using Outcome = TraversalObserver::ConditionOutcome;
        listener->conditionRowChecked(
            {row, holds ? Outcome::Holds : Outcome::Differs, url, {}, {}, {}});
    }
}

} // namespace internal
