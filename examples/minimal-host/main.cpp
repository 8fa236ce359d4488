#include "Commands/UnitManipulatorBase.h"
#include "DependencyResolverBaseClass.h"
#include "Node.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <iostream>

namespace {

/// Tells which leaf was written. A host that converts values to their new units does it here.
class Announcer : public UnitManipulatorBase {
public:
    bool manipulateUnit(const BaseClassSharedPointer& leaf, const QString& unit,
                        bool& /*commandResult*/, bool& /*changed*/) override
    {
        const QString signal = leaf->getDataProperty(QStringLiteral("@value")).toString();
        std::cout << signal.toStdString() << " is now in " << unit.toStdString() << '\n';
        return true;
    }
};

BaseClassSharedPointer tree(const char* json)
{
    return BaseClassSharedPointer(new Node(QJsonDocument::fromJson(json).object()));
}

} // namespace

int main()
{
    const BaseClassSharedPointer controller = tree(R"({ "TemperatureUnit": "°C" })");
    const BaseClassSharedPointer display = tree(R"({
        "Preheat": { "@value": "TT-101", "@unit": "°C" },
        "Cure": { "@value": "TT-102", "@unit": "°C" }
    })");
    const QString description = QStringLiteral(R"({
        "Follow": {
            "Type": "SwitchNode",
            "Next": {
                "Fields": {
                    "Type": "CommandNode",
                    "ConditionWriteOnUrls": [["TemperatureUnit"]],
                    "Commands": {
                        "CommandSetUnitByConfigurationParameter": [
                            ["TemperatureUnit", "", "Preheat"],
                            ["TemperatureUnit", "", "Cure"]
                        ]
                    }
                }
            }
        }
    })");

    const QString url = QStringLiteral("TemperatureUnit");
    controller->getChildData(url)->setDataProperty(QStringLiteral("@value"), QStringLiteral("°F"));

    const DependencyResolverBaseClass resolver(QStringLiteral("."), QStringLiteral("minimal-host"),
                                               QString());
    bool changed = false;
    const bool resolved = resolver.resolveDependencyInternal(
        controller, display, description, changed, {url}, {}, QSharedPointer<Announcer>::create());
    return resolved && changed ? 0 : 1;
}
