#ifndef UNITFLOW_TOOLS_RESOLVE_BULKRUN_H
#define UNITFLOW_TOOLS_RESOLVE_BULKRUN_H

#include "filehost/LinkPlan.h"
#include "filehost/Session.h"
#include "filehost/Workspace.h"
#include "tools/resolve/ResultWindow.h"

#include <QList>
#include <QString>

#include <functional>
#include <thread>
#include <vector>

namespace tools {

class Interruption;

/// Runs all links of a workspace in several threads, with the result of running them one after the
/// other in their order: same files, same outcomes, same messages.
///
/// Each thread is a job with everything of its own: session, graphs, trees. A job works on one
/// unit of the plan after the other and writes each instance after the last link that needs it, so
/// it keeps few of them in memory. When the run is interrupted, jobs end after the link at hand;
/// an instance that still waits for a link then stays as it was.
class BulkRun {
public:
    /// What the jobs share, and none of them changes. All of it outlives the run.
    struct Input {
        const QList<filehost::Link>& links;
        const filehost::LinkPlan& plan;
        const filehost::Session& holder; ///< of the lock, unless nothing is to be written
        filehost::Session::Access access;
        const Interruption& interruption;
        /// How the changes of an instance are to be shown. Called by all jobs at the same time.
        std::function<QString(const QList<filehost::LeafChange>&)> textOf;
    };

    /// Starts `jobs` threads, or as many as there are units, or as the system allows: possibly
    /// none.
    BulkRun(const Input& input, int jobs);
    /// Waits for the jobs, which end only when their results are taken.
    ~BulkRun();
    BulkRun(const BulkRun&) = delete;
    BulkRun& operator=(const BulkRun&) = delete;

    bool hasJobs() const { return !threads.empty(); }

    /// The results, up to the last one; in the order of the plan's units.
    ResultWindow& results() { return window; }

private:
    const Input input;
    ResultWindow window;
    std::vector<std::thread> threads;
};

} // namespace tools

#endif
