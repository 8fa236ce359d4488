#ifndef UNITFLOW_CHECKER_LINKCHECK_H
#define UNITFLOW_CHECKER_LINKCHECK_H

#include "checker/Description.h"
#include "checker/Findings.h"
#include "checker/Patterns.h"
#include "checker/Tree.h"
#include "checker/Units.h"

#include <QStringList>

namespace checker {

/// What a link brings to a description.
struct LinkedTrees {
    const filehost::Link& link;
    const Tree& source;
    const Tree& target;
    Units* units; ///< null when no unit can be judged
};

/// What a description does with a link, as far as its rows tell.
struct LinkOutline {
    /// The URLs of the source that any row names or matches; in front the empty one, which stands
    /// for all others.
    QStringList writtenUrls;
    /// Whether the engine ends the process when it runs the link.
    bool endsProcess = false;
};

/// Adds what of a description has no counterpart in the trees that a link names. What is wrong for
/// every link already is not said again.
LinkOutline checkLink(const std::vector<Node>& nodes, const filehost::DescriptionPlaces& places,
                      const LinkedTrees& linked, Patterns& patterns, Findings& findings);

/// What the rows of a description take of a link's parameters.
struct ParameterUse {
    bool isKnown = false;    ///< whether the description can be read
    bool takesFirst = false; ///< in front of URLs
    bool takesTwo = false;   ///< in the places of URLs, if there are exactly two
};
ParameterUse parameterUse(const std::vector<Node>& nodes,
                          const filehost::DescriptionPlaces& places);

/// Adds which of the units that stand in rows are none, for a description without a link.
void checkFixedUnits(const std::vector<Node>& nodes, const filehost::DescriptionPlaces& places,
                     Units& units, Findings& findings);

/// What to do about a text that is no unit. `present` is the unit that the leaf has; may be empty.
QString adviceOnUnit(const QString& text, const QString& present, Units& units);

} // namespace checker

#endif
