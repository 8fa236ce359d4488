#include "tools/graph/GraphWords.h"

#include "tools/console/Json.h"
#include "tools/console/Text.h"

#include <algorithm>

namespace tools {

namespace {

using Mood = GraphLine::Mood;

constexpr int cellWidth = 36;
constexpr int nameWidth = 28;
constexpr std::size_t mostRows = 6;

/// The cell of a row with that part to play; empty when there is none.
QString cell(const GraphTable& table, const GraphRow& row, std::initializer_list<CellRole> roles)
{
    const QList<int>* const layout = table.type->table.layoutFor(row.cells.size());
    for (int at = 0; layout != nullptr && at < layout->size() && at < row.cells.size(); ++at) {
        const CellRole role = table.type->table.columns.at(layout->at(at)).role;
        if (std::find(roles.begin(), roles.end(), role) != roles.end()) {
            return row.cells.at(at).toString();
        }
    }
    return {};
}

bool has(const GraphTable& table, CellRole role)
{
    const QList<ColumnDescription>& columns = table.type->table.columns;
    return std::any_of(columns.begin(), columns.end(),
                       [&](const ColumnDescription& column) { return column.role == role; });
}

QString shortened(const QString& text)
{
    return text.isEmpty() ? QStringLiteral("\"\"") : elided(printable(text), cellWidth);
}

QString cellsText(const QVariantList& cells)
{
    QStringList texts;
    for (const QVariant& cell : cells) {
        texts.append(toJsonText(cell));
    }
    return printable(QLatin1Char('[') + texts.join(QStringLiteral(", ")) + QLatin1Char(']'));
}

QString conditionText(const GraphTable& table, const GraphRow& row)
{
    const QString subject =
        has(table, CellRole::Pattern)
            ? QStringLiteral("~ ") + shortened(cell(table, row, {CellRole::Pattern}))
            : shortened(cell(table, row, {CellRole::SourceUrl}));
    return has(table, CellRole::Comparator)
               ? QStringLiteral("%1 %2 %3")
                     .arg(subject, shortened(cell(table, row, {CellRole::Comparator})),
                          shortened(cell(table, row, {CellRole::Constant})))
               : subject;
}

QString targetText(const GraphTarget& target)
{
    const QString column =
        target.column < 0 ? QString() : QStringLiteral("[%1]").arg(target.column);
    return target.url + column;
}

bool isMissing(const GraphTarget& target)
{
    return !target.exists;
}

QString missingText(const GraphTarget& target)
{
    return target.lacksColumn ? QStringLiteral("(no such column)")
                              : QStringLiteral("(no such leaf)");
}

/// What a row is about: with a link the one leaf that it has there.
QString targetText(const GraphTable& table, const GraphRow& row)
{
    if (row.targets.size() == 1) {
        return targetText(row.targets.first());
    }
    return cell(table, row,
                {CellRole::TargetUrl, CellRole::TargetUrlTemplate, CellRole::TargetUrlByGroups,
                 CellRole::TargetColumn});
}

GraphLine commandLine(const GraphTable& table, const GraphRow& row)
{
    const QString target = shortened(targetText(table, row));
    QString text;
    if (has(table, CellRole::Unit)) {
        text = QStringLiteral("%1 = %2").arg(target, shortened(cell(table, row, {CellRole::Unit})));
    } else if (has(table, CellRole::SourceUrl)) {
        text = QStringLiteral("%1 ← %2").arg(target,
                                             shortened(cell(table, row, {CellRole::SourceUrl})));
    } else {
        text = target + QStringLiteral(" ← what is written");
    }
    const auto missing = std::count_if(row.targets.begin(), row.targets.end(), isMissing);
    if (missing > 0) {
        text +=
            row.targets.size() == 1
                ? QLatin1Char(' ') + missingText(row.targets.first())
                : QStringLiteral(" (%1 of %2 leaves missing)").arg(missing).arg(row.targets.size());
    }
    return {text, missing > 0   ? Mood::Bad
                  : row.ran     ? Mood::Strong
                  : !row.counts ? Mood::Quiet
                                : Mood::Plain};
}

/// Of rows that say the same, only the first ones.
void limit(std::vector<GraphLine>& lines)
{
    if (lines.size() > mostRows + 1) {
        const auto more = static_cast<int>(lines.size() - mostRows);
        lines.resize(mostRows);
        lines.push_back({QStringLiteral("… %1 more rows").arg(more), Mood::Quiet});
    }
}

/// Rows that do not count may have any shape, so they are not read.
bool isShown(const GraphTable& table, const GraphRow& row)
{
    const auto index = static_cast<int>(&row - table.rows.data());
    return std::binary_search(table.kept.begin(), table.kept.end(), index);
}

void addRows(QStringList& lines, const GraphTable& table)
{
    lines.append(QStringLiteral("%1 (%2)").arg(table.type->name, printable(table.place)));
    for (const GraphRow& row : table.rows) {
        const QString note =
            row.note.isEmpty() ? QString() : QStringLiteral(" - ") + printable(row.note);
        lines.append(QStringLiteral("  ") + cellsText(row.cells) + note);
        for (const GraphTarget& target : row.targets) {
            const QString unit = target.unit.toString();
            lines.append(QStringLiteral("    → %1 %2")
                             .arg(printable(targetText(target)),
                                  isMissing(target) ? missingText(target) : printable(unit))
                             .trimmed()
                             .prepend(QStringLiteral("    ")));
        }
    }
}

} // namespace

QString nameText(const GraphNode& node)
{
    return node.name.isEmpty() ? QStringLiteral("\"\"") : elided(printable(node.name), nameWidth);
}

QString watchText(const GraphWatch& watch)
{
    return watch.isPattern ? QStringLiteral("~ ") + shortened(watch.text) : shortened(watch.text);
}

std::vector<GraphLine> nodeLines(const GraphNode& node)
{
    std::vector<GraphLine> lines;
    if (node.type == nullptr) {
        lines.push_back({node.typeName.isEmpty()
                             ? QStringLiteral("no type")
                             : QStringLiteral("no type %1").arg(shortened(node.typeName)),
                         Mood::Quiet});
    }
    if (node.type == nullptr || node.type->runsCommands) {
        std::vector<GraphLine> rows;
        for (const GraphTable& table : node.commands) {
            for (const GraphRow& row : table.rows) {
                if (isShown(table, row)) {
                    rows.push_back(commandLine(table, row));
                }
            }
        }
        limit(rows);
        lines.insert(lines.end(), rows.begin(), rows.end());
    }
    QStringList codes;
    for (const checker::Finding& finding : node.findings) {
        const checker::CodeDescription& code = checker::describe(finding.code);
        if (code.severity != checker::Severity::Note) {
            codes.append(code.name);
        }
    }
    codes.removeDuplicates();
    for (const QString& code : qAsConst(codes)) {
        lines.push_back({QStringLiteral("! ") + code, Mood::Bad});
    }
    return lines;
}

std::vector<GraphLine> edgeLines(const GraphNode& node)
{
    std::vector<GraphLine> lines;
    for (const GraphTable& table : node.conditions) {
        QString before = has(table, CellRole::Comparator) ? QString() : QStringLiteral("write of ");
        for (const GraphRow& row : table.rows) {
            if (isShown(table, row)) {
                const QString either = lines.empty() ? QString() : QStringLiteral("or ");
                const Mood mood = row.ran ? Mood::Strong : row.counts ? Mood::Plain : Mood::Quiet;
                lines.push_back({either + before + conditionText(table, row), mood});
                before.clear();
            }
        }
    }
    if (lines.empty() && !node.conditions.empty()) {
        lines.push_back({QStringLiteral("never"), Mood::Bad});
    }
    limit(lines);
    return lines;
}

QStringList nodeTooltip(const GraphNode& node)
{
    QStringList lines{printable(QStringLiteral("%1: %2").arg(node.name, node.typeName)),
                      printable(node.place)};
    if (!node.isReachable) {
        lines.append(QStringLiteral("The engine never gets there."));
    }
    for (const GraphTable& table : node.commands) {
        addRows(lines, table);
    }
    for (const checker::Finding& finding : node.findings) {
        const checker::CodeDescription& code = checker::describe(finding.code);
        lines.append(
            printable(QStringLiteral("%1 %2:%3 [%4] %5; %6")
                          .arg(checker::nameOf(code.severity), QString::number(finding.place.line),
                               QString::number(finding.place.column), code.name, finding.message,
                               finding.advice)));
    }
    return lines;
}

QStringList edgeTooltip(const GraphNode& node)
{
    QStringList lines;
    for (const GraphTable& table : node.conditions) {
        addRows(lines, table);
    }
    return lines.isEmpty() ? QStringList{QStringLiteral("no condition")} : lines;
}

QString nodeId(int number)
{
    return QStringLiteral("n%1").arg(number + 1);
}

QString edgeId(const GraphNode& node)
{
    return QStringLiteral("e%1").arg(node.edge + 1);
}

QString kindOf(const GraphNode& node)
{
    return node.type == nullptr        ? QStringLiteral("unknown")
           : node.type->asksConditions ? QStringLiteral("switch")
                                       : QStringLiteral("command");
}

} // namespace tools
