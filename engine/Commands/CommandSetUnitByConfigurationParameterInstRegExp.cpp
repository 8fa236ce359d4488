#include "Commands/CommandSetUnitByConfigurationParameterInstRegExp.h"

#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataTools.h"
#include "internal/CallText.h"
#include "internal/Observing.h"
#include "internal/ParameterTable.h"
#include "internal/Types.h"
#include "internal/Warning.h"
#include "internal/WriteStatus.h"
#include "patterns/PatternList.h"

using Outcome = TraversalObserver::RowOutcome;

namespace {

enum Column { Pattern, TargetUrlTemplate };

const TableDescription& table()
{
    static const TableDescription description{
        {internal::patternWithGroupsColumn(), internal::targetUrlByGroupsColumn()},
        {{Pattern, TargetUrlTemplate}}};
    return description;
}

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
    for (const internal::ParameterRow& row : internal::parameterRows(description, table())) {
        unitProperties.append({row.text(Pattern), row.text(TargetUrlTemplate)});
        keptPatterns->append(unitProperties.constLast().pattern);
    }
    return true;
}

TypeDescription CommandSetUnitByConfigurationParameterRegExp::typeDescription()
{
    return {
        TypeDescription::Kind::Command,
        {},
        QStringLiteral("Sets units to the written value; the leaves are named after the written "
                       "URL."),
        table()};
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
    const internal::RowReport report;
    bool commandResult = false;
    for (int index = 0; index < rows.size(); ++index) {
        const UnitProperties& row = rows.at(index);
        const auto found = keptPatterns->matchGroups(index, row.pattern, url);
        if (!found) {
            report.notMatched(index, *keptPatterns, row.pattern);
            continue;
        }
        const QString targetUrl =
            replaceMatchedGroups(found->groupNames, found->match, row.targetUrlTemplate);
        const BaseClassSharedPointer leaf = targetRoot->getChildData(targetUrl);
        if (leaf.isNull()) {
            report.skipped(index, Outcome::NoTarget, targetUrl);
            continue;
        }
        const QVariant value =
            ConfigurationAndProcessDataTools::extractConfigValue(url, sourceRoot);
        if (!value.isValid()) {
            report.skipped(index, Outcome::NoValue, targetUrl);
            continue;
        }
        const int status = leaf->setDataProperty(unitKey, value);
        internal::noteStatus(status, commandResult, changed);
        report.written(index, status, targetUrl, value);
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
