#include "Commands/CommandSetUnitByConfigurationParameter.h"

#include "Commands/UnitManipulatorBase.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataTools.h"
#include "internal/CallText.h"
#include "internal/Observing.h"
#include "internal/ParameterTable.h"
#include "internal/Types.h"
#include "internal/WriteStatus.h"

using Outcome = TraversalObserver::RowOutcome;

namespace {

enum Column { ParameterUrl, Extra, TargetUrlTemplate };

const TableDescription& table()
{
    static const TableDescription description{
        {internal::parameterUrlColumn(),
         internal::remarkColumn(),
         {QStringLiteral("target URL"),
          QStringLiteral("the leaf of the target that gets the unit; %1 and %2 stand for the two "
                         "parameters of a link that has just two"),
          CellRole::TargetUrlTemplate}},
        {{ParameterUrl, Extra, TargetUrlTemplate}}};
    return description;
}

bool hasPlace(const QString& text)
{
    for (int at = text.indexOf(QLatin1Char('%')); at >= 0;
         at = text.indexOf(QLatin1Char('%'), at + 1)) {
        const int digit = text.midRef(at + 1, 1) == QLatin1String("L") ? at + 2 : at + 1;
        if (digit < text.size() && text.at(digit).digitValue() >= 0) {
            return true;
        }
    }
    return false;
}

/// Filling a text without a place would make Qt write a warning of its own.
QString fillLowestPlace(const QString& text, const QString& value)
{
    return hasPlace(text) ? text.arg(value) : text;
}

QString fillTemplate(const QString& urlTemplate, const QVariantList& parameters)
{
    if (parameters.size() != 2 || !parameters.at(0).canConvert(QMetaType::QString) ||
        !parameters.at(1).canConvert(QMetaType::QString)) {
        return urlTemplate;
    }
    // One after the other, not both at once: a %1 inside the first parameter is filled by the
    // second.
    return fillLowestPlace(fillLowestPlace(urlTemplate, parameters.at(0).toString()),
                           parameters.at(1).toString());
}

} // namespace

CommandSetUnitByConfigurationParameter::CommandSetUnitByConfigurationParameter(
    const BaseClassSharedPointer& description)
{
    CommandSetUnitByConfigurationParameter::initCommand(description);
}

CommandSetUnitByConfigurationParameter::~CommandSetUnitByConfigurationParameter() = default;

bool CommandSetUnitByConfigurationParameter::initCommand(const BaseClassSharedPointer& description)
{
    for (const internal::ParameterRow& row : internal::parameterRows(description, table())) {
        unitProperties.append(
            {row.text(ParameterUrl), row.text(Extra), row.text(TargetUrlTemplate)});
    }
    return true;
}

TypeDescription CommandSetUnitByConfigurationParameter::typeDescription()
{
    return {TypeDescription::Kind::Command,
            {},
            QStringLiteral("Sets units to values of the source."),
            table()};
}

bool CommandSetUnitByConfigurationParameter::executeCommand(
    const BaseClassSharedPointer& sourceRoot, const BaseClassSharedPointer& targetRoot,
    const QString& /*url*/, QVariantList& /*results*/, bool& changed,
    const QVariantList& parameters, const QSharedPointer<UnitManipulatorBase>& manipulator)
{
    if (targetRoot.isNull() || sourceRoot.isNull()) {
        return false;
    }
    const QString unitKey = ConfigurationAndProcessDataDefinitions::getKeyDataPropertyUnitType();
    const QList<UnitProperties> rows = unitProperties; // the host may call initCommand meanwhile
    const internal::RowReport report;
    bool commandResult = false;
    for (int index = 0; index < rows.size(); ++index) {
        const UnitProperties& row = rows.at(index);
        const QString targetUrl = fillTemplate(row.targetUrlTemplate, parameters);
        const BaseClassSharedPointer leaf = targetRoot->getChildData(targetUrl);
        if (leaf.isNull() || row.parameterUrl.isEmpty()) {
            report.skipped(index, leaf.isNull() ? Outcome::NoTarget : Outcome::NoParameterUrl,
                           targetUrl);
            continue;
        }
        const QVariant value =
            ConfigurationAndProcessDataTools::extractConfigValue(row.parameterUrl, sourceRoot);
        if (!value.isValid()) {
            report.skipped(index, Outcome::NoValue, targetUrl);
            continue;
        }
        const int status = leaf->setDataProperty(unitKey, value);
        internal::noteStatus(status, commandResult, changed);
        report.written(index, status, targetUrl, value);
        if (!manipulator.isNull()) {
            manipulator->manipulateUnit(leaf, value.toString(), commandResult, changed);
        }
    }
    return commandResult;
}

QString CommandSetUnitByConfigurationParameter::getCommandAsString() const
{
    QString text;
    for (const UnitProperties& row : unitProperties) {
        text.append(internal::callText(QStringLiteral("SetUnitByConfigurationParameter"),
                                       {row.parameterUrl, row.extra, row.targetUrlTemplate}));
    }
    return text;
}
