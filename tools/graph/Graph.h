#ifndef UNITFLOW_TOOLS_GRAPH_GRAPH_H
#define UNITFLOW_TOOLS_GRAPH_GRAPH_H

#include "TraversalObserver.h"
#include "TypeDescription.h"
#include "checker/Findings.h"
#include "filehost/DescriptionPlaces.h"
#include "filehost/Workspace.h"

#include <QHash>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>

#include <optional>
#include <vector>

namespace tools {

/// A leaf of the target that a row is about, for a link.
struct GraphTarget {
    QString url;
    int column = -1; ///< of an array; -1 for a whole leaf
    bool exists = false;
    bool lacksColumn = false; ///< the leaf is there, but it has no such column
    QVariant unit;            ///< the present one; invalid when it has none
};

/// A row of a parameter table, as it stands in the text.
struct GraphRow {
    int number = 0; ///< among all elements of the list, from 1
    QVariantList cells;
    QString place;
    bool counts = true;         ///< whether it can have any effect where it stands
    QString note;               ///< why it does not count
    QList<GraphTarget> targets; ///< of a command; each once, in the order in which they were met
    bool ran = false;           ///< in the trace
};

/// A condition or a command.
struct GraphTable {
    const TypeDescription* type = nullptr; ///< never null
    QString place;
    std::vector<GraphRow> rows;
    std::vector<int> kept; ///< the indexes of those rows that the engine keeps

    GraphRow& keptRow(int number)
    {
        return rows[static_cast<std::size_t>(kept[static_cast<std::size_t>(number)])];
    }
};

/// What a top-level node is found by.
struct GraphWatch {
    QString text; ///< a URL, or a pattern without its prefix
    bool isPattern = false;
    QString place;
};

bool operator==(const GraphWatch& left, const GraphWatch& right);
/// By the text. Places do not matter.
bool operator<(const GraphWatch& left, const GraphWatch& right);

/// A node, with the edge that leads to it unless it is a top-level one: no node has two.
struct GraphNode {
    QString name;
    QStringList path;                      ///< keys from the root, those of the keywords included
    const TypeDescription* type = nullptr; ///< null when there is none of that name
    QString typeName;                      ///< as written; empty when it is missing
    int parent = -1;                       ///< -1 for a top-level node
    int edge = -1;                         ///< the number of the edge among all; -1 without one
    QString place;
    QString pointer;
    std::vector<GraphTable> conditions; ///< of the edge
    std::vector<GraphTable> commands;
    std::vector<int> successors;
    QList<checker::Finding>
        findings; ///< what is wrong in its text, that of its successors excepted

    std::vector<GraphWatch> watches; ///< of a top-level node
    bool isUnconditional = false;    ///< a top-level node that runs with every write
    bool isReachable = false;        ///< whether the engine can get there
    bool ran = false;                ///< in the trace

    bool isTopLevel() const { return parent < 0; }
};

/// What a write may run.
struct GraphWrite {
    GraphWatch watch;          ///< what is written: a URL, or one that a pattern matches
    QList<GraphWatch> started; ///< what top-level nodes are found by, possibly more than once
    std::vector<int> nodes;    ///< ascending
};

/// One explained write. The nodes and rows that ran say so themselves.
struct GraphTrace {
    /// A row of a command that was run.
    struct Row {
        int node = 0;
        int command = 0; ///< among those of the node
        int number = 0;  ///< as rows are numbered
        TraversalObserver::RowOutcome outcome{};
        QString target;
        QString words; ///< what became of it, as people are told
    };

    std::optional<filehost::Link> link; ///< what it ran for; nothing when the trace does not say
    QString url;
    QVariant value; ///< what comparisons found at the URL; invalid when none looked there
    QList<GraphWatch> started; ///< what top-level nodes were found by
    QList<Row> rows;
};

/// A description as a picture of it has it. Nodes are in the order of the text: a node comes before
/// what follows it.
struct Graph {
    QString description;
    QString file;
    std::optional<filehost::Link> link;
    std::vector<GraphNode> nodes;
    std::vector<GraphWrite> writes; ///< sorted
    std::optional<GraphTrace> trace;

    GraphNode& node(int number) { return nodes[static_cast<std::size_t>(number)]; }
    const GraphNode& node(int number) const { return nodes[static_cast<std::size_t>(number)]; }
};

/// Finds nodes as the engine names them: by the node above, -1 for none, and the name.
class GraphIndex {
public:
    explicit GraphIndex(const Graph& graph);
    /// -1 when there is no such node.
    int find(int parent, const QString& name) const;

private:
    QHash<QPair<int, QString>, int> numbers;
};

/// Reads a description. What only the engine knows is left for others to add: what is watched, what
/// can be reached, what writes run.
Graph readGraph(const filehost::DescriptionPlaces& places, const QString& description);

} // namespace tools

#endif
