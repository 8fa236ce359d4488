#include "DependencyResolverBaseClass.h"

#include "DependencyWalker.h"
#include "host/ConfigurationDataAndProcessDescriptionAccess.h"
#include "host/ConfigurationManifestHandler.h"
#include "host/ConfigurationModificationHandler.h"
#include "host/PropertyManagerConst.h"
#include "host/SystemInformationManagerRegistryDefinitions.h"
#include "internal/Warning.h"

using Access = ConfigurationDataAndProcessDescriptionAccess;

namespace {

constexpr internal::WarningPlace invalidRoot{
    "DependencyResolverBaseClass", 296,
    "bool DependencyResolverBaseClass::resolveDependencyInternal(const BaseClassSharedPointer&, "
    "const BaseClassSharedPointer&, const QString&, bool&, const QStringList&, "
    "const QVariantList&, const QSharedPointer<UnitManipulatorBase>&) const"};

constexpr internal::WarningPlace unresolved{
    "DependencyResolverBaseClass", 184,
    "bool DependencyResolverBaseClass::resolveDependency(const QDir&, const QString&, "
    "const QDir&, const QString&, const QString&, bool&, bool, const QStringList&, "
    "const QVariantList&, const QSharedPointer<UnitManipulatorBase>&) const"};

internal::WarningPlace updatingManifest(int line)
{
    return {"DependencyResolverBaseClass", line,
            "void DependencyResolverBaseClass::updateConfigurationManifest()"};
}

} // namespace

DependencyResolverBaseClass::DependencyResolverBaseClass(const QString& basePath,
                                                         const QString& originFirst,
                                                         const QString& originSecond)
    : configurationFolderPath(PropertyManagerConst::getConfigurationFolderPath(basePath)),
      processFolderPath(PropertyManagerConst::getProcessFolderPath(basePath)),
      dependencyFolderPath(PropertyManagerConst::getDependencyFolderPath(basePath)),
      originFirst(originFirst), originSecond(originSecond)
{}

DependencyResolverBaseClass::~DependencyResolverBaseClass() = default;

bool DependencyResolverBaseClass::resolveAllDependency()
{
    return false;
}

bool DependencyResolverBaseClass::resolveDependencyOfInstance(BaseClassSharedPointer& /*instance*/,
                                                              const QString& /*instanceName*/)
{
    return false;
}

ConfigurationManifestHandler* DependencyResolverBaseClass::getConfigurationManifestHandler() const
{
    return configurationManifestHandler;
}

void DependencyResolverBaseClass::setConfigurationManifestHandler(
    ConfigurationManifestHandler* handler)
{
    configurationManifestHandler = handler;
}

void DependencyResolverBaseClass::updateConfigurationManifest()
{
    ConfigurationManifestHandler* handler = getConfigurationManifestHandler();
    if (handler == nullptr) {
        internal::warning(updatingManifest(240))
            << "Invalid pointer for configuration manifest handler!";
        return;
    }
    QList<ModifiedInstanceItem> items;
    ConfigurationModificationHandler::getInstance()->getModifiedInstances(items);
    for (const ModifiedInstanceItem& item : qAsConst(items)) {
        if (item.originFirst != originFirst || item.originSecond != originSecond) {
            continue; // stored by somebody else
        }
        if (!handler->update(item.instanceName,
                             SystemInformationManagerRegistryDefinitions::getKeyLastModified(),
                             QVariant(item.modificationTime), false)) {
            internal::warning(updatingManifest(231))
                << "Error on updating modification date for instance:" << item.instanceName << "!";
        }
    }
    handler->writeToManifestFile();
}

bool DependencyResolverBaseClass::resolveDependency(
    const QString& sourceInstance, const QString& targetInstance, const QString& dependencyName,
    bool isProcess, const QStringList& urls, const QVariantList& parameters,
    const QSharedPointer<UnitManipulatorBase>& manipulator) const
{
    bool changed = false;
    return resolveDependency(sourceInstance, targetInstance, dependencyName, changed, isProcess,
                             urls, parameters, manipulator);
}

bool DependencyResolverBaseClass::resolveDependency(
    const QString& sourceInstance, const QString& targetInstance, const QString& dependencyName,
    bool& changed, bool isProcess, const QStringList& urls, const QVariantList& parameters,
    const QSharedPointer<UnitManipulatorBase>& manipulator) const
{
    const QDir sourceFolder(configurationFolderPath);
    const QDir targetFolder(isProcess ? processFolderPath : configurationFolderPath);
    return resolveDependency(sourceFolder, sourceInstance, targetFolder, targetInstance,
                             dependencyName, changed, isProcess, urls, parameters, manipulator);
}

