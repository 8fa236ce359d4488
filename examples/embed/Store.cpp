#include "Store.h"

#include "host/ConfigurationModificationHandler.h"
#include "host/PropertyManagerConst.h"

#include <QJsonDocument>
#include <QSaveFile>

#include <algorithm>

Store& Store::instance()
{
    static Store store;
    return store;
}

Manifest::Manifest(const QString& basePath)
    : path(QDir(PropertyManagerConst::getConfigurationFolderPath(basePath))
               .filePath(PropertyManagerConst::getConfigurationManifestFilename()))
{}

// The engine calls this once for each modification and then has the file written, once.
bool Manifest::update(const QString& instanceName, const QString& propertyKey,
                      const QVariant& value, bool /*flag*/)
{
    if (!entries) {
        QFile file(path); // one that is not there yet has no entries
        entries = file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).array()
                                                 : QJsonArray();
    }
    const auto found = std::find_if(entries->begin(), entries->end(), [&](const QJsonValue& entry) {
        return entry.toObject().value("instanceName") == instanceName;
    });
    QJsonObject entry = found == entries->end() ? QJsonObject{{"instanceName", instanceName}}
                                                : QJsonValue(*found).toObject();
    entry.insert(propertyKey, QJsonValue::fromVariant(value));
    if (found == entries->end()) {
        entries->append(entry);
    } else {
        *found = entry; // in its place: the order of the manifest is that of the sources
    }
    return true;
}

bool Manifest::writeToManifestFile()
{
    if (!entries) {
        return true; // nothing was updated
    }
    QSaveFile file(path);
    const bool written = QFileInfo(path).dir().mkpath(".") && file.open(QIODevice::WriteOnly) &&
                         file.write(QJsonDocument(*entries).toJson()) >= 0 && file.commit();
    entries.reset();
    return written;
}

ConfigurationModificationHandler* ConfigurationModificationHandler::getInstance()
{
    static ConfigurationModificationHandler handler;
    return &handler;
}

// A copy, and nothing is forgotten: every resolver of the process reads the whole register and
// picks what it stored itself.
void ConfigurationModificationHandler::getModifiedInstances(
    QList<ModifiedInstanceItem>& items) const
{
    items = Store::instance().modifications;
}
