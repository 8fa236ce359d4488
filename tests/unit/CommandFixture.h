#ifndef UNITFLOW_TESTS_UNIT_COMMANDFIXTURE_H
#define UNITFLOW_TESTS_UNIT_COMMANDFIXTURE_H

#include "Commands/CommandBase.h"
#include "Commands/UnitManipulatorBase.h"
#include "EngineTest.h"

#include <functional>
#include <utility>

/// A manipulator that records its calls with the host and then does what the test says.
class ScriptedManipulator final : public UnitManipulatorBase {
public:
    using Action = std::function<void(bool& commandResult, bool& changed)>;

    explicit ScriptedManipulator(Action action = {}) : action(std::move(action)) {}

    bool manipulateUnit(const BaseClassSharedPointer& leaf, const QString& unit,
                        bool& commandResult, bool& changed) override
    {
        testhost::Host::current().record(QStringLiteral("manipulateUnit(%1, %2, %3, %4)")
                                             .arg(testhost::where(leaf.data()), unit)
                                             .arg(int(commandResult))
                                             .arg(int(changed)));
        if (action) {
            action(commandResult, changed);
        }
        return false;
    }

private:
    Action action;
};

/// What a command's test needs: the two trees and the arguments that most tests leave alone.
class CommandTest : public testhost::EngineTest {
protected:
    bool execute(CommandBase& command, const QVariantList& parameters = {})
    {
        return command.executeCommand(source, target, QStringLiteral("written/url"), results,
                                      changed, parameters, manipulator);
    }

    testhost::NodePointer source = testhost::tree(QStringLiteral("source"), QStringLiteral("{}"));
    testhost::NodePointer target = testhost::tree(QStringLiteral("target"), QStringLiteral("{}"));
    QVariantList results;
    bool changed = false;
    QSharedPointer<UnitManipulatorBase> manipulator;
};

/// Writes with these statuses, one row each, and what comes of the two flags.
struct StatusRow {
    const char* title;
    QList<int> statuses;
    bool changedBefore;
    bool result;
    bool changed;
};

inline const QList<StatusRow>& statusTable()
{
    static const QList<StatusRow> rows{
        {"a write that changed something sets both flags", {0}, false, true, true},
        {"a write without change sets the result alone", {1}, false, true, false},
        {"a refused write sets neither", {2}, false, false, false},
        {"a negative status is a refusal", {-1}, false, false, false},
        {"any other number is a refusal", {256}, false, false, false},
        {"writes without change all the way leave changed alone", {1, 1, 1}, false, true, false},
        {"a refusal takes nothing back", {0, 2}, false, true, true},
        {"a refusal does not stop the rows after it", {2, 0}, false, true, true},
        {"a refusal does not stop a row that changes nothing", {2, 3, 1}, false, true, false},
        {"a flag that the caller had set stays set", {1}, true, true, true},
        {"a flag that the caller had set stays set after a refusal", {2}, true, false, true},
    };
    return rows;
}

#endif
