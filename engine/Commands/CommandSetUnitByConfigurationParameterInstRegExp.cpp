#include "Commands/CommandSetUnitByConfigurationParameterInstRegExp.h"

#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataTools.h"
#include "internal/CallText.h"
#include "internal/ParameterTable.h"
#include "internal/Pattern.h"
#include "internal/Warning.h"
#include "internal/WriteStatus.h"

namespace {

constexpr internal::WarningPlace noManipulator{
    "Commands/CommandSetUnitByConfigurationParameterInstRegExp", 75,
    "virtual bool CommandSetUnitByConfigurationParameterRegExp::executeCommand("
    "const BaseClassSharedPointer&, const BaseClassSharedPointer&, const QString&, "
    "QVariantList&, bool&, const QVariantList&, const QSharedPointer<UnitManipulatorBase>&)"};

} // namespace

CommandSetUnitByConfigurationParameterRegExp::CommandSetUnitByConfigurationParameterRegExp(
    const BaseClassSharedPointer& description)
{
    CommandSetUnitByConfigurationParameterRegExp::initCommand(description);
}

CommandSetUnitByConfigurationParameterRegExp::~CommandSetUnitByConfigurationParameterRegExp() =
    default;

bool CommandSetUnitByConfigurationParameterRegExp::initCommand(
    const BaseClassSharedPointer& description)
{
    for (const QVariantList& cells : internal::parameterRows(description)) {
        if (cells.size() == 2) {
            unitProperties.append({cells.at(0).toString(), cells.at(1).toString()});
        }
    }
    return true;
}

BaseClassSharedPointer CommandSetUnitByConfigurationParameterRegExp::getUnitValueAndTargetLeaf(
    const QString& url, const QString& pattern, const QString& targetUrlTemplate,
    const BaseClassSharedPointer& sourceRoot, const BaseClassSharedPointer& targetRoot,
    QVariant& value)
{
    const auto found = internal::matchGroups(pattern, url);
    if (!found) {
        return {};
    }
    const QString targetUrl =
        replaceMatchedGroups(found->groupNames, found->match, targetUrlTemplate);
    const BaseClassSharedPointer leaf = targetRoot->getChildData(targetUrl);
    if (leaf.isNull()) {
        return {};
    }
    value = ConfigurationAndProcessDataTools::extractConfigValue(url, sourceRoot);
    return value.isValid() ? leaf : BaseClassSharedPointer();
}

bool CommandSetUnitByConfigurationParameterRegExp::executeCommand(
    const BaseClassSharedPointer& sourceRoot, const BaseClassSharedPointer& targetRoot,
    const QString& url, QVariantList& /*results*/, bool& changed,
    const QVariantList& /*parameters*/, const QSharedPointer<UnitManipulatorBase>& manipulator)
{
    if (targetRoot.isNull() || sourceRoot.isNull()) {
        return false;
    }
    const QString unitKey = ConfigurationAndProcessDataDefinitions::getKeyDataPropertyUnitType();
    const QList<UnitProperties> rows = unitProperties; // the host may call initCommand meanwhile
    bool commandResult = false;
    for (const UnitProperties& row : rows) {
        QVariant value;
        const BaseClassSharedPointer leaf = getUnitValueAndTargetLeaf(
            url, row.pattern, row.targetUrlTemplate, sourceRoot, targetRoot, value);
        if (leaf.isNull()) {
            continue;
        }
        const int status = leaf->setDataProperty(unitKey, value);
        internal::noteStatus(status, commandResult, changed);
        if (!manipulator.isNull()) {
            internal::warning(noManipulator) << "Manipulate unit is not implemented for command "
                                                "SetUnitByConfigurationParameterRegExp.";
        }
    }
    return commandResult;
}

QString CommandSetUnitByConfigurationParameterRegExp::getCommandAsString() const
{
    QString text;
    for (const UnitProperties& row : unitProperties) {
        text.append(
            internal::callText(QStringLiteral("CommandSetUnitByConfigurationParameterRegExp"),
                               {row.pattern, row.targetUrlTemplate}));
    }
    return text;
}
