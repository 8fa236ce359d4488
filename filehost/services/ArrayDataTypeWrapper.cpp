#include "host/ArrayDataTypeWrapper.h"

#include "filehost/services/ArrayDataTypeWrapperPrivate.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"

ArrayDataTypeWrapper::ArrayDataTypeWrapper(const QVariantList& value,
                                           const QVariantList& arrayInformation)
    : d(std::make_unique<Private>(Private{value, arrayInformation}))
{}

ArrayDataTypeWrapper::~ArrayDataTypeWrapper() = default;

QVariantList ArrayDataTypeWrapper::getArrayValueContent() const
{
    return d->rows;
}

int ArrayDataTypeWrapper::setArrayInfoWithStatus(const BaseClassSharedPointer& root,
                                                 const QString& url)
{
    constexpr int refused = 2;
    if (root.isNull()) {
        return refused;
    }
    const BaseClassSharedPointer leaf = root->getChildData(url);
    if (leaf.isNull()) {
        return refused;
    }
    return leaf->setDataProperty(
        ConfigurationAndProcessDataDefinitions::getKeyDataPropertyArrayInformation(), d->columns);
}
