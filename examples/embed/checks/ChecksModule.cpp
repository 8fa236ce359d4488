// Does this application hold what the engine expects of it? The checks run just like the engine: in
// a module that finds the host's classes in the executable.

#include "ChecksModule.h"

#include "Store.h"
#include "host/PropertyManagerConst.h"
#include "hostkit/Adapter.h"
#include "hostkit/Run.h"

#include <QJsonDocument>
#include <QTemporaryDir>

namespace {

/// The JSON of a leaf, as `Tree` reads it.
QJsonObject leafJson(const hostkit::Leaf& leaf)
{
    QJsonObject json;
    if (leaf.value.isValid()) {
        json.insert("@value", QJsonValue::fromVariant(leaf.value));
    }
    if (!leaf.unit.isNull()) {
        json.insert("@unit", leaf.unit);
    }
    if (!leaf.columnUnits.isEmpty()) {
        json.insert("@type", "array");
        json.insert("@columns", QJsonArray::fromStringList(leaf.columnUnits));
    }
    return json;
}

/// `node` with a leaf at the path.
QJsonObject withLeaf(QJsonObject node, const QStringList& path, const QJsonObject& leaf)
{
    const QString& name = path.first();
    node.insert(name,
                path.size() == 1 ? leaf : withLeaf(node.value(name).toObject(), path.mid(1), leaf));
    return node;
}

class EmbedAdapter final : public hostkit::Adapter {
public:
    QString basePath() override { return base.path(); }

    QString url(const QStringList& path) override { return path.join('.'); }

    QString text(const hostkit::Leaves& leaves) override
    {
        QJsonObject root;
        for (const hostkit::Leaf& leaf : leaves) {
            root = withLeaf(root, leaf.path, leafJson(leaf));
        }
        return QJsonDocument(root).toJson();
    }

    void putInstance(const QString& name, bool isProcess, const QString& text) override
    {
        const QDir folder(isProcess
                              ? PropertyManagerConst::getProcessFolderPath(base.path())
                              : PropertyManagerConst::getConfigurationFolderPath(base.path()));
        const QJsonObject json = QJsonDocument::fromJson(text.toUtf8()).object();
        Store::instance().trees.insert(folder.filePath(name),
                                       BaseClassSharedPointer(new Tree(json)));
    }

    void putDescription(const QString& name, const QString& text) override
    {
        const QDir folder(PropertyManagerConst::getDependencyFolderPath(base.path()));
        Store::instance().descriptions.insert(folder.filePath(name), text);
    }

    ConfigurationManifestHandler& manifestHandler() override { return manifest; }

    QVariant refusedUnit() override { return QVariantList{"K", "bar"}; }

private:
    QTemporaryDir base;
    Manifest manifest{base.path()};
};

} // namespace

int runChecks(int argc, char** argv)
{
    EmbedAdapter adapter;
    return hostkit::run(adapter, argc, argv);
}
