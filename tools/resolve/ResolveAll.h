#ifndef UNITFLOW_TOOLS_RESOLVE_RESOLVEALL_H
#define UNITFLOW_TOOLS_RESOLVE_RESOLVEALL_H

#include "filehost/Session.h"
#include "filehost/Workspace.h"
#include "host/ModifiedInstanceItem.h"
#include "tools/console/ExitCode.h"
#include "tools/console/Json.h"
#include "tools/resolve/ResultWindow.h"
#include "tools/resolve/Summary.h"

#include <QHash>
#include <QList>
#include <QString>

#include <chrono>
#include <optional>
#include <vector>

namespace tools {

class Console;
class Interruption;

/// Of the format "unitflow/resolve". Since 2, changes come in the order of the links.
constexpr int resolveVersion = 2;

/// `unitflow resolve --all`: runs every link of a workspace, and shows what changed as it goes.
///
/// Instances are written and shown one after the other, so that a workspace of any size fits the
/// memory. What is kept until the end is a few bytes for each link, a name and a time for each
/// instance that was written, which is what the manifest is updated with, and, for a document, each
/// problem.
class ResolveAll {
public:
    ResolveAll(Console& console, int jobs, bool isDryRun);

    ExitCode run();

private:
    /// What came of a link; nothing as long as it was not run.
    struct State {
        std::optional<Outcome> outcome;
        bool changed = false;
    };

    ExitCode work();
    bool readLinks(const filehost::Workspace& workspace);
    void runLinks(filehost::Session& session, const Interruption& interruption);
    void take(const LinkResult& result);
    void take(const CompletedInstance& instance);
    QString textOf(const QList<filehost::LeafChange>& changes) const;
    void showPending();
    void updateManifest(filehost::Session& session);
    void summarize();
    ExitCode exitCode(int signal) const;

    void showSummary() const;
    void complainAboutInterruption() const;
    void writeDocument(ExitCode exitCode);
    LinkRun runOf(int link) const;

    Console& console;
    int jobs;
    bool isDryRun;
    JsonDocument document;
    QString pending; ///< lines to be shown

    // what came of it
    QList<filehost::Link> links;
    bool linksAreSound = true; ///< false when links.json has entries that cannot be used
    bool hasRun = false;
    bool allKept = true; ///< false when a file could not be written, or the manifest not updated
    std::vector<State> states;                     ///< by link
    QHash<QString, ModifiedInstanceItem> modified; ///< by instance, the last item of each
    Summary summary;
    std::chrono::milliseconds elapsed{0};
};

} // namespace tools

#endif
