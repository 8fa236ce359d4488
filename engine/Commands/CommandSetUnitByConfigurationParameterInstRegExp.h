#ifndef UNITFLOW_COMMANDS_COMMANDSETUNITBYCONFIGURATIONPARAMETERINSTREGEXP_H
#define UNITFLOW_COMMANDS_COMMANDSETUNITBYCONFIGURATIONPARAMETERINSTREGEXP_H

#include "Commands/CommandBase.h"
#include "TypeDescription.h"

#include <QList>
#include <QVariant>

#include <memory>

namespace patterns {
class PatternList;
}

/// Makes units follow the written value itself, on leaves whose URLs follow from the written URL
/// ("CommandSetUnitByConfigurationParameterInstRegExp": the type name in descriptions and the class
/// name differ).
///
/// Parameter table: pattern, target URL template. Rows of any other length are skipped silently.
class UNITFLOW_EXPORT CommandSetUnitByConfigurationParameterRegExp : public CommandBase {
public:
    struct UnitProperties {
        QString pattern; ///< searched in the written URL; without a capture group it never applies
        QString targetUrlTemplate; ///< below the target root, with placeholders "(?<name>)"
    };

    explicit CommandSetUnitByConfigurationParameterRegExp(
        const BaseClassSharedPointer& description);
    ~CommandSetUnitByConfigurationParameterRegExp() override;

    /// Writes the source's value at `url` as it is into the unit of every leaf that a matching row
    /// names. Silent, but for one warning for each written row when there is a manipulator, which
    /// is never called.
    bool executeCommand(const BaseClassSharedPointer& sourceRoot,
                        const BaseClassSharedPointer& targetRoot, const QString& url,
                        QVariantList& results, bool& changed, const QVariantList& parameters,
                        const QSharedPointer<UnitManipulatorBase>& manipulator) override;

    /// "CommandSetUnitByConfigurationParameterRegExp(pattern,template);" for each row.
    QString getCommandAsString() const override;

    /// Always true.
    bool initCommand(const BaseClassSharedPointer& description) override;

    /// Its parameter table and what it is for; `name` is left to the registration.
    static TypeDescription typeDescription();

    /// The leaf that one row names for `url`, null when the row does not apply, the leaf is missing
    /// or the source has no value at `url`. `value` gets that value; it is only read when there is
    /// a leaf. Neither root may be null.
    BaseClassSharedPointer getUnitValueAndTargetLeaf(const QString& url, const QString& pattern,
                                                     const QString& targetUrlTemplate,
                                                     const BaseClassSharedPointer& sourceRoot,
                                                     const BaseClassSharedPointer& targetRoot,
                                                     QVariant& value);

private:
    QList<UnitProperties> unitProperties;
    std::unique_ptr<patterns::PatternList> keptPatterns; // of the rows; never null
};

#endif
