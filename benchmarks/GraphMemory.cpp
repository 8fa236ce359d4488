// How much memory a search among ten thousand patterns takes, as JSON: the bytes of the nodes of a
// graph of plain URLs, and of a walker of as many nodes with patterns, nodes included, that was
// asked for URLs that no pattern matches.

#include "DependencyWalker.h"
#include "DependencyWalkerFactory.h"
#include "Graphs.h"
#include "Nodes/NodeBase.h"

#include <QHash>
#include <QList>

#include <cstdlib>
#include <iostream>
#include <malloc.h>
#include <vector>

namespace {

constexpr int nodeCount = 10'000;

std::size_t allocated()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd; // in the heap, and in mappings of their own
}

using Nodes = std::vector<QSharedPointer<NodeBase>>;

Nodes nodesOf(const BaseClassSharedPointer& description)
{
    const auto children = description->getChildMap();
    Nodes nodes;
    nodes.reserve(std::size_t(children.size()));
    for (auto child = children.begin(); child != children.end(); ++child) {
        nodes.emplace_back();
        DependencyWalkerFactory::generateNode(QStringLiteral("SwitchNode"), child.key(),
                                              child.value(), nodes.back());
    }
    return nodes;
}

BaseClassSharedPointer description(graphs::Watching watching)
{
    return graphs::parsed(graphs::description(nodeCount, watching));
}

bool findsNothing(const DependencyWalker& walker)
{
    QList<QSharedPointer<NodeBase>> matches;
    for (int zone = nodeCount; zone < nodeCount + 100; ++zone) {
        walker.filterRegExpMatches(graphs::zoneUrl(zone, zone), matches);
        if (!matches.isEmpty()) {
            return false;
        }
    }
    return true;
}

} // namespace

int main()
{
    const BaseClassSharedPointer urls = description(graphs::Watching::Urls);
    const BaseClassSharedPointer patterns = description(graphs::Watching::Patterns);
    nodesOf(urls); // trees keep what they were asked for
    DependencyWalker().initDependencyGraph(patterns);

    const std::size_t before = allocated();
    const Nodes nodes = nodesOf(urls);
    const std::size_t withNodes = allocated();
    DependencyWalker walker;
    walker.initDependencyGraph(patterns);
    if (!walker.isValid() || !findsNothing(walker)) {
        std::cerr << "graph-memory: the graph is not as it should be\n";
        return EXIT_FAILURE;
    }
    const std::size_t withWalker = allocated();

    std::cout << "{\"nodes\": " << withNodes - before << ", \"walker\": " << withWalker - withNodes
              << "}\n";
    return EXIT_SUCCESS;
}
