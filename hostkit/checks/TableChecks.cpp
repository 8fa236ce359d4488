#include "host/Array2dDataTypeWrapper.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "hostkit/checks/Groups.h"
#include "hostkit/internal/Bench.h"
#include "hostkit/internal/Making.h"
#include "hostkit/internal/Tables.h"

namespace hostkit {

namespace {

void expectTable(Bench& bench, const QVariantList& wanted)
{
    const BaseClassSharedPointer root = bench.tree({valueLeaf({"Table"}, wanted)});
    bench.equal("rows", rowTexts(rowsOf(bench.node(root, {"Table"}))), rowTexts(wanted));
}

} // namespace

QList<Check> tableChecks()
{
    return {
        {"table.keeps_rows_and_cells_in_order",
         "The rows of a table, read through Array2dDataTypeWrapper, are those of the description, "
         "in their order, each a list of its cells in their order.",
         "A command would take a unit for a URL or skip the row; rows that name the same leaf "
         "would leave it with the wrong unit.",
         [](Bench& bench) {
             expectTable(bench, table({{"C", "K"}, {"A", "bar"}, {"B", "m3"}}));
         }},
        {"table.keeps_rows_of_different_length",
         "Each row has as many cells as in the description, whatever the other rows have.",
         "Commands tell the forms of a row by its length: a padded row is read as another form or "
         "passed over, a shortened one stops the process.",
         [](Bench& bench) {
             expectTable(bench, table({{"A", "K", "x"}, {"B", "bar"}}));
         }},
        {"table.keeps_rows_of_one_cell", "A row of one cell stays a list of one cell.",
         "The conditions on written URLs would have no rows, and their edges would never be "
         "followed.",
         [](Bench& bench) {
             expectTable(bench, table({{"A"}, {"B"}}));
         }},
        {"table.cells_compare_equal_to_values",
         "A text, number or boolean in a cell equals the value of a leaf for which the same "
         "stands in the data.",
         "A value condition would never hold, although it names the very value that the source "
         "has.",
         [](Bench& bench) {
             const QVariantList values = {QStringLiteral("auto"), 5, true};
             for (const QVariant& value : values) {
                 const BaseClassSharedPointer root =
                     bench.tree({valueLeaf({"Leaf"}, value),
                                 valueLeaf({"Table"}, table({{"url", "==", value}}))});
                 const QVariantList rows = rowsOf(bench.node(root, {"Table"}));
                 bench.equal(
                     "cell", rows.value(0).toList().value(2),
                     bench.node(root, {"Leaf"})
                         ->getDataProperty(
                             ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue()));
             }
         }},
        {"table.without_rows_has_none", "An Array2dDataTypeWrapper made of no rows has no rows.",
         "The engine would take an invented row for a part of the description.",
         [](Bench& bench) {
             bench.equal("rows", Array2dDataTypeWrapper({}, {}).getArrayValueContent(),
                         QVariantList());
         }},
    };
}

} // namespace hostkit
