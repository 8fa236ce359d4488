#include "tools/resolve/ResolveAll.h"

#include "filehost/LinkPlan.h"
#include "tools/console/Console.h"
#include "tools/console/Progress.h"
#include "tools/console/Text.h"
#include "tools/resolve/BulkRun.h"
#include "tools/resolve/Interruption.h"
#include "tools/workspace/Access.h"
#include "tools/workspace/Changes.h"

#include <csignal>
#include <utility>

namespace tools {

namespace {

using filehost::LinkPlan;
using filehost::Problem;
using filehost::Session;
using filehost::Workspace;

Session::Access accessFor(bool isDryRun)
{
    return isDryRun ? Session::Access::Read : Session::Access::Write;
}

} // namespace

ResolveAll::ResolveAll(Console& console, int jobs, bool isDryRun)
    : console(console), jobs(jobs), isDryRun(isDryRun),
      document(QStringLiteral("resolve"), resolveVersion)
{}

ExitCode ResolveAll::run()
{
    document.add(QStringLiteral("dryRun"), isDryRun);
    document.add(QStringLiteral("all"), true);
    document.beginList(QStringLiteral("changes"));
    const ExitCode exitCode = work();
    document.endList();

    if (console.options().json) {
        writeDocument(exitCode);
    } else if (hasRun) {
        showSummary();
    }
    return exitCode;
}

ExitCode ResolveAll::work()
{
    const std::optional<Workspace> workspace = openWorkspace(console);
    if (!workspace || !readLinks(*workspace)) {
        return ExitCode::Failed;
    }
    Session session(*workspace, accessFor(isDryRun));
    if (!beginSession(session, console)) {
        return ExitCode::Failed;
    }

    const Interruption interruption;
    runLinks(session, interruption);
    updateManifest(session);
    summarize();
    return exitCode(interruption.signal());
}

bool ResolveAll::readLinks(const Workspace& workspace)
{
    QList<Problem> problems;
    links = workspace.links(problems);
    console.report(problems);
    linksAreSound = problems.isEmpty();
    states.resize(static_cast<std::size_t>(links.size()));
    return linksAreSound || !links.isEmpty();
}

void ResolveAll::runLinks(Session& session, const Interruption& interruption)
{
    const auto start = ProgressReport::Clock::now();
    const LinkPlan plan(session.workspace(), links);
    const auto textOf = [this](const QList<filehost::LeafChange>& changes) {
        return this->textOf(changes);
    };
    BulkRun run({links, plan, session, accessFor(isDryRun), interruption, textOf}, jobs);
    hasRun = run.hasJobs() || links.isEmpty();
    if (!hasRun) {
        console.complain(QStringLiteral("not even one thread could be started"),
                         QStringLiteral("end other programs, or raise the limit of threads"));
    }

    if (!isDryRun) {
        session.readManifestAhead(); // while the jobs work
    }
    ProgressReport progress(console, links.size(), start);
    for (bool isLast = false; !isLast;) {
        const ResultWindow::Batch batch = run.results().take(ProgressReport::interval);
        if (batch.lastWords) {
            console.report(*batch.lastWords);
            run.results().confirmLastWords();
        }
        for (const LinkResult& result : batch.results) {
            take(result);
        }
        showPending();
        progress.update(batch.done, ProgressReport::Clock::now());
        isLast = batch.isLast;
    }
    console.clearStatus();
    for (const int link : run.results().undone()) {
        states[static_cast<std::size_t>(link)] = {};
    }
    elapsed =
        std::chrono::duration_cast<std::chrono::milliseconds>(ProgressReport::Clock::now() - start);
}

void ResolveAll::take(const LinkResult& result)
{
    states[static_cast<std::size_t>(result.link)] = {result.outcome, result.changed};
    if (!result.diagnostics.isEmpty() || result.outcome == Outcome::Unresolved) {
        showPending(); // what was before it, on a terminal
    }
    for (const Diagnostic& diagnostic : result.diagnostics) {
        console.report(diagnostic);
    }
    if (result.outcome == Outcome::Unresolved) {
        complainAboutUnresolved(runOf(result.link), console);
    }
    for (const CompletedInstance& instance : result.completed) {
        take(instance);
    }
}

void ResolveAll::take(const CompletedInstance& instance)
{
    if (!instance.problems.isEmpty()) {
        showPending();
    }
    console.report(instance.problems);
    allKept = allKept && instance.problems.isEmpty();

    for (const ModifiedInstanceItem& item : instance.modifications) {
        modified.insert(item.instanceName, item);
    }
    if (instance.changed.instances == 0) {
        return;
    }
    summary.changed.leaves += instance.changed.leaves;
    summary.changed.instances += instance.changed.instances;
    summary.files += isDryRun ? 0 : 1;
    if (console.options().json) {
        document.addItems(instance.text);
    } else {
        pending += instance.text;
    }
}

/// For any thread: it works on nothing but what never changes.
QString ResolveAll::textOf(const QList<filehost::LeafChange>& changes) const
{
    if (console.options().json) {
        return changeItems(changes);
    }
    return console.options().quiet ? QString() : changeLines(changes, console.color());
}

/// Many changes at once: each writing takes a call into the system.
void ResolveAll::showPending()
{
    if (console.options().json) {
        console.stream(document);
    } else {
        console.show(std::exchange(pending, {}));
    }
}

/// Instances come to the manifest in the order in which links changed them, whichever job did.
void ResolveAll::updateManifest(Session& session)
{
    QList<ModifiedInstanceItem> items;
    for (int link = 0; link < links.size(); ++link) {
        const auto item = modified.constFind(links[link].target);
        if (states[static_cast<std::size_t>(link)].changed && item != modified.constEnd()) {
            items.append(*item);
            modified.erase(item);
        }
    }
    session.adopt(items);
    const Changes rest = keepChanges(session, isDryRun, console);
    summary.files += rest.files;
    allKept = allKept && rest.allKept;
}

void ResolveAll::summarize()
{
    for (const State& state : states) {
        if (state.outcome) {
            summary.count(*state.outcome);
        } else {
            ++summary.left;
        }
    }
}

ExitCode ResolveAll::exitCode(int signal) const
{
    if (!hasRun || (!allKept && summary.left == 0)) {
        return ExitCode::Failed;
    }
    if (summary.left > 0) {
        complainAboutInterruption();
        return signal == SIGTERM ? ExitCode::Terminated : ExitCode::Interrupted;
    }
    return linksAreSound && summary.isAllResolved() ? ExitCode::Done : ExitCode::Unresolved;
}

void ResolveAll::complainAboutInterruption() const
{
    const QString advice = isDryRun ? QStringLiteral("nothing was written")
                                    : QStringLiteral("what was done is kept; run the same command "
                                                     "again to go on");
    console.coverEcho();
    console.complain(
        QStringLiteral("interrupted with %1 left of %2")
            .arg(counted(summary.left, QStringLiteral("link"), QStringLiteral("links")),
                 QString::number(summary.links())),
        advice);
}

void ResolveAll::showSummary() const
{
    if (summary.changed.instances > 0) {
        console.show(totalText(summary.changed));
    } else if (summary.resolved > 0 && allKept && summary.left == 0) {
        console.show(QStringLiteral("Nothing changed.\n"));
    }

    constexpr std::chrono::seconds worthTelling{1};
    const QString time = console.isOnTerminal() && elapsed >= worthTelling
                             ? QStringLiteral(" in %1").arg(durationText(elapsed))
                             : QString();
    console.show(linksText(summary) + time + QStringLiteral(".\n"));
    if (isDryRun) {
        console.show(QStringLiteral("Dry run: nothing was written.\n"));
    }
}

void ResolveAll::writeDocument(ExitCode exitCode)
{
    document.beginList(QStringLiteral("links"));
    for (int link = 0; link < links.size(); ++link) {
        if (states[static_cast<std::size_t>(link)].outcome) {
            document.addItem([&] { addRun(document, runOf(link)); });
            console.stream(document);
        }
    }
    document.endList();
    addSummary(document, summary);
    console.write(document, exitCode);
}

LinkRun ResolveAll::runOf(int link) const
{
    const State& state = states[static_cast<std::size_t>(link)];
    return {links[link], {}, state.outcome.value_or(Outcome::Failed), state.changed};
}

} // namespace tools
