#include "LeafJson.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

QJsonObject withLeaf(QJsonObject node, const QStringList& path, const QJsonObject& leaf)
{
    const QString& name = path.first();
    node.insert(name,
                path.size() == 1 ? leaf : withLeaf(node.value(name).toObject(), path.mid(1), leaf));
    return node;
}

} // namespace

QString leavesAsJson(const hostkit::Leaves& leaves,
                     const std::function<QJsonObject(const hostkit::Leaf&)>& properties)
{
    QJsonObject root;
    for (const hostkit::Leaf& leaf : leaves) {
        root = withLeaf(root, leaf.path, properties(leaf));
    }
    return QString::fromUtf8(QJsonDocument(root).toJson());
}
