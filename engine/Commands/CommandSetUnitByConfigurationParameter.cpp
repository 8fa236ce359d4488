#include "Commands/CommandSetUnitByConfigurationParameter.h"

#include "Commands/UnitManipulatorBase.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataTools.h"
#include "internal/CallText.h"
#include "internal/ParameterTable.h"
#include "internal/WriteStatus.h"

namespace {

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
    for (const QVariantList& cells : internal::parameterRows(description)) {
        if (cells.size() == 3) {
            unitProperties.append(
                {cells.at(0).toString(), cells.at(1).toString(), cells.at(2).toString()});
        }
    }
    return true;
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
    bool commandResult = false;
    for (const UnitProperties& row : rows) {
        const BaseClassSharedPointer leaf =
            targetRoot->getChildData(fillTemplate(row.targetUrlTemplate, parameters));
        if (leaf.isNull() || row.parameterUrl.isEmpty()) {
            continue;
        }
        const QVariant value =
            ConfigurationAndProcessDataTools::extractConfigValue(row.parameterUrl, sourceRoot);
        if (!value.isValid()) {
            continue;
        }
        const int status = leaf->setDataProperty(unitKey, value);
        internal::noteStatus(status, commandResult, changed);
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
