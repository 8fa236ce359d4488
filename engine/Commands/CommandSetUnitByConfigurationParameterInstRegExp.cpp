#include "Commands/CommandSetUnitByConfigurationParameterInstRegExp.h"

#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataTools.h"
#include "internal/CallText.h"
#include "internal/ParameterTable.h"
#include "internal/Warning.h"
#include "internal/WriteStatus.h"
#include "patterns/PatternList.h"

namespace {

constexpr internal::WarningPlace noManipulator{
    "Commands/CommandSetUnitByConfigurationParameterInstRegExp", 75,
    "virtual bool CommandSetUnitByConfigurationParameterRegExp::executeCommand("
    "const BaseClassSharedPointer&, const BaseClassSharedPointer&, const QString&, "
    "QVariantList&, bool&, const QVariantList&, const QSharedPointer<UnitManipulatorBase>&)"};

} // namespace

CommandSetUnitByConfigurationParameterRegExp::CommandSetUnitByConfigurationParameterRegExp(
    const BaseClassSharedPointer& description)
    : keptPatterns(std::make_unique<patterns::PatternList>())
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
            keptPatterns->append(unitProperties.constLast().pattern);
        }
    }
    return true;
}

BaseClassSharedPointer CommandSetUnitByConfigurationParameterRegExp::getUnitValueAndTargetLeaf(
    const QString& url, const QString& pattern, const QString& targetUrlTemplate,
    const BaseClassSharedPointer& sourceRoot, const BaseClassSharedPointer& targetRoot,
    QVariant& value)
{
    const auto found = patterns::Pattern(pattern).matchGroups(url);
    if (!found) {
        return {};
    }
    return findTargetLeaf(*found, url, targetUrlTemplate, sourceRoot, targetRoot, value);
}

/// The same for a row whose pattern was matched already.
BaseClassSharedPointer CommandSetUnitByConfigurationParameterRegExp::findTargetLeaf(
    const patterns::GroupMatch& found, const QString& url, const QString& targetUrlTemplate,
    const BaseClassSharedPointer& sourceRoot, const BaseClassSharedPointer& targetRoot,
    QVariant& value)
{
    const QString targetUrl =
        replaceMatchedGroups(found.groupNames, found.match, targetUrlTemplate);
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
    for (int index = 0; index < rows.size(); ++index) {
        const UnitProperties& row = rows.at(index);
        const auto found = keptPatterns->matchGroups(index, row.pattern, url);
        if (!found) {
            continue;
        }
        QVariant value;
        const BaseClassSharedPointer leaf =
            findTargetLeaf(*found, url, row.targetUrlTemplate, sourceRoot, targetRoot, value);
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
