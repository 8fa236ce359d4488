// What the engine calls besides the nodes, in the order of the headers in host/.

#include "Node.h"
#include "host/Array2dDataTypeWrapper.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataParser.h"
#include "host/ConfigurationAndProcessDataTools.h"
#include "host/ConfigurationDataAndProcessDescriptionAccess.h"
#include "host/PropertyManagerConst.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

class ArrayDataTypeWrapper::Private {
public:
    QVariantList rows;
};

ArrayDataTypeWrapper::ArrayDataTypeWrapper(const QVariantList& value,
                                           const QVariantList& /*arrayInformation*/)
    : d(new Private{value})
{}

ArrayDataTypeWrapper::~ArrayDataTypeWrapper() = default;

QVariantList ArrayDataTypeWrapper::getArrayValueContent() const
{
    return d->rows;
}

Array2dDataTypeWrapper::Array2dDataTypeWrapper(const QVariantList& value,
                                               const QVariantList& arrayInformation)
    : ArrayDataTypeWrapper(value, arrayInformation)
{}

Array2dDataTypeWrapper::~Array2dDataTypeWrapper() = default;

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue()
{
    return QStringLiteral("@value");
}

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyUnitType()
{
    return QStringLiteral("@unit");
}

ConfigurationAndProcessDataParser::ConfigurationAndProcessDataParser() = default;

// The header allows no trivial destructor.
// NOLINTNEXTLINE(modernize-use-equals-default)
ConfigurationAndProcessDataParser::~ConfigurationAndProcessDataParser() {}

BaseClassSharedPointer
ConfigurationAndProcessDataParser::parseFromJson(const QString& json,
                                                 const QString& /*fileExtension*/) const
{
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    return document.isObject() ? BaseClassSharedPointer(new Node(document.object()))
                               : BaseClassSharedPointer();
}

QVariant ConfigurationAndProcessDataTools::extractConfigValue(const QString& url,
                                                              const BaseClassSharedPointer& root)
{
    const BaseClassSharedPointer leaf = root.isNull() ? root : root->getChildData(url);
    return leaf.isNull() ? QVariant()
                         : leaf->getDataProperty(
                               ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue());
}

QString ConfigurationDataAndProcessDescriptionAccess::getDependency(const QDir& dependencyFolder,
                                                                    const QString& dependencyName)
{
    QFile file(dependencyFolder.filePath(dependencyName));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

BaseClassSharedPointer
ConfigurationDataAndProcessDescriptionAccess::getParsedConfigurationProcessDescription(
    const QDir& folder, const QString& instanceName, bool /*isProcess*/)
{
    return ConfigurationAndProcessDataParser().parseFromJson(getDependency(folder, instanceName),
                                                             QString());
}

// This host keeps its trees in memory and hands them to the resolver itself.
// NOLINTBEGIN(performance-unnecessary-value-param): the header is the engine's
bool ConfigurationDataAndProcessDescriptionAccess::setParsedConfigurationProcessDescription(
    const QDir& /*folder*/, const QString& /*originFirst*/, const QString& /*originSecond*/,
    const QString& /*instanceName*/, BaseClassSharedPointer /*tree*/, bool /*isProcess*/)
{
    return false;
}
// NOLINTEND(performance-unnecessary-value-param)

QString PropertyManagerConst::getConfigurationFolderPath(const QString& basePath)
{
    return basePath + QStringLiteral("/configuration");
}

QString PropertyManagerConst::getProcessFolderPath(const QString& basePath)
{
    return basePath + QStringLiteral("/process");
}

QString PropertyManagerConst::getDependencyFolderPath(const QString& basePath)
{
    return basePath + QStringLiteral("/dependency");
}

QString PropertyManagerConst::getConfigFileExtension()
{
    return QStringLiteral("json");
}
