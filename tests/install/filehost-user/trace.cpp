#include "DependencyWalker.h"
#include "host/ConfigurationAndProcessDataParser.h"
#include "trace/NdjsonTraceWriter.h"
#include "trace/TraceReader.h"

#include <QBuffer>

#include <iostream>

int main()
{
    const auto description = ConfigurationAndProcessDataParser().parseFromJson(
        R"({"Top": {"Type": "CommandNode"}})", QStringLiteral(".json"));
    DependencyWalker walker;
    walker.initDependencyGraph(description);

    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    trace::NdjsonTraceWriter writer(buffer);
    {
        const TraversalObservation observation(writer);
        QVariantList results;
        walker.traverseDependencyGraph("s", description, description, results, {}, {});
    }
    std::cout << buffer.data().toStdString();
    return trace::readTrace(buffer.data()).events.size() == 5 ? 0 : 1;
}
