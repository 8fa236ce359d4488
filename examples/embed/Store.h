#ifndef EMBED_STORE_H
#define EMBED_STORE_H

#include "Tree.h"
#include "host/ConfigurationManifestHandler.h"
#include "host/ModifiedInstanceItem.h"

#include <QDir>
#include <QJsonArray>
#include <QList>

#include <optional>

/// Everything the application keeps, in memory. The engine reaches it through static functions, so
/// there is one store in the process. It is used by one thread, the one that calls the engine.
class Store {
public:
    static Store& instance();

    QHash<QString, BaseClassSharedPointer> trees; ///< by folder and instance name: "folder/name"
    QHash<QString, QString> descriptions;         ///< the texts, by folder and name
    QList<ModifiedInstanceItem> modifications;    ///< who stored what and when, the latest last

private:
    Store() = default;
};

/// Keeps the manifest: a file with an entry for each instance. The engine reads the file by itself
/// when it looks for sources, and has it changed through this class alone.
class Manifest final : public ConfigurationManifestHandler {
public:
    /// The manifest of the configurations below `basePath`.
    explicit Manifest(const QString& basePath);

    bool update(const QString& instanceName, const QString& propertyKey, const QVariant& value,
                bool flag) override;
    bool writeToManifestFile() override;

private:
    QString path;
    std::optional<QJsonArray> entries; // between the first update and the writing
};

#endif
