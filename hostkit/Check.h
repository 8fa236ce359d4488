#ifndef UNITFLOW_HOSTKIT_CHECK_H
#define UNITFLOW_HOSTKIT_CHECK_H

#include <QList>
#include <QString>
#include <QStringList>

namespace hostkit {

class Adapter;
class Bench;

/// One thing that the engine expects of a host.
struct Check {
    QString name;        ///< "group.what_is_expected", unique
    QString expectation; ///< a sentence
    QString consequence; ///< a sentence: what the engine does wrong when the host does not hold it
    void (*run)(Bench& bench);
};

/// What came of a check.
struct Outcome {
    enum class Kind {
        Passed,
        Failed,
        Skipped ///< the adapter says that the host has no such thing
    };

    Kind kind = Kind::Passed;
    QStringList found;    ///< what was seen that should not be, or why the check was skipped
    QStringList messages; ///< what went to Qt's message log meanwhile
};

/// All checks, from single host operations to whole resolutions: the first that fails is the one
/// to look at. The same in every run.
const QList<Check>& allChecks();

/// Carries out one check in the calling thread, whatever the host throws. Qt's message handler is
/// replaced meanwhile. When the host makes the engine stop the process, the check's name, its
/// expectation and its consequence are written to standard error first.
Outcome perform(const Check& check, Adapter& adapter);

} // namespace hostkit

#endif
