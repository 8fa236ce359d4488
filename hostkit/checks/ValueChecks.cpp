#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataTools.h"
#include "hostkit/checks/Groups.h"
#include "hostkit/internal/Bench.h"
#include "hostkit/internal/Making.h"

namespace hostkit {

namespace {

QVariant extracted(Bench& bench, const BaseClassSharedPointer& root, const QStringList& path)
{
    return ConfigurationAndProcessDataTools::extractConfigValue(bench.host().url(path), root);
}

QString extracting(Bench& bench, const QStringList& path)
{
    return call("extractConfigValue", bench.host().url(path));
}

} // namespace

QList<Check> valueChecks()
{
    return {
        {"value.is_that_of_the_leaf_at_the_url",
         "extractConfigValue returns the value of the leaf that a name or a longer URL names.",
         "Nodes would have no type, conditions nothing to compare, and no unit would follow a "
         "parameter.",
         [](Bench& bench) {
             const BaseClassSharedPointer root = bench.tree(
                 {valueLeaf({"Type"}, "SwitchNode"), valueLeaf({"Settings", "Count"}, 4)});
             bench.equal(call("extractConfigValue", "Type"),
                         ConfigurationAndProcessDataTools::extractConfigValue("Type", root),
                         QVariant(QStringLiteral("SwitchNode")));
             bench.equal(extracting(bench, {"Settings", "Count"}),
                         extracted(bench, root, {"Settings", "Count"}), QVariant(4));
         }},
        {"value.is_invalid_for_an_unknown_url",
         "extractConfigValue returns an invalid QVariant when the URL names nothing.",
         "The engine takes only an invalid value for absent: an empty text would be written as a "
         "unit, and every comparison by \"!=\" would hold.",
         [](Bench& bench) {
             const BaseClassSharedPointer root = bench.tree({valueLeaf({"Settings", "Count"}, 4)});
             const QList<QStringList> unknown = {
                 {"Nowhere"}, {"Settings", "Nowhere"}, {"Settings", "Count", "Nowhere"}};
             for (const QStringList& path : unknown) {
                 bench.equal(extracting(bench, path), extracted(bench, root, path), QVariant());
             }
         }},
        {"value.is_invalid_for_a_node_without_a_value",
         "extractConfigValue returns an invalid QVariant when the URL names a node without a "
         "value.",
         "The engine takes only an invalid value for absent: an empty text would be written as a "
         "unit, and a node without a type would be looked for under an empty one.",
         [](Bench& bench) {
             const BaseClassSharedPointer root =
                 bench.tree({valueLeaf({"Settings", "Count"}, 4), {{"Bare"}, {}, "K", {}}});
             bench.equal(extracting(bench, {"Settings"}), extracted(bench, root, {"Settings"}),
                         QVariant());
             bench.equal(extracting(bench, {"Bare"}), extracted(bench, root, {"Bare"}), QVariant());
         }},
        {"value.follows_a_write", "extractConfigValue returns what was last written to the leaf.",
         "Units would follow the parameter as it was before the write that they are to follow.",
         [](Bench& bench) {
             const BaseClassSharedPointer root = bench.tree({valueLeaf({"Settings", "Unit"}, "K")});
             bench.node(root, {"Settings", "Unit"})
                 ->setDataProperty(
                     ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue(),
                     QStringLiteral("°F"));
             bench.equal(extracting(bench, {"Settings", "Unit"}),
                         extracted(bench, root, {"Settings", "Unit"}),
                         QVariant(QStringLiteral("°F")));
         }},
    };
}

} // namespace hostkit
