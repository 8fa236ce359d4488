#ifndef UNITFLOW_FILEHOST_TREE_SCALARCHANGES_H
#define UNITFLOW_FILEHOST_TREE_SCALARCHANGES_H

#include "filehost/Export.h"
#include "filehost/Session.h"
#include "filehost/tree/FileTree.h"

#include <QList>

#include <optional>

namespace filehost::tree {

/// What `addChanges` finds between a tree's text and the rendered one, told from what was written
/// to the tree: neither text is read. Nothing when something else was written than scalars over
/// scalars; otherwise the rendered text has the nodes of the tree's own.
UNITFLOW_FILEHOST_EXPORT std::optional<QList<LeafChange>> scalarChanges(const Instance& instance,
                                                                        const FileTree& tree);

} // namespace filehost::tree

#endif
