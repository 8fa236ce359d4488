#ifndef UNITFLOW_HOST_SYSTEMINFORMATIONMANAGERREGISTRYDEFINITIONS_H
#define UNITFLOW_HOST_SYSTEMINFORMATIONMANAGERREGISTRYDEFINITIONS_H

#include "host/HostExport.h"

#include <QString>

/// Keys of the host's system information.
class UNITFLOW_HOST_API SystemInformationManagerRegistryDefinitions {
public:
    /// The key under which a manifest entry keeps its last-modified time.
    static QString getKeyLastModified();
};

#endif
