#include "tools/ResolveCommand.h"

#include "tools/Access.h"
#include "tools/Console.h"
#include "tools/Json.h"
#include "tools/Text.h"
#include "tools/Value.h"

#include <CLI/CLI.hpp>
#include <QVariantList>

#include <algorithm>
#include <optional>

namespace tools {

namespace {

using filehost::Kind;
using filehost::Link;
using filehost::Problem;
using filehost::Session;
using filehost::Workspace;

const char* const examples =
    R"(Without --url, every URL that the description watches is run. A target is stored
only if a command succeeded for each URL that was run.

Examples:
  unitflow resolve controller display display-units
  unitflow resolve controller oven oven-units --process --parameter Zone1/
  unitflow resolve controller display display-units --url Settings/Mode
  unitflow resolve --all --dry-run)";

QStringList textsOf(const std::vector<std::string>& arguments)
{
    QStringList texts;
    for (const std::string& argument : arguments) {
        texts.append(QString::fromStdString(argument));
    }
    return texts;
}

/// The URLs for which a run did not resolve, as far as the engine tells.
QString whereUnresolved(const LinkRun& run)
{
    if (run.urls.isEmpty()) {
        return QStringLiteral("one or more of the URLs that the description watches");
    }
    QStringList urls;
    for (const QString& url : run.urls) {
        urls.append(quoted(url));
    }
    return urls.size() == 1 ? urls.first()
                            : QStringLiteral("one or more of %1").arg(enumerated(urls));
}

void complainAbout(const LinkRun& run, Console& console)
{
    console.complain(placeOf(run.link) + describe(run.link) + QStringLiteral(" did not resolve"),
                     QStringLiteral("for %1 no command succeeded, so %2 was left as it was")
                         .arg(whereUnresolved(run), printable(run.link.target)));
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
    command->footer(examples);
    return command;
}

ExitCode ResolveCommand::run(Console& console)
{
    if (!checkUsage(console)) {
        return ExitCode::Failed;
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
                                        "with --dry-run only"),
                         help);
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
    if (!workspace || !(isAll ? readLinks(*workspace, console) : readArguments(console))) {
        return ExitCode::Failed;
    }

    Session session(*workspace, isDryRun ? Session::Access::Read : Session::Access::Write);
    if (!beginSession(session, console) || (!isAll && !loadArguments(session, console))) {
        return ExitCode::Failed;
    }

    LinkRunner runner(*workspace, session, console);
    for (const Link& link : links) {
        runs.append(runner.run(link, textsOf(urlArguments)));
        if (runs.last().outcome == Outcome::Unresolved) {
            complainAbout(runs.last(), console);
        }
    }
    changes = keepChanges(session, isDryRun, console);
    isDone = changes.allKept;
    if (!isDone) {
        return ExitCode::Failed;
    }
    const bool allResolved = withOutcome(runs, Outcome::Resolved).size() == runs.size();
    return linksAreSound && allResolved ? ExitCode::Done : ExitCode::Unresolved;
}

bool ResolveCommand::readLinks(const Workspace& workspace, Console& console)
{
    QList<Problem> problems;
    links = workspace.links(problems);
    console.report(problems);
    linksAreSound = problems.isEmpty();
    return linksAreSound || !links.isEmpty();
}

bool ResolveCommand::readArguments(Console& console)
{
    QList<Problem> problems;
    QVariantList parameters;
    for (const QString& text : textsOf(parameterArguments)) {
        parameters.append(parseValue(text, problems));
    }
    console.report(problems);
    links = {Link{QString::fromStdString(sourceArgument), QString::fromStdString(targetArgument),
                  QString::fromStdString(dependencyArgument), isProcess, parameters, 0, 0}};
    return problems.isEmpty();
}

/// What was named on the command line must be there. The session reads each file once only.
bool ResolveCommand::loadArguments(Session& session, Console& console) const
{
    const Link& link = links.first();
    const Kind targetKind = link.isProcess ? Kind::Process : Kind::Configuration;
    const auto source = loadInstance(session, {Kind::Configuration, link.source}, console);
    const auto target = loadInstance(session, {targetKind, link.target}, console);
    const bool hasDescription = !session.description(link.dependency).isEmpty();
    console.report(session.takeProblems());
    return !source.isNull() && !target.isNull() && hasDescription;
}

void ResolveCommand::showText(Console& console) const
{
    console.show(changesText(changes.list, console.color()));

    const int resolved = withOutcome(runs, Outcome::Resolved).size();
    if (changes.list.isEmpty() && resolved > 0 && isDone) {
        console.show(QStringLiteral("Nothing changed.\n"));
    }
    if (isAll && isDone) {
        console.show(
            QStringLiteral("%1 of %2 resolved.\n")
                .arg(QString::number(resolved),
                     counted(runs.size(), QStringLiteral("link"), QStringLiteral("links"))));
    }
    if (isDryRun && isDone) {
        console.show(QStringLiteral("Dry run: nothing was written.\n"));
    }
}

void ResolveCommand::writeDocument(Console& console, ExitCode exitCode) const
{
    JsonDocument json(QStringLiteral("resolve"), exitCode);
    json.add(QStringLiteral("dryRun"), isDryRun);
    json.add(QStringLiteral("all"), isAll);
    addChanges(json, changes.list);
    addRuns(json, runs);
    console.write(json);
}

} // namespace tools
