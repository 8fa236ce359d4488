#include "Commands/CommandSetUnitByConfigurationParameterArray.h"

#include "host/Array2dDataTypeWrapper.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataTools.h"
#include "internal/CallText.h"
#include "internal/Observing.h"
#include "internal/ParameterTable.h"
#include "internal/Types.h"
#include "internal/Warning.h"
#include "internal/WriteStatus.h"

#include <QRegularExpression>

#include <optional>

using Array = CommandSetUnitByConfigurationParameterArray;
using Definitions = ConfigurationAndProcessDataDefinitions;
using Outcome = TraversalObserver::RowOutcome;

namespace {

enum Column { ParameterUrl, Extra, ArrayTarget };

const TableDescription& table()
{
    static const TableDescription description{
        {internal::parameterUrlColumn(),
         internal::remarkColumn(),
         {QStringLiteral("array target"),
          QStringLiteral("the array of the target and its column that gets the unit, counted "
                         "from 0: Table[1], Table[2+1] or Table[4-1]"),
          CellRole::TargetColumn}},
        {{ParameterUrl, ArrayTarget}, {ParameterUrl, Extra, ArrayTarget}}};
    return description;
}

constexpr int noIndex = -1;

internal::WarningPlace executing(int line)
{
    return {"Commands/CommandSetUnitByConfigurationParameterArray", line,
            "virtual bool CommandSetUnitByConfigurationParameterArray::executeCommand("
            "const BaseClassSharedPointer&, const BaseClassSharedPointer&, const QString&, "
            "QVariantList&, bool&, const QVariantList&, "
            "const QSharedPointer<UnitManipulatorBase>&)"};
}

internal::WarningPlace readingTarget(int line)
{
    return {"Commands/CommandSetUnitByConfigurationParameterArray", line,
            "bool CommandSetUnitByConfigurationParameterArray::getArrayUrlAndColumnIndex("
            "const QString&, QString&, int&)"};
}

internal::WarningPlace evaluating(int line)
{
    return {"Commands/CommandSetUnitByConfigurationParameterArray", line,
            "int CommandSetUnitByConfigurationParameterArray::evalArrayIndexExpression("
            "const QString&)"};
}

/// The whole number that `text` holds but for blanks around it.
std::optional<int> wholeNumber(const QString& text)
{
    bool ok = false;
    const int number = text.trimmed().toInt(&ok);
    return ok ? std::optional(number) : std::nullopt;
}

/// The value of two operands around `sign`. `overflows` computes it and tells whether it does not
/// fit.
template <class Compute>
int evalTwoOperands(const QString& expression, QChar sign, int warningLine, Compute overflows)
{
    const QStringList operands = expression.split(sign);
    if (operands.size() != 2) {
        internal::warning(evaluating(warningLine))
            << "Unable to parse array index string" << expression;
        return noIndex;
    }
    const std::optional<int> left = wholeNumber(operands.at(0));
    const std::optional<int> right = wholeNumber(operands.at(1));
    int value = noIndex;
    if (!left || !right || overflows(*left, *right, &value)) {
        return noIndex;
    }
    return value;
}

/// Finds the array and the column that a row names. What is found so far is in `result`, which says
/// what is the matter when there is no such; warnings say it, too.
bool findColumn(Array& command, const Array::UnitProperties& row,
                const BaseClassSharedPointer& targetRoot, BaseClassSharedPointer& leaf,
                TraversalObserver::CommandRow& result)
{
    if (!command.getArrayUrlAndColumnIndex(row.arrayTarget, result.targetUrl, result.column)) {
        internal::warning(executing(110)) << "Unable to get Array index and url" << row.arrayTarget;
        result.outcome =
            result.targetUrl.isEmpty() ? Outcome::MalformedTarget : Outcome::InvalidColumn;
        return false;
    }
    leaf = targetRoot->getChildData(result.targetUrl);
    if (leaf.isNull()) {
        internal::warning(executing(105)) << "Unable to connect to leaf" << row.arrayTarget;
        result.outcome = Outcome::NoTarget;
        return false;
    }
    if (leaf->getDataProperty(Definitions::getKeyDataPropertyType()).toString() !=
        Definitions::getKeyDataTypeArray()) {
        // The parameter is named, not the target: readers of logs know the rows by it.
        internal::warning(executing(100)) << "Not an array datatype" << row.parameterUrl;
        result.outcome = Outcome::NotAnArray;
        return false;
    }
    return true;
}

/// Sets the unit of one column. False when the row is skipped; `result` tells what became of it.
bool setColumn(Array& command, const Array::UnitProperties& row,
               const BaseClassSharedPointer& sourceRoot, const BaseClassSharedPointer& targetRoot,
               const internal::RowReport& report, TraversalObserver::CommandRow& result)
{
    const auto skip = [&](Outcome outcome) {
        result.outcome = outcome;
        return false;
    };
    BaseClassSharedPointer leaf;
    if (!findColumn(command, row, targetRoot, leaf, result)) {
        return false;
    }
    const QVariant information =
        leaf->getDataProperty(Definitions::getKeyDataPropertyArrayInformation());
    if (!information.canConvert(QMetaType::QVariantList)) {
        return skip(Outcome::NoColumns);
    }
    Array2dDataTypeWrapper array({}, information.toList());
    if (row.parameterUrl.isEmpty()) {
        return skip(Outcome::NoParameterUrl);
    }
    const QVariant value =
        ConfigurationAndProcessDataTools::extractConfigValue(row.parameterUrl, sourceRoot);
    if (!value.canConvert(QMetaType::QString)) {
        return skip(Outcome::NoValue); // missing, or nothing that could be a unit
    }
    result.unit = value.toString();
    QStringList units = array.getColumnUnitTypes();
    if (result.column >= units.size()) {
        result.outcome = Outcome::ColumnOutOfRange;
        report.row(result);
    }
    units[result.column] = result.unit.toString(); // past the end the list's assertion fails
    if (!array.setColumnUnitTypes(units)) {
        result.outcome = Outcome::ColumnsRefused;
        return true;
    }
    result.status = array.setArrayInfoWithStatus(targetRoot, result.targetUrl);
    result.outcome = internal::RowReport::outcomeOf(result.status);
    return true;
}

} // namespace

