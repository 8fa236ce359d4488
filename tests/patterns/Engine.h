#ifndef UNITFLOW_TESTS_PATTERNS_ENGINE_H
#define UNITFLOW_TESTS_PATTERNS_ENGINE_H

#include "Round.h"

namespace patterns {

/// What every step of the round tells when the engine's walkers do it, with a test host of their
/// own.
Answers askEngine(const Round& round);

} // namespace patterns

#endif
