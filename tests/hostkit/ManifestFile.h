#ifndef UNITFLOW_TESTS_HOSTKIT_MANIFESTFILE_H
#define UNITFLOW_TESTS_HOSTKIT_MANIFESTFILE_H

#include "host/ConfigurationManifestHandler.h"

#include <QJsonArray>
#include <QString>

#include <optional>

/// A manifest handler for hosts that have none of their own. It has no defect.
class ManifestFile : public ConfigurationManifestHandler {
public:
    /// The manifest of the configurations below `basePath`.
    explicit ManifestFile(const QString& basePath);

    bool update(const QString& instanceName, const QString& propertyKey, const QVariant& value,
                bool flag) override;
    bool writeToManifestFile() override;

protected:
    /// The entries as they are to be written. Reads the file when nothing was read since the last
    /// writing.
    QJsonArray& entries();

private:
    QString path;
    std::optional<QJsonArray> read;
};

#endif
