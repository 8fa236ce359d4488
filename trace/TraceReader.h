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

/// How many nodes a trace may enter before it leaves one of them: those who follow the events need
/// not fear any depth.
constexpr int mostNodes = 1000;

/// Turns the lines of a `NdjsonTraceWriter` back into events. A text whose first line is not that
/// of a format which this version reads has one error and no events. Members that it does not know
/// are passed over; whether the events make sense together is not looked at, but that a trace ends,
/// in an error, where more than `mostNodes` nodes would be within one another.
Trace readTrace(const QByteArray& text);

} // namespace trace

#endif