bool DependencyResolverBaseClass::resolveDependency(
    const QDir& sourceFolder, const QString& sourceInstance, const QDir& targetFolder,
    const QString& targetInstance, const QString& dependencyName, bool& changed, bool isProcess,
    const QStringList& urls, const QVariantList& parameters,
    const QSharedPointer<UnitManipulatorBase>& manipulator) const
{
    const QString dependencyJson =
        Access::getDependency(QDir(dependencyFolderPath), dependencyName);
    const BaseClassSharedPointer source =
        Access::getParsedConfigurationProcessDescription(sourceFolder, sourceInstance, false);
    const BaseClassSharedPointer target =
        Access::getParsedConfigurationProcessDescription(targetFolder, targetInstance, isProcess);

    if (!resolveDependencyInternal(source, target, dependencyJson, changed, urls, parameters,
                                   manipulator)) {
        internal::warning(unresolved)
            << "Unable to resolve dependency between" << sourceFolder.absolutePath() << "and"
            << targetFolder.absolutePath() << "defined by" << dependencyName;
        return false;
    }
    return Access::setParsedConfigurationProcessDescription(targetFolder, originFirst, originSecond,
                                                            targetInstance, target, isProcess);
}

bool DependencyResolverBaseClass::resolveDependency(
    const QDir& sourceFolder, const QString& sourceInstance, const QDir& targetFolder,
    const QString& targetInstance, const QString& dependencyName, bool isProcess,
    const QStringList& urls, const QVariantList& parameters,
    const QSharedPointer<UnitManipulatorBase>& manipulator) const
{
    bool changed = false;
    return resolveDependency(sourceFolder, sourceInstance, targetFolder, targetInstance,
                             dependencyName, changed, isProcess, urls, parameters, manipulator);
}

bool DependencyResolverBaseClass::resolveDependency(
    const BaseClassSharedPointer& sourceRoot, const BaseClassSharedPointer& targetRoot,
    const QString& dependencyName, bool& changed, const QStringList& urls,
    const QVariantList& parameters, const QSharedPointer<UnitManipulatorBase>& manipulator) const
{
    return resolveDependencyInternal(
        sourceRoot, targetRoot, Access::getDependency(QDir(dependencyFolderPath), dependencyName),
        changed, urls, parameters, manipulator);
}

bool DependencyResolverBaseClass::resolveDependency(
    const BaseClassSharedPointer& sourceRoot, const BaseClassSharedPointer& targetRoot,
    const QString& dependencyName, const QStringList& urls, const QVariantList& parameters,
    const QSharedPointer<UnitManipulatorBase>& manipulator) const
{
    bool changed = false;
    return resolveDependency(sourceRoot, targetRoot, dependencyName, changed, urls, parameters,
                             manipulator);
}

bool DependencyResolverBaseClass::resolveDependencyInternal(
    const BaseClassSharedPointer& sourceRoot, const BaseClassSharedPointer& targetRoot,
    const QString& dependencyJson, bool& changed, const QStringList& urls,
    const QVariantList& parameters, const QSharedPointer<UnitManipulatorBase>& manipulator) const
{
    if (dependencyJson.isEmpty()) {
        return false;
    }
    if (sourceRoot.isNull() || targetRoot.isNull()) {
        internal::warning(invalidRoot) << "Source or target root invalid";
        return true; // an absent tree has nothing to resolve, which is no failure
    }

    // Held for all URLs: the host may let go of its own inside any call.
    // NOLINTBEGIN(performance-unnecessary-copy-initialization)
    const BaseClassSharedPointer source = sourceRoot;
    const BaseClassSharedPointer target = targetRoot;
    const QSharedPointer<UnitManipulatorBase> unitManipulator = manipulator;
    const QVariantList values = parameters;
    // NOLINTEND(performance-unnecessary-copy-initialization)
    QStringList traversed = urls;

    DependencyWalker walker;
    bool ok = walker.initDependencyGraphByJsonString(dependencyJson);
    if (traversed.isEmpty()) {
        traversed = walker.getDependencyUrlList();
    }
    if (traversed.isEmpty()) {
        traversed.append(QLatin1String(""));
    }
    QVariantList results;
    for (const QString& url : qAsConst(traversed)) {
        const bool answered = walker.traverseDependencyGraph(url, source, target, results, changed,
                                                             values, unitManipulator);
        ok = ok && answered; // every URL runs, also after one that failed
    }
    return ok;
}
