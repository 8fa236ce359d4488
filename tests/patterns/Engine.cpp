#include "Engine.h"

#include "Commands/CommandBase.h"
#include "DependencyWalker.h"
#include "Host.h"
#include "Nodes/NodeBase.h"
#include "Probe.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"

#include <array>
#include <utility>

namespace patterns {
namespace {

using testhost::Node;
using testhost::NodePointer;

/// Whom the commands tell that they were made or executed. There is one at a time.
class Listener {
public:
    virtual ~Listener() = default;
    virtual void made(const QString& label) = 0;
    virtual void executed(const QString& label) = 0;

    static Listener* current;
};
Listener* Listener::current = nullptr;

/// A command that only tells of itself.
class Teller final : public CommandBase {
public:
    explicit Teller(const BaseClassSharedPointer& description)
    {
        Teller::initCommand(description);
        Listener::current->made(label);
    }

    bool executeCommand(const BaseClassSharedPointer&, const BaseClassSharedPointer&,
                        const QString&, QVariantList&, bool&, const QVariantList&,
                        const QSharedPointer<UnitManipulatorBase>&) override
    {
        Listener::current->executed(label);
        return true;
    }

    QString getCommandAsString() const override { return label; }

    bool initCommand(const BaseClassSharedPointer& description) override
    {
        label = static_cast<const Node&>(*description).property(valueKey()).toString();
        return true;
    }

    static QString valueKey()
    {
        return ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue();
    }

private:
    QString label;
};

// ---- Descriptions -------------------------------------------------------------------------------

void addLeaf(Node& node, const QString& name, const QVariant& value)
{
    node.addChild(name)->setProperty(Teller::valueKey(), value);
}

void addTable(Node& node, const QString& condition, const QStringList& cells,
              const QVariantList& furtherCells = {})
{
    if (cells.isEmpty()) {
        return;
    }
    QVariantList rows;
    for (const QString& cell : cells) {
        rows.append(QVariant(QVariantList{cell} + furtherCells));
    }
    addLeaf(node, condition, rows);
}

/// A tree made node by node: patterns may hold what no JSON text can.
NodePointer describe(const Graph& graph)
{
    auto description = NodePointer::create(QStringLiteral("description"));
    for (const patterns::Node& node : graph) {
        const NodePointer top = description->addChild(node.name);
        addLeaf(*top, QStringLiteral("Type"), QStringLiteral("SwitchNode"));
        const NodePointer next = top->addChild(QStringLiteral("Next"));
        for (int i = 0; i < int(node.edges.size()); ++i) {
            const Edge& edge = node.edges[std::size_t(i)];
            const NodePointer successor = next->addChild(QString::number(i));
            addLeaf(*successor, QStringLiteral("Type"), QStringLiteral("CommandNode"));
            addLeaf(*successor->addChild(QStringLiteral("Commands")), QStringLiteral("Teller"),
                    commandLabel(node, i));
            addTable(*successor, QStringLiteral("ConditionValueComparatorRegExp"), edge.compared,
                     {QStringLiteral("=="), QStringLiteral("on")});
            addTable(*successor, QStringLiteral("ConditionWriteOnUrls"), edge.urls);
            addTable(*successor, QStringLiteral("ConditionWriteOnUrlsRegExp"), edge.patterns);
        }
    }
    return description;
}

/// Holds a value at each URL, so that every comparison holds where its pattern matches.
NodePointer sourceFor(const QStringList& urls)
{
    auto source = NodePointer::create(QStringLiteral("source"));
    for (const QString& url : urls) {
        addLeaf(*source, url, QStringLiteral("on"));
    }
    return source;
}

// ---- Running ------------------------------------------------------------------------------------

class EngineRun final : private Listener {
public:
    explicit EngineRun(const Round& round) : round(round), source(sourceFor(round.urls))
    {
        for (const Graph& graph : round.graphs) {
            descriptions.push_back(describe(graph));
        }
        Listener::current = this;
    }
    ~EngineRun() override { Listener::current = nullptr; }
    EngineRun(const EngineRun&) = delete;
    EngineRun& operator=(const EngineRun&) = delete;

    Answers answer()
    {
        run(round.steps);
        return answers;
    }

private:
    /// A step that calls commands, and those it executed so far.
    struct Frame {
        const Step& step;
        QStringList executed;
    };

    void run(const std::vector<Step>& steps)
    {
        for (const Step& step : steps) {
            run(step);
            host.takeCalls();
        }
    }

    void run(const Step& step)
    {
        DependencyWalker& walker = walkers.at(std::size_t(step.walker));
        switch (step.action) {
        case Step::Action::Filter:
            tell(step, filter(walker, round.urls.at(step.url)));
            break;
        case Step::Action::Traverse:
            traverse(walker, step);
            break;
        case Step::Action::Build:
            build(walker, step);
            break;
        case Step::Action::Reset:
            walker.reset();
            break;
        case Step::Action::Assign:
            walker = DependencyWalker(walkers.at(std::size_t(step.from)));
            break;
        }
    }

    void tell(const Step& step, const QStringList& told)
    {
        answers.push_back({question(round, step), told});
    }

    static QStringList filter(const DependencyWalker& walker, const QString& url)
    {
        QList<QSharedPointer<NodeBase>> nodes;
        walker.filterRegExpMatches(url, nodes);
        QStringList names;
        for (const QSharedPointer<NodeBase>& node : qAsConst(nodes)) {
            names.append(node->getNodeName());
        }
        return names;
    }

    void traverse(DependencyWalker& walker, const Step& step)
    {
        Frame own{step, {}};
        Frame* const outer = std::exchange(frame, &own);
        QVariantList results;
        walker.traverseDependencyGraph(round.urls.at(step.url), source, source, results, {}, {});
        frame = outer;
        tell(step, own.executed);
    }

    void executed(const QString& label) override
    {
        Frame& running = *frame;
        running.executed.append(label);
        if (running.executed.size() == 1) {
            run(running.step.inside);
        }
    }

    void build(DependencyWalker& walker, const Step& step)
    {
        Frame own{step, {}};
        Frame* const outer = std::exchange(frame, &own);
        walker.initDependencyGraph(descriptions.at(std::size_t(step.graph)));
        frame = outer;
    }

    void made(const QString& label) override
    {
        const Step& step = frame->step;
        const Graph& graph = round.graphs.at(std::size_t(step.graph));
        if (step.at < int(graph.size()) && label == commandLabel(graph[std::size_t(step.at)], 0)) {
            run(step.inside);
        }
    }

    testhost::Host host;
    testhost::Registered<DependencyWalkerFactory::CommandFactory, Teller> registered{
        QStringLiteral("Teller")};
    const Round& round;
    NodePointer source;
    std::vector<NodePointer> descriptions;
    std::array<DependencyWalker, walkerCount> walkers;
    Frame* frame = nullptr; // of the innermost such step
    Answers answers;
};

} // namespace

Answers askEngine(const Round& round)
{
    return EngineRun(round).answer();
}

} // namespace patterns
