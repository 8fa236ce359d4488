#include "tools/SetCommand.h"

#include "filehost/FileDependencyResolver.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "tools/Access.h"
#include "tools/Console.h"
#include "tools/Json.h"
#include "tools/Leaves.h"
#include "tools/Manifest.h"
#include "tools/Text.h"
#include "tools/Value.h"

#include <CLI/CLI.hpp>

#include <optional>

namespace tools {

namespace {

using filehost::Kind;
using filehost::Link;
using filehost::Problem;
using filehost::Session;
using filehost::Workspace;

const char* const examples =
    R"(VALUE is a JSON literal if it reads as one (5, true, "text", [[1, 2]]) and text
otherwise. If it begins with "-" and is no number, it goes behind "--".

Examples:
  unitflow set controller Settings/TemperatureUnit °F
  unitflow set controller Settings/Offset -5 --dry-run
  unitflow set controller Settings/Serial 0815 --string
  unitflow set controller Settings/Note -- "-- none --")";

Problem notALeaf(const QString& file, const BaseClassSharedPointer& node, const QString& url)
{
    const QString nearest = nearestNamesText(url, urlsOf(leavesBelow(node, url)));
    return {Problem::Code::Shape,
            file,
            0,
            0,
            QStringLiteral("%1 is no leaf: it has no value, only children").arg(quoted(url)),
            nearest};
}

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
    command->footer(examples);
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
    if (!beginSession(session, console) || !writeValue(*workspace, session, console)) {
        return ExitCode::Failed;
    }

    runLinks(session, links, console);
    warnIfNotFlagged(*workspace, instance.name, runs.size(), console);
    changes = keepChanges(session, isDryRun, console, instance);
    isDone = changes.allKept;
    if (!changes.allKept) {
        return ExitCode::Failed;
    }
    const bool allWell = linkProblems.isEmpty() && withOutcome(runs, Outcome::Failed).isEmpty();
    return allWell ? ExitCode::Done : ExitCode::Unresolved;
}

bool SetCommand::readArguments(Console& console)
{
    instance = {isProcess ? Kind::Process : Kind::Configuration,
                QString::fromStdString(instanceArgument)};
    url = QString::fromStdString(urlArgument);

    QList<Problem> problems;
    const QString text = QString::fromStdString(valueArgument);
    value = isText ? QVariant(text) : parseValue(text, problems);
    console.report(problems);
    return value.isValid();
}

bool SetCommand::writeValue(const Workspace& workspace, Session& session, Console& console)
{
    const QString file = fileOf(workspace, instance);
    const BaseClassSharedPointer root = loadInstance(session, instance, console);
    if (!root) {
        return false;
    }

    const BaseClassSharedPointer leaf = root->getChildData(url);
    if (!leaf) {
        console.report(unknownUrl(workspace, instance, root, url));
        return false;
    }
    if (!isLeaf(leaf)) {
        console.report(notALeaf(file, leaf, url));
        return false;
    }

    const int status = leaf->setDataProperty(
        ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue(), value);
    if (status != 0 && status != 1) {
        console.report(Problem{
            Problem::Code::Write, file, 0, 0,
            QStringLiteral("%1 cannot have the value %2")
                .arg(quoted(url), elided(valueText(value), 40)),
            QStringLiteral("write a value with fewer lists and objects inside one another")});
        return false;
    }

    const bool stored = session.store(instance, root, filehost::FileDependencyResolver::origin(),
                                      workspace.directory());
    console.report(session.takeProblems());
    return stored;
}

void SetCommand::runLinks(Session& session, const QList<Link>& links, Console& console)
{
    if (instance.kind == Kind::Process) {
        return;
    }

    LinkRunner runner(session, console);
    for (const Link& link : links) {
        if (link.source == instance.name) {
            runs.append(runner.run(link, {url}));
        }
    }
}

void SetCommand::showText(Console& console) const
{
    console.show(changesText(changes.list, console.color()));
    if (!isDone) {
        return;
    }

    if (changes.list.isEmpty()) {
        console.show(
            QStringLiteral("Nothing changed: %1 has this value already.\n").arg(printable(url)));
    }
    console.show(linksNote());
    if (isDryRun) {
        console.show(QStringLiteral("Dry run: nothing was written.\n"));
    }
}

/// Why nothing follows the write; empty when something does, or failed to.
QString SetCommand::linksNote() const
{
    if (instance.kind == Kind::Process) {
        return QStringLiteral("Nothing follows: links start at configurations only.\n");
    }
    if (runs.isEmpty()) {
        return QStringLiteral("Nothing follows: no link starts at %1.\n")
            .arg(printable(instance.name));
    }
    if (withOutcome(runs, Outcome::Unresolved).size() == runs.size()) {
        return QStringLiteral("Nothing follows: no link of %1 answers a write to %2.\n")
            .arg(printable(instance.name), printable(url));
    }
    return {};
}

void SetCommand::writeDocument(Console& console, ExitCode exitCode) const
{
    JsonDocument json(QStringLiteral("set"));
    json.add(QStringLiteral("dryRun"), isDryRun);
    json.add(QStringLiteral("instance"), QString::fromStdString(instanceArgument));
    json.add(QStringLiteral("process"), isProcess);
    json.add(QStringLiteral("url"), QString::fromStdString(urlArgument));
    json.add(QStringLiteral("value"), value);
    addChanges(json, changes.list);
    addRuns(json, runs);
    console.write(json, exitCode);
}

} // namespace tools
