#ifndef UNITFLOW_TESTS_HOST_MANIFEST_H
#define UNITFLOW_TESTS_HOST_MANIFEST_H

#include "host/ConfigurationManifestHandler.h"

#include <QList>

namespace testhost {

/// A manifest handler that records its calls with the host.
class ManifestHandler final : public ConfigurationManifestHandler {
public:
    bool update(const QString& instanceName, const QString& propertyKey, const QVariant& value,
                bool flag) override;
    bool writeToManifestFile() override;

    /// Answers the next updates with these, one for each; afterwards the answer is true again.
    QList<bool> updating;
    bool writing = true;
};

} // namespace testhost

#endif
