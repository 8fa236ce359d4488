#ifndef UNITFLOW_TOOLS_NEARESTNAMES_H
#define UNITFLOW_TOOLS_NEARESTNAMES_H

#include <QString>
#include <QStringList>

namespace tools {

/// At most three of `candidates`, the likeliest meaning of `name` first: few typing errors away,
/// in another case, or with a part of the path missing. Those far behind the first are left out.
/// Costs one edit distance for each candidate.
QStringList nearestNames(const QString& name, const QStringList& candidates);

/// Words that name them, empty when there are no candidates.
QString nearestNamesText(const QString& name, const QStringList& candidates);

} // namespace tools

#endif
