#include "tools/workspace/SetCommand.h"

#include "TraversalObserver.h"
#include "tools/console/Console.h"
#include "tools/console/Json.h"
#include "tools/console/Text.h"
#include "tools/console/Value.h"
#include "tools/workspace/Access.h"
#include "tools/workspace/Manifest.h"

#include <CLI/CLI.hpp>

#include <optional>

namespace tools {

namespace {

using filehost::Kind;
using filehost::Link;
using filehost::Problem;
using filehost::Session;
using filehost::Workspace;

/// Notes whether a description answers at all.
class NodeObserver final : public TraversalObserver {
public:
    bool isAnySelected = false;

    void nodeSelected(const SelectedNode& /*node*/) override { isAnySelected = true; }
};

} // namespace

CLI::App* SetCommand::declare(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("set", "Write a value; units that follow it change");
    command->add_option("INSTANCE", instanceArgument, "The instance that has the leaf")
        ->required()
        ->option_text(" ");
    command->add_option("URL", urlArgument, "The leaf, for example Settings/Mode")
        ->required()
        ->option_text(" ");
    command->add_option("VALUE", valueArgument, "The value to write")->required()->option_text(" ");
    command->add_flag("--process", isProcess,
                      "INSTANCE is a process description (links start at\n"
                      "configurations only: nothing follows)");
    command->add_flag("--dry-run", isDryRun, "Show what would change, write nothing");
    command->add_flag("--string", isText, "VALUE is text, whatever it looks like");
    command->footer(
        R"(VALUE is a JSON literal if it reads as one (5, true, "text", [[1, 2]]) and text
otherwise. If it begins with "-" and is no number, it goes behind "--".

Examples:
  unitflow set controller Settings/TemperatureUnit °F
  unitflow set controller Settings/Offset -5 --dry-run
  unitflow set controller Settings/Serial 0815 --string
  unitflow set controller Settings/Note -- "-- none --")");
    return command;
}

ExitCode SetCommand::run(Console& console)
{
    const ExitCode exitCode = work(console);
    if (console.options().json) {
        writeDocument(console, exitCode);
    } else {
        showText(console);
    }
    return exitCode;
}

ExitCode SetCommand::work(Console& console)
{
    const std::optional<Workspace> workspace = openWorkspace(console);
    if (!workspace || !readArguments(console)) {
        return ExitCode::Failed;
    }

    QList<Problem> linkProblems;
    const QList<Link> links = workspace->links(linkProblems);
    console.report(linkProblems);
    // Without any link the value would be written and nothing would follow, unnoticed later on.
    if (!linkProblems.isEmpty() && links.isEmpty()) {
        return ExitCode::Failed;
    }

    Session session(*workspace, isDryRun ? Session::Access::Read : Session::Access::Write);
    if (!beginSession(session, console) || !storeWrite(session, write, console)) {
        return ExitCode::Failed;
    }

    runLinks(session, links, console);
    warnIfNotFlagged(*workspace, write.instance.name, runs.size(), console);
    changes = keepChanges(session, isDryRun, console, write.instance);
    isDone = changes.allKept;
    if (!changes.allKept) {
        return ExitCode::Failed;
    }
    const bool allWell = linkProblems.isEmpty() && withOutcome(runs, Outcome::Failed).isEmpty();
    return allWell ? ExitCode::Done : ExitCode::Unresolved;
}

bool SetCommand::readArguments(Console& console)
{
    write.instance = {isProcess ? Kind::Process : Kind::Configuration,
                      QString::fromStdString(instanceArgument)};
    write.url = QString::fromStdString(urlArgument);

    QList<Problem> problems;
    const QString text = QString::fromStdString(valueArgument);
    write.value = isText ? QVariant(text) : parseValue(text, problems);
    console.report(problems);
    return write.value.isValid();
}

void SetCommand::runLinks(Session& session, const QList<Link>& links, Console& console)
{
    LinkRunner runner(session, console);
    NodeObserver observer;
    const TraversalObservation observation(observer);
    for (const Link& link : linksOf(write, links)) {
        runs.append(runner.run(link, {write.url}));
    }
    isAnyNodeRun = observer.isAnySelected;
}

void SetCommand::showText(Console& console) const
{
    console.show(changesText(changes.list, console.color()));
    if (!isDone) {
        return;
    }

    if (changes.list.isEmpty()) {
        console.show(QStringLiteral("Nothing changed: %1 has this value already.\n")
                         .arg(printable(write.url)));
    }
    const QString nothing = nothingFollows(write, runs, isAnyNodeRun);
    console.show(nothing);
    if (isAnyNodeRun && !nothing.isEmpty()) {
        console.show(QStringLiteral("\"unitflow explain\" with the same write says why.\n"));
    }
    if (isDryRun) {
        console.show(QStringLiteral("Dry run: nothing was written.\n"));
    }
}

void SetCommand::writeDocument(Console& console, ExitCode exitCode) const
{
    JsonDocument json(QStringLiteral("set"));
    json.add(QStringLiteral("dryRun"), isDryRun);
    json.add(QStringLiteral("instance"), QString::fromStdString(instanceArgument));
    json.add(QStringLiteral("process"), isProcess);
    json.add(QStringLiteral("url"), QString::fromStdString(urlArgument));
    json.add(QStringLiteral("value"), write.value);
    addChanges(json, changes.list);
    addRuns(json, runs);
    console.write(json, exitCode);
}

} // namespace tools
