#ifndef UNITFLOW_FILEHOST_LINKPLAN_H
#define UNITFLOW_FILEHOST_LINKPLAN_H

#include "filehost/Export.h"
#include "filehost/Workspace.h"

#include <QList>

#include <vector>

namespace filehost {

/// The links of a workspace in units of work that have nothing to do with one another: what a link
/// of one unit reads or writes is written by no link of another. So units may run in any order and
/// at the same time, and the result is that of all links run one after the other, as long as the
/// links of each unit run in their order. Instances that nothing writes may be read by any number
/// of units.
///
/// Instances count as one when their names lead to one file. Making a plan looks up the path of
/// each instance once and opens no file. For any number of threads once it is made.
class UNITFLOW_FILEHOST_EXPORT LinkPlan {
public:
    LinkPlan(const Workspace& workspace, const QList<Link>& links);

    /// Indexes of links, ascending in each unit; the units in the order of their first links.
    const std::vector<std::vector<int>>& units() const { return linksOfUnits; }

    /// Whether the link is the last one to need its source, which an earlier link may have written.
    bool isLastOfSource(int link) const
    {
        return uses[static_cast<std::size_t>(link)].isLastOfSource;
    }
    /// Whether the link is the last one to need its target.
    bool isLastOfTarget(int link) const
    {
        return uses[static_cast<std::size_t>(link)].isLastOfTarget;
    }

private:
    struct Use {
        bool isLastOfSource = false; ///< never for a source that is the target, too
        bool isLastOfTarget = false;
    };

    std::vector<std::vector<int>> linksOfUnits;
    std::vector<Use> uses; ///< by link
};

/// The target of a link, and its source.
UNITFLOW_FILEHOST_EXPORT Instance targetOf(const Link& link);
UNITFLOW_FILEHOST_EXPORT Instance sourceOf(const Link& link);

} // namespace filehost

#endif
