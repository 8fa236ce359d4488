#ifndef UNITFLOW_FILEHOST_NEARESTNAMES_H
#define UNITFLOW_FILEHOST_NEARESTNAMES_H

#include "filehost/Export.h"

#include <QString>
#include <QStringList>

namespace filehost {

/// At most three of `candidates`, the likeliest meaning of `name` first: few typing errors away,
/// in another case, or with a part of the path missing. Those far behind the first are left out.
/// Costs one edit distance for each candidate.
UNITFLOW_FILEHOST_EXPORT QStringList nearestNames(const QString& name,
                                                  const QStringList& candidates);

/// The likeliest meaning of `name`; empty when none of `candidates` is alike.
UNITFLOW_FILEHOST_EXPORT QString nearestName(const QString& name, const QStringList& candidates);

} // namespace filehost

#endif
