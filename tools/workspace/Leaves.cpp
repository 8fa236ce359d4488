#include "tools/workspace/Leaves.h"

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

QList<Leaf> leavesInside(const BaseClassSharedPointer& node, const QString& prefix);

QList<Leaf> leavesAt(const BaseClassSharedPointer& node, const QString& url)
{
    QList<Leaf> leaves;
    if (isLeaf(node) && !url.isEmpty()) { // the empty URL names nothing
        leaves.append(leafAt(node, url));
    }
    return leaves + leavesInside(node, url + QLatin1Char('/'));
}

/// Those of the children. An empty name is one, so an empty URL is not always the root's.
QList<Leaf> leavesInside(const BaseClassSharedPointer& node, const QString& prefix)
{
    QList<Leaf> leaves;
    QStringList names = node->getChildMap().keys();
    std::sort(names.begin(), names.end());
    for (const QString& name : names) {
        leaves += leavesAt(node->getChildMap().value(name), prefix + name);
    }
    return leaves;
}

} // namespace

QList<Leaf> leavesBelow(const BaseClassSharedPointer& node, const QString& url)
{
    return url.isEmpty() ? leavesInside(node, QString()) : leavesAt(node, url);
}

bool isLeaf(const BaseClassSharedPointer& node)
{
    return node->getChildMap().isEmpty() ||
           node->getDataProperty(Keys::getKeyDataPropertyValue()).isValid() ||
           node->getDataProperty(Keys::getKeyDataPropertyUnitType()).isValid();
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
