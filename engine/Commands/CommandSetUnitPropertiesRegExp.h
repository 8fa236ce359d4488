#ifndef UNITFLOW_COMMANDS_COMMANDSETUNITPROPERTIESREGEXP_H
#define UNITFLOW_COMMANDS_COMMANDSETUNITPROPERTIESREGEXP_H

#include "Commands/CommandBase.h"
#include "TypeDescription.h"

#include <QList>

#include <memory>

namespace patterns {
class PatternList;
}

/// Sets fixed units on leaves whose URLs follow from the written URL
/// ("CommandSetUnitPropertiesRegExp").
///
/// Parameter table: pattern, target URL template, unit, and optionally a fourth cell that is only
/// shown. A row of five or more cells counts as one of three. A row of fewer than three cells
/// breaks the table's contract and ends the process by an assertion.
class UNITFLOW_EXPORT CommandSetUnitPropertiesRegExp : public CommandBase {
public:
    struct UnitProperties {
        QString pattern; ///< searched in the written URL; without a capture group it never applies
        QString targetUrl; ///< below the target root, with placeholders "(?<name>)"
        QString unit;      ///< empty disables the row
        QString extra;     ///< only shown
    };

    explicit CommandSetUnitPropertiesRegExp(const BaseClassSharedPointer& description);
    ~CommandSetUnitPropertiesRegExp() override;

    /// Applies every row whose pattern matches `url`. A null root, an empty target URL and a
    /// missing leaf are reported as warnings. The manipulator is never called; each written row
    /// warns that it is not.
    bool executeCommand(const BaseClassSharedPointer& sourceRoot,
                        const BaseClassSharedPointer& targetRoot, const QString& url,
                        QVariantList& results, bool& changed, const QVariantList& parameters,
                        const QSharedPointer<UnitManipulatorBase>& manipulator) override;

    /// "SetUnitRegExp(pattern,target,unit,extra);" for each row.
    QString getCommandAsString() const override;

    /// True when at least one row is a list.
    bool initCommand(const BaseClassSharedPointer& description) override;

    /// Its parameter table and what it is for; `name` is left to the registration.
    static TypeDescription typeDescription();

private:
    QList<UnitProperties> unitProperties;
    std::unique_ptr<patterns::PatternList> keptPatterns; // of the rows; never null
};

#endif
