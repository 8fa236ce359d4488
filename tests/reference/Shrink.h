#ifndef UNITFLOW_TESTS_REFERENCE_SHRINK_H
#define UNITFLOW_TESTS_REFERENCE_SHRINK_H

#include "Scenario.h"

#include <functional>

namespace reference {

/// Deletes members and elements anywhere in the scenario for as long as `fails` holds of what is
/// left. Nothing more can be deleted from the result.
Scenario shrink(const Scenario& scenario, const std::function<bool(const Scenario&)>& fails);

} // namespace reference

#endif
