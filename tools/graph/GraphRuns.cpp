#include "tools/graph/GraphRuns.h"

#include "DependencyWalker.h"
#include "DependencyWalkerDefinitions.h"
#include "DependencyWalkerFactory.h"
#include "Nodes/NodeBase.h"
#include "checker/Patterns.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataParser.h"
#include "host/PropertyManagerConst.h"
#include "tools/why/OpenComparisons.h"
#include "tools/workspace/Leaves.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <utility>

namespace tools {

namespace {

using Keywords = DependencyWalkerDefinitions;
using Keys = ConfigurationAndProcessDataDefinitions;

const QString writtenUrls = QStringLiteral("ConditionWriteOnUrls");
const QString writtenPatterns = QStringLiteral("ConditionWriteOnUrlsRegExp");

// What is written instead of a URL that a pattern matches. No URL of a workspace begins like this.
const QString anyPattern = QStringLiteral("\u0001");
QString standInFor(const QString& pattern)
{
    return anyPattern + pattern;
}

// Between the name of a node and the number of one of its parts.
const QChar partMark(1);

BaseClassSharedPointer parsed(const QString& json)
{
    return ConfigurationAndProcessDataParser().parseFromJson(
        json, PropertyManagerConst::getConfigFileExtension());
}

QString textOf(const QJsonObject& object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

/// A description of some nodes, with the rows that the engine keeps: others may end the process.
class DescriptionWriter {
public:
    enum class Extent { Nodes, Conditions, Commands };

    DescriptionWriter(const Graph& graph, Extent extent) : graph(graph), extent(extent) {}

    QJsonObject of(const std::function<bool(const GraphNode& node)>& isWanted) const
    {
        QJsonObject object;
        for (const GraphNode& node : graph.nodes) {
            if (node.isTopLevel() && isWanted(node)) {
                object.insert(node.name, of(node));
            }
        }
        return object;
    }

private:
    QJsonObject of(const GraphNode& node) const
    {
        QJsonObject object;
        if (node.type != nullptr) {
            object.insert(Keywords::getNodeTypeString(), node.type->name);
        }
        if (extent != Extent::Nodes) {
            addTables(object, node.conditions);
        }
        if (extent == Extent::Commands) {
            QJsonObject commands;
            addTables(commands, node.commands);
            object.insert(Keywords::getCommandKeyword(), commands);
        }
        QJsonObject successors;
        for (const int successor : node.successors) {
            const GraphNode& below = graph.node(successor);
            successors.insert(below.name, of(below));
        }
        if (!successors.isEmpty()) {
            object.insert(Keywords::getNextNodeKeyword(), successors);
        }
        return object;
    }

    static void addTables(QJsonObject& object, const std::vector<GraphTable>& tables)
    {
        for (const GraphTable& table : tables) {
            QJsonArray rows;
            for (const int row : table.kept) {
                rows.append(QJsonArray::fromVariantList(
                    harmless(*table.type, table.rows[static_cast<std::size_t>(row)].cells)));
            }
            object.insert(table.type->name, rows);
        }
    }

    /// The cells of a row that cannot end the process. A column beyond the end of its array would,
    /// but without a parameter the row sets nothing, and tells its target all the same.
    static QVariantList harmless(const TypeDescription& type, QVariantList cells)
    {
        const QList<ColumnDescription>& columns = type.table.columns;
        const bool setsColumns =
            std::any_of(columns.begin(), columns.end(), [](const ColumnDescription& column) {
                return column.role == CellRole::TargetColumn;
            });
        const QList<int>& layout = *type.table.layoutFor(cells.size());
        for (int at = 0; setsColumns && at < layout.size(); ++at) {
            if (columns.at(layout.at(at)).role == CellRole::SourceUrl) {
                cells[at] = QString();
            }
        }
        return cells;
    }

    const Graph& graph;
    const Extent extent;
};

/// The same description with plain URLs instead of patterns: one stands for a write that this
/// pattern alone matches, another for one that all match. Patterns that are invalid match nothing.
class PatternReplacer {
public:
    QJsonObject replaced(QJsonObject object)
    {
        // What has the name of a condition but no rows is a node.
        const bool isGuarded =
            object.value(writtenUrls).isArray() || object.value(writtenPatterns).isArray();
        if (isGuarded) {
            QJsonArray urls = replacedRows(object.value(writtenUrls).toArray());
            for (const QJsonValue row : object.take(writtenPatterns).toArray()) {
                append(urls, row.toArray().first().toString());
            }
            object[writtenUrls] = urls;
        }
        for (const QString& key : object.keys()) {
            if (object.value(key).isObject()) {
                object[key] = replaced(object.value(key).toObject());
            }
        }
        return object;
    }

private:
    QJsonArray replacedRows(const QJsonArray& rows)
    {
        const QString& prefix = Keywords::getPrefixRegularExpression();
        QJsonArray urls;
        for (const QJsonValue row : rows) {
            const QString url = row.toArray().first().toString();
            if (url.startsWith(prefix)) {
                append(urls, url.mid(prefix.size()));
            } else {
                urls.append(row);
            }
        }
        return urls;
    }

    void append(QJsonArray& urls, const QString& pattern)
    {
        if (patterns[pattern].isValid) {
            urls.append(QJsonArray{standInFor(pattern)});
            urls.append(QJsonArray{anyPattern});
        }
    }

    checker::Patterns patterns;
};

/// The same description with top-level switch nodes of very many edges as several nodes, one for
/// each edge that is guarded, so that a URL finds those that concern it: a switch node would ask
/// every edge. It asks each for itself, so what runs is the same. Edges without a guard stay
/// together, with all that the node watches.
QJsonObject spread(const QJsonObject& description)
{
    constexpr int many = 32;
    QJsonObject nodes = description;
    for (const QString& name : description.keys()) {
        QJsonObject node = description.value(name).toObject();
        QJsonObject edges = node.value(Keywords::getNextNodeKeyword()).toObject();
        const TypeDescription* const type = TypeCatalog::find(
            TypeDescription::Kind::Node, node.value(Keywords::getNodeTypeString()).toString());
        if (type == nullptr || !type->asksConditions || edges.size() <= many) {
            continue;
        }
        QJsonObject others;
        int number = 0;
        for (auto edge = edges.constBegin(); edge != edges.constEnd(); ++edge) {
            const QJsonObject successor = edge.value().toObject();
            const bool isGuarded = !successor.value(writtenUrls).toArray().isEmpty() ||
                                   !successor.value(writtenPatterns).toArray().isEmpty();
            if (isGuarded) {
                node[Keywords::getNextNodeKeyword()] = QJsonObject{{edge.key(), successor}};
                nodes[name + partMark + QString::number(number++)] = node;
            } else {
                others[edge.key()] = successor;
            }
        }
        node[Keywords::getNextNodeKeyword()] = others;
        nodes[name] = node;
    }
    return nodes;
}

/// What a write runs.
struct Run {
    std::vector<int> nodes;    ///< each once, ascending
    QList<GraphWatch> started; ///< what top-level nodes were found by
};

/// Notes what runs, and the targets of rows.
class RunObserver : public TraversalObserver {
public:
    using Told = std::function<void(int node, const QString& command, const CommandRow& row)>;

    explicit RunObserver(const GraphIndex& index, Told told = {})
        : index(index), told(std::move(told))
    {}

    /// What ran since the last call.
    Run take()
    {
        std::sort(run.nodes.begin(), run.nodes.end());
        run.nodes.erase(std::unique(run.nodes.begin(), run.nodes.end()), run.nodes.end());
        return std::exchange(run, {});
    }

    void nodeSelected(const SelectedNode& node) override
    {
        if (node.selection != Selection::Unconditional) {
            run.started.append({node.watched, node.selection == Selection::Pattern, {}});
        }
    }

    void nodeEntered(const Node& node) override
    {
        const int number = way.empty()      ? topLevelNode(node.name)
                           : way.back() < 0 ? -1
                                            : index.find(way.back(), node.name);
        way.push_back(number);
        if (number >= 0) { // otherwise it was added to open comparisons
            run.nodes.push_back(number);
        }
    }
    void nodeLeft(const Node& /*node*/, bool /*outcome*/) override { way.pop_back(); }
    void commandStarted(const Command& started) override { command = started.type; }
    void commandRowExecuted(const CommandRow& row) override
    {
        if (told) {
            told(way.back(), command, row);
        }
    }

private:
    /// A part of a node counts as the node.
    int topLevelNode(const QString& name) const
    {
        const int whole = index.find(-1, name);
        return whole >= 0 ? whole : index.find(-1, name.left(name.lastIndexOf(partMark)));
    }

    const GraphIndex& index;
    const Told told;
    std::vector<int> way;
    Run run;
    QString command;
};

class GraphRunner {
public:
    /// Without trees, each comparison holds.
    GraphRunner(Graph& graph, const GraphTrees* trees)
        : graph(graph), trees(trees), index(graph), empty(parsed(QStringLiteral("{}")))
    {}

    void run()
    {
        addWatches();
        const DescriptionWriter writer(graph, DescriptionWriter::Extent::Conditions);
        const QJsonObject always =
            writer.of([](const GraphNode& node) { return node.isUnconditional; });
        const QJsonObject watching =
            writer.of([](const GraphNode& node) { return !node.watches.empty(); });
        withEveryWrite = reached(walkerOf(opened(always)), {}).nodes;
        mark(withEveryWrite);

        const QJsonObject openedWatching = spread(opened(watching));
        DependencyWalker urls = walkerOf(openedWatching);
        DependencyWalker patterns = walkerOf(PatternReplacer().replaced(openedWatching));
        mark(reached(patterns, anyPattern).nodes);
        for (const GraphWatch& watch : allWatches()) {
            addWrite(watch, watch.isPattern
                                ? Run{reached(patterns, standInFor(watch.text)).nodes, {watch}}
                                : reached(urls, watch.text));
        }
        if (trees != nullptr) {
            addLeaves(urls);
            addTargets();
        }
        std::sort(graph.writes.begin(), graph.writes.end(),
                  [](const GraphWrite& left, const GraphWrite& right) {
                      return left.watch < right.watch;
                  });
    }

private:
    /// Asks each top-level node of the engine what its subgraph watches.
    void addWatches()
    {
        const DescriptionWriter writer(graph, DescriptionWriter::Extent::Conditions);
        const BaseClassSharedPointer description =
            parsed(textOf(writer.of([](const GraphNode&) { return true; })));
        int number = 0;
        for (GraphNode& node : graph.nodes) {
            if (node.isTopLevel() && node.type != nullptr && !description.isNull()) {
                QSharedPointer<NodeBase> made;
                DependencyWalkerFactory::generateNode(
                    node.type->name, node.name, description->getChildMap().value(node.name), made);
                addWatches(node, number, made->getConditionUrls());
            }
            ++number;
        }
    }

    void addWatches(GraphNode& node, int number, const QStringList& watched) const
    {
        const QString& prefix = Keywords::getPrefixRegularExpression();
        const QHash<QString, QString> places = placesBelow(number);
        for (const QString& url : watched) {
            const bool isPattern = url.startsWith(prefix);
            node.watches.push_back(
                {isPattern ? url.mid(prefix.size()) : url, isPattern, places.value(url)});
        }
        node.isUnconditional = watched.isEmpty();
    }

    /// Where the subgraph of a node names a URL for the first time.
    QHash<QString, QString> placesBelow(int number) const
    {
        QHash<QString, QString> places;
        for (auto below = graph.nodes.begin() + number + 1;
             below != graph.nodes.end() && !below->isTopLevel(); ++below) {
            for (const GraphTable& table : below->conditions) {
                const bool isPattern = table.type->table.columns.first().role == CellRole::Pattern;
                for (const int row : table.kept) {
                    const GraphRow& watching = table.rows[static_cast<std::size_t>(row)];
                    const QString text = watching.cells.value(0).toString();
                    const QString url =
                        isPattern ? Keywords::getPrefixRegularExpression() + text : text;
                    if (!places.contains(url)) {
                        places.insert(url, watching.place);
                    }
                }
            }
        }
        return places;
    }

    QList<GraphWatch> allWatches() const
    {
        QList<GraphWatch> all;
        for (const GraphNode& node : graph.nodes) {
            for (const GraphWatch& watch : node.watches) {
                all.append(watch);
            }
        }
        std::stable_sort(all.begin(), all.end());
        all.erase(std::unique(all.begin(), all.end()), all.end());
        return all;
    }

    QJsonObject opened(const QJsonObject& description) const
    {
        const QString text = withOpenComparisons(
            textOf(description), trees == nullptr ? BaseClassSharedPointer() : trees->source);
        return QJsonDocument::fromJson(text.toUtf8()).object();
    }

    static DependencyWalker walkerOf(const QJsonObject& description)
    {
        DependencyWalker walker;
        walker.initDependencyGraphByJsonString(textOf(description));
        return walker;
    }

    Run reached(DependencyWalker walker, const QString& url) const
    {
        RunObserver observer(index);
        const TraversalObservation observation(observer);
        QVariantList results;
        walker.traverseDependencyGraph(url, trees == nullptr ? empty : trees->source, empty,
                                       results, {}, {});
        return observer.take();
    }

    void mark(const std::vector<int>& nodes)
    {
        for (const int node : nodes) {
            graph.node(node).isReachable = true;
        }
    }

    void addWrite(const GraphWatch& watch, const Run& run)
    {
        mark(run.nodes);
        GraphWrite write{watch, run.started, {}};
        std::set_union(run.nodes.begin(), run.nodes.end(), withEveryWrite.begin(),
                       withEveryWrite.end(), std::back_inserter(write.nodes));
        graph.writes.push_back(write);
    }

    QStringList leaves() const { return urlsOf(leavesBelow(trees->source, QString())); }

    /// The leaves that no condition names.
    void addLeaves(DependencyWalker& walker)
    {
        QSet<QString> known;
        for (const GraphWrite& write : graph.writes) {
            if (!write.watch.isPattern) {
                known.insert(write.watch.text);
            }
        }
        for (const QString& url : leaves()) {
            const Run run = known.contains(url) ? Run() : reached(walker, url);
            if (!run.nodes.empty()) {
                addWrite({url, false, {}}, run);
            }
        }
    }

    void addTargets()
    {
        const DescriptionWriter writer(graph, DescriptionWriter::Extent::Commands);
        DependencyWalker walker =
            walkerOf(opened(writer.of([](const GraphNode&) { return true; })));
        const QVariantList& parameters = graph.link->parameters;
        RunObserver observer(index, [this](int node, const QString& command,
                                           const TraversalObserver::CommandRow& row) {
            addTarget(node, command, row);
        });
        const TraversalObservation observation(observer);
        QStringList urls = leaves() + walker.getDependencyUrlList() + QStringList{QString()};
        urls.removeDuplicates();
        for (const QString& url : qAsConst(urls)) {
            QVariantList results;
            walker.traverseDependencyGraph(url, trees->source, trees->scratch, results, parameters,
                                           {});
        }
    }

    void addTarget(int node, const QString& command, const TraversalObserver::CommandRow& row)
    {
        std::vector<GraphTable>& commands = graph.node(node).commands;
        const auto table =
            std::find_if(commands.begin(), commands.end(),
                         [&](const GraphTable& other) { return other.type->name == command; });
        if (row.targetUrl.isEmpty() || table == commands.end()) {
            return;
        }
        QList<GraphTarget>& targets = table->keptRow(row.row).targets;
        const bool isKnown =
            std::any_of(targets.begin(), targets.end(), [&](const GraphTarget& target) {
                return target.url == row.targetUrl && target.column == row.column;
            });
        if (!isKnown) {
            targets.append(targetAt(row.targetUrl, row.column));
        }
    }

    GraphTarget targetAt(const QString& url, int column) const
    {
        GraphTarget target{url, column, false, false, {}};
        const BaseClassSharedPointer leaf = trees->target->getChildData(url);
        if (leaf.isNull()) {
            return target;
        }
        target.exists = true;
        if (column < 0) {
            target.unit = leaf->getDataProperty(Keys::getKeyDataPropertyUnitType());
            return target;
        }
        const QList<Column> columns =
            columnsOf(leaf->getDataProperty(Keys::getKeyDataPropertyArrayInformation()));
        target.exists = column < columns.size();
        target.lacksColumn = !target.exists;
        if (target.exists) {
            target.unit = columns.at(column).unit;
        }
        return target;
    }

    Graph& graph;
    const GraphTrees* const trees;
    const GraphIndex index;
    const BaseClassSharedPointer empty;
    std::vector<int> withEveryWrite;
};

} // namespace

QStringList pathsOf(const Graph& graph)
{
    const DescriptionWriter writer(graph, DescriptionWriter::Extent::Nodes);
    const BaseClassSharedPointer description =
        parsed(textOf(writer.of([](const GraphNode&) { return true; })));
    std::map<QString, const GraphNode*> inEngineOrder;
    for (const GraphNode& node : graph.nodes) {
        if (node.isTopLevel() && node.type != nullptr) {
            inEngineOrder[node.name] = &node;
        }
    }
    QStringList lines;
    for (const auto& [name, node] : inEngineOrder) {
        QSharedPointer<NodeBase> made;
        DependencyWalkerFactory::generateNode(node->type->name, name,
                                              description->getChildMap().value(name), made);
        QString path;
        made->printSuccessors(path, lines);
    }
    return lines;
}

void addRuns(Graph& graph)
{
    GraphRunner(graph, nullptr).run();
}

void addRuns(Graph& graph, const GraphTrees& trees)
{
    GraphRunner(graph, &trees).run();
}

} // namespace tools
