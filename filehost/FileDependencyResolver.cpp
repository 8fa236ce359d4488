#include "filehost/FileDependencyResolver.h"

#include "filehost/services/Reporting.h"
#include "host/ConfigurationDataAndProcessDescriptionAccess.h"
#include "host/PropertyManagerConst.h"

namespace filehost {

namespace {

using Access = ConfigurationDataAndProcessDescriptionAccess;

} // namespace

QString FileDependencyResolver::origin()
{
    return QStringLiteral("unitflow");
}

FileDependencyResolver::FileDependencyResolver(const Workspace& workspace)
    : DependencyResolverBaseClass(workspace.directory(), origin(), workspace.directory()),
      workspace(workspace)
{}

bool FileDependencyResolver::resolveAllDependency()
{
    QList<Problem> problems;
    const QList<Link> links = workspace.links(problems);
    report(problems);
    bool isResolved = problems.isEmpty();
    for (const Link& link : links) {
        bool changed = false;
        isResolved = resolveLink(link, {}, changed) && isResolved;
    }
    return isResolved;
}

bool FileDependencyResolver::resolveDependencyOfInstance(BaseClassSharedPointer& instance,
                                                         const QString& instanceName)
{
    const QString sourceFolder =
        PropertyManagerConst::getConfigurationFolderPath(workspace.directory());
    if (instance.isNull()) {
        instance =
            Access::getParsedConfigurationProcessDescription(sourceFolder, instanceName, false);
    }
    QList<Problem> problems;
    const QList<Link> links = workspace.links(problems);
    report(problems);
    bool isResolved = problems.isEmpty() && !instance.isNull();
    for (const Link& link : links) {
        if (link.source == instanceName && !instance.isNull()) {
            isResolved = resolveFrom(instance, link) && isResolved;
        }
    }
    return isResolved;
}

bool FileDependencyResolver::resolveLink(const Link& link, const QStringList& urls,
                                         bool& changed) const
{
    return resolveDependency(link.source, link.target, link.dependency, changed, link.isProcess,
                             urls, link.parameters, {});
}

/// The other forms load the source themselves, but the caller's tree may hold what is not stored.
bool FileDependencyResolver::resolveFrom(const BaseClassSharedPointer& source,
                                         const Link& link) const
{
    const QDir folder(
        link.isProcess ? PropertyManagerConst::getProcessFolderPath(workspace.directory())
                       : PropertyManagerConst::getConfigurationFolderPath(workspace.directory()));
    const BaseClassSharedPointer target =
        Access::getParsedConfigurationProcessDescription(folder, link.target, link.isProcess);
    bool changed = false;
    return !target.isNull() &&
           resolveDependency(source, target, link.dependency, changed, {}, link.parameters, {}) &&
           Access::setParsedConfigurationProcessDescription(folder, origin(), workspace.directory(),
                                                            link.target, target, link.isProcess);
}

} // namespace filehost
