#include "tools/graph/GraphCommand.h"

#include "filehost/LinkPlan.h"
#include "filehost/Session.h"
#include "tools/check/FindingText.h"
#include "tools/console/Console.h"
#include "tools/console/Json.h"
#include "tools/console/Messages.h"
#include "tools/console/Names.h"
#include "tools/console/Text.h"
#include "tools/explain/TraceTree.h"
#include "tools/graph/DotText.h"
#include "tools/graph/GraphJson.h"
#include "tools/graph/GraphOverlay.h"
#include "tools/graph/GraphPage.h"
#include "tools/graph/GraphRuns.h"
#include "tools/graph/Graphviz.h"
#include "tools/graph/MermaidText.h"
#include "tools/graph/OutputFile.h"
#include "tools/workspace/Access.h"
#include "tools/workspace/Links.h"
#include "trace/TraceReader.h"

#include <CLI/CLI.hpp>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace tools {

namespace {

using filehost::DescriptionPlaces;
using filehost::Link;
using filehost::Problem;
using filehost::Session;
using filehost::Workspace;

/// The formats, each with the endings of files that have it.
struct Format {
    const char* name;
    QStringList endings;
};

const QList<Format>& formats()
{
    static const QList<Format> all{
        {"text", {QStringLiteral("txt")}},
        {"dot", {QStringLiteral("dot"), QStringLiteral("gv")}},
        {"mermaid", {QStringLiteral("mmd"), QStringLiteral("mermaid")}},
        {"json", {QStringLiteral("json")}},
        {"svg", {QStringLiteral("svg")}},
        {"png", {QStringLiteral("png")}},
    };
    return all;
}

/// Empty when no format has that ending.
QString formatOf(const QString& file)
{
    const QString ending = QFileInfo(file).suffix().toLower();
    for (const Format& format : formats()) {
        if (format.endings.contains(ending)) {
            return QLatin1String(format.name);
        }
    }
    return {};
}

/// A file by one name, whatever names lead to it, also when it is still to be written.
QString onlyName(const std::string& file)
{
    const QFileInfo info(QString::fromStdString(file));
    return info.exists()
               ? info.canonicalFilePath()
               : QDir(info.absolutePath()).canonicalPath() + QLatin1Char('/') + info.fileName();
}

/// The first ones, and how many more there are.
QStringList firstOf(const QStringList& items)
{
    constexpr int most = 10;
    return items.size() <= most
               ? items
               : items.mid(0, most) +
                     QStringList{QStringLiteral("%1 more").arg(items.size() - most)};
}

QString linkLine(const Link& link)
{
    return QStringLiteral("%1%2").arg(placeOf(link), describe(link));
}

/// The links by which somebody may choose one.
QString listed(const QList<Link>& links)
{
    QStringList lines;
    for (const Link& link : links) {
        lines.append(linkLine(link));
    }
    return firstOf(lines).join(QStringLiteral("; "));
}

QString placeArgument(const Link& link)
{
    return QStringLiteral("%1:%2").arg(link.line).arg(link.column);
}

/// Whether a line alone does not say which one is meant.
bool areOnOneLine(const QList<Link>& links)
{
    return std::any_of(links.begin() + 1, links.end(),
                       [&](const Link& link) { return link.line == links.first().line; });
}

/// A way out for who finds no link in a trace that fits.
QString adviceFrom(const std::vector<LinkTrace>& runs)
{
    QStringList told;
    for (const LinkTrace& run : runs) {
        if (run.link && !told.contains(run.link->dependency)) {
            told.append(run.link->dependency);
        }
    }
    return told.isEmpty() ? QStringLiteral("it tells of nothing that ran")
                          : QStringLiteral("it tells of ") + enumerated(firstOf(told));
}

bool isSame(const Link& link, const trace::Link& told)
{
    return link.source == told.source && link.target == told.target &&
           link.isProcess == told.isProcess && link.parameters == told.parameters;
}

} // namespace

