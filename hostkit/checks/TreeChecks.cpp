#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "hostkit/checks/Groups.h"
#include "hostkit/internal/Bench.h"
#include "hostkit/internal/Making.h"

using Definitions = ConfigurationAndProcessDataDefinitions;

namespace hostkit {

namespace {

QString unitKey()
{
    return Definitions::getKeyDataPropertyUnitType();
}

QString valueKey()
{
    return Definitions::getKeyDataPropertyValue();
}

/// Two leaves side by side on a second level, and one on the first.
BaseClassSharedPointer smallTree(Bench& bench)
{
    return bench.tree({unitLeaf({"Zone", "Actual"}, "K"), unitLeaf({"Zone", "Set"}, "bar"),
                       valueLeaf({"Mode"}, "auto")});
}

QStringList childNames(const BaseClassSharedPointer& node)
{
    QStringList names = node->getChildMap().keys();
    names.sort();
    return names;
}

QString writing(const QVariant& value)
{
    return QStringLiteral("setDataProperty(unit, %1)").arg(shown(value));
}

void childMapHoldsAllDirectChildren(Bench& bench)
{
    const BaseClassSharedPointer root = smallTree(bench);
    bench.equal("children of the root", childNames(root), {"Mode", "Zone"});
    bench.equal("children of \"Zone\"", childNames(bench.node(root, {"Zone"})), {"Actual", "Set"});
    bench.equal("children of a leaf", childNames(bench.node(root, {"Mode"})), {});
    for (const BaseClassSharedPointer& child : root->getChildMap()) {
        if (child.isNull()) {
            bench.fail("a child in the map is null");
        }
    }
}

void unknownUrlsAreNull(Bench& bench)
{
    const BaseClassSharedPointer root = smallTree(bench);
    const QList<QStringList> unknown = {
        {"Nowhere"}, {"Zone", "Nowhere"}, {"Nowhere", "Actual"}, {"Mode", "Nowhere"}, {"Actual"}};
    for (const QStringList& path : unknown) {
        const QString url = bench.host().url(path);
        bench.equal(call("getChildData", url), root->getChildData(url), BaseClassSharedPointer());
    }
}

void hasChildDataAgrees(Bench& bench)
{
    const BaseClassSharedPointer root = smallTree(bench);
    const QList<QStringList> present = {{"Mode"}, {"Zone"}, {"Zone", "Set"}};
    const QList<QStringList> absent = {{"Nowhere"}, {"Zone", "Nowhere"}, {"Mode", "Nowhere"}};
    for (const QStringList& path : present) {
        const QString url = bench.host().url(path);
        bench.equal(call("hasChildData", url), root->hasChildData(url), true);
    }
    for (const QStringList& path : absent) {
        const QString url = bench.host().url(path);
        bench.equal(call("hasChildData", url), root->hasChildData(url), false);
    }
}

void valuesReadBack(Bench& bench)
{
    const QVariantList values = {QStringLiteral("°C"), 7, -3, true, false};
    for (const QVariant& value : values) {
        const BaseClassSharedPointer root = bench.tree({valueLeaf({"Leaf"}, value)});
        const QVariant found = bench.node(root, {"Leaf"})->getDataProperty(valueKey());
        bench.equal("value", found, value);
        bench.equal("value as text", found.toString(), value.toString());
    }
}

void statusTellsTheTruth(Bench& bench)
{
    const QVariantList values = {QStringLiteral("bar"), QStringLiteral(""), 5, 5, 2.5, true,
                                 QVariantList{1, 2}};
    const BaseClassSharedPointer root = bench.tree({unitLeaf({"Leaf"}, "K")});
    const BaseClassSharedPointer leaf = bench.node(root, {"Leaf"});
    for (const QVariant& value : values) {
        const QVariant before = leaf->getDataProperty(unitKey());
        const int status = leaf->setDataProperty(unitKey(), value);
        const QVariant after = leaf->getDataProperty(unitKey());
        const QString what =
            QStringLiteral("unit after %1 returned %2").arg(writing(value)).arg(status);
        if (status == 0) {
            bench.equal(what, after, value);
        } else {
            bench.equal(what, after, before);
        }
    }
}

void refusedWrite(Bench& bench)
{
    const QVariant refused = bench.host().refusedUnit();
    if (!refused.isValid()) {
        bench.skip("the host refuses no unit, says the adapter");
    }
    const BaseClassSharedPointer root = bench.tree({unitLeaf({"Leaf"}, "K")});
    const int status = bench.node(root, {"Leaf"})->setDataProperty(unitKey(), refused);
    bench.refused(writing(refused), status);
    bench.equal("unit afterwards", bench.unit(root, {"Leaf"}), QStringLiteral("K"));
}

void writeLeavesTheRestAlone(Bench& bench)
{
    const BaseClassSharedPointer root = smallTree(bench);
    bench.node(root, {"Zone", "Actual"})->setDataProperty(unitKey(), QStringLiteral("°F"));
    bench.equal("value of the leaf",
                bench.node(root, {"Zone", "Actual"})->getDataProperty(valueKey()),
                QVariant(QStringLiteral("signal")));
    bench.equal("unit of the leaf beside it", bench.unit(root, {"Zone", "Set"}),
                QStringLiteral("bar"));
    bench.equal("value of another leaf", bench.node(root, {"Mode"})->getDataProperty(valueKey()),
                QVariant(QStringLiteral("auto")));
    bench.equal("children of \"Zone\"", childNames(bench.node(root, {"Zone"})), {"Actual", "Set"});
}

QList<Check> childChecks()
{
    return {
        {"tree.child_map_holds_all_direct_children",
         "getChildMap holds each direct child of a node under its name, and nothing else.",
         "The engine finds nodes, successors and commands in this map: one that is missing never "
         "runs, and whatever else stands there is taken for one of them.",
         childMapHoldsAllDirectChildren},
        {"tree.child_map_holds_the_nodes_that_getChildData_finds",
         "A child in getChildMap and what getChildData returns for its name are the same node: "
         "what is written to one shows in the other.",
         "The engine reads a node's successors by the map and its commands by getChildData: it "
         "would put together two different descriptions.",
         [](Bench& bench) {
             const BaseClassSharedPointer root = smallTree(bench);
             const BaseClassSharedPointer inMap = root->getChildMap().value("Mode");
             if (inMap.isNull()) {
                 bench.stop("the map has no child \"Mode\"");
             }
             bench.node(root, {"Mode"})->setDataProperty(unitKey(), QStringLiteral("K"));
             bench.equal("unit of the child in the map",
                         inMap->getDataProperty(unitKey()).toString(), QStringLiteral("K"));
         }},
        {"tree.getChildData_finds_a_direct_child_by_its_name",
         "getChildData returns a direct child for the child's plain name.",
         "The engine asks descriptions for \"Commands\" and for conditions by these very names: "
         "nodes would have no commands and edges no conditions.",
         [](Bench& bench) {
             const BaseClassSharedPointer root = bench.tree({valueLeaf({"Commands", "One"}, 1)});
             if (root->getChildData("Commands").isNull()) {
                 bench.fail(call("getChildData", "Commands") + " is null");
             }
         }},
        {"tree.getChildData_finds_a_leaf_by_its_url",
         "getChildData returns the leaf that a longer URL of the host's syntax names.",
         "Commands look up their target leaves by URL: none below the first level would ever get "
         "a unit.",
         [](Bench& bench) {
             const BaseClassSharedPointer root = smallTree(bench);
             bench.equal("unit of the leaf", bench.unit(root, {"Zone", "Set"}),
                         QStringLiteral("bar"));
         }},
        {"tree.getChildData_is_null_for_an_unknown_url",
         "getChildData returns null for a URL that names nothing below the node.",
         "Commands pass over targets that are null; they would write the unit to whatever leaf "
         "came back instead.",
         unknownUrlsAreNull},
        {"tree.hasChildData_says_what_getChildData_finds",
         "hasChildData is true exactly when getChildData finds a node.",
         "The engine asks it for each kind of condition: the condition of an edge would never be "
         "made, and the edge would be followed every time.",
         hasChildDataAgrees},
    };
}

QList<Check> propertyChecks()
{
    return {
        {"tree.missing_property_is_invalid",
         "getDataProperty returns an invalid QVariant for a property that the node does not have.",
         "The engine takes only an invalid value for absent: an empty one would become the unit of "
         "a target, or the columns of an array leaf that has none.",
         [](Bench& bench) {
             const BaseClassSharedPointer root =
                 bench.tree({valueLeaf({"Leaf"}, 1), {{"Bare"}, {}, "K", {}}});
             const auto property = [&](const char* leaf, const QString& key) {
                 return bench.node(root, {leaf})->getDataProperty(key);
             };
             bench.equal("unit of a leaf without one", property("Leaf", unitKey()), QVariant());
             bench.equal("value of a leaf without one", property("Bare", valueKey()), QVariant());
             bench.equal("array information of a leaf without columns",
                         property("Leaf", Definitions::getKeyDataPropertyArrayInformation()),
                         QVariant());
         }},
        {"tree.value_reads_back_as_given",
         "The value of a leaf equals the text, number or boolean that stands in the data.",
         "Conditions compare this value and commands copy it into units: comparisons would fail "
         "and units would come out wrong.",
         valuesReadBack},
        {"tree.write_of_a_new_unit_returns_0",
         "setDataProperty returns 0 when it gives a unit to a leaf that had none, and the leaf "
         "then has it.",
         "Status 1 would report that nothing changed, and any other that the leaf was not written: "
         "the resolution fails and its target is not stored.",
         [](Bench& bench) {
             const BaseClassSharedPointer root = bench.tree({valueLeaf({"Leaf"}, 1)});
             const int status =
                 bench.node(root, {"Leaf"})->setDataProperty(unitKey(), QStringLiteral("K"));
             bench.equal(writing("K"), status, 0);
             bench.equal("unit", bench.unit(root, {"Leaf"}), QStringLiteral("K"));
         }},
        {"tree.write_of_another_unit_returns_0",
         "setDataProperty returns 0 when it changes the unit of a leaf, and the leaf then has the "
         "new one.",
         "Status 1 would report that nothing changed, and any other that the leaf was not written: "
         "the resolution fails and its target is not stored.",
         [](Bench& bench) {
             const BaseClassSharedPointer root = bench.tree({unitLeaf({"Leaf"}, "K")});
             const int status =
                 bench.node(root, {"Leaf"})->setDataProperty(unitKey(), QStringLiteral("°F"));
             bench.equal(writing("°F"), status, 0);
             bench.equal("unit", bench.unit(root, {"Leaf"}), QStringLiteral("°F"));
         }},
        {"tree.write_of_the_same_unit_returns_1",
         "setDataProperty returns 1 when the leaf already has the unit.",
         "Any other status but 0 makes the resolution fail though nothing is wrong, and 0 reports "
         "a change in every run, so that whoever waits for no change waits forever.",
         [](Bench& bench) {
             const BaseClassSharedPointer root = bench.tree({unitLeaf({"Leaf"}, "K")});
             const int status =
                 bench.node(root, {"Leaf"})->setDataProperty(unitKey(), QStringLiteral("K"));
             bench.equal(writing("K"), status, 1);
             bench.equal("unit", bench.unit(root, {"Leaf"}), QStringLiteral("K"));
         }},
        {"tree.status_of_a_write_tells_the_truth",
         "After setDataProperty returned 0 the property is the new value; after anything else it "
         "is what it was before. Source values of any type may come as units.",
         "The engine believes the status: it would report a unit as written that the leaf does "
         "not have.",
         statusTellsTheTruth},
        {"tree.refused_write_returns_neither_0_nor_1",
         "setDataProperty returns a status other than 0 and 1 when it does not write, and the leaf "
         "keeps its unit.",
         "The engine would report success for a target that did not follow its source.",
         refusedWrite},
        {"tree.write_shows_wherever_the_leaf_is_reached",
         "A unit written through the node that getChildData returned shows when the leaf is looked "
         "up again, by its URL or child by child.",
         "The unit would be written to a copy: the resolution succeeds and the stored tree does "
         "not have it.",
         [](Bench& bench) {
             const BaseClassSharedPointer root = smallTree(bench);
             bench.node(root, {"Zone", "Set"})->setDataProperty(unitKey(), QStringLiteral("mbar"));
             bench.equal("unit by URL", bench.unit(root, {"Zone", "Set"}), QStringLiteral("mbar"));
             bench.equal("unit child by child", bench.unit(bench.node(root, {"Zone"}), {"Set"}),
                         QStringLiteral("mbar"));
         }},
        {"tree.write_leaves_the_rest_alone",
         "Writing the unit of a leaf changes no other property and no other leaf.",
         "A value or a unit that no description names would change with every resolution.",
         writeLeavesTheRestAlone},
    };
}

} // namespace

QList<Check> treeChecks()
{
    return childChecks() + propertyChecks();
}

} // namespace hostkit
