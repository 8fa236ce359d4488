#ifndef UNITFLOW_COMMANDS_UNITMANIPULATORBASE_H
#define UNITFLOW_COMMANDS_UNITMANIPULATORBASE_H

#include "Export.h"
#include "host/ConfigurationAndProcessDataBase.h"

#include <QString>

/// Lets the host take part in unit changes: converting a value to its new unit, for example.
class UNITFLOW_EXPORT UnitManipulatorBase {
public:
    virtual ~UnitManipulatorBase();

    /// Called by `CommandSetUnitProperties` and `CommandSetUnitByConfigurationParameter` after
    /// each write of a unit, whatever its status; never for a row that was skipped.
    /// `leaf` is the target leaf, `unit` the unit as text. `commandResult` is what the command
    /// will return unless a later row changes it, `changed` the flag of the traversal; both may be
    /// set. The result is ignored.
    virtual bool manipulateUnit(const BaseClassSharedPointer& leaf, const QString& unit,
                                bool& commandResult, bool& changed) = 0;
};

#endif
