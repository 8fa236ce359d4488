#include "hostkit/Adapter.h"

#include "host/ConfigurationAndProcessDataParser.h"
#include "host/PropertyManagerConst.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace hostkit {

namespace {

QDir configurationFolder(const QString& basePath)
{
    return {PropertyManagerConst::getConfigurationFolderPath(basePath)};
}

QString manifestPath(const QString& basePath)
{
    return configurationFolder(basePath).filePath(
        PropertyManagerConst::getConfigurationManifestFilename());
}

} // namespace

Adapter::~Adapter() = default;

BaseClassSharedPointer Adapter::tree(const Leaves& leaves)
{
    return ConfigurationAndProcessDataParser().parseFromJson(
        text(leaves), PropertyManagerConst::getConfigFileExtension());
}

void Adapter::putManifest(const QJsonArray& entries)
{
    const QString base = basePath();
    QFile file(manifestPath(base));
    if (!configurationFolder(base).mkpath(QStringLiteral(".")) ||
        !file.open(QIODevice::WriteOnly)) {
        qWarning() << "The manifest cannot be written:" << file.fileName() << file.errorString();
        return; // the checks find that it is not there
    }
    file.write(QJsonDocument(entries).toJson());
}

QVariant Adapter::manifestValue(const QString& instanceName, const QString& key)
{
    QFile file(manifestPath(basePath()));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QJsonArray entries = QJsonDocument::fromJson(file.readAll()).array();
    for (const QJsonValue& entry : entries) {
        const QJsonObject properties = entry.toObject();
        if (properties.value(QStringLiteral("instanceName")) == instanceName) {
            return properties.value(key).toVariant();
        }
    }
    return {};
}

QString Adapter::brokenText()
{
    return QStringLiteral("{ \"A\": ");
}

QVariant Adapter::refusedUnit()
{
    return {};
}

} // namespace hostkit
