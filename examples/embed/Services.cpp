// The static functions and small classes through which the engine reaches the application, in the
// order in which a host is best written. The steps are those of docs/integrate-a-host.md; what is
// missing here stands in Tree.cpp and Store.cpp.

#include "Store.h"
#include "host/Array2dDataTypeWrapper.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataParser.h"
#include "host/ConfigurationAndProcessDataTools.h"
#include "host/ConfigurationDataAndProcessDescriptionAccess.h"
#include "host/JsonDataIterator.h"
#include "host/JsonDataIteratorFilter.h"
#include "host/PropertyManagerConst.h"
#include "host/SystemInformationManagerRegistryDefinitions.h"

#include <QDateTime>
#include <QJsonDocument>

#include <algorithm>

using Definitions = ConfigurationAndProcessDataDefinitions;

// Step 1: names. The engine spells no key, folder or file name itself.

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue()
{
    return "@value";
}
QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyUnitType()
{
    return "@unit";
}
QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyType()
{
    return "@type";
}
QString ConfigurationAndProcessDataDefinitions::getKeyDataTypeArray()
{
    return "array";
}
QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyArrayInformation()
{
    return "@columns";
}
QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyHasDependency()
{
    return "hasDependency";
}
QString SystemInformationManagerRegistryDefinitions::getKeyLastModified()
{
    return "lastModified";
}

QString PropertyManagerConst::getConfigurationFolderPath(const QString& basePath)
{
    return basePath + "/configuration";
}
QString PropertyManagerConst::getProcessFolderPath(const QString& basePath)
{
    return basePath + "/process";
}
QString PropertyManagerConst::getDependencyFolderPath(const QString& basePath)
{
    return basePath + "/dependency";
}
QString PropertyManagerConst::getConfigFileExtension()
{
    return "json";
}
QString PropertyManagerConst::getConfigurationManifestFilename()
{
    return "manifest.json";
}

// Steps 2 and 3: texts and values.

QVariant ConfigurationAndProcessDataTools::extractConfigValue(const QString& url,
                                                              const BaseClassSharedPointer& root)
{
    const BaseClassSharedPointer leaf = root.isNull() ? root : root->getChildData(url);
    return leaf.isNull() ? QVariant()
                         : leaf->getDataProperty(Definitions::getKeyDataPropertyValue());
}

ConfigurationAndProcessDataParser::ConfigurationAndProcessDataParser() = default;
ConfigurationAndProcessDataParser::~ConfigurationAndProcessDataParser() = default;

// Null tells the engine that the text is broken; an empty tree would be a description that asks for
// nothing.
BaseClassSharedPointer
ConfigurationAndProcessDataParser::parseFromJson(const QString& json,
                                                 const QString& /*fileExtension*/) const
{
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    return document.isObject() ? BaseClassSharedPointer(new Tree(document.object()))
                               : BaseClassSharedPointer();
}

// Steps 4 and 5: tables and arrays. The rows of a table stand in the value just as the engine wants
// them. The array information of a leaf is a list with the unit of each column.

class ArrayDataTypeWrapper::Private {
public:
    QVariantList rows;
    QVariantList columns;
};

ArrayDataTypeWrapper::ArrayDataTypeWrapper(const QVariantList& value,
                                           const QVariantList& arrayInformation)
    : d(new Private{value, arrayInformation})
{}

ArrayDataTypeWrapper::~ArrayDataTypeWrapper() = default;

QVariantList ArrayDataTypeWrapper::getArrayValueContent() const
{
    return d->rows;
}

// Only the columns are written. The engine made this wrapper without the leaf's rows.
int ArrayDataTypeWrapper::setArrayInfoWithStatus(const BaseClassSharedPointer& root,
                                                 const QString& url)
{
    const BaseClassSharedPointer leaf = root.isNull() ? root : root->getChildData(url);
    return leaf.isNull() ? NotWritten
                         : leaf->setDataProperty(Definitions::getKeyDataPropertyArrayInformation(),
                                                 d->columns);
}