CLI::App* GraphCommand::declare(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("graph", "Draw a description");
    command->add_option("DESCRIPTION", nameArgument, "The description, for example display-units")
        ->option_text(" ");
    command->add_option("--format", formatArgument, "text, dot, mermaid, json, svg or png")
        ->check(CLI::IsMember({"text", "dot", "mermaid", "json", "svg", "png"}))
        ->option_text("FORMAT");
    command->add_option("-o", fileArgument, "Write to this file")->option_text("FILE");
    command->add_option("--html", pageArgument, "Write a page to look around in")
        ->option_text("FILE");
    command->add_option("--link", linkArgument, "Show the targets that rows have for this link")
        ->option_text("LINK");
    command->add_option("--trace", traceArgument, "Show what ran in this trace")
        ->option_text("FILE");
    command->footer(
        R"(Without DESCRIPTION: the only one of the workspace. The text is a line for each
path through the description. Pictures have what is watched on the left, then
switch nodes as diamonds and command nodes as boxes with what they set. "~" is
for patterns, and what no write ever gets to is dashed. Graphviz draws SVG and
PNG. Without --format the ending of -o says what to write.

--link takes a link of the description as SOURCE:TARGET, or the LINE or
LINE:COLUMN of links.json where it stands, and shows which leaf each row sets
there, if it is there. --trace takes what "unitflow explain --json" wrote and
shows what ran: for the link of --link, otherwise for the first one.

Examples:
  unitflow graph display-units
  unitflow graph display-units -o display-units.svg
  unitflow graph display-units --link controller:display -o units.png
  unitflow graph display-units --html display-units.html
  unitflow explain controller Settings/FlowUnit --json >flow.ndjson
  unitflow graph display-units --trace flow.ndjson --format dot)");
    return command;
}

ExitCode GraphCommand::run(Console& console)
{
    const bool isReady = chooseFormat(console) && checkUsage(console) && readDescription(console);
    return isReady ? write(console) : fail(console);
}

bool GraphCommand::chooseFormat(Console& console)
{
    const QString file = QString::fromStdString(fileArgument);
    format = QString::fromStdString(formatArgument);
    if (console.options().json) {
        const QString other = format.isEmpty() ? formatOf(file) : format;
        format = QStringLiteral("json");
        if (!other.isEmpty() && other != format) {
            console.complain(QStringLiteral("--json contradicts %1")
                                 .arg(formatArgument.empty() ? QStringLiteral("-o ") + quoted(file)
                                                             : QStringLiteral("--format ") + other),
                             formatArgument.empty()
                                 ? QStringLiteral("leave out --json, or add --format json")
                                 : QStringLiteral("leave out one of them"));
            return false;
        }
    }
    if (format == QLatin1String("json")) {
        console.chooseJson();
    }
    if (format.isEmpty() && file.isEmpty() && !pageArgument.empty()) {
        return true; // the page alone
    }
    if (format.isEmpty()) {
        format = file.isEmpty() ? QStringLiteral("text") : formatOf(file);
    }
    if (format.isEmpty()) {
        console.complain(
            QStringLiteral("no format has files that end like %1").arg(quoted(file)),
            QStringLiteral("add --format: text, dot, mermaid, json, svg or png; a page is "
                           "written with --html instead"));
        return false;
    }
    return true;
}

bool GraphCommand::isTextAlone() const
{
    return format == QLatin1String("text") && pageArgument.empty();
}

bool GraphCommand::checkUsage(Console& console) const
{
    if (format == QLatin1String("png") && fileArgument.empty() && console.isOnTerminal()) {
        console.complain(QStringLiteral("a PNG is nothing for a terminal"),
                         QStringLiteral("name a file: -o FILE"));
        return false;
    }
    const bool isOneFile = !pageArgument.empty() && !fileArgument.empty() &&
                           onlyName(pageArgument) == onlyName(fileArgument);
    if (isOneFile) {
        console.complain(QStringLiteral("--html and -o name the same file"),
                         QStringLiteral("name two files, or leave out -o for the page alone"));
        return false;
    }
    if (isTextAlone() && !(linkArgument.empty() && traceArgument.empty())) {
        console.complain(
            QStringLiteral("--link and --trace show nothing in the text"),
            QStringLiteral("choose another form with --format: dot, mermaid, json, svg or png"));
        return false;
    }
    return true;
}

bool GraphCommand::readDescription(Console& console)
{
    const std::optional<Workspace> workspace = openWorkspace(console);
    if (!workspace || !chooseDescription(*workspace, console)) {
        return false;
    }
    QList<Problem> problems;
    const std::optional<DescriptionPlaces> places =
        DescriptionPlaces::read(*workspace, graph.description, problems);
    console.report(problems);
    if (!places) {
        return false;
    }
    graph = readGraph(*places, graph.description);
    if (isTextAlone()) {
        return true; // the paths need nothing of what follows
    }
    if (linkArgument.empty()) {
        addRuns(graph);
    } else if (!addLink(*workspace, console)) {
        return false;
    }
    return traceArgument.empty() || addTrace(console);
}

