#include "tools/why/WhyCommand.h"

#include "DependencyWalkerDefinitions.h"
#include "TypeDescription.h"
#include "filehost/NearestNames.h"
#include "tools/console/Console.h"
#include "tools/console/Json.h"
#include "tools/console/Names.h"
#include "tools/console/Style.h"
#include "tools/console/Table.h"
#include "tools/console/Text.h"
#include "tools/console/Value.h"
#include "tools/workspace/Access.h"
#include "tools/workspace/Changes.h"
#include "tools/workspace/Links.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iterator>

namespace tools {

namespace {

using filehost::DescriptionPlaces;
using filehost::Kind;
using filehost::Link;
using filehost::Problem;
using filehost::Session;
using filehost::Workspace;
using Keywords = DependencyWalkerDefinitions;
using RowOutcome = TraversalObserver::RowOutcome;

constexpr int mostUrls = 6;

/// From the root of a description to the table of a command.
QStringList pathTo(const CommandRowId& id)
{
    QStringList path;
    for (const QString& node : id.nodes) {
        if (!path.isEmpty()) {
            path.append(Keywords::getNextNodeKeyword());
        }
        path.append(node);
    }
    return path + QStringList{Keywords::getCommandKeyword(), id.command};
}

/// Where the unit of a row comes from.
struct UnitOrigin {
    enum class From { Row, Parameter, Write };
    From from = From::Write;
    QString parameterUrl; ///< only with `From::Parameter`
};

UnitOrigin originOf(const CommandRowId& id, const QVariantList& cells)
{
    const TypeDescription* const type =
        TypeCatalog::find(TypeDescription::Kind::Command, id.command);
    const QList<int>* const layout =
        type == nullptr ? nullptr : type->table.layoutFor(cells.size());
    for (int cell = 0; layout != nullptr && cell < layout->size(); ++cell) {
        switch (type->table.columns.at(layout->at(cell)).role) {
        case CellRole::Unit:
            return {UnitOrigin::From::Row, {}};
        case CellRole::SourceUrl:
            return {UnitOrigin::From::Parameter, cells.at(cell).toString()};
        default:
            break;
        }
    }
    return {};
}

QString nameOf(UnitOrigin::From from)
{
    switch (from) {
    case UnitOrigin::From::Row:
        return QStringLiteral("row");
    case UnitOrigin::From::Parameter:
        return QStringLiteral("parameter");
    case UnitOrigin::From::Write:
        return QStringLiteral("write");
    }
    return {};
}

/// The units that a row gives and where they come from.
QString unitsText(const ReachingRow& row, const UnitOrigin& origin)
{
    QStringList units;
    for (const QVariant& unit : row.units) {
        units.append(valueText(unit));
    }
    QString text = units.mid(0, mostUrls).join(QStringLiteral(", "));
    switch (origin.from) {
    case UnitOrigin::From::Row:
        return text;
    case UnitOrigin::From::Parameter:
        return text.isEmpty() ? QStringLiteral("the value of %1, when it has one")
                                    .arg(printable(origin.parameterUrl))
                              : QStringLiteral("%1, the value of %2")
                                    .arg(text, printable(origin.parameterUrl));
    case UnitOrigin::From::Write:
        return text.isEmpty() ? QStringLiteral("the written value")
                              : QStringLiteral("%1, the written value").arg(text);
    }
    return {};
}

QString urlsText(const ReachingRow& row, const QString& source)
{
    if (row.everyWrite) {
        return QStringLiteral("any write of %1").arg(printable(source));
    }
    QStringList urls;
    for (const QString& url : row.urls.mid(0, mostUrls)) {
        urls.append(url.isEmpty() ? QStringLiteral("no write (unitflow resolve)") : printable(url));
    }
    const int more = row.urls.size() - urls.size();
    return more == 0 ? urls.join(QStringLiteral(", "))
                     : QStringLiteral("%1 and %2 more")
                           .arg(urls.join(QStringLiteral(", ")), QString::number(more));
}

/// Why a row does not set the unit of the leaf.
QString reasonOf(const ReachingRow& row)
{
    switch (row.outcome) {
    case RowOutcome::Changed:
    case RowOutcome::Unchanged:
        return QStringLiteral("sets that leaf");
    case RowOutcome::NoTarget:
        return QStringLiteral("there is no such leaf");
    case RowOutcome::NoUnit:
        return QStringLiteral("the row has no unit");
    case RowOutcome::NoParameterUrl:
        return QStringLiteral("the row names no leaf of the source");
    case RowOutcome::NoValue:
        return QStringLiteral("the source has no value to take");
    case RowOutcome::NotAnArray:
        return QStringLiteral("that leaf is no array");
    case RowOutcome::NoColumns:
        return QStringLiteral("that array does not tell its columns");
    case RowOutcome::InvalidColumn:
        return QStringLiteral("the column is no number");
    default:
        return QStringLiteral("the unit is refused");
    }
}

QString lineOf(const QString& label, const QString& text)
{
    constexpr int labelWidth = 8;
    constexpr int indentation = 4 + labelWidth;
    return QStringLiteral("    ") + padded(label, labelWidth) +
           wrapped(text, lineWidth, indentation).mid(indentation);
}

QString cellsText(const QVariantList& cells)
{
    QStringList texts;
    for (const QVariant& cell : cells) {
        texts.append(printable(toJsonText(cell)));
    }
    return QLatin1Char('[') + texts.join(QStringLiteral(", ")) + QLatin1Char(']');
}

} // namespace

CLI::App* WhyCommand::declare(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("why", "Show who can set the unit of a leaf");
    command->add_option("INSTANCE", instanceArgument, "The instance that has the leaf")
        ->required()
        ->option_text(" ");
    command->add_option("URL", urlArgument, "The leaf, for example Fields/Pressure")
        ->required()
        ->option_text(" ");
    command->add_flag("--process", isProcess, "INSTANCE is a process description");
    command->footer(
        R"(Lists each row of a description that can set the unit of the leaf, with the
writes after which it does. A comparison with a value of the source counts as
one that holds, since values may become any. Then follows what becomes of the
unit when all links are resolved. Nothing is written.

Examples:
  unitflow why display Fields/Pressure
  unitflow why oven Zones/Preheat --process)");
    return command;
}

ExitCode WhyCommand::run(Console& console)
{
    instance = {isProcess ? Kind::Process : Kind::Configuration,
                QString::fromStdString(instanceArgument)};
    url = QString::fromStdString(urlArgument);
    const ExitCode exitCode = work(console);
    if (console.options().json) {
        writeDocument(console, exitCode);
    } else if (leaf) {
        console.show(text(console.color()));
    }
    return exitCode;
}

ExitCode WhyCommand::work(Console& console)
{
    const std::optional<Workspace> workspace = openWorkspace(console);
    if (!workspace) {
        return ExitCode::Failed;
    }
    QList<Problem> problems;
    links = workspace->links(problems);
    console.report(problems);

    Session session(*workspace, Session::Access::Read);
    if (!beginSession(session, console) || !findLeaf(session, console)) {
        return ExitCode::Failed;
    }
    reach = reachOf(session, links, instance, url, console);
    near = reach.rows.isEmpty() ? nearest() : QList<ReachingRow>();
    for (const ReachingRow& row : reach.rows + near) {
        readRow(*workspace, row.id);
    }
    for (const Decision& decision : qAsConst(reach.decisions)) {
        readRow(*workspace, decision.row);
    }
    sortRows();
    return problems.isEmpty() && reach.isComplete ? ExitCode::Done : ExitCode::Unresolved;
}

bool WhyCommand::findLeaf(Session& session, Console& console)
{
    const BaseClassSharedPointer root = loadInstance(session, instance, console);
    if (!root) {
        return false;
    }
    const BaseClassSharedPointer node = root->getChildData(url);
    const QList<Leaf> leaves = !node.isNull() ? leavesBelow(node, url) : QList<Leaf>();
    if (leaves.isEmpty() || leaves.first().url != url) {
        const bool isInner = !node.isNull() && !url.isEmpty();
        console.report(isInner ? notALeaf(session.workspace(), instance, node, url)
                               : unknownUrl(session.workspace(), instance, root, url));
        return false;
    }
    leaf = leaves.first();
    return true;
}

/// The rows that have the leaf as their target but cannot set it, otherwise one for each of the
/// nearest targets.
QList<ReachingRow> WhyCommand::nearest() const
{
    QStringList targets;
    for (const ReachingRow& row : reach.others) {
        targets.append(row.targetUrl);
    }
    targets.removeDuplicates();
    const QStringList wanted =
        targets.contains(url) ? QStringList{url} : filehost::nearestNames(url, targets);
    QList<ReachingRow> rows;
    for (const QString& target : wanted) {
        const auto isLike = [&](const ReachingRow& row) { return row.targetUrl == target; };
        if (target == url) {
            std::copy_if(reach.others.begin(), reach.others.end(), std::back_inserter(rows),
                         isLike);
        } else {
            rows.append(*std::find_if(reach.others.begin(), reach.others.end(), isLike));
        }
    }
    return rows;
}

/// As links and rows stand in their files.
void WhyCommand::sortRows()
{
    const auto place = [this](const ReachingRow& row) {
        return std::make_pair(row.id.link, textOf(row).place.bytes.begin);
    };
    for (QList<ReachingRow>* rows : {&reach.rows, &near}) {
        std::stable_sort(rows->begin(), rows->end(),
                         [&](const ReachingRow& left, const ReachingRow& right) {
                             return place(left) < place(right);
                         });
    }
}

void WhyCommand::readRow(const Workspace& workspace, const CommandRowId& id)
{
    const QString dependency = links.at(id.link).dependency;
    QList<Problem> ignored; // the engine read it a moment ago
    const auto [found, isNew] = places.try_emplace(dependency);
    if (isNew) {
        found->second = DescriptionPlaces::read(workspace, dependency, ignored);
    }
    RowText& text = texts[id];
    text.file = fileOf(workspace, dependency);
    if (!found->second) {
        return;
    }
    const DescriptionPlaces& description = *found->second;
    const DescriptionPlaces::Index table = description.leafValue(description.find(pathTo(id)));
    const TypeDescription* const type =
        TypeCatalog::find(TypeDescription::Kind::Command, id.command);
    if (table == filehost::json::JsonText::none || type == nullptr) {
        return;
    }
    const QVariantList rows = description.text().value(table).toList();
    const int number = type->table.keptRows(rows).value(id.row, -1);
    const DescriptionPlaces::Index element = description.element(table, number);
    if (element != filehost::json::JsonText::none) {
        text.place = description.valueAt(element);
        text.cells = rows.at(number).toList();
    }
}

const WhyCommand::RowText& WhyCommand::textOf(const ReachingRow& row) const
{
    return texts.at(row.id);
}

int WhyCommand::indexOf(const Decision& decision) const
{
    const auto found =
        std::find_if(reach.rows.begin(), reach.rows.end(), [&](const ReachingRow& row) {
            return row.id == decision.row && row.column == decision.column;
        });
    return found == reach.rows.end() ? -1 : static_cast<int>(found - reach.rows.begin());
}

QList<LinkRun> WhyCommand::unresolvedRuns() const
{
    return withOutcome(reach.runs, Outcome::Unresolved);
}

QString WhyCommand::text(bool color) const
{
    const auto heading = [color](const QString& words) {
        return styled(words, Style::Heading, color) + QLatin1Char('\n');
    };
    Table table;
    table.addHeading(titleOf(instance));
    table.addRow({printable(url), shortValueText(leaf->value),
                  leaf->unit.isValid() ? valueText(leaf->unit) : QString()});
    for (const Column& column : leaf->columns) {
        table.addRow({QStringLiteral("  ") + printable(column.name), {}, printable(column.unit)});
    }
    QString text = table.toText(color);
    if (reach.rows.isEmpty()) {
        return text + nearestText(color);
    }
    text += heading(QStringLiteral("rows that can set the unit"));
    for (const ReachingRow& row : reach.rows) {
        text += rowText(row);
    }
    return text + heading(QStringLiteral("when all links are resolved")) + decisionText();
}

QString WhyCommand::rowText(const ReachingRow& row) const
{
    const RowText& written = textOf(row);
    const Link& link = links.at(row.id.link);
    QString text =
        QStringLiteral("  %1:%2:%3\n")
            .arg(printable(written.file), QString::number(written.place.line),
                 QString::number(written.place.column)) +
        lineOf(QStringLiteral("row"), cellsText(written.cells)) +
        lineOf(QStringLiteral("of"), printable(row.id.command)) +
        lineOf(QStringLiteral("in"), printable(row.id.nodes.join(QStringLiteral("->")))) +
        lineOf(QStringLiteral("link"), describe(link));
    if (row.column >= 0 && row.targetUrl == url) {
        const QString name = leaf->columns.value(row.column).name;
        text +=
            lineOf(QStringLiteral("column"),
                   name.isEmpty() ? QString::number(row.column)
                                  : QStringLiteral("%1 %2").arg(row.column).arg(printable(name)));
    }
    if (row.targetUrl != url || !isSet(row.outcome)) {
        return text + lineOf(QStringLiteral("target"),
                             QStringLiteral("%1: %2").arg(printable(row.targetUrl), reasonOf(row)));
    }
    return text + lineOf(QStringLiteral("sets"), unitsText(row, originOf(row.id, written.cells))) +
           lineOf(QStringLiteral("after"), urlsText(row, link.source));
}

QString WhyCommand::nearestText(bool color) const
{
    if (reach.runs.isEmpty()) {
        return QStringLiteral("No row can set the unit: no link leads to %1.\n")
            .arg(titleOf(instance));
    }
    if (near.isEmpty()) {
        return QStringLiteral("No row can set the unit, and none has a target like this.\n");
    }
    QString text = QStringLiteral("No row can set the unit.\n") +
                   styled(QStringLiteral("the nearest rows"), Style::Heading, color) +
                   QLatin1Char('\n');
    for (const ReachingRow& row : near) {
        text += rowText(row);
    }
    return text;
}

QString WhyCommand::decisionText() const
{
    QString text;
    for (const Decision& decision : reach.decisions) {
        text += decisionText(decision);
    }
    if (text.isEmpty()) {
        text = QStringLiteral("  as it is: no row sets it\n");
    }
    for (const LinkRun& run : unresolvedRuns()) {
        text += wrapped(placeOf(run.link) + describe(run.link) +
                            QStringLiteral(" does not resolve: what its rows set is dropped"),
                        lineWidth, 2);
    }
    return text;
}

QString WhyCommand::decisionText(const Decision& decision) const
{
    const RowText& row = texts.at(decision.row);
    const QVariant before =
        decision.column < 0 ? leaf->unit : leaf->columns.value(decision.column).unit;
    const QString unit = valueText(decision.unit);
    const QString change =
        before == decision.unit
            ? unit
            : QStringLiteral("%1 → %2").arg(
                  before.toString().isEmpty() ? QStringLiteral("(none)") : valueText(before), unit);
    const QString column =
        decision.column < 0 ? QString() : QStringLiteral("column %1: ").arg(decision.column);
    const Link& link = links.at(decision.row.link);
    const auto sharesDescription = [&](const Link& other) {
        return other.dependency == link.dependency;
    };
    const bool isOneOfSeveral = std::count_if(links.begin(), links.end(), sharesDescription) > 1;
    return wrapped(
        column + QStringLiteral("%1, last set by %2:%3:%4%5")
                     .arg(change, printable(row.file), QString::number(row.place.line),
                          QString::number(row.place.column),
                          isOneOfSeveral ? QStringLiteral(" for ") + describe(link) : QString()),
        lineWidth, 2);
}

void WhyCommand::writeDocument(Console& console, ExitCode exitCode) const
{
    JsonDocument json(QStringLiteral("why"));
    json.add(QStringLiteral("instance"), instance.name);
    json.add(QStringLiteral("process"), isProcess);
    json.add(QStringLiteral("url"), url);
    json.add(QStringLiteral("unit"), leaf ? leaf->unit : QVariant());
    const auto add = [&](const ReachingRow& row) { addRow(json, row); };
    json.addObjects(QStringLiteral("rows"), reach.rows, add);
    json.addObjects(QStringLiteral("nearest"), near, add);
    json.addObject(QStringLiteral("resolved"), [&] {
        json.add(QStringLiteral("unit"), reach.unit);
        json.addObjects(QStringLiteral("columns"), columnsOf(reach.arrayInformation),
                        [&](const Column& column) {
                            json.add(QStringLiteral("name"), column.name);
                            json.add(QStringLiteral("unit"), column.unit);
                        });
        json.addObjects(QStringLiteral("decisions"), reach.decisions,
                        [&](const Decision& decision) {
                            json.add(QStringLiteral("arrayColumn"),
                                     decision.column < 0 ? QVariant() : decision.column);
                            json.add(QStringLiteral("unit"), decision.unit);
                            json.add(QStringLiteral("row"), indexOf(decision));
                        });
        json.addObjects(QStringLiteral("unresolved"), unresolvedRuns(),
                        [&](const LinkRun& run) { addLink(json, run.link); });
    });
    console.write(json, exitCode);
}

void WhyCommand::addRow(JsonDocument& json, const ReachingRow& row) const
{
    const RowText& written = textOf(row);
    const UnitOrigin origin = originOf(row.id, written.cells);
    const bool hasParameter = origin.from == UnitOrigin::From::Parameter;
    json.add(QStringLiteral("file"), written.file);
    json.add(QStringLiteral("line"), written.place.line);
    json.add(QStringLiteral("column"), written.place.column);
    json.add(QStringLiteral("pointer"), written.place.pointer);
    json.add(QStringLiteral("nodes"), row.id.nodes);
    json.add(QStringLiteral("command"), row.id.command);
    json.add(QStringLiteral("cells"), written.cells);
    json.addObject(QStringLiteral("link"), [&] { addLink(json, links.at(row.id.link)); });
    json.add(QStringLiteral("target"), row.targetUrl);
    json.add(QStringLiteral("arrayColumn"), row.column < 0 ? QVariant() : row.column);
    json.add(QStringLiteral("setsIt"), row.targetUrl == url && isSet(row.outcome));
    json.add(QStringLiteral("unitFrom"), nameOf(origin.from));
    json.add(QStringLiteral("parameterUrl"),
             hasParameter ? QVariant(origin.parameterUrl) : QVariant());
    json.add(QStringLiteral("units"), row.units);
    json.add(QStringLiteral("everyWrite"), row.everyWrite);
    json.add(QStringLiteral("urls"), row.urls);
}

} // namespace tools
