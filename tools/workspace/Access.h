#ifndef UNITFLOW_TOOLS_WORKSPACE_ACCESS_H
#define UNITFLOW_TOOLS_WORKSPACE_ACCESS_H

#include "filehost/Session.h"
#include "filehost/Workspace.h"
#include "host/ConfigurationAndProcessDataBase.h"

#include <QString>

#include <optional>

namespace tools {

class Console;

// What subcommands need before they can work. What cannot be had is reported.

/// The workspace that -C names.
std::optional<filehost::Workspace> openWorkspace(Console& console);

/// Begins the session and says for whom it waits.
bool beginSession(filehost::Session& session, Console& console);

/// Whether the command line could name an instance of the other kind at that place. A source is
/// always a configuration.
enum class KindChoice { Free, ConfigurationOnly };

/// The tree of an instance; null when it cannot be had.
BaseClassSharedPointer loadInstance(filehost::Session& session, const filehost::Instance& instance,
                                    Console& console, KindChoice choice = KindChoice::Free);

/// What to report when `url` names nothing in an instance's tree.
filehost::Problem unknownUrl(const filehost::Workspace& workspace,
                             const filehost::Instance& instance, const BaseClassSharedPointer& root,
                             const QString& url);

/// What to report when `url` names a node of an instance that has only children.
filehost::Problem notALeaf(const filehost::Workspace& workspace, const filehost::Instance& instance,
                           const BaseClassSharedPointer& node, const QString& url);

/// The file of an instance, as problems name it.
QString fileOf(const filehost::Workspace& workspace, const filehost::Instance& instance);

/// The file of a description, as problems name it.
QString fileOf(const filehost::Workspace& workspace, const QString& dependency);

} // namespace tools

#endif
