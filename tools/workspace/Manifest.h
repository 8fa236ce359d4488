#ifndef UNITFLOW_TOOLS_WORKSPACE_MANIFEST_H
#define UNITFLOW_TOOLS_WORKSPACE_MANIFEST_H

#include "filehost/Session.h"
#include "filehost/Workspace.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace tools {

class Console;

/// Lets the manifest say when the instances were modified that the session stored; the session's
/// commit writes it. False, reported, when the manifest cannot be updated.
bool updateManifest(const filehost::Workspace& workspace, filehost::Session& session,
                    Console& console);

/// The instances that the manifest flags as sources, in its order. Nothing, reported, when there is
/// no manifest that can be read.
std::optional<QStringList> flaggedSources(const filehost::Workspace& workspace, Console& console);

/// Warns, in one line, when an instance that drives links is not flagged. Silent about a manifest
/// that cannot be read: whoever updates it says that.
void warnIfNotFlagged(const filehost::Workspace& workspace, const QString& instance, int links,
                      Console& console);

} // namespace tools

#endif