Array2dDataTypeWrapper::Array2dDataTypeWrapper(const QVariantList& value,
                                               const QVariantList& arrayInformation)
    : ArrayDataTypeWrapper(value, arrayInformation)
{}

Array2dDataTypeWrapper::~Array2dDataTypeWrapper() = default;

QStringList Array2dDataTypeWrapper::getColumnUnitTypes() const
{
    return QVariant(d->columns).toStringList();
}

bool Array2dDataTypeWrapper::setColumnUnitTypes(const QStringList& unitTypes)
{
    if (unitTypes.size() != d->columns.size()) {
        return false;
    }
    std::copy(unitTypes.begin(), unitTypes.end(), d->columns.begin());
    return true;
}

// Step 6: the store. The engine gets copies: what it writes must not be seen before it is stored,
// since a resolution that fails is not.

QString ConfigurationDataAndProcessDescriptionAccess::getDependency(const QDir& dependencyFolder,
                                                                    const QString& dependencyName)
{
    return Store::instance().descriptions.value(dependencyFolder.filePath(dependencyName));
}

BaseClassSharedPointer
ConfigurationDataAndProcessDescriptionAccess::getParsedConfigurationProcessDescription(
    const QDir& folder, const QString& instanceName, bool /*isProcess*/)
{
    const BaseClassSharedPointer tree =
        Store::instance().trees.value(folder.filePath(instanceName));
    return tree.isNull() ? tree : static_cast<const Tree&>(*tree).copy();
}

// The origins come from the resolver. Noted here, they are how it finds its own modifications when
// it updates the manifest.
bool ConfigurationDataAndProcessDescriptionAccess::setParsedConfigurationProcessDescription(
    const QDir& folder, const QString& originFirst, const QString& originSecond,
    const QString& instanceName, BaseClassSharedPointer tree, bool /*isProcess*/)
{
    if (tree.isNull()) {
        return false; // the target was not there, and need not be made
    }
    Store& store = Store::instance();
    store.trees.insert(folder.filePath(instanceName), tree);
    store.modifications.append({originFirst, originSecond, instanceName,
                                QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs)});
    return true;
}

// Step 8: iteration over the manifest, for `SourceDependencyManager`. This application's manifest
// is flat, so only the objects of the array itself are visited.

class JsonDataIterator::Private {
public:
    JsonDataIteratorObjectBase& visitor;
};

JsonDataIterator::JsonDataIterator(JsonDataIteratorObjectBase& visitor) : d(new Private{visitor}) {}

JsonDataIterator::~JsonDataIterator() = default;

void JsonDataIterator::iterate(QJsonArray& array)
{
    for (const QJsonValue& value : qAsConst(array)) {
        d->visitor.visitObject(value.toObject());
    }
}

QJsonValue JsonDataIterator::getResult() const
{
    return d->visitor.getResult();
}

class JsonDataIteratorFilter::Private {
public:
    QString resultKey;
    QJsonObject filter;
    QJsonArray found;
};

JsonDataIteratorFilter::JsonDataIteratorFilter(const QString& resultKey,
                                               const QHash<QString, QVariant>& filter,
                                               bool /*flag*/)
    : d(new Private{resultKey, QJsonObject::fromVariantHash(filter), {}})
{}

JsonDataIteratorFilter::~JsonDataIteratorFilter() = default;

// JSON values are equal only when their types are: a flag that is 1 or "true" is not true.
void JsonDataIteratorFilter::visitObject(const QJsonObject& object)
{
    for (auto wanted = d->filter.constBegin(); wanted != d->filter.constEnd(); ++wanted) {
        if (object.value(wanted.key()) != wanted.value()) {
            return;
        }
    }
    d->found.append(object.value(d->resultKey));
}

QJsonValue JsonDataIteratorFilter::getResult() const
{
    return d->found;
}
