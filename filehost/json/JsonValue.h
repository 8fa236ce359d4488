#ifndef UNITFLOW_FILEHOST_JSON_JSONVALUE_H
#define UNITFLOW_FILEHOST_JSON_JSONVALUE_H

#include "filehost/Export.h"

#include <QByteArray>
#include <QVariant>

#include <optional>

namespace filehost::json {

/// The value as it would be read back after it was written: whole numbers as qlonglong (qulonglong
/// beyond its range), decimals as double, lists and maps of such values. Nothing when JSON cannot
/// hold it: an invalid value, NaN or an infinity, text with half of a surrogate pair, a type that
/// is none of JSON's, or lists and maps more than `depth` inside one another.
UNITFLOW_FILEHOST_EXPORT std::optional<QVariant> normalized(const QVariant& value, int depth);

/// Whether two normalized values are equal in type and value, all the way down. (QVariant's own
/// comparison converts: to it, 5 equals "5".)
UNITFLOW_FILEHOST_EXPORT bool isSame(const QVariant& left, const QVariant& right);

/// A normalized value that is neither list nor map, as JSON. A double always keeps a point or an
/// exponent, so that it is read back as one.
QByteArray writeScalar(const QVariant& value);

} // namespace filehost::json

#endif