bool GraphCommand::chooseDescription(const Workspace& workspace, Console& console)
{
    const QStringList names = workspace.dependencyNames();
    graph.description = QString::fromStdString(nameArgument);
    if (nameArgument.empty() && names.size() == 1) {
        graph.description = names.first();
    }
    if (names.contains(graph.description)) {
        return true;
    }
    const QString list = names.isEmpty()
                             ? QStringLiteral("there is none in this workspace")
                             : QStringLiteral("there are ") + enumerated(firstOf(names));
    if (nameArgument.empty()) {
        console.report(Problem{Problem::Code::Missing,
                               {},
                               0,
                               0,
                               QStringLiteral("no description is named"),
                               names.isEmpty() ? list
                                               : list + QStringLiteral("; type \"unitflow graph "
                                                                       "%1\"")
                                                            .arg(names.first())});
        return false;
    }
    const QString nearest = nearestNamesText(graph.description, names);
    console.report(
        Problem{Problem::Code::Missing,
                {},
                0,
                0,
                QStringLiteral("there is no description %1").arg(quoted(graph.description)),
                nearest.isEmpty() ? list : nearest});
    return false;
}

bool GraphCommand::addLink(const Workspace& workspace, Console& console)
{
    graph.link = chosenLink(workspace, console);
    if (!graph.link) {
        return false;
    }
    Session session(workspace, Session::Access::Read);
    if (!beginSession(session, console)) {
        return false;
    }
    const filehost::Instance target = filehost::targetOf(*graph.link);
    const GraphTrees trees{session.view(filehost::sourceOf(*graph.link)), session.view(target),
                           session.load(target)};
    const QList<Problem> problems = session.takeProblems();
    for (const Problem& problem : problems) {
        console.report({Severity::Error, problem, graph.link});
    }
    if (trees.source.isNull() || trees.target.isNull() || trees.scratch.isNull()) {
        return false;
    }
    Messages messages([&](const QString& lastWords) {
        console.report(
            {Severity::Error, endOfProgram(workspace, *graph.link, lastWords), graph.link});
    });
    addRuns(graph, trees);
    return true;
}

std::optional<Link> GraphCommand::chosenLink(const Workspace& workspace, Console& console) const
{
    QList<Problem> problems;
    QList<Link> candidates;
    for (const Link& link : workspace.links(problems)) {
        if (link.dependency == graph.description) {
            candidates.append(link);
        }
    }
    console.report(problems);
    const QString wanted = QString::fromStdString(linkArgument);
    QList<Link> found;
    std::copy_if(candidates.begin(), candidates.end(), std::back_inserter(found),
                 [&](const Link& link) {
                     return wanted == QString::number(link.line) || wanted == placeArgument(link) ||
                            wanted == link.source + QLatin1Char(':') + link.target;
                 });
    if (found.size() == 1) {
        return found.first();
    }
    const QString message = found.isEmpty() ? QStringLiteral("no link through %1 is %2")
                                            : QStringLiteral("several links through %1 are %2");
    const QString advice =
        candidates.isEmpty() ? QStringLiteral("no link of this workspace goes through it")
        : found.isEmpty()
            ? QStringLiteral("SOURCE:TARGET or the line of one of: ") + listed(candidates)
        : areOnOneLine(found)
            ? QStringLiteral("name the line and the column, as in \"--link %1\": %2")
                  .arg(placeArgument(found.first()), listed(found))
            : QStringLiteral("name the line, as in \"--link %1\": %2")
                  .arg(QString::number(found.first().line), listed(found));
    console.report(Problem{
        Problem::Code::Missing, {}, 0, 0, message.arg(graph.description, quoted(wanted)), advice});
    return std::nullopt;
}

bool GraphCommand::addTrace(Console& console)
{
    const QString name = QString::fromStdString(traceArgument);
    QFile file(name);
    const auto report = [&](Problem::Code code, int line, const QString& message,
                            const QString& advice) {
        console.report(Problem{code, name, line, line > 0 ? 1 : 0, message, advice});
        return false;
    };
    if (!file.open(QIODevice::ReadOnly)) {
        return report(Problem::Code::Read, 0,
                      QStringLiteral("cannot be read: %1").arg(file.errorString()), {});
    }
    const trace::Trace trace = trace::readTrace(file.readAll());
    for (const trace::TraceError& error : trace.errors) {
        report(Problem::Code::Syntax, error.line, error.message,
               QStringLiteral("\"unitflow explain --json\" writes traces"));
    }
    if (!trace.errors.isEmpty()) {
        return false;
    }
    const std::vector<LinkTrace> runs = traceTree(trace.events);
    const LinkTrace* const run = chosenRun(runs, console);
    if (run == nullptr) {
        return report(
            Problem::Code::Missing, 0,
            QStringLiteral("the trace tells of no link through %1")
                .arg(graph.description + (graph.link ? QStringLiteral(" like this") : QString())),
            adviceFrom(runs));
    }
    QStringList urls;
    for (const TraversalRun& traversal : run->traversals) {
        urls.append(traversal.url);
    }
    urls.removeDuplicates();
    if (urls.size() > 1) {
        console.note(QStringLiteral("The trace tells of writes to %1; all that ran is shown.")
                         .arg(printable(enumerated(firstOf(urls)))));
    }
    if (!tools::addTrace(graph, *run)) {
        return report(Problem::Code::Shape, 0,
                      QStringLiteral("what ran is not all in %1").arg(graph.file),
                      run->link ? QStringLiteral("it was changed since; explain the write again")
                                : QStringLiteral("the trace names no link: draw the description "
                                                 "that was run, as it was then"));
    }
    return true;
}

