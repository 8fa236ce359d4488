#ifndef UNITFLOW_TOOLS_RESOLVE_RESULTWINDOW_H
#define UNITFLOW_TOOLS_RESOLVE_RESULTWINDOW_H

#include "filehost/Problem.h"
#include "host/ModifiedInstanceItem.h"
#include "tools/console/Console.h"
#include "tools/workspace/Changes.h"
#include "tools/workspace/Links.h"

#include <QList>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

namespace tools {

/// What is known of an instance after the last link that needed it.
struct CompletedInstance {
    ChangeCount changed;
    QString text; ///< that shows the changes
    QList<ModifiedInstanceItem> modifications;
    QList<filehost::Problem> problems; ///< why it could not be written
};

/// What came of one link.
struct LinkResult {
    int link = 0; ///< index
    Outcome outcome = Outcome::Failed;
    bool changed = false;
    QList<Diagnostic> diagnostics;
    std::vector<CompletedInstance> completed;
};

/// Hands units of work to several jobs, and their results to one reader: in the order of the
/// units, whichever job was faster. A job that is ahead waits when `limit` results wait for the
/// reader, so that neither a slow unit nor a slow reader fills the memory.
///
/// This is all that jobs share and write to. For any number of threads.
class ResultWindow {
public:
    ResultWindow(int units, std::size_t limit);

    // --- for jobs

    /// Before the job's thread starts.
    void enter();
    /// The last call of a job. `undone` are links whose results were handed over but are not kept.
    void leave(const std::vector<int>& undone);
    /// The next unit; nothing when there is none left.
    std::optional<int> nextUnit();
    /// Hands over the next result of a unit, when there is room for it.
    void push(int unit, LinkResult result);
    /// After the last result of a unit.
    void endUnit(int unit);
    /// For what must be told before the process ends: past all others, and waits until it was.
    void pushLastWords(const Diagnostic& diagnostic);

    // --- for the reader

    struct Batch {
        std::vector<LinkResult> results;
        std::optional<Diagnostic> lastWords; ///< to be confirmed when they were told
        int done = 0;                        ///< links that were run so far, told or not
        bool isLast = false;
    };

    /// What there is to tell, as soon as it is worth it or some time has passed; possibly nothing.
    Batch take(std::chrono::milliseconds patience);
    void confirmLastWords();
    /// What the jobs left undone, after the last batch.
    const std::vector<int>& undone() const { return undoneLinks; }

private:
    struct Unit {
        std::vector<LinkResult> waiting;
        bool isEnded = false;
    };

    bool hasRoom(int unit) const;
    bool hasNews() const;
    void wakeReader();
    void moveReady(std::vector<LinkResult>& results);

    mutable std::mutex mutex;
    std::condition_variable forJobs;
    std::condition_variable forReader;

    const int units;
    const std::size_t limit;
    int jobs = 0;             ///< at work
    int handedOut = 0;        ///< units
    int front = 0;            ///< the unit whose results come next
    std::map<int, Unit> open; ///< units that were begun and not read to their end
    std::size_t waiting = 0;  ///< results, of all units
    int done = 0;
    std::optional<Diagnostic> lastWords;
    bool areLastWordsTold = false;
    std::vector<int> undoneLinks;
};

} // namespace tools

#endif
