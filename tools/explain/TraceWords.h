#ifndef UNITFLOW_TOOLS_EXPLAIN_TRACEWORDS_H
#define UNITFLOW_TOOLS_EXPLAIN_TRACEWORDS_H

#include "TraversalObserver.h"
#include "tools/workspace/DescriptionFile.h"

#include <QString>

namespace tools {

// What happened, as it is said to whoever writes descriptions. `type` is that of the command or
// condition, `row` the row in the file as far as it is known, `url` the written one.

QString wordsFor(const TraversalObserver::SelectedNode& node);

/// "holds: ..." or "fails: ...".
QString wordsFor(const TraversalObserver::ConditionRow& told, const QString& type,
                 const DescriptionFile::Row& row);

/// "sets ...", "keeps ..." or "skips ...".
QString wordsFor(const TraversalObserver::CommandRow& told, const QString& type,
                 const DescriptionFile::Row& row, const QString& url);

/// Of a row that does not count.
QString wordsForDropped(const DescriptionFile::Row& row, TypeDescription::Kind kind,
                        const QString& type);

} // namespace tools

#endif
