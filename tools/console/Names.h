#ifndef UNITFLOW_TOOLS_CONSOLE_NAMES_H
#define UNITFLOW_TOOLS_CONSOLE_NAMES_H

#include "filehost/Workspace.h"

#include <QString>

namespace tools {

class JsonDocument;

/// The name of an instance as people see it: a process description is marked.
QString titleOf(const filehost::Instance& instance);

/// "source → target through dependency", with the parameters if there are any.
QString describe(const filehost::Link& link);

/// "links.json:line:column: "; empty for a link that stands nowhere.
QString placeOf(const filehost::Link& link);

/// Adds what a link is as members of the object that is open.
void addLink(JsonDocument& document, const filehost::Link& link);

} // namespace tools

#endif
