#include "Commands/CommandSetUnitByConfigurationParameter.h"

#include "Commands/UnitManipulatorBase.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataTools.h"
#include "internal/ParameterTable.h"
#include "internal/WriteStatus.h"

namespace {

QString fillTemplate(const QString& urlTemplate, const QVariantList& parameters)
{
    if (parameters.size() != 2 || !parameters.at(0).canConvert(QMetaType::QString) ||
        !parameters.at(1).canConvert(QMetaType::QString)) {
        return urlTemplate;
    }
    // One after the other, not both at once: a %1 inside the first parameter is filled by the
    // second.
    return urlTemplate.arg(parameters.at(0).toString()).arg(parameters.at(1).toString());
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
        text.append(QStringLiteral("SetUnitByConfigurationParameter(") + row.parameterUrl +
                    QLatin1Char(',') + row.extra + QLatin1Char(',') + row.targetUrlTemplate +
                    QStringLiteral(");"));
    }
    return text;
}
