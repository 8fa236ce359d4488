#ifndef UNITFLOW_TOOLS_WHY_OPENCOMPARISONS_H
#define UNITFLOW_TOOLS_WHY_OPENCOMPARISONS_H

#include "host/ConfigurationAndProcessDataBase.h"

#include <QString>

namespace tools {

/// A description that does for any write what `description` may do for it, whatever values the
/// source has: it watches the same, and each comparison with a value that `source` has holds;
/// without a source, each with any value. Nodes and commands keep their names. For the engine to
/// run: who wants to know what could happen asks the engine what happens then. Empty when the text
/// is no JSON.
QString withOpenComparisons(const QString& description, const BaseClassSharedPointer& source);

} // namespace tools

#endif
