#ifndef UNITFLOW_CHECKER_LINKRUN_H
#define UNITFLOW_CHECKER_LINKRUN_H

#include "DependencyWalker.h"
#include "checker/Description.h"
#include "checker/Findings.h"
#include "checker/LinkCheck.h"
#include "host/ConfigurationAndProcessDataBase.h"

#include <QHash>
#include <QPair>
#include <QString>
#include <QStringList>

#include <vector>

namespace checker {

/// The nodes of a description by their names, each below the one that leads to it; null above the
/// top-level ones.
using NodesByName = QHash<QPair<const Node*, QString>, const Node*>;

/// Runs a description as the engine does, and looks at the units that it sets. What the engine logs
/// meanwhile is dropped: the findings say it.
class LinkRun {
public:
    /// `description` is the tree of the places' text. Not for one with a row that ends the process.
    LinkRun(const std::vector<Node>& nodes, const filehost::DescriptionPlaces& places,
            const BaseClassSharedPointer& description);

    /// `linked` has units. Lets each of the URLs be written with the value that it has, and adds
    /// what is wrong with the units that are set. `scratch` is a tree of the target that is changed
    /// by it. Costs what resolving the link for these URLs does.
    void check(const LinkedTrees& linked, const BaseClassSharedPointer& scratch,
               const QStringList& writtenUrls, Findings& findings);

private:
    const filehost::DescriptionPlaces& places;
    DependencyWalker walker;
    NodesByName nodes;
};

} // namespace checker

#endif
