#include "tools/graph/Graph.h"

#include "DependencyWalkerDefinitions.h"
#include "checker/Check.h"
#include "checker/Description.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace tools {

namespace {

using checker::Code;
using checker::Finding;
using checker::Index;
using filehost::DescriptionPlaces;
using filehost::json::JsonText;
using Keywords = DependencyWalkerDefinitions;

bool isAboutLength(const Finding& finding)
{
    return finding.code == Code::RowSkipped || finding.code == Code::RowNotAList ||
           finding.code == Code::RowFatal;
}

class GraphReader {
public:
    GraphReader(const DescriptionPlaces& places, Graph& graph)
        : places(places), text(places.text()), graph(graph)
    {}

    void read()
    {
        checker::Findings passedOver(places);
        const std::vector<checker::Node> nodes = checker::readDescription(places, passedOver);
        const QList<Finding> findings = checker::checkText(text.bytes(), text.file()).findings;
        for (const Finding& finding : findings) {
            if (isAboutLength(finding)) {
                notes.insert(finding.place.bytes.begin, finding.message);
            }
        }
        for (const checker::Node& node : nodes) {
            add(node, -1, {});
        }
        for (const Finding& finding : findings) {
            place(finding);
        }
    }

private:
    void add(const checker::Node& read, int parent, const QStringList& above)
    {
        const int number = static_cast<int>(graph.nodes.size());
        GraphNode node;
        node.name = text.key(read.member);
        node.path = above + QStringList{node.name};
        node.type = read.type;
        node.typeName = typeNameOf(read);
        node.parent = parent;
        node.edge = parent < 0 ? -1 : edges++;
        const checker::Place place = places.keyAt(read.member);
        node.place = shown(place);
        node.pointer = place.pointer;
        if (parent >= 0) {
            const TypeDescription* const asking = graph.node(parent).type;
            const bool areAsked = asking != nullptr && asking->asksConditions;
            node.conditions =
                tablesOf(read.conditions, areAsked ? QString()
                                                   : QStringLiteral("it is not asked: only a "
                                                                    "switch node asks conditions"));
        }
        const bool areRun = read.type != nullptr && read.type->runsCommands;
        node.commands = tablesOf(read.commands, areRun ? QString()
                                                       : QStringLiteral("it is not run: only a "
                                                                        "command node runs "
                                                                        "commands"));
        begins.push_back(text.node(read.member).key.begin);
        ends.push_back(text.node(read.member).value.end);
        graph.nodes.push_back(node);

        const QStringList below = node.path + QStringList{Keywords::getNextNodeKeyword()};
        for (const checker::Node& successor : read.successors) {
            graph.node(number).successors.push_back(static_cast<int>(graph.nodes.size()));
            add(successor, number, below);
        }
    }

    QString typeNameOf(const checker::Node& node) const
    {
        if (node.type != nullptr || text.kind(node.member) != JsonText::Kind::Object) {
            return node.type != nullptr ? node.type->name : QString();
        }
        const Index type = text.member(node.member, Keywords::getNodeTypeString());
        const Index value = type == JsonText::none ? JsonText::none : places.leafValue(type);
        return value == JsonText::none ? QString() : checker::textOf(places, value);
    }

    /// `whyNot` says why none of the rows counts, if so.
    std::vector<GraphTable> tablesOf(const std::vector<checker::Table>& read,
                                     const QString& whyNot) const
    {
        std::vector<GraphTable> tables;
        tables.reserve(read.size());
        for (const checker::Table& table : read) {
            tables.push_back(tableOf(table, whyNot));
        }
        return tables;
    }

    GraphTable tableOf(const checker::Table& read, const QString& whyNot) const
    {
        GraphTable table{read.type, shown(places.keyAt(read.member)), {}, {}};
        const Index value = places.leafValue(read.member);
        if (value == JsonText::none || text.kind(value) != JsonText::Kind::Array) {
            return table;
        }
        auto kept = read.rows.begin();
        for (const Index element : text.children(value)) {
            GraphRow row;
            const int index = static_cast<int>(table.rows.size());
            const checker::Place place = places.valueAt(element);
            row.number = index + 1;
            row.cells = text.value(element).toList();
            row.place = shown(place);
            row.counts = kept != read.rows.end() && kept->index == element;
            if (row.counts) {
                table.kept.push_back(index);
                ++kept;
                row.counts = whyNot.isEmpty();
                row.note = whyNot;
            } else {
                row.note = notes.value(place.bytes.begin);
            }
            table.rows.push_back(row);
        }
        return table;
    }

    /// Gives a finding to the innermost node in whose text it stands.
    void place(const Finding& finding)
    {
        const auto next = std::upper_bound(begins.begin(), begins.end(), finding.place.bytes.begin);
        int node = static_cast<int>(next - begins.begin()) - 1;
        while (node >= 0 && ends[static_cast<std::size_t>(node)] <= finding.place.bytes.begin) {
            node = graph.node(node).parent;
        }
        if (node >= 0) {
            graph.node(node).findings.append(finding);
        }
    }

    QString shown(const checker::Place& place) const
    {
        return QStringLiteral("%1:%2:%3")
            .arg(text.file(), QString::number(place.line), QString::number(place.column));
    }

    const DescriptionPlaces& places;
    const JsonText& text;
    Graph& graph;
    QHash<quint32, QString> notes; ///< why rows are not kept, by where they begin
    std::vector<quint32> begins;   ///< of the nodes' texts
    std::vector<quint32> ends;
    int edges = 0;
};

} // namespace

bool operator==(const GraphWatch& left, const GraphWatch& right)
{
    return left.text == right.text && left.isPattern == right.isPattern;
}

bool operator<(const GraphWatch& left, const GraphWatch& right)
{
    return std::tie(left.text, left.isPattern) < std::tie(right.text, right.isPattern);
}

GraphIndex::GraphIndex(const Graph& graph)
{
    for (std::size_t number = 0; number < graph.nodes.size(); ++number) {
        const GraphNode& node = graph.nodes[number];
        numbers.insert({node.parent, node.name}, static_cast<int>(number));
    }
}

int GraphIndex::find(int parent, const QString& name) const
{
    return numbers.value({parent, name}, -1);
}

Graph readGraph(const DescriptionPlaces& places, const QString& description)
{
    Graph graph;
    graph.description = description;
    graph.file = places.text().file();
    GraphReader(places, graph).read();
    return graph;
}

} // namespace tools
