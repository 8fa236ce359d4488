#include "Commands/CommandSetUnitProperties.h"

#include "Commands/UnitManipulatorBase.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "internal/CallText.h"
#include "internal/Observing.h"
#include "internal/ParameterTable.h"
#include "internal/Types.h"
#include "internal/WriteStatus.h"

using Outcome = TraversalObserver::RowOutcome;

namespace {

enum Column { TargetUrl, Unit, Extra };

const TableDescription& table()
{
    static const TableDescription description{
        {{QStringLiteral("target URL"),
          QStringLiteral("the leaf of the target that gets the unit; the link's first parameter "
                         "goes in front of it"),
          CellRole::TargetUrl},
         internal::unitColumn(),
         internal::remarkColumn()},
        {{TargetUrl, Unit}, {TargetUrl, Unit, Extra}},
        false};
    return description;
}

QString urlPrefix(const QVariantList& parameters)
{
    if (parameters.isEmpty() || !parameters.constFirst().canConvert(QMetaType::QString)) {
        return {};
    }
    return parameters.constFirst().toString();
}

/// `url` itself when there is nothing in front of it.
QString prefixed(const QString& prefix, const QString& url)
{
    return prefix.isEmpty() && !url.isNull() ? url : prefix + url;
}

} // namespace

CommandSetUnitProperties::CommandSetUnitProperties(const BaseClassSharedPointer& description)
{
    CommandSetUnitProperties::initCommand(description);
}

CommandSetUnitProperties::~CommandSetUnitProperties() = default;

bool CommandSetUnitProperties::initCommand(const BaseClassSharedPointer& description)
{
    const auto rows = internal::parameterRows(description, table());
    for (const internal::ParameterRow& row : rows) {
        unitProperties.append({row.text(TargetUrl), row.text(Unit), row.text(Extra)});
    }
    return !rows.empty();
}

TypeDescription CommandSetUnitProperties::typeDescription()
{
    return {TypeDescription::Kind::Command, {}, QStringLiteral("Sets fixed units."), table()};
}

bool CommandSetUnitProperties::executeCommand(
    const BaseClassSharedPointer& sourceRoot, const BaseClassSharedPointer& targetRoot,
    const QString& /*url*/, QVariantList& /*results*/, bool& changed,
    const QVariantList& parameters, const QSharedPointer<UnitManipulatorBase>& manipulator)
{
    if (targetRoot.isNull() || sourceRoot.isNull()) {
        return false;
    }
    const QString unitKey = ConfigurationAndProcessDataDefinitions::getKeyDataPropertyUnitType();
    const QString prefix = urlPrefix(parameters);
    const QList<UnitProperties> rows = unitProperties; // the host may call initCommand meanwhile
    const internal::RowReport report;
    bool commandResult = false;
    for (int index = 0; index < rows.size(); ++index) {
        const UnitProperties& row = rows.at(index);
        const QString targetUrl = prefixed(prefix, row.targetUrl);
        const BaseClassSharedPointer leaf = targetRoot->getChildData(targetUrl);
        if (leaf.isNull() || row.unit.isEmpty()) {
            report.skipped(index, leaf.isNull() ? Outcome::NoTarget : Outcome::NoUnit, targetUrl);
            continue;
        }
        const QVariant unit(row.unit);
        const int status = leaf->setDataProperty(unitKey, unit);
        internal::noteStatus(status, commandResult, changed);
        report.written(index, status, targetUrl, unit);
        if (!manipulator.isNull()) {
            manipulator->manipulateUnit(leaf, row.unit, commandResult, changed);
        }
    }
    return commandResult;
}

QString CommandSetUnitProperties::getCommandAsString() const
{
    QString text;
    for (const UnitProperties& row : unitProperties) {
        text.append(
            internal::callText(QStringLiteral("SetUnit"), {row.targetUrl, row.unit, row.extra}));
    }
    return text;
}
