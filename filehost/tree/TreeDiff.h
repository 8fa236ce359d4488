#ifndef UNITFLOW_FILEHOST_TREE_TREEDIFF_H
#define UNITFLOW_FILEHOST_TREE_TREEDIFF_H

#include "filehost/Session.h"
#include "filehost/json/JsonText.h"

#include <QList>

namespace filehost::tree {

/// Adds a change for every property that differs between two texts of an instance: in the order of
/// `after`, what is only in `before` behind it. `before` is null when there was no file. Costs the
/// size of what differs; what is spelled alike is passed over.
void addChanges(const Instance& instance, const json::JsonText* before, const json::JsonText& after,
                QList<LeafChange>& changes);

} // namespace filehost::tree

#endif
