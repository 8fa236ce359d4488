#ifndef UNITFLOW_TOOLS_GRAPH_OUTPUTFILE_H
#define UNITFLOW_TOOLS_GRAPH_OUTPUTFILE_H

#include <QByteArray>
#include <QString>

namespace tools {

class Console;

/// Writes a file that the user named, as a whole or not at all: what was there before stays until
/// all is written. Something that is no regular file, as a pipe, is written to directly. False,
/// reported, when that cannot be done.
bool writeFile(const QString& name, const QByteArray& bytes, Console& console);

} // namespace tools

#endif
