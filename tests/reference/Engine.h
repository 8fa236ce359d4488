#ifndef UNITFLOW_TESTS_REFERENCE_ENGINE_H
#define UNITFLOW_TESTS_REFERENCE_ENGINE_H

#include "Scenario.h"

namespace reference {

/// Runs the engine on a scenario, with a test host of its own.
Outcome runEngine(const Scenario& scenario);

/// Every call of the host in such a run, those included that are no events.
QStringList hostCalls(const Scenario& scenario);

} // namespace reference

#endif
