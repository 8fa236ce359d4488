#include "MemoryTree.h"

MemoryTree& MemoryTree::make(const QString& url)
{
    const int end = url.indexOf('/');
    QSharedPointer<MemoryTree>& child = children[url.left(end)];
    if (child.isNull()) {
        child.reset(new MemoryTree);
    }
    return end < 0 ? *child : child->make(url.mid(end + 1));
}

BaseClassSharedPointer MemoryTree::getChildData(const QString& url)
{
    const MemoryTree* node = this;
    for (int start = 0;;) {
        const int end = url.indexOf('/', start);
        const auto child = node->children.constFind(url.mid(start, end - start));
        if (child == node->children.constEnd()) {
            return {};
        }
        if (end < 0) {
            return *child;
        }
        node = child->data();
        start = end + 1;
    }
}

bool MemoryTree::hasChildData(const QString& url)
{
    return !getChildData(url).isNull();
}

QVariant MemoryTree::getDataProperty(const QString& key)
{
    return properties.value(key);
}

int MemoryTree::setDataProperty(const QString& key, const QVariant& value)
{
    QVariant& property = properties[key];
    if (property == value) {
        return 1; // accepted, not changed
    }
    property = value;
    return 0;
}
