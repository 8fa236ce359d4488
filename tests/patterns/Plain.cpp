#include "Plain.h"

#include <algorithm>
#include <array>
#include <utility>

namespace patterns {

bool PlainMatcher::findsMatch(const QString& pattern, const QString& url)
{
    auto expression = compiled.find(pattern);
    if (expression == compiled.end()) {
        expression = compiled.insert(pattern, QRegularExpression(pattern));
    }
    return expression->isValid() && expression->match(url).hasMatch();
}

namespace {

using Watchers = std::vector<std::pair<QString, const Node*>>; // in the order they were built

struct Walker {
    Watchers urls;
    Watchers patterns;
    std::vector<const Node*> unconditional;
};

/// Patterns as a condition lists them. One that looks as if it were listed already is left out.
QStringList listed(const QStringList& patterns)
{
    QStringList list;
    for (const QString& pattern : patterns) {
        if (!list.contains(pattern)) {
            list.append("RE:" + pattern);
        }
    }
    return list;
}

QStringList watchedBy(const Node& node)
{
    QStringList watched;
    for (const Edge& edge : node.edges) {
        watched += listed(edge.compared) + edge.urls + listed(edge.patterns);
    }
    watched.removeDuplicates();
    return watched;
}

class PlainRun {
public:
    explicit PlainRun(const Round& round) : round(round) {}

    Answers answer()
    {
        run(round.steps);
        return answers;
    }

private:
    void run(const std::vector<Step>& steps)
    {
        for (const Step& step : steps) {
            run(step);
        }
    }

    void run(const Step& step)
    {
        Walker& walker = walkers.at(std::size_t(step.walker));
        switch (step.action) {
        case Step::Action::Filter:
            tell(step, names(matching(walker, round.urls.at(step.url))));
            break;
        case Step::Action::Traverse:
            traverse(walker, step);
            break;
        case Step::Action::Build:
            build(walker, step);
            break;
        case Step::Action::Reset:
            walker.urls.clear();
            walker.patterns.clear();
            break;
        case Step::Action::Assign:
            walker = Walker(walkers.at(std::size_t(step.from)));
            break;
        }
    }

    void tell(const Step& step, const QStringList& told)
    {
        answers.push_back({question(round, step), told});
    }

    static QStringList names(const std::vector<const Node*>& nodes)
    {
        QStringList names;
        for (const Node* node : nodes) {
            names.append(node->name);
        }
        return names;
    }

    void build(Walker& walker, const Step& step)
    {
        const Graph& graph = round.graphs.at(std::size_t(step.graph));
        walker = Walker();
        for (int i = 0; i < int(graph.size()); ++i) {
            const Node& node = graph[std::size_t(i)];
            if (i == step.at && !node.edges.empty()) {
                run(step.inside); // which may do something with this very walker
            }
            add(walker, node);
        }
    }

    static void add(Walker& walker, const Node& node)
    {
        const QStringList watched = watchedBy(node);
        if (watched.isEmpty()) {
            walker.unconditional.push_back(&node);
        }
        for (const QString& url : watched) {
            if (url.startsWith("RE:")) {
                walker.patterns.emplace_back(url.mid(3), &node);
            } else {
                walker.urls.emplace_back(url, &node);
            }
        }
    }

    std::vector<const Node*> matching(const Walker& walker, const QString& url)
    {
        std::vector<const Node*> nodes;
        for (const auto& [pattern, node] : walker.patterns) {
            if (matcher.findsMatch(pattern, url)) {
                nodes.push_back(node);
            }
        }
        return nodes;
    }

    static std::vector<const Node*> watching(const Walker& walker, const QString& url)
    {
        std::vector<const Node*> nodes;
        for (const auto& [watched, node] : walker.urls) {
            if (watched == url) {
                nodes.insert(nodes.begin(), node); // the last one built is the first to run
            }
        }
        return nodes;
    }

    void traverse(const Walker& walker, const Step& step)
    {
        const QString& url = round.urls.at(step.url);
        QStringList commands;
        const auto runNodes = [&](const std::vector<const Node*>& nodes) {
            for (const Node* node : nodes) {
                runNode(*node, url, commands, step);
            }
        };
        // Each of the three is looked up when it is its turn: a command may rebuild the walker.
        runNodes(watching(walker, url));
        runNodes(matching(walker, url));
        runNodes(std::vector<const Node*>(walker.unconditional));
        tell(step, commands);
    }

    void runNode(const Node& node, const QString& url, QStringList& commands, const Step& step)
    {
        const auto matchesOneOf = [&](const QStringList& patterns) {
            return std::any_of(patterns.begin(), patterns.end(), [&](const QString& pattern) {
                return matcher.findsMatch(pattern, url);
            });
        };
        for (int i = 0; i < int(node.edges.size()); ++i) {
            const Edge& edge = node.edges[std::size_t(i)];
            const bool guarded =
                !(edge.compared.isEmpty() && edge.urls.isEmpty() && edge.patterns.isEmpty());
            int times = guarded ? 0 : 1;
            times += matchesOneOf(edge.compared) ? 1 : 0;
            times += edge.urls.contains(url) ? 1 : 0;
            times += matchesOneOf(edge.patterns) ? 1 : 0;
            for (; times > 0; --times) {
                commands.append(commandLabel(node, i));
                if (commands.size() == 1) {
                    run(step.inside);
                }
            }
        }
    }

    const Round& round;
    std::array<Walker, walkerCount> walkers;
    PlainMatcher matcher;
    Answers answers;
};

} // namespace

Answers answerPlainly(const Round& round)
{
    return PlainRun(round).answer();
}

} // namespace patterns
