#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/PropertyManagerConst.h"
#include "host/SystemInformationManagerRegistryDefinitions.h"
#include "hostkit/checks/Groups.h"
#include "hostkit/internal/Bench.h"
#include "hostkit/internal/Making.h"

using Definitions = ConfigurationAndProcessDataDefinitions;

namespace hostkit {

namespace {

void expectDifferentTexts(Bench& bench, const QStringList& texts)
{
    for (int i = 0; i < texts.size(); ++i) {
        if (texts.at(i).isEmpty()) {
            bench.fail(QStringLiteral("key %1 of %2 is empty").arg(i + 1).arg(texts.size()));
        }
        if (texts.indexOf(texts.at(i)) != i) {
            bench.fail(QStringLiteral("\"%1\" stands for two of them").arg(texts.at(i)));
        }
    }
}

QString typeOf(Bench& bench, const Leaf& leaf)
{
    const BaseClassSharedPointer root = bench.tree({leaf});
    return bench.node(root, leaf.path)
        ->getDataProperty(Definitions::getKeyDataPropertyType())
        .toString();
}

} // namespace

QList<Check> keyChecks()
{
    return {
        {"keys.of_properties_differ",
         "The keys of a leaf's value, unit, type and array information are four different texts.",
         "Writing a unit would overwrite another property of the leaf.",
         [](Bench& bench) {
             expectDifferentTexts(bench, {Definitions::getKeyDataPropertyValue(),
                                          Definitions::getKeyDataPropertyUnitType(),
                                          Definitions::getKeyDataPropertyType(),
                                          Definitions::getKeyDataPropertyArrayInformation()});
         }},
        {"keys.of_manifest_entries_differ",
         "The keys of the has-dependency flag and of the last-modified time are two different "
         "texts, and neither is \"instanceName\".",
         "Updating the time of an instance would overwrite its name or its flag, and the next scan "
         "would no longer find it.",
         [](Bench& bench) {
             expectDifferentTexts(
                 bench,
                 {QStringLiteral("instanceName"), Definitions::getKeyDataPropertyHasDependency(),
                  SystemInformationManagerRegistryDefinitions::getKeyLastModified()});
         }},
        {"keys.array_type_marks_array_leaves",
         "The type of an array leaf reads as getKeyDataTypeArray().",
         "Columns of that leaf would never get a unit; the engine only writes the warning \"Not an "
         "array datatype\".",
         [](Bench& bench) {
             bench.equal(QStringLiteral("type of an array leaf"),
                         typeOf(bench, arrayLeaf({"Array"}, {"K", "bar"})),
                         Definitions::getKeyDataTypeArray());
         }},
        {"keys.array_type_marks_no_other_leaf",
         "The type of a leaf that is no array is another text than getKeyDataTypeArray(), or "
         "there is none.",
         "The engine would look for columns where there are none, instead of saying that the "
         "description names the wrong leaf.",
         [](Bench& bench) {
             const QString type = typeOf(bench, unitLeaf({"Plain"}, "K"));
             if (type == Definitions::getKeyDataTypeArray()) {
                 bench.fail(QStringLiteral("the type of a plain leaf is %1").arg(shown(type)));
             }
         }},
        {"keys.manifest_file_name_has_no_folder",
         "The manifest's file name is not empty and holds no folder.",
         "The engine looks for the manifest in the folder that it is given and would not find it.",
         [](Bench& bench) {
             const QString name = PropertyManagerConst::getConfigurationManifestFilename();
             if (name.isEmpty() || name.contains(QLatin1Char('/'))) {
                 bench.fail(QStringLiteral("the file name is %1").arg(shown(name)));
             }
         }},
    };
}

} // namespace hostkit
