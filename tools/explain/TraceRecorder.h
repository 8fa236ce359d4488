#ifndef UNITFLOW_TOOLS_EXPLAIN_TRACERECORDER_H
#define UNITFLOW_TOOLS_EXPLAIN_TRACERECORDER_H

#include "trace/EventObserver.h"
#include "trace/NdjsonTraceWriter.h"

#include <QIODevice>
#include <QList>

#include <functional>
#include <memory>

namespace tools {

class Console;

/// Keeps the events of a run, or writes them to the console at once when that wants JSON.
class TraceRecorder final : public trace::EventObserver {
public:
    explicit TraceRecorder(Console& console);
    ~TraceRecorder() override;

    void take(const trace::Event& event) override;

    const QList<trace::Event>& events() const { return kept; }

    /// Called when the process is about to end within the run.
    std::function<void()> beforeTheEnd;

private:
    class Output;

    std::unique_ptr<Output> output; // null when events are kept
    std::unique_ptr<trace::NdjsonTraceWriter> writer;
    QList<trace::Event> kept;
};

} // namespace tools

#endif
