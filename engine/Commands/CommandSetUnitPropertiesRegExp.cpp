#include "Commands/CommandSetUnitPropertiesRegExp.h"

#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "internal/CallText.h"
#include "internal/ParameterTable.h"
#include "internal/Warning.h"
#include "internal/WriteStatus.h"
#include "patterns/PatternList.h"

namespace {

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
    const QList<QVariantList> rows = internal::parameterRows(description);
    for (const QVariantList& cells : rows) {
        const QString extra = cells.size() == 4 ? cells.at(3).toString() : QString();
        unitProperties.append(
            {cells.at(0).toString(), cells.at(1).toString(), cells.at(2).toString(), extra});
        keptPatterns->append(unitProperties.constLast().pattern);
    }
    return !rows.isEmpty();
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
    bool commandResult = false;
    for (int index = 0; index < rows.size(); ++index) {
        const UnitProperties& row = rows.at(index);
        const auto found = keptPatterns->matchGroups(index, row.pattern, url);
        if (!found) {
            continue;
        }
        const QString targetUrl =
            replaceMatchedGroups(found->groupNames, found->match, row.targetUrl);
        if (targetUrl.isEmpty()) {
            internal::warning(executing) << "Empty target url given";
            continue;
        }
        const BaseClassSharedPointer leaf = targetRoot->getChildData(targetUrl);
        if (leaf.isNull()) {
            internal::warning(executing) << "Unable to connect to leaf" << targetUrl;
            continue;
        }
        if (row.unit.isEmpty()) {
            continue;
        }
        const int status = leaf->setDataProperty(unitKey, QVariant(row.unit));
        internal::noteStatus(status, commandResult, changed);
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
