#ifndef UNITFLOW_TOOLS_CONSOLE_VALUE_H
#define UNITFLOW_TOOLS_CONSOLE_VALUE_H

#include "filehost/Problem.h"

#include <QList>
#include <QString>
#include <QVariant>
#include <QVariantList>

namespace tools {

/// What a VALUE on the command line means: the JSON literal that it is, read as the host reads it
/// in a file, else the text itself. Invalid, with problems added, for a literal that no leaf can
/// have as its value: null, or a number that would have to be rounded.
QVariant parseValue(const QString& text, QList<filehost::Problem>& problems);

/// How a value is shown: as it would be given on the command line. So text stands without quotes
/// unless it would mean something else then. "(none)" for an invalid value.
QString valueText(const QVariant& value);

/// The same for a cell of a table: a list too long for one is described, text too long is cut.
QString shortValueText(const QVariant& value);

/// Whether a value is a list of lists.
bool isTable(const QVariant& value);

/// "20 values" or, for a list of lists, "20 rows of 2 columns".
QString sizeText(const QVariantList& list);

} // namespace tools

#endif
