#ifndef UNITFLOW_COMMANDS_COMMANDSETUNITBYCONFIGURATIONPARAMETERARRAY_H
#define UNITFLOW_COMMANDS_COMMANDSETUNITBYCONFIGURATIONPARAMETERARRAY_H

#include "Commands/CommandBase.h"
#include "TypeDescription.h"

#include <QList>

/// Makes the unit of one column of an array leaf follow a value of the source
/// ("CommandSetUnitByConfigurationParameterArray").
///
/// Parameter table: parameter URL, optionally a cell that is only shown, array target. Rows of any
/// other length than two or three are skipped silently. An array target is the leaf's URL followed
/// by a column index in square brackets: a whole number from 0, or a sum or difference of two.
class UNITFLOW_EXPORT CommandSetUnitByConfigurationParameterArray : public CommandBase {
public:
    struct UnitProperties {
        QString parameterUrl; ///< below the source root; empty disables the row
        QString extra;        ///< only shown; empty for a row of two cells
        QString arrayTarget;  ///< below the target root, for example "Table[2+1]"
    };

    explicit CommandSetUnitByConfigurationParameterArray(const BaseClassSharedPointer& description);
    ~CommandSetUnitByConfigurationParameterArray() override;

    /// Rows whose target cannot be read, is missing or is no array are reported as warnings; rows
    /// without a usable source value are skipped silently. A column index at or past the number of
    /// columns ends the process by an assertion. The manipulator is never called; each written row
    /// warns that it is not.
    bool executeCommand(const BaseClassSharedPointer& sourceRoot,
                        const BaseClassSharedPointer& targetRoot, const QString& url,
                        QVariantList& results, bool& changed, const QVariantList& parameters,
                        const QSharedPointer<UnitManipulatorBase>& manipulator) override;

    /// "CommandSetUnitByConfigurationParameterArray(parameter,extra,target);" for each row.
    QString getCommandAsString() const override;

    /// True when at least one row was taken.
    bool initCommand(const BaseClassSharedPointer& description) override;

    /// Its parameter table and what it is for; `name` is left to the registration.
    static TypeDescription typeDescription();

    /// The value of a whole number, of a sum or of a difference of two; -1 when it is none of these
    /// or does not fit an int. A result of -1 is not told from a failure.
    int evalArrayIndexExpression(const QString& expression);

    /// Takes an array target apart. False, with a warning, when there is no URL, no index or a
    /// negative one; `arrayUrl` and `columnIndex` then hold what was read so far.
    bool getArrayUrlAndColumnIndex(const QString& arrayTarget, QString& arrayUrl, int& columnIndex);

private:
    QList<UnitProperties> unitProperties;
};

#endif
