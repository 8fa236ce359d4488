#include "Probe.h"

#include "host/ConfigurationAndProcessDataDefinitions.h"

namespace testhost {

ProbeCommand::ProbeCommand(const BaseClassSharedPointer& description)
{
    ProbeCommand::initCommand(description);
}

bool ProbeCommand::executeCommand(const BaseClassSharedPointer&, const BaseClassSharedPointer&,
                                  const QString&, QVariantList&, bool& changed, const QVariantList&,
                                  const QSharedPointer<UnitManipulatorBase>&)
{
    if (changes) {
        changed = true;
    }
    Host::current().record(QStringLiteral("execute(%1)").arg(label));
    return result;
}

QString ProbeCommand::getCommandAsString() const
{
    return label + ';';
}

bool ProbeCommand::initCommand(const BaseClassSharedPointer& description)
{
    const auto& node = dynamic_cast<const Node&>(*description);
    label =
        node.property(ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue()).toString();
    const QVariant scriptedResult = node.property(QStringLiteral("@result"));
    result = !scriptedResult.isValid() || scriptedResult.toBool();
    changes = node.property(QStringLiteral("@changed")).toBool();
    return true;
}

QStringList GraphTest::executed()
{
    QStringList labels;
    for (const QString& call : host.takeCalls({QStringLiteral("execute(")})) {
        labels.append(call.mid(8).chopped(1));
    }
    return labels;
}

} // namespace testhost
