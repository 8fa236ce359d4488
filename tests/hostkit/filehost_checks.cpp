// The checks for hosts on the file host, without a session: what is stored is in its file at once.

#include "LeafJson.h"
#include "filehost/FileManifestHandler.h"
#include "filehost/Workspace.h"
#include "host/PropertyManagerConst.h"
#include "hostkit/Run.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonObject>
#include <QTemporaryDir>

#include <iostream>

namespace {

/// An array's information: an object for each column.
QJsonArray columnsJson(const QStringList& units)
{
    QJsonArray columns;
    for (const QString& unit : units) {
        columns.append(QJsonObject{{"name", "Column"}, {"unitType", unit}});
    }
    return columns;
}

class FileHostAdapter final : public hostkit::Adapter {
public:
    FileHostAdapter(const QString& base, const filehost::Workspace& workspace)
        : base(base), manifest(workspace)
    {}

    QString basePath() override { return base; }

    QString url(const QStringList& path) override { return path.join('/'); }

    QString text(const hostkit::Leaves& leaves) override
    {
        return leavesAsJson(leaves, [](const hostkit::Leaf& leaf) {
            QJsonObject json;
            if (leaf.value.isValid()) {
                json.insert("@value", QJsonValue::fromVariant(leaf.value));
            }
            if (!leaf.unit.isNull()) {
                json.insert("@unitType", leaf.unit);
            }
            if (!leaf.columnUnits.isEmpty()) {
                json.insert("@type", "array");
                json.insert("@arrayInformation", columnsJson(leaf.columnUnits));
            }
            return json;
        });
    }

    void putInstance(const QString& name, bool isProcess, const QString& text) override
    {
        put(isProcess ? PropertyManagerConst::getProcessFolderPath(base)
                      : PropertyManagerConst::getConfigurationFolderPath(base),
            name, text);
    }

    void putDescription(const QString& name, const QString& text) override
    {
        put(PropertyManagerConst::getDependencyFolderPath(base), name, text);
    }

    ConfigurationManifestHandler& manifestHandler() override { return manifest; }

    /// JSON has no such number.
    QVariant refusedUnit() override { return qQNaN(); }

private:
    static void put(const QString& folder, const QString& name, const QString& text)
    {
        const QString path =
            QDir(folder).filePath(name + '.' + PropertyManagerConst::getConfigFileExtension());
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0) {
            qFatal("%s cannot be written", qPrintable(path));
        }
    }

    QString base;
    filehost::FileManifestHandler manifest;
};

} // namespace

int main(int argc, char** argv)
{
    const QTemporaryDir base;
    for (const QString& folder : {PropertyManagerConst::getConfigurationFolderPath(base.path()),
                                  PropertyManagerConst::getProcessFolderPath(base.path()),
                                  PropertyManagerConst::getDependencyFolderPath(base.path())}) {
        QDir().mkpath(folder);
    }
    QList<filehost::Problem> problems;
    const auto workspace = filehost::Workspace::open(base.path(), problems);
    if (!workspace) {
        std::cerr << toText(problems.first()).toStdString() << '\n';
        return 2;
    }
    FileHostAdapter adapter(base.path(), *workspace);
    return hostkit::run(adapter, argc, argv);
}
