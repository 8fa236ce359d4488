#include "tools/workspace/ShowCommand.h"

#include "filehost/Session.h"
#include "tools/console/Console.h"
#include "tools/console/Json.h"
#include "tools/console/Names.h"
#include "tools/console/Table.h"
#include "tools/console/Text.h"
#include "tools/console/Value.h"
#include "tools/workspace/Access.h"
#include "tools/workspace/Changes.h"
#include "tools/workspace/Listing.h"

#include <CLI/CLI.hpp>

#include <optional>

namespace tools {

namespace {

using filehost::Instance;
using filehost::Kind;
using filehost::Problem;
using filehost::Session;
using filehost::Workspace;

void addLeaf(Table& table, const Leaf& leaf, const QString& value)
{
    const QString unit = leaf.unit.isValid() ? valueText(leaf.unit) : QString();
    table.addRow({printable(leaf.url), value, unit});
}

void addColumns(Table& table, const Leaf& leaf)
{
    for (const Column& column : leaf.columns) {
        table.addRow({QStringLiteral("  ") + printable(column.name), {}, printable(column.unit)});
    }
}

/// Many leaves, each of them short.
QString leavesText(const Instance& instance, const QList<Leaf>& leaves, bool color)
{
    Table table;
    table.addHeading(titleOf(instance));
    for (const Leaf& leaf : leaves) {
        addLeaf(table, leaf,
                isTable(leaf.value) ? sizeText(leaf.value.toList()) : shortValueText(leaf.value));
        addColumns(table, leaf);
    }
    return table.toText(color);
}

/// The rows of an array below the names and units of its columns.
QString rowsText(const Leaf& leaf)
{
    const QString indentation;
    QStringList names{indentation};
    QStringList units{indentation};
    for (const Column& column : leaf.columns) {
        names.append(printable(column.name));
        units.append(printable(column.unit));
    }

    Table table;
    if (!leaf.columns.isEmpty()) {
        table.addRow(names);
        table.addRow(units);
    }
    for (const QVariant& row : leaf.value.toList()) {
        QStringList cells{indentation};
        for (const QVariant& cell : row.toList()) {
            cells.append(valueText(cell));
        }
        table.addRow(cells);
    }
    return table.toText(false);
}

/// One leaf, all of it.
QString leafText(const Instance& instance, const Leaf& leaf, bool color)
{
    const bool hasRows = isTable(leaf.value);
    Table table;
    table.addHeading(titleOf(instance));
    addLeaf(table, leaf, hasRows ? sizeText(leaf.value.toList()) : valueText(leaf.value));
    if (!hasRows) {
        addColumns(table, leaf);
    }
    return table.toText(color) + (hasRows ? rowsText(leaf) : QString());
}

} // namespace

CLI::App* ShowCommand::declare(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("show", "Show values and units, or the workspace");
    command->add_option("INSTANCE", instanceArgument, "The instance to show")->option_text(" ");
    command->add_option("URL", urlArgument, "Only this leaf, or what is below this node")
        ->option_text(" ");
    command->add_flag("--process", isProcess, "INSTANCE is a process description");
    command->footer(
        R"(Without INSTANCE: the instances, descriptions and links of the workspace.

Examples:
  unitflow show
  unitflow show controller
  unitflow show controller Settings
  unitflow show oven Zone1/Temperature --process)");
    return command;
}

ExitCode ShowCommand::run(Console& console)
{
    const std::optional<Workspace> workspace = openWorkspace(console);
    return instanceArgument.empty() ? showWorkspace(workspace, console)
                                    : showInstance(workspace, console);
}

ExitCode ShowCommand::showWorkspace(const std::optional<Workspace>& workspace, Console& console)
{
    Listing listing;
    if (workspace) {
        QList<Problem> problems;
        listing = listingOf(*workspace, problems);
        console.report(problems);
    }
    const ExitCode exitCode = console.hasReported() ? ExitCode::Failed : ExitCode::Done;

    if (console.options().json) {
        JsonDocument json(QStringLiteral("workspace"));
        addListing(json, listing);
        console.write(json, exitCode);
    } else if (workspace) {
        console.show(listingText(listing, console.color()));
    }
    return exitCode;
}

ExitCode ShowCommand::showInstance(const std::optional<Workspace>& workspace, Console& console)
{
    const Instance instance{isProcess ? Kind::Process : Kind::Configuration,
                            QString::fromStdString(instanceArgument)};
    const std::optional<QList<Leaf>> leaves =
        workspace ? findLeaves(*workspace, instance, console) : std::nullopt;
    const ExitCode exitCode = leaves ? ExitCode::Done : ExitCode::Failed;

    if (console.options().json) {
        writeLeaves(leaves.value_or(QList<Leaf>()), console, exitCode);
    } else if (leaves) {
        const bool isOneLeaf = leaves->size() == 1 && leaves->first().url == wantedUrl();
        console.show(isOneLeaf ? leafText(instance, leaves->first(), console.color())
                               : leavesText(instance, *leaves, console.color()));
    }
    return exitCode;
}

std::optional<QList<Leaf>> ShowCommand::findLeaves(const Workspace& workspace,
                                                   const Instance& instance, Console& console) const
{
    Session session(workspace, Session::Access::Read);
    if (!beginSession(session, console)) {
        return std::nullopt;
    }
    const BaseClassSharedPointer root = loadInstance(session, instance, console);
    if (!root) {
        return std::nullopt;
    }

    const QString url = wantedUrl();
    const BaseClassSharedPointer node = url.isEmpty() ? root : root->getChildData(url);
    if (!node) {
        console.report(unknownUrl(workspace, instance, root, url));
        return std::nullopt;
    }
    return leavesBelow(node, url);
}

QString ShowCommand::wantedUrl() const
{
    return QString::fromStdString(urlArgument);
}

void ShowCommand::writeLeaves(const QList<Leaf>& leaves, Console& console, ExitCode exitCode) const
{
    JsonDocument json(QStringLiteral("show"));
    json.add(QStringLiteral("instance"), QString::fromStdString(instanceArgument));
    json.add(QStringLiteral("process"), isProcess);
    json.add(QStringLiteral("url"), wantedUrl());
    json.addObjects(QStringLiteral("leaves"), leaves, [&json](const Leaf& leaf) {
        json.add(QStringLiteral("url"), leaf.url);
        json.add(QStringLiteral("value"), leaf.value);
        json.add(QStringLiteral("unit"), leaf.unit);
        json.add(QStringLiteral("type"), leaf.type);
        json.addObjects(QStringLiteral("columns"), leaf.columns, [&json](const Column& column) {
            json.add(QStringLiteral("name"), column.name);
            json.add(QStringLiteral("unit"), column.unit);
        });
    });
    console.write(json, exitCode);
}

} // namespace tools
