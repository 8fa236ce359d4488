#include "ManifestFile.h"

#include "host/PropertyManagerConst.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

ManifestFile::ManifestFile(const QString& basePath)
    : path(QDir(PropertyManagerConst::getConfigurationFolderPath(basePath))
               .filePath(PropertyManagerConst::getConfigurationManifestFilename()))
{}

QJsonArray& ManifestFile::entries()
{
    if (!read) {
        QFile file(path);
        read = file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).array()
                                              : QJsonArray();
    }
    return *read;
}

bool ManifestFile::update(const QString& instanceName, const QString& propertyKey,
                          const QVariant& value, bool /*flag*/)
{
    for (QJsonValueRef entry : entries()) {
        QJsonObject properties = QJsonValue(entry).toObject();
        if (properties.value(QStringLiteral("instanceName")) == instanceName) {
            properties.insert(propertyKey, QJsonValue::fromVariant(value));
            entry = properties;
            return true;
        }
    }
    return false;
}

bool ManifestFile::writeToManifestFile()
{
    const QByteArray text = QJsonDocument(entries()).toJson();
    read.reset();
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}
