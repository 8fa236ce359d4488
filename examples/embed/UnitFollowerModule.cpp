// The module that uses the engine's classes. It is linked with the engine like any other code; what
// it and the engine need of the host comes from the executable that loads them.

#include "DependencyResolverBaseClass.h"
#include "SourceDependencyManager.h"
#include "Store.h"
#include "UnitFollower.h"
#include "host/PropertyManagerConst.h"

namespace {

/// The application's resolver: runs the links of an instance.
class Follower final : public UnitFollower, public DependencyResolverBaseClass {
public:
    /// The origins tell what this resolver stores from what others do.
    Follower(const QString& basePath, const QList<Link>& links)
        : DependencyResolverBaseClass(basePath, "embed", "follower"), manifest(basePath),
          links(links)
    {
        setConfigurationManifestHandler(&manifest); // borrowed, so it is a member
        sources.scanManifestFileForDependencyInstances(
            QDir(PropertyManagerConst::getConfigurationFolderPath(basePath)));
    }

    bool valueWritten(const QString& instance, const QString& url) override
    {
        return resolve(instance, {url});
    }

    /// The engine's hook for everything that an instance drives. Nothing was written, so every URL
    /// that a description watches counts.
    bool resolveDependencyOfInstance(BaseClassSharedPointer& /*instance*/,
                                     const QString& instanceName) override
    {
        return resolve(instanceName, {});
    }

private:
    bool resolve(const QString& source, const QStringList& writtenUrls)
    {
        if (!sources.buildsDependency(source)) {
            return true; // most instances drive nothing; the manifest tells which ones do
        }
        bool resolved = true;
        for (const Link& link : qAsConst(links)) {
            if (link.source == source && !resolveDependency(source, link.target, link.description,
                                                            false, writtenUrls, {}, {})) {
                resolved = false; // the other links are resolved all the same
            }
        }
        updateConfigurationManifest(); // the new times of what was stored
        return resolved;
    }

    Manifest manifest;
    QList<Link> links;
    SourceDependencyManager sources;
};

} // namespace

extern "C" __attribute__((visibility("default"))) UnitFollower*
makeUnitFollower(const QString& basePath, const QList<Link>& links)
{
    return new Follower(basePath, links);
}
