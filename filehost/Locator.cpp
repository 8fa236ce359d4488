#include "filehost/Locator.h"

#include "filehost/Names.h"
#include "host/PropertyManagerConst.h"

#include <QFile>
#include <QFileInfo>

#include <dirent.h>
#include <memory>

namespace filehost {

namespace {

constexpr int mostFolders = 256;
constexpr int fewFiles = 64;

/// The names of what is no regular file, or may be none; nothing when the folder cannot be read.
std::optional<QSet<QString>> otherThanFiles(const QString& folder)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(
        opendir(QFile::encodeName(folder).constData()), closedir);
    if (!entries) {
        return std::nullopt;
    }
    QSet<QString> others;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): each call has a folder of its own
    while (const dirent* entry = readdir(entries.get())) {
        if (entry->d_type != DT_REG) {
            others.insert(QFile::decodeName(entry->d_name));
        }
    }
    return others;
}

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
        Folder& folder = folderAt(path.left(nameAt));
        if (folder.isInside && isPlainFile(folder, path, nameAt)) {
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

Locator::Folder& Locator::folderAt(const QString& path)
{
    const auto known = folders.find(path);
    if (known != folders.end()) {
        return *known;
    }
    if (folders.size() == mostFolders) {
        folders.clear();
    }
    const QString canonical = canonicalPath(path);
    return *folders.insert(path, {canonical, isInside(canonicalRoot, canonical), 0, std::nullopt});
}

/// Whether a file is one, and no symbolic link; a missing one may count as such.
bool Locator::isPlainFile(Folder& folder, const QString& path, int nameAt)
{
    if (!folder.others && ++folder.asked == fewFiles) {
        folder.others = otherThanFiles(folder.canonical);
    }
    if (folder.others) {
        return !folder.others->contains(path.mid(nameAt + 1));
    }
    const QFileInfo file(path);
    return !file.isSymLink() && file.isFile();
}

} // namespace filehost
