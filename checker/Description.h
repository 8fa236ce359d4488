#ifndef UNITFLOW_CHECKER_DESCRIPTION_H
#define UNITFLOW_CHECKER_DESCRIPTION_H

#include "TypeDescription.h"
#include "checker/Findings.h"

#include <QString>
#include <QVariant>

#include <vector>

namespace checker {

using Index = filehost::json::JsonText::Index;

/// A row of a table that the engine reads.
struct Row {
    Index index;
    std::vector<Index> cells;
    const QList<int>* layout; ///< the columns of the cells; never more of them than cells

    /// The cell of a column's role; `JsonText::none` when the row has none.
    Index cell(const TableDescription& table, CellRole role) const;
};

/// The parameters of a command or a condition.
struct Table {
    Index member; ///< the key is the type's name
    const TypeDescription* type;
    std::vector<Row> rows; ///< without those that are skipped or end the process
};

/// A node, and what stands in it.
struct Node {
    Index member = filehost::json::JsonText::none;
    const TypeDescription* type = nullptr; ///< null when it is unknown
    std::vector<Table> conditions;         ///< of the edge to this node
    std::vector<Table> commands;
    std::vector<Node> successors;                       ///< those without a known type as well
    Index next = filehost::json::JsonText::none;        ///< the member "Next"
    Index ownCommands = filehost::json::JsonText::none; ///< the member "Commands"
};

/// The top-level nodes of a description. What the engine passes over while it reads the text is
/// added to the findings. What stands inside something unknown is read all the same: when that is
/// mended, it counts.
std::vector<Node> readDescription(const filehost::DescriptionPlaces& places, Findings& findings);

/// What a cell is for the engine: any number becomes text, and what cannot is empty.
QString textOf(const filehost::DescriptionPlaces& places, Index cell);

} // namespace checker

#endif
