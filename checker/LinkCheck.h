#ifndef UNITFLOW_CHECKER_LINKCHECK_H
#define UNITFLOW_CHECKER_LINKCHECK_H

#include "checker/Description.h"
#include "checker/Findings.h"
#include "checker/Patterns.h"
#include "checker/Tree.h"

namespace checker {

/// What a link brings to a description.
struct LinkedTrees {
    const filehost::Link& link;
    const Tree& source;
    const Tree& target;
};

/// Adds what of a description has no counterpart in the trees that a link names. What is wrong for
/// every link already is not said again.
void checkLink(const std::vector<Node>& nodes, const filehost::DescriptionPlaces& places,
               const LinkedTrees& linked, Patterns& patterns, Findings& findings);

} // namespace checker

#endif
