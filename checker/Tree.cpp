#include "checker/Tree.h"

#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataTools.h"

#include <algorithm>

namespace checker {

using Keys = ConfigurationAndProcessDataDefinitions;

namespace {

/// What nothing stands below, or what has what only leaves have.
bool isLeafNode(const BaseClassSharedPointer& node)
{
    return node->getChildMap().isEmpty() ||
           node->getDataProperty(Keys::getKeyDataPropertyValue()).isValid() ||
           node->getDataProperty(Keys::getKeyDataPropertyUnitType()).isValid();
}

void collectLeaves(const BaseClassSharedPointer& node, const QString& prefix, QStringList& urls)
{
    const QHash<QString, BaseClassSharedPointer>& children = node->getChildMap();
    for (auto child = children.cbegin(); child != children.cend(); ++child) {
        const QString url = prefix + child.key();
        const BaseClassSharedPointer& below = child.value();
        if (isLeafNode(below)) {
            urls.append(url);
        }
        collectLeaves(below, url + QLatin1Char('/'), urls);
    }
}

} // namespace

Tree::Tree(const BaseClassSharedPointer& root) : top(root) {}

BaseClassSharedPointer Tree::at(const QString& url) const
{
    return top->getChildData(url);
}

bool Tree::isLeaf(const QString& url) const
{
    const BaseClassSharedPointer node = at(url);
    return !node.isNull() && isLeafNode(node);
}

QVariant Tree::valueAt(const QString& url) const
{
    return ConfigurationAndProcessDataTools::extractConfigValue(url, top);
}

const QStringList& Tree::leaves() const
{
    if (!collected) {
        collected.emplace();
        collectLeaves(top, QString(), *collected);
        std::sort(collected->begin(), collected->end());
    }
    return *collected;
}

} // namespace checker
