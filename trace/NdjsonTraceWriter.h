#ifndef UNITFLOW_TRACE_NDJSONTRACEWRITER_H
#define UNITFLOW_TRACE_NDJSONTRACEWRITER_H

#include "trace/EventObserver.h"

#include <QIODevice>

namespace trace {

/// An observer that writes each event as a line of JSON, as docs/trace-format.md has it.
///
///     QFile file("trace.ndjson");
///     file.open(QIODevice::WriteOnly);
///     trace::NdjsonTraceWriter writer(file);
///     const TraversalObservation observation(writer);
///     walker.traverseDependencyGraph(...);
///
/// One thread writes to it at a time. Costs a few microseconds for each event.
class NdjsonTraceWriter final : public EventObserver {
public:
    /// Writes the first line, which names the format. `device` is open for writing and outlives the
    /// writer; nothing else writes to it meanwhile.
    explicit NdjsonTraceWriter(QIODevice& device);

    /// Writes an event, here also one that the engine does not tell: a `Link` before what is run
    /// for it. A file is flushed before a column out of range ends the process.
    void take(const Event& event) override;

    /// Whether all lines were taken by the device. What cannot be written is left out.
    bool isComplete() const { return complete; }

private:
    void write(const QByteArray& line);

    QIODevice& device;
    bool complete = true;
};

} // namespace trace

#endif
