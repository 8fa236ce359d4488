#ifndef UNITFLOW_TOOLS_WORKSPACE_SOURCEWRITE_H
#define UNITFLOW_TOOLS_WORKSPACE_SOURCEWRITE_H

#include "filehost/Session.h"
#include "filehost/Workspace.h"
#include "tools/workspace/Links.h"

#include <QList>
#include <QString>
#include <QVariant>

namespace tools {

class Console;

/// A value for a leaf of an instance, by which links run.
struct SourceWrite {
    filehost::Instance instance;
    QString url;
    QVariant value; ///< invalid for the one that the leaf has
};

/// Stores the value in the session, unless the leaf is to keep its own. False, reported, when there
/// is no such leaf or it cannot have the value.
bool storeWrite(filehost::Session& session, const SourceWrite& write, Console& console);

/// The links that run after the write, in their order.
QList<filehost::Link> linksOf(const SourceWrite& write, const QList<filehost::Link>& links);

/// Why nothing follows the write, in a line; empty when something does, or failed to.
/// `isAnyNodeRun` says whether any of the descriptions ran a node.
QString nothingFollows(const SourceWrite& write, const QList<LinkRun>& runs, bool isAnyNodeRun);

} // namespace tools

#endif
