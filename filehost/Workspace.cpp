#include "filehost/Workspace.h"

#include "filehost/Files.h"
#include "filehost/LinkReader.h"
#include "filehost/Manifest.h"
#include "filehost/Names.h"
#include "host/PropertyManagerConst.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <tuple>
#include <utility>

namespace filehost {

bool operator==(const Instance& left, const Instance& right)
{
    return left.kind == right.kind && left.name == right.name;
}

bool operator<(const Instance& left, const Instance& right)
{
    return std::tie(left.kind, left.name) < std::tie(right.kind, right.name);
}

namespace {

QStringList foldersOf(const QString& root)
{
    return {folderOf(root, Named::Configuration), folderOf(root, Named::Process),
            folderOf(root, Named::Description)};
}

bool isFolder(const QString& path)
{
    return QFileInfo(path).isDir();
}

/// Adds a problem for each folder of a workspace that is there but cannot be read.
bool checkFoldersOf(const QString& root, QList<Problem>& problems)
{
    bool areReadable = true;
    for (const QString& folder : foldersOf(root)) {
        if (const std::optional<Problem> unreadable = unreadableFolder(root, folder)) {
            problems.append(*unreadable);
            areReadable = false;
        }
    }
    return areReadable;
}

/// Why a folder is no workspace.
void explainNoWorkspace(const QString& directory, const QString& root, QList<Problem>& problems)
{
    if (std::optional<Problem> unreadable = unreadableFolder(QFileInfo(root).path(), root)) {
        unreadable->file = directory;
        problems.append(*unreadable);
        return;
    }
    if (!checkFoldersOf(root, problems)) {
        return;
    }
    const QString wrong =
        isFolder(root)
            ? QStringLiteral("this folder is no workspace: it has no configuration/, process/ or "
                             "dependency/")
            : QStringLiteral("there is no such folder");
    problems.append({Problem::Code::Missing, directory, 0, 0, wrong,
                     QStringLiteral("unitflow init DIR makes a workspace")});
}

} // namespace

Workspace::Workspace(QString directory) : root(std::move(directory)) {}

std::optional<Workspace> Workspace::open(const QString& directory, QList<Problem>& problems)
{
    const QString root = QDir::cleanPath(QDir(directory).absolutePath());
    const QStringList folders = foldersOf(root);
    if (std::any_of(folders.begin(), folders.end(), isFolder)) {
        return Workspace(root);
    }
    explainNoWorkspace(directory, root, problems);
    return std::nullopt;
}

QString Workspace::directory() const
{
    return root;
}

QStringList Workspace::instanceNames(Kind kind) const
{
    return namesIn(folderOf(root, named(kind)), named(kind));
}

QStringList Workspace::dependencyNames() const
{
    return namesIn(folderOf(root, Named::Description), Named::Description);
}

QList<Link> Workspace::links(QList<Problem>& problems) const
{
    const QString name = QStringLiteral("links.json");
    const File file{QDir(root).filePath(name), name};
    if (!exists(file)) {
        return {};
    }
    if (leadsOut(root, file.path)) {
        problems.append(leadingOut(root, file.path, QStringLiteral("\"%1\"").arg(name)));
        return {};
    }
    const std::shared_ptr<const json::JsonText> text = readJson(file, problems);
    return text ? readLinks(*text, problems) : QList<Link>();
}

bool Workspace::checkFolders(QList<Problem>& problems) const
{
    return checkFoldersOf(root, problems);
}

bool Workspace::checkManifest(QList<Problem>& problems) const
{
    std::shared_ptr<const json::JsonText> text;
    if (!readManifest(root, text, problems)) {
        return false;
    }
    if (!text) {
        problems.append({Problem::Code::Missing, manifestFile(root).shown, 0, 0,
                         QStringLiteral("there is no manifest"),
                         QStringLiteral("make one that flags the sources: [{\"instanceName\": "
                                        "\"...\", \"hasDependency\": true}, ...]")});
        return false;
    }
    return true;
}

QString Workspace::instancePath(const Instance& instance, QList<Problem>& problems) const
{
    const Named what = named(instance.kind);
    return confinedPath(root, folderOf(root, what), what, instance.name, problems);
}

QString Workspace::dependencyPath(const QString& name, QList<Problem>& problems) const
{
    return confinedPath(root, folderOf(root, Named::Description), Named::Description, name,
                        problems);
}

} // namespace filehost
