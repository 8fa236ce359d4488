#include "tools/types/TypesCommand.h"

#include "tools/console/Console.h"
#include "tools/console/Json.h"
#include "tools/console/Text.h"
#include "tools/types/Types.h"

#include <CLI/CLI.hpp>
#include <QStringList>

#include <algorithm>

namespace tools {

namespace {

using RowFate = TableDescription::RowFate;

QString nameOf(CellRole role)
{
    switch (role) {
    case CellRole::SourceUrl:
        return QStringLiteral("source-url");
    case CellRole::TargetUrl:
        return QStringLiteral("target-url");
    case CellRole::TargetUrlTemplate:
        return QStringLiteral("target-url-template");
    case CellRole::Pattern:
        return QStringLiteral("pattern");
    case CellRole::PatternWithGroups:
        return QStringLiteral("pattern-with-groups");
    case CellRole::TargetUrlByGroups:
        return QStringLiteral("target-url-by-groups");
    case CellRole::TargetColumn:
        return QStringLiteral("target-column");
    case CellRole::Unit:
        return QStringLiteral("unit");
    case CellRole::Comparator:
        return QStringLiteral("comparator");
    case CellRole::Constant:
        return QStringLiteral("constant");
    case CellRole::Remark:
        return QStringLiteral("remark");
    }
    return {};
}

QString nameOf(RowFate fate)
{
    switch (fate) {
    case RowFate::Kept:
        return QStringLiteral("kept");
    case RowFate::Truncated:
        return QStringLiteral("truncated");
    case RowFate::Skipped:
        return QStringLiteral("skipped");
    case RowFate::Fatal:
        return QStringLiteral("fatal");
    }
    return {};
}

void addTable(JsonDocument& json, const TableDescription& table)
{
    json.addObjects(QStringLiteral("columns"), table.columns,
                    [&json](const ColumnDescription& column) {
                        json.add(QStringLiteral("name"), column.name);
                        json.add(QStringLiteral("meaning"), column.meaning);
                        json.add(QStringLiteral("role"), nameOf(column.role));
                    });
    json.addObjects(QStringLiteral("rows"), table.layouts, [&](const QList<int>& layout) {
        json.add(QStringLiteral("columns"), columnNames(table, layout));
    });
    const bool hasTable = !table.layouts.isEmpty();
    const auto fate = [&](int cells) {
        return hasTable ? QVariant(nameOf(table.fateOf(cells))) : QVariant();
    };
    json.add(QStringLiteral("shorterRows"), fate(0));
    json.add(QStringLiteral("longerRows"), fate(table.columns.size() + 1));
}

} // namespace

CLI::App* TypesCommand::declare(CLI::App& program)
{
    CLI::App* command =
        program.add_subcommand("types", "Show the types that a description can name");
    command->add_option("TYPE", nameArgument, "The type to show, with an example")
        ->option_text(" ");
    command->add_flag("--markdown", isMarkdown, "As a page in Markdown, with all examples");
    command->footer(
        R"(Without TYPE: all types, each with what it does and the rows of its table.

Examples:
  unitflow types
  unitflow types CommandSetUnitPropertiesRegExp
  unitflow types --json)");
    return command;
}

ExitCode TypesCommand::run(Console& console)
{
    shown = allTypes();
    const QString name = QString::fromStdString(nameArgument);
    if (!name.isEmpty()) {
        QStringList names;
        for (const TypeDescription& type : qAsConst(shown)) {
            names.append(type.name);
        }
        shown.erase(std::remove_if(shown.begin(), shown.end(),
                                   [&](const TypeDescription& type) { return type.name != name; }),
                    shown.end());
        if (shown.isEmpty()) {
            const QString nearest = nearestNamesText(name, names);
            console.report(filehost::Problem{
                filehost::Problem::Code::Missing,
                {},
                0,
                0,
                QStringLiteral("there is no type %1").arg(quoted(name)),
                nearest.isEmpty() ? QStringLiteral("\"unitflow types\" lists them") : nearest});
        }
    }

    const ExitCode exitCode = shown.isEmpty() ? ExitCode::Failed : ExitCode::Done;
    if (console.options().json) {
        writeDocument(console, exitCode);
    } else if (isMarkdown) {
        console.show(referencePage(shown));
    } else if (name.isEmpty()) {
        console.show(typesText(shown, console.color()));
    } else if (!shown.isEmpty()) {
        console.show(typeText(shown.first(), console.color()));
    }
    return exitCode;
}

void TypesCommand::writeDocument(Console& console, ExitCode exitCode) const
{
    JsonDocument json(QStringLiteral("types"));
    json.addObjects(QStringLiteral("types"), shown, [&json](const TypeDescription& type) {
        json.add(QStringLiteral("name"), type.name);
        json.add(QStringLiteral("kind"), nameOf(type.kind));
        json.add(QStringLiteral("meaning"), type.meaning);
        addTable(json, type.table);
        json.add(QStringLiteral("example"), exampleOf(type));
    });
    console.write(json, exitCode);
}

} // namespace tools
