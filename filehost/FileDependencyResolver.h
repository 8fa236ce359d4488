#ifndef UNITFLOW_FILEHOST_FILEDEPENDENCYRESOLVER_H
#define UNITFLOW_FILEHOST_FILEDEPENDENCYRESOLVER_H

#include "DependencyResolverBaseClass.h"
#include "filehost/Export.h"
#include "filehost/Workspace.h"

namespace filehost {

/// The resolver of the file host: runs the links of a workspace.
class UNITFLOW_FILEHOST_EXPORT FileDependencyResolver : public DependencyResolverBaseClass {
public:
    /// What stands in the register for everything that this program stores, before the workspace's
    /// folder.
    static QString origin();

    /// Stores under `origin()` and the workspace's folder.
    explicit FileDependencyResolver(const Workspace& workspace);

    /// Runs every link, in file order, for all URLs that its description watches. True when every
    /// one of them resolved; one that fails does not stop the others.
    bool resolveAllDependency() override;

    /// The same for the links whose source is the instance. `instance` is the source tree to use;
    /// when it is null it is loaded and handed back.
    bool resolveDependencyOfInstance(BaseClassSharedPointer& instance,
                                     const QString& instanceName) override;

    /// One link, loaded and stored by the host services. `urls` as of `resolveDependency`.
    bool resolveLink(const Link& link, const QStringList& urls, bool& changed) const;

private:
    bool resolveFrom(const BaseClassSharedPointer& source, const Link& link) const;

    Workspace workspace;
};

} // namespace filehost

#endif
