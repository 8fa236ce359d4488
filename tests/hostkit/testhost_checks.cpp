// The checks for hosts on the scriptable host of the engine's tests.

#include "Host.h"
#include "LeafJson.h"
#include "ManifestFile.h"
#include "host/PropertyManagerConst.h"
#include "hostkit/Run.h"

#include <QJsonObject>
#include <QTemporaryDir>

namespace {

class TestHostAdapter final : public hostkit::Adapter {
public:
    TestHostAdapter() { host.keepingWhatIsStored = true; }

    QString basePath() override { return base.path(); }

    QString url(const QStringList& path) override { return path.join('/'); }

    QString text(const hostkit::Leaves& leaves) override
    {
        return leavesAsJson(leaves, [](const hostkit::Leaf& leaf) {
            QJsonObject json;
            if (leaf.value.isValid()) {
                json.insert("@val", QJsonValue::fromVariant(leaf.value));
            }
            if (!leaf.unit.isNull()) {
                json.insert("@unit", leaf.unit);
            }
            if (!leaf.columnUnits.isEmpty()) {
                json.insert("@dataType", "an array");
                json.insert("@columns", QJsonArray::fromStringList(leaf.columnUnits));
            }
            return json;
        });
    }

    void putInstance(const QString& name, bool isProcess, const QString& text) override
    {
        const QString folder = isProcess
                                   ? PropertyManagerConst::getProcessFolderPath(base.path())
                                   : PropertyManagerConst::getConfigurationFolderPath(base.path());
        host.instances.insert(folder + '/' + name, testhost::tree(name, text));
    }

    void putDescription(const QString& name, const QString& text) override
    {
        host.descriptions.insert(name, text);
    }

    ConfigurationManifestHandler& manifestHandler() override { return manifest; }

private:
    testhost::Host host;
    QTemporaryDir base;
    ManifestFile manifest{base.path()};
};

} // namespace

int main(int argc, char** argv)
{
    TestHostAdapter adapter;
    return hostkit::run(adapter, argc, argv);
}
