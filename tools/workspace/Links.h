#ifndef UNITFLOW_TOOLS_WORKSPACE_LINKS_H
#define UNITFLOW_TOOLS_WORKSPACE_LINKS_H

#include "filehost/Session.h"
#include "filehost/Workspace.h"
#include "tools/console/Console.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace tools {

class JsonDocument;

enum class Outcome {
    Resolved,   ///< the target follows
    Unresolved, ///< for some URL no command succeeded; the target is left as it was
    Failed      ///< something that the link needs could not be had, or its result not be kept
};

/// One link that was run.
struct LinkRun {
    filehost::Link link;
    QStringList urls; ///< as given; empty for all that the description watches
    Outcome outcome = Outcome::Failed;
    bool changed = false; ///< a leaf of the target changed
};

/// Runs links in a session, one at a time, and reports under a link's name what it ran into.
class LinkRunner {
public:
    using Resolve =
        std::function<bool(const filehost::Link& link, const QStringList& urls, bool& changed)>;
    using Report = std::function<void(const Diagnostic& diagnostic)>;

    /// Leaves the links to the engine's resolver, and tells the console.
    LinkRunner(filehost::Session& session, Console& console);

    /// `lastWords` gets what ends the process as soon as it returns.
    LinkRunner(filehost::Session& session, Resolve resolve, Report report, Report lastWords);

    LinkRun run(const filehost::Link& link, const QStringList& urls);

private:
    filehost::Problem inDescription(const filehost::Link& link, const QString& message) const;

    filehost::Session& session;
    Resolve resolve;
    Report report;
    Report lastWords;
};

/// What to report when a message of the engine is the last one: the process ends behind it.
filehost::Problem endOfProgram(const filehost::Workspace& workspace, const filehost::Link& link,
                               const QString& message);

/// Says that a run left its target as it was, and for which URLs.
void complainAboutUnresolved(const LinkRun& run, Console& console);

/// The runs with an outcome, in their order.
QList<LinkRun> withOutcome(const QList<LinkRun>& runs, Outcome outcome);

/// Adds the runs as the member "links".
void addRuns(JsonDocument& document, const QList<LinkRun>& runs);
/// Adds what a run is as members of the object that is open.
void addRun(JsonDocument& document, const LinkRun& run);

} // namespace tools

#endif
