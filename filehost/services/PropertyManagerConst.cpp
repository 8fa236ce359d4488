#include "host/PropertyManagerConst.h"

#include <QDir>

QString PropertyManagerConst::getConfigurationFolderPath(const QString& basePath)
{
    return QDir(basePath).filePath(QStringLiteral("configuration"));
}

QString PropertyManagerConst::getProcessFolderPath(const QString& basePath)
{
    return QDir(basePath).filePath(QStringLiteral("process"));
}

QString PropertyManagerConst::getDependencyFolderPath(const QString& basePath)
{
    return QDir(basePath).filePath(QStringLiteral("dependency"));
}

QString PropertyManagerConst::getConfigFileExtension()
{
    return QStringLiteral("json");
}

QString PropertyManagerConst::getConfigurationManifestFilename()
{
    return QStringLiteral("manifest.json");
}
