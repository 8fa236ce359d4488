#include "tools/explain/TraceWords.h"

#include "tools/console/Text.h"
#include "tools/console/Value.h"

#include <QStringList>

#include <algorithm>

namespace tools {

namespace {

using ConditionOutcome = TraversalObserver::ConditionOutcome;
using Kind = TypeDescription::Kind;
using RowOutcome = TraversalObserver::RowOutcome;
using Selection = TraversalObserver::Selection;

/// The pattern of a row, or how it is called when it is not known.
QString patternOf(const DescriptionFile::Row& row, Kind kind, const QString& type)
{
    const QString pattern =
        DescriptionFile::cell(row, kind, type, {CellRole::Pattern, CellRole::PatternWithGroups});
    return pattern.isEmpty() ? QStringLiteral("its pattern") : quoted(pattern);
}

QString comparisonText(const TraversalObserver::ConditionRow& told)
{
    return QStringLiteral("expected %1 %2")
        .arg(printable(told.comparator), shortValueText(told.expected));
}

/// The leaf, or the column, that a row of a command is for.
QString targetOf(const TraversalObserver::CommandRow& told, const QString& type,
                 const DescriptionFile::Row& row)
{
    const QString column =
        DescriptionFile::cell(row, Kind::Command, type, {CellRole::TargetColumn});
    if (!column.isEmpty() && told.column < 0) {
        return printable(column);
    }
    if (told.targetUrl.isEmpty()) {
        return QStringLiteral("a row");
    }
    return told.column < 0 ? printable(told.targetUrl)
                           : QStringLiteral("%1[%2]").arg(printable(told.targetUrl),
                                                          QString::number(told.column));
}

/// Where a row takes its unit from: its own cell, or the written URL. Empty when that is not known.
QString sourceUrlOf(const QString& type, const DescriptionFile::Row& row, const QString& url)
{
    const TypeDescription* const command = TypeCatalog::find(Kind::Command, type);
    const QList<ColumnDescription> columns =
        command == nullptr ? QList<ColumnDescription>() : command->table.columns;
    const bool hasOwn = std::any_of(columns.begin(), columns.end(), [](const auto& column) {
        return column.role == CellRole::SourceUrl;
    });
    return hasOwn ? DescriptionFile::cell(row, Kind::Command, type, {CellRole::SourceUrl}) : url;
}

QString noValueText(const TraversalObserver::CommandRow& told, const QString& type,
                    const DescriptionFile::Row& row, const QString& url)
{
    const QString source = sourceUrlOf(type, row, url);
    const QString place = source.isEmpty() ? QString() : QStringLiteral(" at ") + printable(source);
    const bool isColumn = told.column >= 0; // which takes text only
    return QStringLiteral("the source has no value%1%2")
        .arg(place, isColumn ? QStringLiteral(" that could be a unit") : QString());
}

QString reasonToSkip(const TraversalObserver::CommandRow& told, const QString& type,
                     const DescriptionFile::Row& row, const QString& url)
{
    const QString pattern = patternOf(row, Kind::Command, type);
    const QString unit = shortValueText(told.unit);
    switch (told.outcome) {
    case RowOutcome::Refused:
        return QStringLiteral("the host refuses %1 (status %2)")
            .arg(unit, QString::number(told.status));
    case RowOutcome::NoTarget:
        return QStringLiteral("the target has no such leaf");
    case RowOutcome::NoTargetUrl:
        return QStringLiteral("the groups of %1 leave no target URL").arg(pattern);
    case RowOutcome::NoUnit:
        return QStringLiteral("the unit is empty");
    case RowOutcome::NoParameterUrl:
        return QStringLiteral("the parameter URL is empty");
    case RowOutcome::NoValue:
        return noValueText(told, type, row, url);
    case RowOutcome::NoMatch:
        return QStringLiteral("%1 finds nothing in %2").arg(pattern, printable(url));
    case RowOutcome::InvalidPattern:
        return QStringLiteral("%1 is no valid regular expression").arg(pattern);
    case RowOutcome::PatternWithoutGroup:
        return QStringLiteral("%1 has no group (...), so it never applies").arg(pattern);
    case RowOutcome::MalformedTarget:
        return QStringLiteral("that is no array with a column in brackets");
    case RowOutcome::InvalidColumn:
        return QStringLiteral("the column is no number, sum or difference from 0 up");
    case RowOutcome::NotAnArray:
        return QStringLiteral("the leaf is no array");
    case RowOutcome::NoColumns:
        return QStringLiteral("the array does not say what columns it has");
    case RowOutcome::ColumnsRefused:
        return QStringLiteral("the array refuses %1").arg(unit);
    case RowOutcome::Changed:
    case RowOutcome::Unchanged:
    case RowOutcome::ColumnOutOfRange:
        break; // not skipped
    }
    return {};
}

QString layoutText(const TableDescription& table)
{
    QStringList lengths;
    for (const QList<int>& layout : table.layouts) {
        lengths.append(QString::number(layout.size()));
    }
    return lengths.join(QStringLiteral(" or "));
}

} // namespace

QString wordsFor(const TraversalObserver::SelectedNode& node)
{
    const QString name = printable(node.name);
    switch (node.selection) {
    case Selection::Url:
        return QStringLiteral("%1 runs: it watches this URL").arg(name);
    case Selection::Pattern:
        return QStringLiteral("%1 runs: its pattern %2 matches").arg(name, quoted(node.watched));
    case Selection::Unconditional:
        break;
    }
    return QStringLiteral("%1 always runs: it watches nothing").arg(name);
}

QString wordsFor(const TraversalObserver::ConditionRow& told, const QString& type,
                 const DescriptionFile::Row& row)
{
    const bool isComparison = told.expected.isValid() || !told.comparator.isEmpty();
    const QString url = printable(told.url);
    const QString compared =
        QStringLiteral("%1 is %2, %3").arg(url, shortValueText(told.actual), comparisonText(told));
    switch (told.outcome) {
    case ConditionOutcome::Holds:
        return QStringLiteral("holds: ") +
               (isComparison ? compared : QStringLiteral("%1 was written").arg(url));
    case ConditionOutcome::Differs:
        return QStringLiteral("fails: ") +
               (isComparison ? compared : QStringLiteral("%1 was not written").arg(url));
    case ConditionOutcome::NoValue:
        return QStringLiteral("fails: the source has no value at %1, %2")
            .arg(url, comparisonText(told));
    case ConditionOutcome::UnknownComparator:
        return QStringLiteral("fails: %1 is no comparator; there are == and !=")
            .arg(quoted(told.comparator));
    case ConditionOutcome::NoMatch:
        return QStringLiteral("fails: %1 finds nothing in %2")
            .arg(patternOf(row, Kind::Condition, type), url);
    case ConditionOutcome::InvalidPattern:
        return QStringLiteral("fails: %1 is no valid regular expression")
            .arg(patternOf(row, Kind::Condition, type));
    }
    return {};
}

QString wordsFor(const TraversalObserver::CommandRow& told, const QString& type,
                 const DescriptionFile::Row& row, const QString& url)
{
    const QString target = targetOf(told, type, row);
    const QString unit = shortValueText(told.unit);
    switch (told.outcome) {
    case RowOutcome::Changed:
        return QStringLiteral("sets %1 to %2").arg(target, unit);
    case RowOutcome::Unchanged:
        return QStringLiteral("keeps %1 at %2").arg(target, unit);
    case RowOutcome::ColumnOutOfRange:
        return QStringLiteral("ends the program: there is no column %1").arg(target);
    default:
        return QStringLiteral("skips %1: %2").arg(target, reasonToSkip(told, type, row, url));
    }
}

QString wordsForDropped(const DescriptionFile::Row& row, Kind kind, const QString& type)
{
    if (!row.isList) {
        return QStringLiteral("skips a row that is no list");
    }
    const TypeDescription* const description = TypeCatalog::find(kind, type);
    const QString lengths = description == nullptr ? QString() : layoutText(description->table);
    return QStringLiteral("skips a row of %1: it takes %2")
        .arg(counted(row.cells.size(), QStringLiteral("cell"), QStringLiteral("cells")), lengths);
}

} // namespace tools
