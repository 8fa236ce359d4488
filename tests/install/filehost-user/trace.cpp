#include "DependencyWalker.h"
#include "trace/NdjsonTraceWriter.h"
#include "trace/TraceReader.h"

#include <QBuffer>

#include <iostream>

int main()
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    trace::NdjsonTraceWriter writer(buffer);
    {
        const TraversalObservation observation(writer);
        QVariantList results;
        DependencyWalker().traverseDependencyGraph("s", {}, {}, results, {}, {});
    }
    std::cout << buffer.data().toStdString();
    return trace::readTrace(buffer.data()).events.size() == 2 ? 0 : 1;
}
