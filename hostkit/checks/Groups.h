#ifndef UNITFLOW_HOSTKIT_CHECKS_GROUPS_H
#define UNITFLOW_HOSTKIT_CHECKS_GROUPS_H

#include "hostkit/Check.h"

namespace hostkit {

QList<Check> keyChecks();        ///< the names of properties and files
QList<Check> treeChecks();       ///< nodes, their children and properties
QList<Check> valueChecks();      ///< extractConfigValue
QList<Check> tableChecks();      ///< parameter tables
QList<Check> arrayChecks();      ///< array leaves and the units of their columns
QList<Check> parserChecks();     ///< texts into trees
QList<Check> storeChecks();      ///< descriptions and instances
QList<Check> registerChecks();   ///< the register of modifications
QList<Check> jsonChecks();       ///< iteration over JSON
QList<Check> manifestChecks();   ///< the manifest handler
QList<Check> resolutionChecks(); ///< whole resolutions through the engine

} // namespace hostkit

#endif
