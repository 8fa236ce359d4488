#include "tools/resolve/ResolveCommand.h"

#include "filehost/LinkPlan.h"
#include "tools/console/Console.h"
#include "tools/console/Json.h"
#include "tools/console/Text.h"
#include "tools/console/Value.h"
#include "tools/resolve/ResolveAll.h"
#include "tools/resolve/Summary.h"
#include "tools/workspace/Access.h"

#include <CLI/CLI.hpp>
#include <QVariantList>

#include <algorithm>
#include <optional>
#include <thread>

namespace tools {

namespace {

using filehost::Problem;
using filehost::Session;
using filehost::Workspace;

constexpr int mostJobs = 1024;

/// One job for each core, unless the number is given.
int usualJobs()
{
    const unsigned int cores = std::thread::hardware_concurrency();
    return std::clamp(static_cast<int>(cores), 1, mostJobs);
}

QStringList textsOf(const std::vector<std::string>& arguments)
{
    QStringList texts;
    for (const std::string& argument : arguments) {
        texts.append(QString::fromStdString(argument));
    }
    return texts;
}

} // namespace

CLI::App* ResolveCommand::declare(CLI::App& program)
{
    CLI::App* command =
        program.add_subcommand("resolve", "Run a description between two instances, or every link");
    command->add_option("SOURCE", sourceArgument, "The configuration that drives")
        ->option_text(" ");
    command->add_option("TARGET", targetArgument, "The instance that follows")->option_text(" ");
    command->add_option("DEPENDENCY", dependencyArgument, "The description of how it follows")
        ->option_text(" ");
    command->add_flag("--all", isAll, "Run every link of links.json instead");
    command->add_option("--jobs", jobs, "Threads for --all; without it one for each core")
        ->check(CLI::Range(1, mostJobs))
        ->type_name("N")
        ->option_text("N");
    command->add_flag("--process", isProcess, "TARGET is a process description");
    command->add_option("--url", urlArguments, "Run for this URL; may be given again")
        ->type_name("URL")
        ->option_text("URL")
        ->allow_extra_args(false);
    command
        ->add_option("--parameter", parameterArguments,
                     "Hand this to the commands; may be given again")
        ->type_name("VALUE")
        ->option_text("VALUE")
        ->allow_extra_args(false);
    command->add_flag("--dry-run", isDryRun, "Show what would change, write nothing");
    command->footer(
        R"(Without --url, every URL that the description watches is run. A target is stored
only if a command succeeded for each URL that was run.

Examples:
  unitflow resolve controller display display-units
  unitflow resolve controller oven oven-units --process --parameter Zone1/
  unitflow resolve controller display display-units --url Settings/Mode
  unitflow resolve --all --dry-run
  unitflow resolve --all --jobs 4)");
    return command;
}

ExitCode ResolveCommand::run(Console& console)
{
    if (!checkUsage(console)) {
        return ExitCode::Failed;
    }
    if (isAll) {
        return ResolveAll(console, jobs.value_or(usualJobs()), isDryRun).run();
    }

    const ExitCode exitCode = work(console);
    if (console.options().json) {
        writeDocument(console, exitCode);
    } else {
        showText(console);
    }
    return exitCode;
}

bool ResolveCommand::checkUsage(Console& console) const
{
    const QString help = QStringLiteral("\"unitflow resolve --help\" shows how");
    const bool hasOptions = isProcess || !urlArguments.empty() || !parameterArguments.empty();
    if (isAll && (!sourceArgument.empty() || hasOptions)) {
        console.complain(QStringLiteral("--all runs the links as they stand in links.json and goes "
                                        "with --dry-run and --jobs only"),
                         help);
        return false;
    }
    if (!isAll && jobs) {
        console.complain(QStringLiteral("--jobs goes with --all only"), help);
        return false;
    }
    if (!isAll && dependencyArgument.empty()) {
        console.complain(QStringLiteral("SOURCE, TARGET and DEPENDENCY are needed, or --all"),
                         help);
        return false;
    }
    return true;
}

ExitCode ResolveCommand::work(Console& console)
{
    const std::optional<Workspace> workspace = openWorkspace(console);
    if (!workspace || !readArguments(console)) {
        return ExitCode::Failed;
    }

    Session session(*workspace, isDryRun ? Session::Access::Read : Session::Access::Write);
    if (!beginSession(session, console) || !loadArguments(session, console)) {
        return ExitCode::Failed;
    }

    linkRun = LinkRunner(session, console).run(link, textsOf(urlArguments));
    if (linkRun->outcome == Outcome::Unresolved) {
        complainAboutUnresolved(*linkRun, console);
    }
    changes = keepChanges(session, isDryRun, console);
    if (!changes.allKept) {
        return ExitCode::Failed;
    }
    return linkRun->outcome == Outcome::Resolved ? ExitCode::Done : ExitCode::Unresolved;
}

bool ResolveCommand::readArguments(Console& console)
{
    QList<Problem> problems;
    QVariantList parameters;
    for (const QString& text : textsOf(parameterArguments)) {
        parameters.append(parseValue(text, problems));
    }
    console.report(problems);
    link = {QString::fromStdString(sourceArgument),
            QString::fromStdString(targetArgument),
            QString::fromStdString(dependencyArgument),
            isProcess,
            parameters,
            0,
            0};
    return problems.isEmpty();
}

/// What was named on the command line must be there. The session reads each file once only.
bool ResolveCommand::loadArguments(Session& session, Console& console) const
{
    const auto source =
        loadInstance(session, sourceOf(link), console, KindChoice::ConfigurationOnly);
    const auto target = loadInstance(session, targetOf(link), console);
    const bool hasDescription = !session.description(link.dependency).isEmpty();
    console.report(session.takeProblems());
    return !source.isNull() && !target.isNull() && hasDescription;
}

void ResolveCommand::showText(Console& console) const
{
    console.show(changesText(changes.list, console.color()));
    if (!linkRun || !changes.allKept) {
        return;
    }
    if (changes.list.isEmpty() && linkRun->outcome == Outcome::Resolved) {
        console.show(QStringLiteral("Nothing changed.\n"));
    }
    if (isDryRun) {
        console.show(QStringLiteral("Dry run: nothing was written.\n"));
    }
}

void ResolveCommand::writeDocument(Console& console, ExitCode exitCode) const
{
    JsonDocument json(QStringLiteral("resolve"), resolveVersion);
    json.add(QStringLiteral("dryRun"), isDryRun);
    json.add(QStringLiteral("all"), false);
    addChanges(json, changes.list);
    addRuns(json, linkRun ? QList<LinkRun>{*linkRun} : QList<LinkRun>());
    Summary summary;
    if (linkRun) {
        summary.count(linkRun->outcome);
    }
    summary.changed = countOf(changes.list);
    summary.files = changes.files;
    addSummary(json, summary);
    console.write(json, exitCode);
}

} // namespace tools
