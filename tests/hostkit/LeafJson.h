#ifndef UNITFLOW_TESTS_HOSTKIT_LEAFJSON_H
#define UNITFLOW_TESTS_HOSTKIT_LEAFJSON_H

#include "hostkit/Adapter.h"

#include <functional>

/// The JSON text of a tree for hosts in whose format a node is an object, its members are its
/// children, and some of them are the node's own properties. `properties` gives the members of a
/// leaf.
QString leavesAsJson(const hostkit::Leaves& leaves,
                     const std::function<QJsonObject(const hostkit::Leaf&)>& properties);

#endif
