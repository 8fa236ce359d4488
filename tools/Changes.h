#ifndef UNITFLOW_TOOLS_CHANGES_H
#define UNITFLOW_TOOLS_CHANGES_H

#include "filehost/Session.h"

#include <QList>
#include <QString>

namespace tools {

class Console;
class JsonDocument;

/// What a session changed.
struct Changes {
    QList<filehost::LeafChange> list;
    bool allKept = true; ///< false when a file could not be written, or the manifest not updated
};

/// Brings the manifest up to date and commits the session, unless this is a dry run, and reports
/// what could not be written. The list holds what is in the files now or, in a dry run, would be;
/// the manifest is not in it.
Changes keepChanges(filehost::Session& session, bool dryRun, Console& console);

/// A line for each change, grouped by instance, and a total; for an array a line for each column.
/// Empty without changes.
QString changesText(const QList<filehost::LeafChange>& changes, bool color);

/// Adds the changes as the member "changes".
void addChanges(JsonDocument& document, const QList<filehost::LeafChange>& changes);

/// The name of an instance as people see it: a process description is marked.
QString titleOf(const filehost::Instance& instance);

} // namespace tools

#endif
