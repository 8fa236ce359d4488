#include "SourceDependencyManager.h"

#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/JsonDataIterator.h"
#include "host/JsonDataIteratorFilter.h"
#include "host/PropertyManagerConst.h"
#include "internal/Warning.h"

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QVariant>

namespace {

constexpr internal::WarningPlace noManifest{
    "SourceDependencyManager", 61,
    "bool SourceDependencyManager::scanManifestFileForDependencyInstances(const QDir&)"};

internal::WarningPlace readingNames(int line)
{
    return {"SourceDependencyManager", line,
            "QStringList SourceDependencyManager::jsonValueToStringList(const QJsonValue&)"};
}

/// The names of all entries whose flag is the boolean true, as the host's iterator finds them.
QJsonValue flaggedInstanceNames(QJsonArray manifest)
{
    const QHash<QString, QVariant> flagged{
        {ConfigurationAndProcessDataDefinitions::getKeyDataPropertyHasDependency(),
         QVariant(true)}};
    JsonDataIteratorFilter filter(QStringLiteral("instanceName"), flagged, true);
    JsonDataIterator iterator(filter);
    iterator.iterate(manifest);
    return iterator.getResult();
}

} // namespace

SourceDependencyManager::SourceDependencyManager() = default;
SourceDependencyManager::SourceDependencyManager(const SourceDependencyManager& other) = default;
SourceDependencyManager&
SourceDependencyManager::operator=(const SourceDependencyManager& other) = default;
SourceDependencyManager::~SourceDependencyManager() = default;

bool SourceDependencyManager::scanManifestFileForDependencyInstances(const QDir& folder)
{
    QFile file(folder.filePath(PropertyManagerConst::getConfigurationManifestFilename()));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        internal::warning(noManifest)
            << "Can't open file " << file.fileName() << " IO Error: " << file.errorString();
        return false;
    }
    const QByteArray text = file.readAll();
    file.close();

    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError) {
        return false;
    }
    dependencySourceInstanceList = jsonValueToStringList(flaggedInstanceNames(document.array()));
    return true;
}

bool SourceDependencyManager::buildsDependency(const QString& instanceName) const
{
    return dependencySourceInstanceList.contains(instanceName);
}

QStringList SourceDependencyManager::getDependencySourceInstanceList() const
{
    return dependencySourceInstanceList;
}

QString SourceDependencyManager::stripPathOfInstanceName(const QString& instanceName)
{
    if (!instanceName.contains(QLatin1Char('/'))) {
        return {};
    }
    return instanceName.section(QLatin1Char('/'), 0, -1);
}

QStringList SourceDependencyManager::jsonValueToStringList(const QJsonValue& value)
{
    if (value.type() != QJsonValue::Array) {
        internal::warning(readingNames(118)) << "Json value is not an array!";
        return {};
    }
    QStringList names;
    const QJsonArray items = value.toArray();
    for (const QJsonValue& item : items) {
        if (item.isString()) {
            names.append(item.toString());
        } else {
            internal::warning(readingNames(112)) << "item" << item << "is not a string!";
        }
    }
    return names;
}
