#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataParser.h"
#include "host/ConfigurationAndProcessDataTools.h"
#include "host/ConfigurationDataAndProcessDescriptionAccess.h"
#include "host/PropertyManagerConst.h"
#include "hostkit/checks/Groups.h"
#include "hostkit/internal/Bench.h"
#include "hostkit/internal/Making.h"

using Access = ConfigurationDataAndProcessDescriptionAccess;

namespace hostkit {

namespace {

QDir dependencyFolder(Bench& bench)
{
    return {PropertyManagerConst::getDependencyFolderPath(bench.host().basePath())};
}

void writeUnit(Bench& bench, const BaseClassSharedPointer& root, const QString& unit)
{
    bench.node(root, {"Leaf"})
        ->setDataProperty(ConfigurationAndProcessDataDefinitions::getKeyDataPropertyUnitType(),
                          unit);
}

QString storedUnit(Bench& bench, const QString& name, bool isProcess)
{
    return bench.unit(bench.load(name, isProcess), {"Leaf"});
}

void describedText(Bench& bench)
{
    const QString name = bench.name("Description");
    bench.host().putDescription(name,
                                bench.host().text({valueLeaf({"Node", "Type"}, "SwitchNode")}));
    const QString text = Access::getDependency(dependencyFolder(bench), name);
    const BaseClassSharedPointer root = ConfigurationAndProcessDataParser().parseFromJson(
        text, PropertyManagerConst::getConfigFileExtension());
    if (root.isNull()) {
        bench.stop("the parser returns null for " + shown(text));
    }
    bench.equal(
        "type of the node",
        ConfigurationAndProcessDataTools::extractConfigValue("Type", bench.node(root, {"Node"})),
        QVariant(QStringLiteral("SwitchNode")));
}

void unknownInstances(Bench& bench)
{
    const QString name = bench.name("Nobody");
    for (const bool isProcess : {false, true}) {
        bench.equal(QStringLiteral("getParsedConfigurationProcessDescription(\"%1\", %2)")
                        .arg(name, isProcess ? "true" : "false"),
                    Access::getParsedConfigurationProcessDescription(bench.folder(isProcess), name,
                                                                     isProcess),
                    BaseClassSharedPointer());
    }
}

void processFlag(Bench& bench)
{
    const QString name = bench.name("Instance");
    bench.putInstance(name, false, {unitLeaf({"Leaf"}, "K")});
    bench.putInstance(name, true, {unitLeaf({"Leaf"}, "bar")});
    bench.equal("unit in the configuration", storedUnit(bench, name, false), QStringLiteral("K"));
    bench.equal("unit in the process description", storedUnit(bench, name, true),
                QStringLiteral("bar"));
}

void changedWithoutStoring(Bench& bench)
{
    const QString name = bench.name("Instance");
    bench.putInstance(name, false, {unitLeaf({"Leaf"}, "K")});
    const BaseClassSharedPointer root = bench.load(name, false);
    writeUnit(bench, root, "°F");
    bench.equal("unit in the tree that was handed out", bench.unit(root, {"Leaf"}),
                QStringLiteral("°F"));
    bench.equal("unit in the store", storedUnit(bench, name, false), QStringLiteral("K"));
}

void storedTreeComesBack(Bench& bench)
{
    for (const bool isProcess : {false, true}) {
        const QString name = bench.name(isProcess ? "Process" : "Configuration");
        bench.putInstance(name, isProcess, {unitLeaf({"Leaf"}, "K")});
        const BaseClassSharedPointer root = bench.load(name, isProcess);
        writeUnit(bench, root, "°F");
        bench.equal(call("setParsedConfigurationProcessDescription", name),
                    bench.store(name, isProcess, root, "kit"), true);
        bench.equal("unit in the store", storedUnit(bench, name, isProcess), QStringLiteral("°F"));
    }
}

void storingAProcessKeepsTheConfiguration(Bench& bench)
{
    const QString name = bench.name("Instance");
    bench.putInstance(name, false, {unitLeaf({"Leaf"}, "K")});
    bench.putInstance(name, true, {unitLeaf({"Leaf"}, "K")});
    const BaseClassSharedPointer root = bench.load(name, true);
    writeUnit(bench, root, "°F");
    bench.store(name, true, root, "kit");
    bench.equal("unit in the configuration of the same name", storedUnit(bench, name, false),
                QStringLiteral("K"));
}

} // namespace

QList<Check> storeChecks()
{
    return {
        {"store.description_is_a_text_that_parses",
         "getDependency returns the text of the description of that name, as the parser reads it.",
         "The resolution would run another description or none.", describedText},
        {"store.unknown_description_is_an_empty_text",
         "getDependency returns an empty text when there is no description of that name.",
         "A link to a description that does not exist would run whatever text came back instead of "
         "failing.",
         [](Bench& bench) {
             const QString name = bench.name("Nothing");
             bench.equal(call("getDependency", name),
                         Access::getDependency(dependencyFolder(bench), name).isEmpty(), true);
         }},
        {"store.instance_has_its_leaves",
         "getParsedConfigurationProcessDescription returns the tree of the instance.",
         "Sources would have no values and targets no leaves.",
         [](Bench& bench) {
             const QString name = bench.name("Instance");
             bench.putInstance(name, false, {unitLeaf({"Leaf"}, "K")});
             bench.equal("unit in the store", storedUnit(bench, name, false), QStringLiteral("K"));
         }},
        {"store.unknown_instance_is_null",
         "getParsedConfigurationProcessDescription returns null when there is no such instance.",
         "The engine would resolve into a tree that nobody has, and have it stored as a new "
         "instance.",
         unknownInstances},
        {"store.process_flag_picks_the_process_description",
         "With the process flag the tree is that of the process description, without it that of "
         "the configuration, also when both have one name.",
         "Units would be written into the wrong one of the two.", processFlag},
        {"store.tree_may_be_changed_without_being_stored",
         "What is written to a tree from the store does not reach the store before the tree is "
         "stored.",
         "A resolution that fails is not stored, yet the units that it wrote until then would "
         "stay.",
         changedWithoutStoring},
        {"store.stored_tree_is_handed_out_again",
         "setParsedConfigurationProcessDescription returns true, and the instance then has the "
         "tree that was stored.",
         "The units would not follow: the result of the resolution is that of the store.",
         storedTreeComesBack},
        {"store.storing_a_process_description_keeps_the_configuration",
         "Storing a process description leaves the configuration of the same name alone.",
         "Resolving into a process description would overwrite a configuration.",
         storingAProcessKeepsTheConfiguration},
        {"store.null_tree_is_survived",
         "setParsedConfigurationProcessDescription takes a null tree, with either result.",
         "A missing tree is no failure to the engine, so it has the target stored, which is null "
         "when the target is what was missing: the process would end there.",
         [](Bench& bench) { bench.store(bench.name("Nobody"), false, {}, "kit"); }},
    };
}

} // namespace hostkit
