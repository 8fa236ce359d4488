#include "Host.h"

#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataParser.h"
#include "host/ConfigurationAndProcessDataTools.h"
#include "host/ConfigurationDataAndProcessDescriptionAccess.h"
#include "host/ConfigurationModificationHandler.h"
#include "host/PropertyManagerConst.h"
#include "host/SystemInformationManagerRegistryDefinitions.h"

#include <QtGlobal>

#include <algorithm>

namespace testhost {
namespace {

Host* currentHost = nullptr;

QString text(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

Host::Host()
{
    if (currentHost != nullptr) {
        qFatal("a test host stands already");
    }
    currentHost = this;
}

Host::~Host()
{
    currentHost = nullptr;
}

Host& Host::current()
{
    if (currentHost == nullptr) {
        qFatal("the engine called a host that no test set up");
    }
    return *currentHost;
}

void Host::record(const QString& call)
{
    calls.append(call);
    const auto met = std::find_if(actions.begin(), actions.end(), [&call](const auto& entry) {
        return call.startsWith(entry.first);
    });
    if (met == actions.end()) {
        return;
    }
    const auto action = met->second;
    actions.erase(met); // first, since the action may call the engine and come back here
    action();
}

QStringList Host::takeCalls()
{
    QStringList taken;
    taken.swap(calls);
    return taken;
}

QStringList Host::takeCalls(const QStringList& beginnings)
{
    QStringList taken;
    for (const QString& call : takeCalls()) {
        const auto begins = [&call](const QString& beginning) {
            return call.startsWith(beginning);
        };
        if (std::any_of(beginnings.begin(), beginnings.end(), begins)) {
            taken.append(call);
        }
    }
    return taken;
}

void Host::insideNext(const QString& beginning, const std::function<void()>& action)
{
    actions.append({beginning, action});
}

QStringList Host::actionsNotRun() const
{
    QStringList beginnings;
    for (const auto& entry : actions) {
        beginnings.append(entry.first);
    }
    return beginnings;
}

} // namespace testhost

using testhost::Host;
using testhost::where;

// Not the keys of any other host: an engine that spelled a key itself would find nothing here.

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue()
{
    return QStringLiteral("@val");
}

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyUnitType()
{
    return QStringLiteral("@unit");
}

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyType()
{
    return QStringLiteral("@dataType");
}

QString ConfigurationAndProcessDataDefinitions::getKeyDataTypeArray()
{
    return QStringLiteral("an array");
}

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyArrayInformation()
{
    return QStringLiteral("@columns");
}

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyHasDependency()
{
    return QStringLiteral("@isSource");
}

QVariant ConfigurationAndProcessDataTools::extractConfigValue(const QString& url,
                                                              const BaseClassSharedPointer& root)
{
    const auto* node = dynamic_cast<const testhost::Node*>(root.data());
    const BaseClassSharedPointer leaf = node == nullptr ? nullptr : node->find(url);
    QVariant value;
    if (!leaf.isNull()) {
        value = dynamic_cast<const testhost::Node&>(*leaf).property(
            ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue());
    }
    Host::current().record(
        QStringLiteral("extractConfigValue(%1, %2)").arg(url, where(root.data())));
    return value;
}

QString ConfigurationDataAndProcessDescriptionAccess::getDependency(const QDir& dependencyFolder,
                                                                    const QString& dependencyName)
{
    Host& host = Host::current();
    QString description = host.descriptions.value(dependencyName);
    host.record(
        QStringLiteral("getDependency(%1, %2)").arg(dependencyFolder.path(), dependencyName));
    return description;
}

BaseClassSharedPointer
ConfigurationDataAndProcessDescriptionAccess::getParsedConfigurationProcessDescription(
    const QDir& folder, const QString& instanceName, bool isProcess)
{
    Host& host = Host::current();
    BaseClassSharedPointer root = host.instances.value(folder.path() + '/' + instanceName);
    if (host.keepingWhatIsStored && !root.isNull()) {
        root = static_cast<const testhost::Node&>(*root).copy();
    }
    host.record(QStringLiteral("getParsedConfigurationProcessDescription(%1, %2, %3)")
                    .arg(folder.path(), instanceName, testhost::text(isProcess)));
    return root;
}

// NOLINTBEGIN(performance-unnecessary-value-param): the header is the engine's
bool ConfigurationDataAndProcessDescriptionAccess::setParsedConfigurationProcessDescription(
    const QDir& folder, const QString& originFirst, const QString& originSecond,
    const QString& instanceName, BaseClassSharedPointer tree, bool isProcess)
{
    Host& host = Host::current();
    if (host.keepingWhatIsStored && !tree.isNull()) {
        host.instances.insert(folder.path() + '/' + instanceName, tree);
        host.modifiedInstances.append(
            {originFirst, originSecond, instanceName, QStringLiteral("just now")});
    }
    host.record(
        QStringLiteral("setParsedConfigurationProcessDescription(%1, %2, %3, %4, %5, %6) -> %7")
            .arg(folder.path(), originFirst, originSecond, instanceName, where(tree.data()),
                 testhost::text(isProcess), testhost::text(host.storing)));
    return host.storing;
}
// NOLINTEND(performance-unnecessary-value-param)

ConfigurationAndProcessDataParser::ConfigurationAndProcessDataParser() = default;

// The header allows no trivial destructor.
// NOLINTNEXTLINE(modernize-use-equals-default)
ConfigurationAndProcessDataParser::~ConfigurationAndProcessDataParser() {}

BaseClassSharedPointer
ConfigurationAndProcessDataParser::parseFromJson(const QString& json,
                                                 const QString& fileExtension) const
{
    BaseClassSharedPointer root = testhost::tree(QStringLiteral("parsed"), json);
    Host::current().record(QStringLiteral("parseFromJson(%1, %2)").arg(json, fileExtension));
    return root;
}

QString PropertyManagerConst::getConfigurationFolderPath(const QString& basePath)
{
    Host::current().record(QStringLiteral("getConfigurationFolderPath(%1)").arg(basePath));
    return basePath + QStringLiteral("/configurations");
}

QString PropertyManagerConst::getProcessFolderPath(const QString& basePath)
{
    Host::current().record(QStringLiteral("getProcessFolderPath(%1)").arg(basePath));
    return basePath + QStringLiteral("/processes");
}

QString PropertyManagerConst::getDependencyFolderPath(const QString& basePath)
{
    Host::current().record(QStringLiteral("getDependencyFolderPath(%1)").arg(basePath));
    return basePath + QStringLiteral("/dependencies");
}

QString PropertyManagerConst::getConfigFileExtension()
{
    return QStringLiteral(".tree");
}

QString PropertyManagerConst::getConfigurationManifestFilename()
{
    return QStringLiteral("manifest.of.test");
}

ConfigurationModificationHandler* ConfigurationModificationHandler::getInstance()
{
    static ConfigurationModificationHandler handler;
    Host::current().record(QStringLiteral("ConfigurationModificationHandler::getInstance()"));
    return &handler;
}

void ConfigurationModificationHandler::getModifiedInstances(
    QList<ModifiedInstanceItem>& items) const
{
    Host& host = Host::current();
    items = host.modifiedInstances;
    host.record(QStringLiteral("getModifiedInstances()"));
}

QString SystemInformationManagerRegistryDefinitions::getKeyLastModified()
{
    return QStringLiteral("@modified");
}