/// Null when there is none.
const LinkTrace* GraphCommand::chosenRun(const std::vector<LinkTrace>& runs, Console& console) const
{
    std::vector<const LinkTrace*> found;
    for (const LinkTrace& run : runs) {
        if (run.link && run.link->dependency == graph.description &&
            (!graph.link || isSame(*graph.link, *run.link))) {
            found.push_back(&run);
        }
    }
    if (found.empty()) {
        // The engine alone knows of no links: whoever chose the description says what was run.
        const bool namesNone = runs.size() == 1 && !runs.front().link;
        return namesNone ? &runs.front() : nullptr;
    }
    if (found.size() > 1 && !graph.link) {
        const trace::Link& first = *found.front()->link;
        console.note(
            QStringLiteral("The trace tells of %1 links; this shows the first, %2. --link shows "
                           "another.")
                .arg(QString::number(found.size()),
                     describe(Link{first.source, first.target, first.dependency, first.isProcess,
                                   first.parameters, 0, 0})));
    }
    return found.front();
}

QByteArray GraphCommand::json(Console& console, ExitCode exitCode) const
{
    JsonDocument document(QStringLiteral("graph"));
    addGraph(document, graph);
    return console.finished(document, exitCode).toUtf8();
}

/// Nothing, reported, when somebody else is needed and cannot do it.
std::optional<QByteArray> GraphCommand::rendered(Console& console) const
{
    if (format == QLatin1String("text")) {
        QString text;
        for (const QString& path : pathsOf(graph)) {
            text += path.isEmpty() ? QString() : printable(path) + QLatin1Char('\n');
        }
        return text.toUtf8();
    }
    if (format == QLatin1String("dot")) {
        return dotText(graph).toUtf8();
    }
    if (format == QLatin1String("mermaid")) {
        return mermaidText(graph).toUtf8();
    }
    return format == QLatin1String("json") ? json(console, ExitCode::Done)
                                           : drawnByGraphviz(dotText(graph), format, console);
}

ExitCode GraphCommand::write(Console& console)
{
    if (!pageArgument.empty() && !writePage(console)) {
        return fail(console);
    }
    if (format.isEmpty()) {
        hint(console);
        return ExitCode::Done;
    }
    const std::optional<QByteArray> bytes = rendered(console);
    if (!bytes) {
        return fail(console);
    }
    hint(console);
    const QString file = QString::fromStdString(fileArgument);
    if (file.isEmpty()) {
        console.printBytes(*bytes);
        return ExitCode::Done;
    }
    return writeFile(file, *bytes, console) ? ExitCode::Done : fail(console);
}

bool GraphCommand::writePage(Console& console) const
{
    const std::optional<QByteArray> svg =
        drawnByGraphviz(dotText(graph), QStringLiteral("svg"), console);
    if (!svg) {
        return false;
    }
    const QString page = graphPage(json(console, ExitCode::Done), QString::fromUtf8(*svg));
    return writeFile(QString::fromStdString(pageArgument), page.toUtf8(), console);
}

/// With --json there is a document all the same.
ExitCode GraphCommand::fail(Console& console) const
{
    if (console.options().json) {
        console.printBytes(json(console, ExitCode::Failed));
    }
    return ExitCode::Failed;
}

void GraphCommand::hint(Console& console) const
{
    if (graph.nodes.empty()) {
        console.note(QStringLiteral("There is no node in %1.").arg(printable(graph.file)));
    }
    int mistakes = 0;
    for (const GraphNode& node : graph.nodes) {
        mistakes += mistakesIn(node.findings);
    }
    if (mistakes > 0) {
        console.note(QStringLiteral("%1 in it; \"unitflow check %2\" tells more.")
                         .arg(counted(mistakes, QStringLiteral("mistake is"),
                                      QStringLiteral("mistakes are")),
                              printable(graph.file)));
    }
}

} // namespace tools
