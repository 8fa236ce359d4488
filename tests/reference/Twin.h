#ifndef UNITFLOW_TESTS_REFERENCE_TWIN_H
#define UNITFLOW_TESTS_REFERENCE_TWIN_H

#include "Scenario.h"

#include <set>
#include <string>

namespace reference {

/// What the engine has to do, worked out a second time: slowly, plainly, and without any of the
/// engine's code. It keeps its own trees and has one function for each rule that a description's
/// author learns.
///
/// Some decisions are rules with a sentence as name; a test breaks one to see that it counts.
class Evaluator {
public:
    Outcome evaluate(const Scenario& scenario);

    /// Decides the other way where this rule comes up; empty breaks none.
    std::string brokenRule;
    /// Every rule that has come up.
    std::set<std::string> rulesMet;
};

} // namespace reference

#endif
