#ifndef UNITFLOW_HOSTKIT_INTERNAL_STORY_H
#define UNITFLOW_HOSTKIT_INTERNAL_STORY_H

#include "hostkit/internal/Bench.h"
#include "hostkit/internal/Making.h"

namespace hostkit {

/// The unit that a leaf of the target has in the end. For an array leaf, of one of its columns.
struct ExpectedUnit {
    QStringList path;
    QString unit;
    int column = 0;
};

/// A whole resolution: what the store holds, what is asked, and what follows.
struct Story {
    Leaves source;
    Leaves target;
    Leaves description;

    QStringList urls = {};
    QVariantList parameters = {};
    bool isProcess = false;

    bool changed = true;       ///< whether a leaf of the target is to change
    QList<ExpectedUnit> units; ///< every other leaf of the target keeps the unit it had
};

/// Puts everything into the store, runs the resolution as a host's resolver does, and looks at the
/// target that the store then holds. Stops first when the description's tables or the target's
/// columns do not read back, since the engine may then reach past the end of a row.
void play(Bench& bench, const Story& story);

/// Runs the same on trees that the store does not know, straight through a walker.
void playOnTrees(Bench& bench, const Story& story);

/// A node of a description: the leaf that holds its type.
Leaf node(const QStringList& path, const char* type);

/// A command of the command node at `path`.
Leaf command(const QStringList& path, const char* type, const QVariantList& rows);

} // namespace hostkit

#endif
