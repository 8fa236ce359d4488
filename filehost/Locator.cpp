#include "filehost/Locator.h"

#include "filehost/Names.h"
#include "host/PropertyManagerConst.h"

#include <QFileInfo>

namespace filehost {

namespace {

constexpr int mostFolders = 256;

} // namespace

Locator::Locator(const Workspace& workspace)
    : workspace(workspace), canonicalRoot(canonicalPath(workspace.directory()))
{}

std::optional<File> Locator::locate(const Instance& instance, QList<Problem>& problems)
{
    const Named what = named(instance.kind);
    QList<Problem> refused;
    if (checkName(what, instance.name, refused)) {
        const QString path = folderOf(workspace.directory(), what) + QLatin1Char('/') +
                             instance.name + QLatin1Char('.') +
                             PropertyManagerConst::getConfigFileExtension();
        const QFileInfo file(path);
        const QString folder = canonicalFolder(file.path());
        if (!file.isSymLink() && file.isFile() && isInside(canonicalRoot, folder)) {
            return File{folder + QLatin1Char('/') + file.fileName(),
                        shownPath(workspace.directory(), path)};
        }
    }
    // Whatever is the matter, it is found out there.
    const QString path = workspace.instancePath(instance, problems);
    return path.isEmpty()
               ? std::nullopt
               : std::optional<File>({canonicalPath(path), shownPath(workspace.directory(), path)});
}

QString Locator::canonicalFolder(const QString& folder)
{
    const auto known = canonicalFolders.constFind(folder);
    if (known != canonicalFolders.constEnd()) {
        return *known;
    }
    if (canonicalFolders.size() == mostFolders) {
        canonicalFolders.clear();
    }
    return *canonicalFolders.insert(folder, canonicalPath(folder));
}

} // namespace filehost
