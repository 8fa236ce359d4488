#ifndef UNITFLOW_FILEHOST_LINKBATCH_H
#define UNITFLOW_FILEHOST_LINKBATCH_H

#include "filehost/Export.h"
#include "filehost/Session.h"
#include "filehost/Workspace.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <list>

namespace filehost {

/// Runs many links on one thread. The outcome, the problems and the stores are those of
/// `FileDependencyResolver::resolveLink`, which fetches, parses and builds for each link anew, as
/// the engine's resolver promises; a batch does so once for links that share a source or a
/// description, as long as they are among the last few used.
///
/// It leaves out the two warnings by which the engine's resolver only repeats what the result and
/// the session's problems say: that a root is invalid, and that a dependency was not resolved.
class UNITFLOW_FILEHOST_EXPORT LinkBatch {
public:
    /// Does some work and gives what was logged on this thread meanwhile instead of letting it go
    /// its way.
    using Listener = std::function<QStringList(const std::function<void()>& work)>;

    /// `session` is that of the thread and outlives the batch. With a `listener`, what building a
    /// graph logs is logged for each link that uses it, otherwise only when it is built.
    LinkBatch(Session& session, Listener listener);
    ~LinkBatch();
    LinkBatch(const LinkBatch&) = delete;
    LinkBatch& operator=(const LinkBatch&) = delete;

    bool resolve(const Link& link, const QStringList& urls, bool& changed);

private:
    struct Graph;

    Graph* keptGraph(const QString& dependency);
    Graph& makeGraph(const QString& dependency, const QString& text);

    Session& session;
    Listener listener;
    std::list<Graph> graphs; ///< the last used one first
};

} // namespace filehost

#endif
