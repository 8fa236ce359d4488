#ifndef UNITFLOW_TOOLS_WORKSPACE_CHANGES_H
#define UNITFLOW_TOOLS_WORKSPACE_CHANGES_H

#include "filehost/Session.h"

#include <QList>
#include <QString>

#include <optional>

namespace tools {

class Console;
class JsonDocument;

/// What a session changed.
struct Changes {
    QList<filehost::LeafChange> list;
    int files = 0;       ///< how many were written
    bool allKept = true; ///< false when a file could not be written, or the manifest not updated
};

/// How much changed.
struct ChangeCount {
    int leaves = 0;
    int instances = 0;
};

/// Brings the manifest up to date and commits the session, unless this is a dry run, and reports
/// what could not be written. The list holds what is in the files now or, in a dry run, would be;
/// the manifest is not in it.
Changes keepChanges(filehost::Session& session, bool dryRun, Console& console,
                    const std::optional<filehost::Instance>& leader = std::nullopt);

/// A line for each change, grouped by instance, and a total; for an array a line for each column.
/// Empty without changes.
QString changesText(const QList<filehost::LeafChange>& changes, bool color);

/// The same without the total.
QString changeLines(const QList<filehost::LeafChange>& changes, bool color);
/// The total alone.
QString totalText(const ChangeCount& count);

ChangeCount countOf(const QList<filehost::LeafChange>& changes);

/// Adds the changes as the member "changes".
void addChanges(JsonDocument& document, const QList<filehost::LeafChange>& changes);
/// Adds what a change is as members of the object that is open.
void addChange(JsonDocument& document, const filehost::LeafChange& change);

/// The changes as items of the list that is the only member of a document, for `addItems`.
QString changeItems(const QList<filehost::LeafChange>& changes);

} // namespace tools

#endif
