#ifndef UNITFLOW_TRACE_INTERNAL_EVENTNAMES_H
#define UNITFLOW_TRACE_INTERNAL_EVENTNAMES_H

#include "TraversalObserver.h"

#include <QLatin1String>
#include <QList>

namespace trace::internal {

constexpr const char* formatName = "unitflow/trace";
constexpr int formatVersion = 1;

/// How a value of an enumeration is called in a trace.
template <class Enumeration>
struct Named {
    Enumeration value;
    QLatin1String name;
};

// All values of each enumeration, once.
const QList<Named<TraversalObserver::Selection>>& selectionNames();
const QList<Named<TraversalObserver::EdgeDecision>>& edgeDecisionNames();
const QList<Named<TraversalObserver::ConditionOutcome>>& conditionOutcomeNames();
const QList<Named<TraversalObserver::RowOutcome>>& rowOutcomeNames();

} // namespace trace::internal

#endif