CommandSetUnitByConfigurationParameterArray::CommandSetUnitByConfigurationParameterArray(
    const BaseClassSharedPointer& description)
{
    CommandSetUnitByConfigurationParameterArray::initCommand(description);
}

CommandSetUnitByConfigurationParameterArray::~CommandSetUnitByConfigurationParameterArray() =
    default;

bool CommandSetUnitByConfigurationParameterArray::initCommand(
    const BaseClassSharedPointer& description)
{
    const auto rows = internal::parameterRows(description, table());
    for (const internal::ParameterRow& row : rows) {
        unitProperties.append({row.text(ParameterUrl), row.text(Extra), row.text(ArrayTarget)});
    }
    return !rows.empty();
}

TypeDescription CommandSetUnitByConfigurationParameterArray::typeDescription()
{
    return {TypeDescription::Kind::Command,
            {},
            QStringLiteral("Sets the units of array columns to values of the source."),
            table()};
}

int CommandSetUnitByConfigurationParameterArray::evalArrayIndexExpression(const QString& expression)
{
    // A sum is looked for first, so its operands may carry a minus of their own.
    if (expression.contains(QLatin1Char('+'))) {
        return evalTwoOperands(
            expression, QLatin1Char('+'), 211,
            [](int left, int right, int* sum) { return __builtin_add_overflow(left, right, sum); });
    }
    if (expression.contains(QLatin1Char('-'))) {
        return evalTwoOperands(expression, QLatin1Char('-'), 225,
                               [](int left, int right, int* difference) {
                                   return __builtin_sub_overflow(left, right, difference);
                               });
    }
    return wholeNumber(expression).value_or(noIndex);
}

bool CommandSetUnitByConfigurationParameterArray::getArrayUrlAndColumnIndex(
    const QString& arrayTarget, QString& arrayUrl, int& columnIndex)
{
    static const QRegularExpression form(
        QStringLiteral("(?<ArrayUrl>.+)\\[(?<ArrayIndexExpression>.+)\\]"));
    const QRegularExpressionMatch match = form.match(arrayTarget);

    arrayUrl = match.captured(QStringLiteral("ArrayUrl"));
    if (arrayUrl.isEmpty()) {
        internal::warning(readingTarget(165)) << "No valid url given" << arrayTarget;
        return false;
    }
    columnIndex = 0;
    const QString expression = match.captured(QStringLiteral("ArrayIndexExpression"));
    if (expression.isEmpty()) {
        internal::warning(readingTarget(174)) << "No valid array index given" << arrayTarget;
        return false;
    }
    columnIndex = evalArrayIndexExpression(expression);
    if (columnIndex < 0) {
        internal::warning(readingTarget(181))
            << "Array index is no number or expression" << arrayTarget;
        return false;
    }
    return true;
}

bool CommandSetUnitByConfigurationParameterArray::executeCommand(
    const BaseClassSharedPointer& sourceRoot, const BaseClassSharedPointer& targetRoot,
    const QString& /*url*/, QVariantList& /*results*/, bool& changed,
    const QVariantList& /*parameters*/, const QSharedPointer<UnitManipulatorBase>& manipulator)
{
    if (targetRoot.isNull() || sourceRoot.isNull()) {
        internal::warning(executing(116)) << "Target root null pointer given";
        return false;
    }
    const QList<UnitProperties> rows = unitProperties; // the host may call initCommand meanwhile
    const internal::RowReport report;
    bool commandResult = false;
    for (int index = 0; index < rows.size(); ++index) {
        TraversalObserver::CommandRow result{index, Outcome::NoTarget, {}, {}};
        const bool isApplied =
            setColumn(*this, rows.at(index), sourceRoot, targetRoot, report, result);
        report.row(result);
        if (!isApplied) {
            continue;
        }
        internal::noteStatus(result.status, commandResult, changed);
        if (!manipulator.isNull()) {
            internal::warning(executing(92)) << "Manipulate unit is not implemented for command "
                                                "SetUnitByConfigurationParameterArray.";
        }
    }
    return commandResult;
}

QString CommandSetUnitByConfigurationParameterArray::getCommandAsString() const
{
    QString text;
    for (const UnitProperties& row : unitProperties) {
        text.append(
            internal::callText(QStringLiteral("CommandSetUnitByConfigurationParameterArray"),
                               {row.parameterUrl, row.extra, row.arrayTarget}));
    }
    return text;
}
