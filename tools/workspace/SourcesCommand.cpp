#include "tools/workspace/SourcesCommand.h"

#include "filehost/Workspace.h"
#include "tools/console/Console.h"
#include "tools/console/Json.h"
#include "tools/console/Table.h"
#include "tools/console/Text.h"
#include "tools/workspace/Access.h"
#include "tools/workspace/Manifest.h"

#include <CLI/CLI.hpp>
#include <QStringList>

#include <algorithm>
#include <optional>

namespace tools {

namespace {

using filehost::Link;
using filehost::Problem;
using filehost::Workspace;

} // namespace

CLI::App* SourcesCommand::declare(CLI::App& program)
{
    CLI::App* command =
        program.add_subcommand("sources", "List the instances that the manifest flags as sources");
    command->footer(
        R"(The manifest is configuration/manifest.json: a list with an object for each
instance, in which "hasDependency": true flags a source.

Examples:
  unitflow sources
  unitflow sources --json)");
    return command;
}

ExitCode SourcesCommand::run(Console& console)
{
    const ExitCode exitCode = work(console);
    if (console.options().json) {
        writeDocument(console, exitCode);
    } else {
        console.show(exitCode == ExitCode::Done || !sources.isEmpty() ? text(console.color())
                                                                      : QString());
    }
    return exitCode;
}

ExitCode SourcesCommand::work(Console& console)
{
    const std::optional<Workspace> workspace = openWorkspace(console);
    const std::optional<QStringList> names =
        workspace ? flaggedSources(*workspace, console) : std::nullopt;
    if (!names) {
        return ExitCode::Failed;
    }

    QList<Problem> problems;
    const QList<Link> links = workspace->links(problems);
    console.report(problems);
    for (const QString& name : *names) {
        const auto count = std::count_if(links.begin(), links.end(),
                                         [&](const Link& link) { return link.source == name; });
        sources.append({name, static_cast<int>(count)});
    }
    return problems.isEmpty() ? ExitCode::Done : ExitCode::Failed;
}

QString SourcesCommand::text(bool color) const
{
    if (sources.isEmpty()) {
        return QStringLiteral("The manifest flags no instance as a source.\n");
    }
    Table table;
    table.addHeading(QStringLiteral("sources"));
    for (const Source& source : sources) {
        table.addRow({printable(source.instance),
                      source.links == 0 ? QStringLiteral("no links")
                                        : counted(source.links, QStringLiteral("link"),
                                                  QStringLiteral("links"))});
    }
    return table.toText(color);
}

void SourcesCommand::writeDocument(Console& console, ExitCode exitCode) const
{
    JsonDocument json(QStringLiteral("sources"));
    json.addObjects(QStringLiteral("sources"), sources, [&json](const Source& source) {
        json.add(QStringLiteral("instance"), source.instance);
        json.add(QStringLiteral("links"), source.links);
    });
    console.write(json, exitCode);
}

} // namespace tools
