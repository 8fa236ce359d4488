#ifndef UNITFLOW_FILEHOST_TREE_TREEDIFF_H
#define UNITFLOW_FILEHOST_TREE_TREEDIFF_H

#include "filehost/Export.h"
#include "filehost/Session.h"
#include "filehost/json/JsonText.h"

#include <QList>

#include <memory>

namespace filehost::tree {

/// Adds a change for every property that differs between two texts of an instance: in the order of
/// `after`, what is only in `before` behind it. `before` is null when there was no file. Costs the
/// size of what differs; what is spelled alike is passed over.
UNITFLOW_FILEHOST_EXPORT void addChanges(const Instance& instance, const json::JsonText* before,
                                         const json::JsonText& after, QList<LeafChange>& changes);

/// The text that makes of `inFile` what `text` says with the fewest changes to its bytes: `text`
/// may spell things anew that are as they were in the file, after several stores for example.
/// `text` itself when its nodes are not those of the file.
std::shared_ptr<const json::JsonText> closestTo(const std::shared_ptr<const json::JsonText>& inFile,
                                                const std::shared_ptr<const json::JsonText>& text);

} // namespace filehost::tree

#endif
