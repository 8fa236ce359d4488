#ifndef UNITFLOW_TESTS_REFERENCE_SCENARIO_H
#define UNITFLOW_TESTS_REFERENCE_SCENARIO_H

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <cstdint>

namespace reference {

/// One run of the engine as JSON, so that it can be printed and taken apart:
///
/// - "front": "walker" builds a walker and traverses it for each URL; "trees" and "instances" go
///   through the resolver, with trees that the caller has or with instances from the store
/// - "description", "source", "target": trees in the form of `testhost::tree`. In place of a tree,
///   null means that there is none; any other description is text that does not parse. "@statuses"
///   on a leaf are the answers to the writes that it gets, one for each
/// - "urls", "parameters": as handed to the engine
/// - "manipulator": null for none, otherwise what it does in each call: null for nothing, or the
///   two flags that it sets
/// - "changed": the flag before the run
/// - "process": whether the target is a process description
/// - "refusesColumns": whether array wrappers take no units
/// - "refusesStore": whether the store takes no trees
using Scenario = QJsonObject;

/// What a run did, as far as a host can tell.
struct Outcome {
    QStringList events;  ///< calls on source, target, store and manipulator, and messages, in order
    QList<bool> results; ///< of each traversal, or of the one resolution
    bool changed = false; ///< the flag after the run
    bool fatal = false;   ///< ends the process; nothing else counts then

    friend bool operator==(const Outcome& left, const Outcome& right)
    {
        return left.fatal == right.fatal &&
               (left.fatal || (left.events == right.events && left.results == right.results &&
                               left.changed == right.changed));
    }
    friend bool operator!=(const Outcome& left, const Outcome& right) { return !(left == right); }
};

/// A message as an event.
QString messageEvent(const QString& file, int line, const QString& function,
                     const QString& category, const QString& text);

/// A call of the manipulator as an event.
QString manipulatorEvent(const QString& place, const QString& unit, bool commandResult,
                         bool changed);

/// The same scenario for the same seed on every machine.
Scenario generate(std::uint64_t seed);

} // namespace reference

#endif
