#ifndef UNITFLOW_HOST_CONFIGURATIONMANIFESTHANDLER_H
#define UNITFLOW_HOST_CONFIGURATIONMANIFESTHANDLER_H

#include "host/HostExport.h"

#include <QString>
#include <QVariant>

/// The host's writer of the configuration manifest. The resolver borrows it: the host keeps it
/// alive for as long as a resolver may use it.
class UNITFLOW_HOST_API ConfigurationManifestHandler {
public:
    virtual ~ConfigurationManifestHandler() = default;

    /// Sets one property of an instance's entry; false when it cannot. The engine always passes
    /// false as `flag`.
    virtual bool update(const QString& instanceName, const QString& propertyKey,
                        const QVariant& value, bool flag) = 0;

    /// Writes the manifest to its file. The engine ignores the result.
    virtual bool writeToManifestFile() = 0;
};

#endif
