#ifndef UNITFLOW_CHECKER_GRAPHCHECK_H
#define UNITFLOW_CHECKER_GRAPHCHECK_H

#include "checker/Description.h"
#include "checker/Findings.h"
#include "checker/Patterns.h"

namespace checker {

/// Adds what is wrong with the graph and its rows, as far as the description alone tells.
void checkGraph(const std::vector<Node>& nodes, const filehost::DescriptionPlaces& places,
                Patterns& patterns, Findings& findings);

} // namespace checker

#endif
