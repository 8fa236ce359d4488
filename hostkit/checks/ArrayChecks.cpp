#include "host/Array2dDataTypeWrapper.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "hostkit/checks/Groups.h"
#include "hostkit/internal/Bench.h"
#include "hostkit/internal/Making.h"
#include "hostkit/internal/Tables.h"

using Definitions = ConfigurationAndProcessDataDefinitions;

namespace hostkit {

namespace {

const QStringList units = {"K", "bar", "m3"};
const QStringList otherUnits = {"K", "mbar", "m3"};

QStringList arrayPath()
{
    return {"Zone", "Array"};
}

BaseClassSharedPointer arrayTree(Bench& bench)
{
    return bench.tree({arrayLeaf(arrayPath(), units), unitLeaf({"Zone", "Plain"}, "K")});
}

/// As the engine makes it: the array information of the leaf, and no rows.
Array2dDataTypeWrapper wrapperOf(Bench& bench, const BaseClassSharedPointer& root)
{
    return {{},
            bench.node(root, arrayPath())
                ->getDataProperty(Definitions::getKeyDataPropertyArrayInformation())
                .toList()};
}

/// Writes units to the columns of the array leaf; the status.
int write(Bench& bench, const BaseClassSharedPointer& root, const QStringList& columnUnits)
{
    Array2dDataTypeWrapper array = wrapperOf(bench, root);
    if (!array.setColumnUnitTypes(columnUnits)) {
        bench.stop("setColumnUnitTypes returns false for one unit per column");
    }
    return array.setArrayInfoWithStatus(root, bench.host().url(arrayPath()));
}

void unitsStandInColumnOrder(Bench& bench)
{
    const BaseClassSharedPointer root = arrayTree(bench);
    bench.equal("units of the columns", bench.columnUnits(root, arrayPath()), units);
}

void emptyUnitCounts(Bench& bench)
{
    const BaseClassSharedPointer root =
        bench.tree({arrayLeaf({"Array"}, {"", "bar", ""}), unitLeaf({"Plain"}, "K")});
    bench.equal("units of the columns", bench.columnUnits(root, {"Array"}), {"", "bar", ""});
}

void takesOneUnitPerColumn(Bench& bench)
{
    const BaseClassSharedPointer root = arrayTree(bench);
    Array2dDataTypeWrapper array = wrapperOf(bench, root);
    bench.equal("setColumnUnitTypes", array.setColumnUnitTypes(otherUnits), true);
    bench.equal("getColumnUnitTypes afterwards", array.getColumnUnitTypes(), otherUnits);
}

void takingUnitsWritesNothing(Bench& bench)
{
    const BaseClassSharedPointer root = arrayTree(bench);
    wrapperOf(bench, root).setColumnUnitTypes(otherUnits);
    bench.equal("units of the columns in the tree", bench.columnUnits(root, arrayPath()), units);
}

void changedColumn(Bench& bench)
{
    const BaseClassSharedPointer root = arrayTree(bench);
    bench.equal("setArrayInfoWithStatus", write(bench, root, otherUnits), 0);
    bench.equal("units of the columns in the tree", bench.columnUnits(root, arrayPath()),
                otherUnits);
}

void unchangedColumns(Bench& bench)
{
    const BaseClassSharedPointer root = arrayTree(bench);
    bench.equal("setArrayInfoWithStatus", write(bench, root, units), 1);
    bench.equal("units of the columns in the tree", bench.columnUnits(root, arrayPath()), units);
}

void unknownLeaf(Bench& bench)
{
    const BaseClassSharedPointer root = arrayTree(bench);
    Array2dDataTypeWrapper array = wrapperOf(bench, root);
    array.setColumnUnitTypes(otherUnits);
    const QString url = bench.host().url({"Zone", "Nowhere"});
    bench.refused(call("setArrayInfoWithStatus", url), array.setArrayInfoWithStatus(root, url));
}

void writeKeepsRows(Bench& bench)
{
    const BaseClassSharedPointer root = arrayTree(bench);
    const BaseClassSharedPointer leaf = bench.node(root, arrayPath());
    const QVariant type = leaf->getDataProperty(Definitions::getKeyDataPropertyType());
    write(bench, root, otherUnits);
    bench.equal("rows of the array leaf", rowTexts(rowsOf(bench.node(root, arrayPath()))),
                {{"0", "1", "2"}});
    bench.equal(
        "type of the array leaf",
        bench.node(root, arrayPath())->getDataProperty(Definitions::getKeyDataPropertyType()),
        type);
    bench.equal("unit of the leaf beside it", bench.unit(root, {"Zone", "Plain"}),
                QStringLiteral("K"));
}

} // namespace

QList<Check> arrayChecks()
{
    return {
        {"array.units_stand_in_column_order",
         "The array information of an array leaf is a list, and getColumnUnitTypes of a wrapper "
         "made of it returns one unit per column, in column order.",
         "The unit would be written to another column, or the engine would reach past the last "
         "one and stop the process.",
         unitsStandInColumnOrder},
        {"array.column_without_a_unit_counts",
         "getColumnUnitTypes has an empty unit for a column without one.",
         "The columns behind it would move up: the unit would be written to another column, or "
         "the engine would reach past the last one and stop the process.",
         emptyUnitCounts},
        {"array.takes_one_unit_per_column",
         "setColumnUnitTypes accepts a list of as many units as there are columns, and "
         "getColumnUnitTypes then returns it.",
         "The engine writes nothing when the list is refused: the column would keep its old unit.",
         takesOneUnitPerColumn},
        {"array.taking_units_writes_nothing_yet", "setColumnUnitTypes leaves the tree as it is.",
         "setArrayInfoWithStatus would find nothing left to change, and the resolution would be "
         "reported as one that changed nothing.",
         takingUnitsWritesNothing},
        {"array.write_of_other_units_returns_0",
         "setArrayInfoWithStatus returns 0 when the unit of a column changes, and the leaf at the "
         "URL then has the new ones.",
         "Status 1 would report that nothing changed, and any other that the leaf was not written: "
         "the resolution fails and its target is not stored.",
         changedColumn},
        {"array.write_of_the_same_units_returns_1",
         "setArrayInfoWithStatus returns 1 when the columns already have the units.",
         "Any other status but 0 makes the resolution fail though nothing is wrong, and 0 reports "
         "a change in every run, so that whoever waits for no change waits forever.",
         unchangedColumns},
        {"array.write_to_an_unknown_leaf_returns_neither_0_nor_1",
         "setArrayInfoWithStatus returns a status other than 0 and 1 when the URL names nothing.",
         "The engine would report units as written that no leaf has.", unknownLeaf},
        {"array.write_keeps_rows_and_type",
         "setArrayInfoWithStatus writes the array information and nothing else. The engine makes "
         "the wrapper without the rows of the leaf.",
         "Setting the unit of a column would empty the array, or turn the leaf into one that is "
         "no array any more.",
         writeKeepsRows},
    };
}

} // namespace hostkit
