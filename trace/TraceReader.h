#ifndef UNITFLOW_TRACE_TRACEREADER_H
#define UNITFLOW_TRACE_TRACEREADER_H

#include "trace/Event.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace trace {

/// Why a line is no event.
struct TraceError {
    int line; ///< from 1
    QString message;
};

struct Trace {
    QList<Event> events; ///< of the lines without an error
    QList<TraceError> errors;
};

/// Turns the lines of a `NdjsonTraceWriter` back into events. A text whose first line is not that
/// of a format which this version reads has one error and no events. Members that it does not know
/// are passed over; whether the events make sense together is not looked at.
Trace readTrace(const QByteArray& text);

} // namespace trace

#endif
