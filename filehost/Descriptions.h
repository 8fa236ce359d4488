#ifndef UNITFLOW_FILEHOST_DESCRIPTIONS_H
#define UNITFLOW_FILEHOST_DESCRIPTIONS_H

#include "filehost/Files.h"

#include <QList>
#include <QString>

namespace filehost {

/// The text of a description; empty with a problem when there is no such file, or nothing in it
/// that could be handed on as text.
QString readDescription(const File& file, QList<Problem>& problems);

/// Notes which file a text was handed out from, for the parser, which gets the text alone. Each
/// thread remembers its last few texts.
void rememberHandedOut(const QString& text, const QString& shownFile);

/// The file that a text was handed out from; empty when that is not known.
QString fileOfHandedOut(const QString& text);

} // namespace filehost

#endif
