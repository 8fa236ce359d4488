#include "host/ConfigurationAndProcessDataTools.h"

#include "host/ConfigurationAndProcessDataDefinitions.h"

QVariant ConfigurationAndProcessDataTools::extractConfigValue(const QString& url,
                                                              const BaseClassSharedPointer& root)
{
    if (root.isNull()) {
        return {};
    }
    const BaseClassSharedPointer leaf = root->getChildData(url);
    if (leaf.isNull()) {
        return {};
    }
    return leaf->getDataProperty(ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue());
}
