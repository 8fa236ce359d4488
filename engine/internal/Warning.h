#ifndef UNITFLOW_INTERNAL_WARNING_H
#define UNITFLOW_INTERNAL_WARNING_H

#include <QDebug>
#include <QMessageLogger>

namespace internal {

/// The place that a warning names. It is part of what a message promises to those who filter or
/// search logs, so it is data and does not follow the code when lines move.
struct WarningPlace {
    const char* file;
    int line;
    const char* function;
};

/// The one way in which the engine writes a message: stream the pieces into the result.
inline QDebug warning(const WarningPlace& place)
{
    return QMessageLogger(place.file, place.line, place.function, "default").warning();
}

} // namespace internal

#endif
