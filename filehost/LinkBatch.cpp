#include "filehost/LinkBatch.h"

#include "DependencyWalker.h"
#include "filehost/FileDependencyResolver.h"
#include "filehost/LinkPlan.h"

#include <QDebug>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace filehost {

namespace {

constexpr std::size_t mostKept = 16; // a graph of thousands of patterns takes megabytes

/// Runs a graph for URLs as the engine's resolver does.
bool answersAll(DependencyWalker& walker, const BaseClassSharedPointer& source,
                const BaseClassSharedPointer& target, QStringList urls,
                const QVariantList& parameters, bool& changed)
{
    if (urls.isEmpty()) {
        urls = walker.getDependencyUrlList();
    }
    if (urls.isEmpty()) {
        urls.append(QLatin1String(""));
    }
    QVariantList results;
    bool isAnswered = true;
    for (const QString& url : std::as_const(urls)) {
        const bool isThis =
            walker.traverseDependencyGraph(url, source, target, results, changed, parameters, {});
        isAnswered = isAnswered && isThis; // every URL runs, also after one that failed
    }
    return isAnswered;
}

} // namespace

/// A description as a graph, and what was said when it was built.
struct LinkBatch::Graph {
    QString dependency;
    DependencyWalker walker;
    bool isBuilt = false; ///< false when the description does not parse
    QList<Problem> problems;
    QStringList messages;
};

LinkBatch::LinkBatch(Session& session, Listener listener)
    : session(session), listener(std::move(listener))
{}

LinkBatch::~LinkBatch() = default;

/// Asks for everything in the order in which the engine's resolver does, so that the problems come
/// in the same order.
bool LinkBatch::resolve(const Link& link, const QStringList& urls, bool& changed)
{
    Graph* graph = keptGraph(link.dependency);
    const QString text = graph == nullptr ? session.description(link.dependency) : QString();
    const BaseClassSharedPointer source = session.view(sourceOf(link));
    const BaseClassSharedPointer target = session.load(targetOf(link));
    if (graph == nullptr && text.isEmpty()) {
        return false;
    }
    if (source.isNull() || target.isNull()) {
        return !target.isNull(); // an absent source resolves to the target as it is
    }
    if (graph == nullptr) {
        graph = &makeGraph(link.dependency, text);
    }
    for (const Problem& problem : std::as_const(graph->problems)) {
        session.report(problem);
    }
    for (const QString& message : std::as_const(graph->messages)) {
        qWarning().noquote() << message;
    }

    return graph->isBuilt &&
           answersAll(graph->walker, source, target, urls, link.parameters, changed) &&
           session.store(targetOf(link), target, FileDependencyResolver::origin(),
                         session.workspace().directory());
}

LinkBatch::Graph* LinkBatch::keptGraph(const QString& dependency)
{
    const auto found = std::find_if(graphs.begin(), graphs.end(), [&](const Graph& graph) {
        return graph.dependency == dependency;
    });
    if (found == graphs.end()) {
        return nullptr;
    }
    graphs.splice(graphs.begin(), graphs, found);
    return &graphs.front();
}

LinkBatch::Graph& LinkBatch::makeGraph(const QString& dependency, const QString& text)
{
    if (graphs.size() == mostKept) {
        graphs.pop_back();
    }
    Graph& graph = graphs.emplace_front();
    graph.dependency = dependency;
    const auto build = [&] { graph.isBuilt = graph.walker.initDependencyGraphByJsonString(text); };

    const QList<Problem> earlier = session.takeProblems();
    if (listener) {
        graph.messages = listener(build);
    } else {
        build();
    }
    graph.problems = session.takeProblems();
    for (const Problem& problem : earlier) {
        session.report(problem);
    }
    return graph;
}

} // namespace filehost
