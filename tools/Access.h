#ifndef UNITFLOW_TOOLS_ACCESS_H
#define UNITFLOW_TOOLS_ACCESS_H

#include "filehost/Session.h"
#include "filehost/Workspace.h"
#include "host/ConfigurationAndProcessDataBase.h"

#include <QString>

#include <optional>

namespace tools {

class Console;

// What a subcommand needs before it can work. What cannot be had is reported.

/// The workspace that -C names.
std::optional<filehost::Workspace> openWorkspace(Console& console);

/// Begins the session and says for whom it waits.
bool beginSession(filehost::Session& session, Console& console);

/// Whether there is such an instance.
bool requireInstance(const filehost::Workspace& workspace, const filehost::Instance& instance,
                     Console& console);

/// Whether there is such a description.
bool requireDependency(const filehost::Workspace& workspace, const QString& name, Console& console);

/// What to report when `url` names nothing in the instance's tree.
filehost::Problem unknownUrl(const filehost::Workspace& workspace,
                             const filehost::Instance& instance, const BaseClassSharedPointer& root,
                             const QString& url);

/// The file of an instance, as problems name it.
QString fileOf(const filehost::Workspace& workspace, const filehost::Instance& instance);

/// "configuration" or "process description".
QString nameOf(filehost::Kind kind);

} // namespace tools

#endif
