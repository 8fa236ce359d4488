#ifndef UNITFLOW_HOST_CONFIGURATIONMODIFICATIONHANDLER_H
#define UNITFLOW_HOST_CONFIGURATIONMODIFICATIONHANDLER_H

#include "host/HostExport.h"
#include "host/ModifiedInstanceItem.h"

#include <QList>

/// The host's register of modified instances, one in a process.
class UNITFLOW_HOST_API ConfigurationModificationHandler {
public:
    /// The register; never null, owned by the host.
    static ConfigurationModificationHandler* getInstance();

    /// Fills `items` with the modifications recorded so far, in the order in which they are to be
    /// applied. To be found again, a description stored through
    /// `ConfigurationDataAndProcessDescriptionAccess` is recorded with the origins given there.
    void getModifiedInstances(QList<ModifiedInstanceItem>& items) const;
};

#endif
