#include "Commands/CommandSetUnitProperties.h"

#include "Commands/UnitManipulatorBase.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "internal/CallText.h"
#include "internal/ParameterTable.h"
#include "internal/WriteStatus.h"

namespace {

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
    const QList<QVariantList> rows = internal::parameterRows(description);
    for (const QVariantList& cells : rows) {
        const QString extra = cells.size() == 3 ? cells.at(2).toString() : QString();
        unitProperties.append({cells.at(0).toString(), cells.at(1).toString(), extra});
    }
    return !rows.isEmpty();
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
    bool commandResult = false;
    for (const UnitProperties& row : rows) {
        const BaseClassSharedPointer leaf =
            targetRoot->getChildData(prefixed(prefix, row.targetUrl));
        if (leaf.isNull() || row.unit.isEmpty()) {
            continue;
        }
        const int status = leaf->setDataProperty(unitKey, QVariant(row.unit));
        internal::noteStatus(status, commandResult, changed);
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
