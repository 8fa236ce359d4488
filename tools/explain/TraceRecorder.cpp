#include "tools/explain/TraceRecorder.h"

#include "tools/console/Console.h"

namespace tools {

/// Hands every line on as soon as it is written.
class TraceRecorder::Output final : public QIODevice {
public:
    explicit Output(Console& console) : console(console) { open(WriteOnly | Unbuffered); }

protected:
    qint64 readData(char* /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override
    {
        console.stream(QString::fromUtf8(data, static_cast<int>(size)));
        return size;
    }

private:
    Console& console;
};

TraceRecorder::TraceRecorder(Console& console)
{
    if (console.options().json) {
        output = std::make_unique<Output>(console);
        writer = std::make_unique<trace::NdjsonTraceWriter>(*output);
    }
}

TraceRecorder::~TraceRecorder() = default;

void TraceRecorder::take(const trace::Event& event)
{
    if (writer) {
        writer->take(event);
        return;
    }
    kept.append(event);
    const auto* const executed = std::get_if<trace::CommandRowExecuted>(&event);
    if (executed != nullptr && beforeTheEnd &&
        executed->row.outcome == TraversalObserver::RowOutcome::ColumnOutOfRange) {
        beforeTheEnd();
    }
}

} // namespace tools
