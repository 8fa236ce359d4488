#ifndef UNITFLOW_COMMANDS_COMMANDSETUNITPROPERTIES_H
#define UNITFLOW_COMMANDS_COMMANDSETUNITPROPERTIES_H

#include "Commands/CommandBase.h"
#include "TypeDescription.h"

#include <QList>

/// Sets fixed units on fixed leaves ("CommandSetUnitProperties").
///
/// Parameter table: target URL, unit, and optionally a third cell that is only shown. A row of four
/// or more cells counts as one of two. A row of fewer than two cells breaks the table's contract
/// and ends the process by an assertion.
class UNITFLOW_EXPORT CommandSetUnitProperties : public CommandBase {
public:
    struct UnitProperties {
        QString targetUrl; ///< below the target root, after the prefix if there is one
        QString unit;      ///< empty disables the row
        QString extra;     ///< only shown
    };

    explicit CommandSetUnitProperties(const BaseClassSharedPointer& description);
    ~CommandSetUnitProperties() override;

    /// A first parameter that converts to text is put in front of every target URL as it is,
    /// without a separator. Rows whose leaf is missing or whose unit is empty are skipped silently.
    bool executeCommand(const BaseClassSharedPointer& sourceRoot,
                        const BaseClassSharedPointer& targetRoot, const QString& url,
                        QVariantList& results, bool& changed, const QVariantList& parameters,
                        const QSharedPointer<UnitManipulatorBase>& manipulator) override;

    /// "SetUnit(target,unit,extra);" for each row.
    QString getCommandAsString() const override;

    /// True when at least one row is a list.
    bool initCommand(const BaseClassSharedPointer& description) override;

    /// Its parameter table and what it is for; `name` is left to the registration.
    static TypeDescription typeDescription();

private:
    QList<UnitProperties> unitProperties;
};

#endif
