// An application with data of its own that has units follow. It loads the engine when it runs:
// nothing here is linked with it.
//
// How the parts find each other:
//
//   embed (this executable)   holds the data, defines the host's classes and exports them
//     loads libunitflow       the engine, which finds the host's classes in the executable
//     loads embed-follower    a module of this application that uses the engine's classes
//
// The engine's classes are C++ classes with constructors and base classes, which nobody wants to
// look up by name one by one. So what derives from them stands in a module that is linked with the
// engine as usual, and the application speaks to it through one interface (UnitFollower).

#include "Library.h"
#include "Store.h"
#include "UnitFollower.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/PropertyManagerConst.h"

#include <QJsonDocument>
#include <QMap>
#include <QTemporaryDir>

#include <iostream>
#include <memory>

using Definitions = ConfigurationAndProcessDataDefinitions;

namespace {

constexpr const char* controller = R"({
    "Settings": { "TemperatureUnit": "°C", "FlowUnit": "m3/h", "Mode": "production" }
})";

constexpr const char* display = R"({
    "Zone1": { "Actual": { "@value": "TT-101", "@unit": "°C" },
               "Limit": { "@value": "TA-101", "@unit": "°C" } },
    "Exhaust": { "Flow": { "@value": "FT-301", "@unit": "m3/h" } },
    "Trend": { "@type": "array", "@value": [[0, 20.5, 18.0]], "@columns": ["s", "°C", "m3/h"] }
})";

// The URLs are this application's: names joined by ".".
constexpr const char* description = R"({
    "Temperatures": {
        "Type": "SwitchNode",
        "Next": { "Follow": {
            "Type": "CommandNode",
            "ConditionWriteOnUrls": [["Settings.TemperatureUnit"]],
            "Commands": {
                "CommandSetUnitByConfigurationParameter": [
                    ["Settings.TemperatureUnit", "", "Zone1.Actual"],
                    ["Settings.TemperatureUnit", "", "Zone1.Limit"]
                ],
                "CommandSetUnitByConfigurationParameterArray": [
                    ["Settings.TemperatureUnit", "Trend[1]"]
                ]
            }
        } }
    }
})";

BaseClassSharedPointer tree(const char* json)
{
    return BaseClassSharedPointer(new Tree(QJsonDocument::fromJson(json).object()));
}

/// Fills the store as an application would from its files or its database.
void fillStore(const QString& basePath)
{
    const QDir configurations(PropertyManagerConst::getConfigurationFolderPath(basePath));
    const QDir descriptions(PropertyManagerConst::getDependencyFolderPath(basePath));
    Store& store = Store::instance();
    store.trees.insert(configurations.filePath("Controller"), tree(controller));
    store.trees.insert(configurations.filePath("Display"), tree(display));
    store.descriptions.insert(descriptions.filePath("Temperatures"), description);

    Manifest manifest(basePath);
    manifest.update("Controller", Definitions::getKeyDataPropertyHasDependency(), true, false);
    manifest.writeToManifestFile();
}

/// Adds the units of all leaves below a node, by URL. An array leaf has one for each column.
void collectUnits(const Tree& node, const QString& prefix, QMap<QString, QString>& units)
{
    for (auto child = node.getChildren().begin(); child != node.getChildren().end(); ++child) {
        auto& leaf = static_cast<Tree&>(**child);
        const QString url = prefix + child.key();
        const QVariant unit = leaf.getDataProperty(Definitions::getKeyDataPropertyUnitType());
        if (unit.isValid()) {
            units.insert(url, unit.toString());
        }
        int column = 0;
        for (const QVariant& unitOfColumn :
             leaf.getDataProperty(Definitions::getKeyDataPropertyArrayInformation()).toList()) {
            units.insert(url + '[' + QString::number(column++) + ']', unitOfColumn.toString());
        }
        collectUnits(leaf, url + '.', units);
    }
}

QMap<QString, QString> unitsOf(const QString& path)
{
    QMap<QString, QString> units;
    collectUnits(static_cast<const Tree&>(*Store::instance().trees.value(path)), {}, units);
    return units;
}

void print(const QString& instance, const QString& url, const QString& before, const QString& after)
{
    std::cout << instance.toStdString() << "  " << url.toStdString() << ": " << before.toStdString()
              << " -> " << after.toStdString() << '\n';
}

} // namespace

int main()
{
    const QTemporaryDir base; // for the manifest, the one thing that the engine reads as a file
    fillStore(base.path());

    const Library engine(ENGINE_LIBRARY);
    const Library module(FOLLOWER_MODULE);
    const auto makeUnitFollower = module.function<MakeUnitFollower>(makeUnitFollowerName);
    const std::unique_ptr<UnitFollower> follower(
        makeUnitFollower(base.path(), {{"Controller", "Display", "Temperatures"}}));

    const QDir configurations(PropertyManagerConst::getConfigurationFolderPath(base.path()));
    const QString displayPath = configurations.filePath("Display");
    const QMap<QString, QString> before = unitsOf(displayPath);

    // Somebody chooses another unit.
    const QString url = "Settings.TemperatureUnit";
    Store::instance()
        .trees.value(configurations.filePath("Controller"))
        ->getChildData(url)
        ->setDataProperty(Definitions::getKeyDataPropertyValue(), "°F");
    print("Controller", url, "°C", "°F");
    const bool resolved = follower->valueWritten("Controller", url);

    const QMap<QString, QString> after = unitsOf(displayPath);
    for (auto unit = after.begin(); unit != after.end(); ++unit) {
        if (before.value(unit.key()) != unit.value()) {
            print("Display   ", unit.key(), before.value(unit.key()), unit.value());
        }
    }
    return resolved ? 0 : 1;
}
