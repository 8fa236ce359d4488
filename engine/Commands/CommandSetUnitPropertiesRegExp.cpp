#include "Commands/CommandSetUnitPropertiesRegExp.h"

#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "internal/CallText.h"
#include "internal/Observing.h"
#include "internal/ParameterTable.h"
#include "internal/Types.h"
#include "internal/Warning.h"
#include "internal/WriteStatus.h"
#include "patterns/PatternList.h"

using Outcome = TraversalObserver::RowOutcome;

namespace {

enum Column { Pattern, TargetUrl, Unit, Extra };

const TableDescription& table()
{
    static const TableDescription description{
        {internal::patternWithGroupsColumn(), internal::targetUrlByGroupsColumn(),
         internal::unitColumn(), internal::remarkColumn()},
        {{Pattern, TargetUrl, Unit}, {Pattern, TargetUrl, Unit, Extra}},
        false};
    return description;
}

constexpr internal::WarningPlace executing{
    "Commands/CommandSetUnitPropertiesRegExp", 0,
    "virtual bool CommandSetUnitPropertiesRegExp::executeCommand(const BaseClassSharedPointer&, "
    "const BaseClassSharedPointer&, const QString&, QVariantList&, bool&, const QVariantList&, "
    "const QSharedPointer<UnitManipulatorBase>&)"};

} // namespace

CommandSetUnitPropertiesRegExp::CommandSetUnitPropertiesRegExp(
    const BaseClassSharedPointer& description)
    : keptPatterns(std::make_unique<patterns::PatternList>())
{
    CommandSetUnitPropertiesRegExp::initCommand(description);
}

CommandSetUnitPropertiesRegExp::~CommandSetUnitPropertiesRegExp() = default;

bool CommandSetUnitPropertiesRegExp::initCommand(const BaseClassSharedPointer& description)
{
    const auto rows = internal::parameterRows(description, table());
    for (const internal::ParameterRow& row : rows) {
        unitProperties.append(
            {row.text(Pattern), row.text(TargetUrl), row.text(Unit), row.text(Extra)});
        keptPatterns->append(unitProperties.constLast().pattern);
    }
    return !rows.empty();
}

TypeDescription CommandSetUnitPropertiesRegExp::typeDescription()
{
    return {TypeDescription::Kind::Command,
            {},
            QStringLiteral("Sets fixed units; the leaves are named after the written URL."),
            table()};
}

bool CommandSetUnitPropertiesRegExp::executeCommand(
    const BaseClassSharedPointer& sourceRoot, const BaseClassSharedPointer& targetRoot,
    const QString& url, QVariantList& /*results*/, bool& changed,
    const QVariantList& /*parameters*/, const QSharedPointer<UnitManipulatorBase>& manipulator)
{
    if (targetRoot.isNull() || sourceRoot.isNull()) {
        internal::warning(executing) << "Target root null pointer given";
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
            replaceMatchedGroups(found->groupNames, found->match, row.targetUrl);
        if (targetUrl.isEmpty()) {
            internal::warning(executing) << "Empty target url given";
            report.skipped(index, Outcome::NoTargetUrl);
            continue;
        }
        const BaseClassSharedPointer leaf = targetRoot->getChildData(targetUrl);
        if (leaf.isNull()) {
            internal::warning(executing) << "Unable to connect to leaf" << targetUrl;
            report.skipped(index, Outcome::NoTarget, targetUrl);
            continue;
        }
        if (row.unit.isEmpty()) {
            report.skipped(index, Outcome::NoUnit, targetUrl);
            continue;
        }
        const QVariant unit(row.unit);
        const int status = leaf->setDataProperty(unitKey, unit);
        internal::noteStatus(status, commandResult, changed);
        report.written(index, status, targetUrl, unit);
        if (!manipulator.isNull()) {
            internal::warning(executing)
                << "Manipulate unit is not implemented for command SetUnitPropertiesRegExp.";
        }
    }
    return commandResult;
}

QString CommandSetUnitPropertiesRegExp::getCommandAsString() const
{
    QString text;
    for (const UnitProperties& row : unitProperties) {
        text.append(internal::callText(QStringLiteral("SetUnitRegExp"),
                                       {row.pattern, row.targetUrl, row.unit, row.extra}));
    }
    return text;
}
