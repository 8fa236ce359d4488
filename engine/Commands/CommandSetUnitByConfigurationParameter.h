#ifndef UNITFLOW_COMMANDS_COMMANDSETUNITBYCONFIGURATIONPARAMETER_H
#define UNITFLOW_COMMANDS_COMMANDSETUNITBYCONFIGURATIONPARAMETER_H

#include "Commands/CommandBase.h"
#include "TypeDescription.h"

#include <QList>

/// Makes units follow values of the source ("CommandSetUnitByConfigurationParameter").
///
/// Parameter table: parameter URL, a cell that is only shown, target URL template. Rows of any
/// other length than three are skipped silently.
class UNITFLOW_EXPORT CommandSetUnitByConfigurationParameter : public CommandBase {
public:
    struct UnitProperties {
        QString parameterUrl;      ///< below the source root; empty disables the row
        QString extra;             ///< only shown
        QString targetUrlTemplate; ///< below the target root, with the placeholders %1 and %2
    };

    explicit CommandSetUnitByConfigurationParameter(const BaseClassSharedPointer& description);
    ~CommandSetUnitByConfigurationParameter() override;

    /// Exactly two parameters that both convert to text fill %1 and %2; with any others the
    /// template is the URL as it stands. The source value is written as it is, not as text. Rows
    /// whose leaf or source value is missing are skipped silently.
    bool executeCommand(const BaseClassSharedPointer& sourceRoot,
                        const BaseClassSharedPointer& targetRoot, const QString& url,
                        QVariantList& results, bool& changed, const QVariantList& parameters,
                        const QSharedPointer<UnitManipulatorBase>& manipulator) override;

    /// "SetUnitByConfigurationParameter(parameter,extra,template);" for each row.
    QString getCommandAsString() const override;

    /// Always true.
    bool initCommand(const BaseClassSharedPointer& description) override;

    /// Its parameter table and what it is for; `name` is left to the registration.
    static TypeDescription typeDescription();

private:
    QList<UnitProperties> unitProperties;
};

#endif
