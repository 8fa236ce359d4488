#include "tools/Leaves.h"

#include "host/ConfigurationAndProcessDataDefinitions.h"

#include <QVariantMap>

#include <algorithm>

namespace tools {

namespace {

using Keys = ConfigurationAndProcessDataDefinitions;

Leaf leafAt(const BaseClassSharedPointer& node, const QString& url)
{
    return {url, node->getDataProperty(Keys::getKeyDataPropertyValue()),
            node->getDataProperty(Keys::getKeyDataPropertyUnitType()),
            node->getDataProperty(Keys::getKeyDataPropertyType()),
            columnsOf(node->getDataProperty(Keys::getKeyDataPropertyArrayInformation()))};
}

} // namespace

bool isLeaf(const BaseClassSharedPointer& node)
{
    return node->getChildMap().isEmpty() ||
           node->getDataProperty(Keys::getKeyDataPropertyValue()).isValid() ||
           node->getDataProperty(Keys::getKeyDataPropertyUnitType()).isValid();
}

QList<Leaf> leavesBelow(const BaseClassSharedPointer& node, const QString& url)
{
    QList<Leaf> leaves;
    if (isLeaf(node) && !url.isEmpty()) {
        leaves.append(leafAt(node, url));
    }

    QStringList names = node->getChildMap().keys();
    std::sort(names.begin(), names.end());
    for (const QString& name : names) {
        const QString childUrl = url.isEmpty() ? name : url + QLatin1Char('/') + name;
        leaves += leavesBelow(node->getChildMap().value(name), childUrl);
    }
    return leaves;
}

QStringList urlsOf(const QList<Leaf>& leaves)
{
    QStringList urls;
    for (const Leaf& leaf : leaves) {
        urls.append(leaf.url);
    }
    return urls;
}

QList<Column> columnsOf(const QVariant& arrayInformation)
{
    QList<Column> columns;
    for (const QVariant& entry : arrayInformation.toList()) {
        const QVariantMap members = entry.toMap();
        columns.append({members.value(QStringLiteral("name")).toString(),
                        members.value(QStringLiteral("unitType")).toString()});
    }
    return columns;
}

} // namespace tools
