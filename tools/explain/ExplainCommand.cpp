#include "tools/explain/ExplainCommand.h"

#include "tools/check/FindingText.h"
#include "tools/console/Console.h"
#include "tools/console/Names.h"
#include "tools/console/Outline.h"
#include "tools/console/Text.h"
#include "tools/console/Value.h"
#include "tools/explain/NearMisses.h"
#include "tools/explain/TraceRecorder.h"
#include "tools/explain/TraceText.h"
#include "tools/explain/TraceTree.h"
#include "tools/workspace/Access.h"
#include "tools/workspace/DescriptionFile.h"
#include "tools/workspace/Leaves.h"
#include "tools/workspace/Links.h"
#include "trace/TraceReader.h"

#include <CLI/CLI.hpp>
#include <QFile>
#include <QHash>

#include <algorithm>
#include <optional>

namespace tools {

namespace {

using filehost::Instance;
using filehost::Kind;
using filehost::Link;
using filehost::Problem;
using filehost::Session;
using filehost::Workspace;

trace::Link traced(const Link& link)
{
    return {link.source, link.target, link.dependency, link.isProcess, link.parameters};
}

Link linkOf(const LinkTrace& run)
{
    const trace::Link told = run.link.value_or(trace::Link());
    return {told.source, told.target, told.dependency, told.isProcess, told.parameters, 0, 0};
}

QString headingOf(const LinkTrace& run)
{
    return run.link ? describe(linkOf(run)) : QStringLiteral("(no link is named)");
}

/// "links.json:line:column".
QString placeWithoutColon(const Link& link)
{
    const QString place = placeOf(link);
    return place.left(place.lastIndexOf(QLatin1Char(':')));
}

/// How many of all links were left out since they do not watch what was written.
QString silentText(int silent, std::size_t all, const QString& written)
{
    if (silent == 0) {
        return {};
    }
    const QString links =
        silent == static_cast<int>(all)
            ? counted(silent, QStringLiteral("link does"), QStringLiteral("links do"))
            : QStringLiteral("\n") + counted(silent, QStringLiteral("other link does"),
                                             QStringLiteral("other links do"));
    return QStringLiteral("%1 not watch %2; --all shows them.\n").arg(links, written);
}

/// Of a trace, what ran for one written URL after the other.
void addTraversals(const LinkTrace& link, TraceText& text, Outline& outline)
{
    if (link.traversals.empty()) {
        outline.addLine(1, QStringLiteral("nothing is told of it"));
    }
    for (const TraversalRun& traversal : link.traversals) {
        const QString written = traversal.url.isEmpty()
                                    ? QStringLiteral("without a write")
                                    : QStringLiteral("a write to ") + printable(traversal.url);
        outline.addLine(1, written);
        text.add(traversal, 2);
        if (!traversal.outcome) {
            outline.addLine(2, QStringLiteral("what follows is not told"));
        } else if (traversal.nodes.empty()) {
            outline.addLine(2, QStringLiteral("no node watches it"));
        } else if (!*traversal.outcome) {
            outline.addLine(2, QStringLiteral("no command succeeds"));
        }
    }
}

/// The URLs of the leaves of a link's target, looked up once.
TraceText::TargetUrls leavesOf(Session& session, const Link& link)
{
    const Instance target{link.isProcess ? Kind::Process : Kind::Configuration, link.target};
    return [&session, target, urls = std::optional<QStringList>()]() mutable {
        if (!urls) {
            const BaseClassSharedPointer root = session.view(target);
            urls = root.isNull() ? QStringList() : urlsOf(leavesBelow(root, QString()));
        }
        return *urls;
    };
}

/// What the engine passes over without a word cannot be told of where it did not happen.
QString mistakesText(Session& session, const QStringList& descriptions)
{
    QString text;
    for (const QString& description : descriptions) {
        const QString file = fileOf(session.workspace(), description);
        const int mistakes = mistakesIn(
            checker::checkText(session.description(description).toUtf8(), file).findings);
        if (mistakes > 0) {
            text += QStringLiteral("%1 in %2; \"unitflow check\" tells more.\n")
                        .arg(counted(mistakes, QStringLiteral("mistake is"),
                                     QStringLiteral("mistakes are")),
                             printable(file));
        }
    }
    return text.isEmpty() ? text : QLatin1Char('\n') + text;
}

} // namespace

CLI::App* ExplainCommand::declare(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("explain", "Say what a write would do, and why");
    command->add_option("INSTANCE", instanceArgument, "The instance that has the leaf")
        ->option_text(" ");
    command->add_option("URL", urlArgument, "The leaf, for example Settings/Mode")
        ->option_text(" ");
    command->add_option("VALUE", valueArgument, "The value that would be written")
        ->option_text(" ");
    command->add_flag("--all", isAll, "Show every step, in the order of execution");
    command->add_option("--trace", traceArgument, "Show this trace instead of a write")
        ->type_name("FILE")
        ->option_text("FILE");
    command->add_flag("--process", isProcess,
                      "INSTANCE is a process description (links start at\n"
                      "configurations only: nothing follows)");
    command->add_flag("--string", isText, "VALUE is text, whatever it looks like");
    command->footer(
        R"(Runs the links of INSTANCE as "unitflow set" does, writes nothing, and says what
each description did and why it did not do more: what holds and what fails, with
the present and the expected value, which rows are skipped, and what nearly
matches. VALUE is read as by "unitflow set"; without it, the leaf keeps its own.
With --json the output is a trace, one event in a line.

Examples:
  unitflow explain controller Settings/TemperatureUnit °F
  unitflow explain controller Settings/Mode --all
  unitflow explain controller Settings/Mode --json > mode.ndjson
  unitflow explain --trace mode.ndjson)");
    return command;
}

ExitCode ExplainCommand::run(Console& console)
{
    if (!checkUsage(console)) {
        return ExitCode::Failed;
    }
    return traceArgument.empty() ? explainWrite(console) : explainFile(console);
}

bool ExplainCommand::checkUsage(Console& console) const
{
    const QString help = QStringLiteral("\"unitflow explain --help\" shows how");
    if (!traceArgument.empty() && (instanceArgument || isProcess || isText)) {
        console.complain(QStringLiteral("--trace takes no write"), help);
        return false;
    }
    if (traceArgument.empty() && !urlArgument) {
        console.complain(QStringLiteral("INSTANCE and URL are missing"), help);
        return false;
    }
    return true;
}

bool ExplainCommand::readArguments(Console& console)
{
    write.instance = {isProcess ? Kind::Process : Kind::Configuration,
                      QString::fromStdString(*instanceArgument)};
    write.url = QString::fromStdString(*urlArgument);
    if (!valueArgument) {
        return true;
    }
    QList<Problem> problems;
    const QString text = QString::fromStdString(*valueArgument);
    write.value = isText ? QVariant(text) : parseValue(text, problems);
    console.report(problems);
    return write.value.isValid();
}

ExitCode ExplainCommand::explainWrite(Console& console)
{
    const std::optional<Workspace> workspace = openWorkspace(console);
    if (!workspace || !readArguments(console)) {
        return ExitCode::Failed;
    }
    QList<Problem> linkProblems;
    const QList<Link> links = workspace->links(linkProblems);
    console.report(linkProblems);
    if (!linkProblems.isEmpty() && links.isEmpty()) {
        return ExitCode::Failed;
    }

    Session session(*workspace, Session::Access::Read);
    if (!beginSession(session, console) || !storeWrite(session, write, console)) {
        return ExitCode::Failed;
    }
    TraceRecorder recorder(console);
    runLinks(session, linksOf(write, links), recorder, console);
    showLinks(session, recorder, console);
    const Changes changes = keepChanges(session, true, console, write.instance);
    showChanges(changes, console);
    if (!changes.allKept) {
        return ExitCode::Failed;
    }
    const bool allWell = linkProblems.isEmpty() && withOutcome(runs, Outcome::Failed).isEmpty();
    return allWell ? ExitCode::Done : ExitCode::Unresolved;
}

void ExplainCommand::runLinks(Session& session, const QList<Link>& links, TraceRecorder& recorder,
                              Console& console)
{
    recorder.beforeTheEnd = [&] { showLinks(session, recorder, console); };
    const TraversalObservation observation(recorder);
    LinkRunner runner(session, console);
    for (const Link& link : links) {
        recorder.take(traced(link));
        runs.append({link, {write.url}, Outcome::Resolved, false}); // it may end the process
        runs.last() = runner.run(link, {write.url});
    }
}

/// The links that changed something come first, those that nothing is known of are only counted.
void ExplainCommand::showLinks(Session& session, const TraceRecorder& recorder, Console& console)
{
    const std::vector<LinkTrace> traces = traceTree(recorder.events());
    isAnyNodeRun = std::any_of(traces.begin(), traces.end(), runsAnything);
    std::vector<std::size_t> order;
    for (std::size_t number = 0; number < traces.size(); ++number) {
        order.push_back(number);
    }
    if (!isAll) {
        std::stable_partition(order.begin(), order.end(),
                              [&](std::size_t number) { return changesAnything(traces[number]); });
    }

    const BaseClassSharedPointer source = session.view(write.instance);
    const QStringList sourceUrls =
        source.isNull() ? QStringList() : urlsOf(leavesBelow(source, QString()));
    QHash<QString, QList<NearMiss>> misses; // of each description, which many links may share
    Outline outline;
    QStringList told; // the descriptions of the links that something is told of
    int silent = 0;
    for (const std::size_t number : order) {
        const LinkRun& run = runs.at(static_cast<int>(number));
        const QString& description = run.link.dependency;
        if (!misses.contains(description)) {
            misses.insert(description,
                          nearMisses(session.description(description), write.url, sourceUrls));
        }
        const bool isTold =
            addLink(session, run, traces[number], misses.value(description), outline);
        silent += isTold ? 0 : 1;
        if (isTold && !told.contains(description)) {
            told.append(description);
        }
    }
    const QString mistakes = mistakesText(session, told);
    session.takeProblems(); // the links that ran have reported them
    console.show(outline.toText(console.color()));
    console.show(mistakes);
    console.show(silentText(silent, traces.size(), printable(write.url)));
}

/// False when there is nothing to tell but that nobody watches the URL.
bool ExplainCommand::addLink(Session& session, const LinkRun& run, const LinkTrace& trace,
                             const QList<NearMiss>& misses, Outline& outline) const
{
    const Link& link = run.link;
    const bool isFailed = run.outcome == Outcome::Failed;
    const bool isSilent =
        !isAll && !isFailed && misses.isEmpty() && !isAnswered(trace) && !changesAnything(trace);
    if (isSilent) {
        return false;
    }

    const DescriptionFile file(session.workspace(), link.dependency);
    outline.addHeading(describe(link), placeWithoutColon(link));
    TraceText text(file, isAll ? TraceText::Extent::Everything : TraceText::Extent::Decisive,
                   outline, leavesOf(session, link));
    for (const TraversalRun& traversal : trace.traversals) {
        text.add(traversal, 1);
    }
    if (isFailed) {
        outline.addLine(1, QStringLiteral("fails: what it needs cannot be had, or its result not "
                                          "be kept"));
    } else if (!runsAnything(trace)) {
        outline.addLine(1, QStringLiteral("no node watches %1").arg(printable(write.url)));
    } else if (run.outcome == Outcome::Unresolved) {
        outline.addLine(1, QStringLiteral("no command succeeds, so %1 is left as it is")
                               .arg(printable(link.target)));
    }
    for (const NearMiss& miss : misses) {
        outline.addLine(
            1, wordsFor(miss),
            file.placeOfWatched(miss.node, miss.watched, miss.kind != NearMiss::Kind::Url));
    }
    return true;
}

void ExplainCommand::showChanges(const Changes& changes, Console& console) const
{
    if (!runs.isEmpty()) {
        console.show(QStringLiteral("\n"));
    }
    console.show(changesText(changes.list, console.color()));
    if (changes.list.isEmpty()) {
        console.show(QStringLiteral("Nothing would change.\n"));
    }
    console.show(nothingFollows(write, runs, isAnyNodeRun));
    console.show(QStringLiteral("Dry run: nothing was written.\n"));
}

ExitCode ExplainCommand::explainFile(Console& console)
{
    const QString name = QString::fromStdString(traceArgument);
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        console.report({Problem::Code::Read,
                        name,
                        0,
                        0,
                        QStringLiteral("cannot be read: %1").arg(file.errorString()),
                        {}});
        return ExitCode::Failed;
    }
    const trace::Trace trace = trace::readTrace(file.readAll());
    for (const trace::TraceError& error : trace.errors) {
        console.report({Problem::Code::Syntax, name, error.line, 1, error.message, {}});
    }

    TraceRecorder recorder(console);
    for (const trace::Event& event : trace.events) {
        recorder.take(event);
    }
    const DescriptionFile unknown;
    Outline outline;
    const std::vector<LinkTrace> links = traceTree(recorder.events());
    int silent = 0;
    for (const LinkTrace& link : links) {
        const bool isTold = isAll || !link.link || !isComplete(link) || link.traversals.empty() ||
                            isAnswered(link) || changesAnything(link);
        if (!isTold) {
            ++silent;
            continue;
        }
        outline.addHeading(headingOf(link), {});
        TraceText text(unknown, isAll ? TraceText::Extent::Everything : TraceText::Extent::Decisive,
                       outline, {});
        addTraversals(link, text, outline);
    }
    console.show(outline.toText(console.color()));
    console.show(silentText(silent, links.size(), QStringLiteral("what was written")));
    return trace.errors.isEmpty() ? ExitCode::Done : ExitCode::Failed;
}

} // namespace tools
