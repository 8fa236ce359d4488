#ifndef UNITFLOW_TESTS_TOOLS_GENERATEDWORKSPACE_H
#define UNITFLOW_TESTS_TOOLS_GENERATEDWORKSPACE_H

#include "Fixture.h"

/// By this description the unit of "Follower" is the value of the source's "Unit".
extern const char* const chainDescription;

struct LargeWorkspace {
    int instances;
    int leaves;  ///< in each instance; all of them change
    int padding; ///< bytes in each instance that nothing asks for
};

/// A workspace of its own in the place of the oven: "follower0", "follower1" and so on follow
/// "leader", by one link each, in this order. In the manifest none of them is mentioned.
void writeLargeWorkspace(const TestWorkspace& workspace, const LargeWorkspace& size);

/// Lets the leader follow another instance, in the first of all links: now all of them have to do
/// with one another.
void linkAllTogether(const TestWorkspace& workspace);

/// A small workspace with chains, shared targets, and everything that can be wrong with a link.
void writeRandomWorkspace(const TestWorkspace& workspace, unsigned seed);

#endif
