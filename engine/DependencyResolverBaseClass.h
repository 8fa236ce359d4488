#ifndef UNITFLOW_DEPENDENCYRESOLVERBASECLASS_H
#define UNITFLOW_DEPENDENCYRESOLVERBASECLASS_H

#include "Export.h"
#include "host/ConfigurationAndProcessDataBase.h"

#include <QDir>
#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QVariantList>

class ConfigurationManifestHandler;
class UnitManipulatorBase;

/// Resolves a dependency between a source and a target instance. The host derives its resolver
/// from this class and overrides the two hooks.
///
/// Every `resolveDependency` fetches the description named `dependencyName`, builds a walker of its
/// own and runs it. Arguments that all forms share:
/// - `urls`: the written URLs, run one after the other. Empty: every plain URL that the description
///   watches, or, if it watches none, one run with the empty URL.
/// - `parameters`: handed to the commands.
/// - `manipulator`: asked by commands about each unit they wrote; may be null.
/// - `changed`: set to true when a leaf of the target changed, never set to false.
/// - `isProcess`: the target is a process description. The source is always a configuration.
///
/// The result is true only when the run for each URL made a command succeed; every URL is run all
/// the same. A missing tree is not a failure: it is reported as a warning and gives true. A missing
/// description gives false without a message.
///
/// A resolver is used by one thread at a time. It does not own the manifest handler.
class UNITFLOW_EXPORT DependencyResolverBaseClass : public QObject {
    Q_OBJECT

public:
    /// The folders are those of `PropertyManagerConst` for `basePath`. The origins stand for this
    /// resolver in everything it stores.
    DependencyResolverBaseClass(const QString& basePath, const QString& originFirst,
                                const QString& originSecond);
    ~DependencyResolverBaseClass() override;

    /// Hook: resolve everything. Does nothing and returns false here.
    virtual bool resolveAllDependency();

    /// Hook: resolve what the instance drives. Does nothing and returns false here.
    virtual bool resolveDependencyOfInstance(BaseClassSharedPointer& instance,
                                             const QString& instanceName);

    /// Null until it is set.
    ConfigurationManifestHandler* getConfigurationManifestHandler() const;
    /// Borrowed: `handler` outlives every use by this resolver. May be null.
    void setConfigurationManifestHandler(ConfigurationManifestHandler* handler);

    /// Copies the modification times of the instances that this resolver stored (those that the
    /// host's register lists under both its origins) into the manifest, then has the manifest
    /// written, once and in any case. Failures are warnings: no handler set, an entry that cannot
    /// be updated.
    void updateConfigurationManifest();

    /// Instances in the resolver's own folders; for a caller who does not ask for `changed`.
    bool resolveDependency(const QString& sourceInstance, const QString& targetInstance,
                           const QString& dependencyName, bool isProcess, const QStringList& urls,
                           const QVariantList& parameters,
                           const QSharedPointer<UnitManipulatorBase>& manipulator) const;

    /// Instances in the resolver's own folders.
    bool resolveDependency(const QString& sourceInstance, const QString& targetInstance,
                           const QString& dependencyName, bool& changed, bool isProcess,
                           const QStringList& urls, const QVariantList& parameters,
                           const QSharedPointer<UnitManipulatorBase>& manipulator) const;

    /// Instances in any folders. On success the target is stored, changed or not, and the result
    /// is that of the store. Otherwise nothing is stored and a warning names the two folders and
    /// the description.
    bool resolveDependency(const QDir& sourceFolder, const QString& sourceInstance,
                           const QDir& targetFolder, const QString& targetInstance,
                           const QString& dependencyName, bool& changed, bool isProcess,
                           const QStringList& urls, const QVariantList& parameters,
                           const QSharedPointer<UnitManipulatorBase>& manipulator) const;

    /// Instances in any folders, for a caller who does not ask for `changed`.
    bool resolveDependency(const QDir& sourceFolder, const QString& sourceInstance,
                           const QDir& targetFolder, const QString& targetInstance,
                           const QString& dependencyName, bool isProcess, const QStringList& urls,
                           const QVariantList& parameters,
                           const QSharedPointer<UnitManipulatorBase>& manipulator) const;

    /// Trees that the caller has. Nothing is stored.
    bool resolveDependency(const BaseClassSharedPointer& sourceRoot,
                           const BaseClassSharedPointer& targetRoot, const QString& dependencyName,
                           bool& changed, const QStringList& urls, const QVariantList& parameters,
                           const QSharedPointer<UnitManipulatorBase>& manipulator) const;

    /// Trees that the caller has, for a caller who does not ask for `changed`.
    bool resolveDependency(const BaseClassSharedPointer& sourceRoot,
                           const BaseClassSharedPointer& targetRoot, const QString& dependencyName,
                           const QStringList& urls, const QVariantList& parameters,
                           const QSharedPointer<UnitManipulatorBase>& manipulator) const;

    /// Where every form ends: runs the description text `dependencyJson` on two trees.
    bool resolveDependencyInternal(const BaseClassSharedPointer& sourceRoot,
                                   const BaseClassSharedPointer& targetRoot,
                                   const QString& dependencyJson, bool& changed,
                                   const QStringList& urls, const QVariantList& parameters,
                                   const QSharedPointer<UnitManipulatorBase>& manipulator) const;

private:
    QString configurationFolderPath;
    QString processFolderPath;
    QString dependencyFolderPath;
    QString originFirst;
    QString originSecond;
    ConfigurationManifestHandler* configurationManifestHandler = nullptr;
};

#endif
