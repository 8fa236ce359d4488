#ifndef UNITFLOW_HOST_CONFIGURATIONDATAANDPROCESSDESCRIPTIONACCESS_H
#define UNITFLOW_HOST_CONFIGURATIONDATAANDPROCESSDESCRIPTIONACCESS_H

#include "host/ConfigurationAndProcessDataBase.h"

#include <QDir>

/// The host's store of dependency descriptions and instance trees. Called by the resolver only.
class UNITFLOW_HOST_API ConfigurationDataAndProcessDescriptionAccess {
public:
    /// The text of the named dependency description, empty when there is none.
    static QString getDependency(const QDir& dependencyFolder, const QString& dependencyName);

    /// The tree of an instance in `folder`, as a process description or as a configuration; null
    /// when it cannot be had. The caller may change the tree it gets: nothing of that is kept
    /// unless it is stored.
    static BaseClassSharedPointer
    getParsedConfigurationProcessDescription(const QDir& folder, const QString& instanceName,
                                             bool isProcess);

    /// Stores `tree` as the instance's description on behalf of the two origins. True on success.
    /// `tree` may be null; the host decides what that means.
    static bool setParsedConfigurationProcessDescription(
        const QDir& folder, const QString& originFirst, const QString& originSecond,
        const QString& instanceName, BaseClassSharedPointer tree, bool isProcess);
};

#endif
