#ifndef UNITFLOW_TESTS_PATTERNS_SHRINK_H
#define UNITFLOW_TESTS_PATTERNS_SHRINK_H

#include "Round.h"

#include <functional>

namespace patterns {

/// Leaves out steps, nodes, conditions and characters for as long as `fails` holds of what is left.
/// Nothing more can be left out of the result.
Round shrink(const Round& round, const std::function<bool(const Round&)>& fails);

} // namespace patterns

#endif
