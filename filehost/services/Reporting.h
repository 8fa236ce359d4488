#ifndef UNITFLOW_FILEHOST_SERVICES_REPORTING_H
#define UNITFLOW_FILEHOST_SERVICES_REPORTING_H

#include "filehost/Problem.h"

#include <QList>

namespace filehost {

/// Hands problems to the thread's session. Without one they are dropped: the engine's interface has
/// no way to tell them, and a library does not print.
void report(const QList<Problem>& problems);

} // namespace filehost

#endif
