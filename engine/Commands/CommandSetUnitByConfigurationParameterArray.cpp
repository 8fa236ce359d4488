#include "Commands/CommandSetUnitByConfigurationParameterArray.h"

#include "host/Array2dDataTypeWrapper.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataTools.h"
#include "internal/CallText.h"
#include "internal/ParameterTable.h"
#include "internal/Warning.h"
#include "internal/WriteStatus.h"

#include <QRegularExpression>

using Definitions = ConfigurationAndProcessDataDefinitions;

namespace {

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
    bool anyRow = false;
    for (const QVariantList& cells : internal::parameterRows(description)) {
        if (cells.size() != 2 && cells.size() != 3) {
            continue;
        }
        const QString extra = cells.size() == 3 ? cells.at(1).toString() : QString();
        unitProperties.append({cells.first().toString(), extra, cells.last().toString()});
        anyRow = true;
    }
    return anyRow;
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

/// The array leaf and the column that a row names; none, with warnings, when there is no such.
std::optional<CommandSetUnitByConfigurationParameterArray::ArrayColumn>
CommandSetUnitByConfigurationParameterArray::findColumn(const UnitProperties& row,
                                                        const BaseClassSharedPointer& targetRoot)
{
    QString arrayUrl;
    int columnIndex = noIndex;
    if (!getArrayUrlAndColumnIndex(row.arrayTarget, arrayUrl, columnIndex)) {
        internal::warning(executing(110)) << "Unable to get Array index and url" << row.arrayTarget;
        return std::nullopt;
    }
    const BaseClassSharedPointer leaf = targetRoot->getChildData(arrayUrl);
    if (leaf.isNull()) {
        internal::warning(executing(105)) << "Unable to connect to leaf" << row.arrayTarget;
        return std::nullopt;
    }
    if (leaf->getDataProperty(Definitions::getKeyDataPropertyType()).toString() !=
        Definitions::getKeyDataTypeArray()) {
        // The parameter is named, not the target: readers of logs know the rows by it.
        internal::warning(executing(100)) << "Not an array datatype" << row.parameterUrl;
        return std::nullopt;
    }
    return ArrayColumn{leaf, arrayUrl, columnIndex};
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
    bool commandResult = false;
    for (const UnitProperties& row : rows) {
        const std::optional<ArrayColumn> column = findColumn(row, targetRoot);
        if (!column) {
            continue;
        }
        const QVariant information =
            column->leaf->getDataProperty(Definitions::getKeyDataPropertyArrayInformation());
        if (!information.canConvert(QMetaType::QVariantList)) {
            continue;
        }
        Array2dDataTypeWrapper array({}, information.toList());
        if (row.parameterUrl.isEmpty()) {
            continue;
        }
        const QVariant value =
            ConfigurationAndProcessDataTools::extractConfigValue(row.parameterUrl, sourceRoot);
        if (!value.canConvert(QMetaType::QString)) {
            continue; // missing, or nothing that could be a unit
        }
        QStringList units = array.getColumnUnitTypes();
        units[column->columnIndex] = value.toString(); // past the end the list's assertion fails
        if (array.setColumnUnitTypes(units)) {
            const int status = array.setArrayInfoWithStatus(targetRoot, column->arrayUrl);
            internal::noteStatus(status, commandResult, changed);
        }
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
