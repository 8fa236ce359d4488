#include "filehost/Locator.h"

#include "filehost/Names.h"
#include "host/PropertyManagerConst.h"

#include <QFileInfo>

namespace filehost {

namespace {

constexpr int mostFolders = 256;

} // namespace

Locator::Locator(const Workspace& workspace)
    : workspace(workspace), canonicalRoot(canonicalPath(workspace.directory())),
      configurations(folderOf(workspace.directory(), Named::Configuration)),
      processes(folderOf(workspace.directory(), Named::Process))
{}

std::optional<File> Locator::locate(const Instance& instance, QList<Problem>& problems)
{
    QList<Problem> refused;
    if (checkName(named(instance.kind), instance.name, refused)) {
        const QString& base = instance.kind == Kind::Process ? processes : configurations;
        const QString path = base + QLatin1Char('/') + instance.name + QLatin1Char('.') +
                             PropertyManagerConst::getConfigFileExtension();
        const int nameAt = path.lastIndexOf(QLatin1Char('/'));
        const Folder folder = folderAt(path.left(nameAt));
        const QFileInfo file(path);
        if (folder.isInside && !file.isSymLink() && file.isFile()) {
            return File{folder.canonical + path.midRef(nameAt),
                        shownPath(workspace.directory(), path)};
        }
    }
    // Whatever is the matter, it is found out there.
    const QString path = workspace.instancePath(instance, problems);
    return path.isEmpty()
               ? std::nullopt
               : std::optional<File>({canonicalPath(path), shownPath(workspace.directory(), path)});
}

Locator::Folder Locator::folderAt(const QString& path)
{
    const auto known = folders.constFind(path);
    if (known != folders.constEnd()) {
        return *known;
    }
    if (folders.size() == mostFolders) {
        folders.clear();
    }
    const QString canonical = canonicalPath(path);
    return *folders.insert(path, {canonical, isInside(canonicalRoot, canonical)});
}

} // namespace filehost
