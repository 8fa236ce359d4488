#ifndef UNITFLOW_FILEHOST_LINKREADER_H
#define UNITFLOW_FILEHOST_LINKREADER_H

#include "filehost/Workspace.h"
#include "filehost/json/JsonText.h"

#include <QList>

namespace filehost {

/// The entries of a text of links, in its order. Entries with a problem are left out; the problems
/// of all of them are added, in the order of the text.
QList<Link> readLinks(const json::JsonText& text, QList<Problem>& problems);

} // namespace filehost

#endif
