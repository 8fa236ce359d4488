#include "host/ConfigurationDataAndProcessDescriptionAccess.h"

#include "filehost/Descriptions.h"
#include "filehost/Files.h"
#include "filehost/Names.h"
#include "filehost/Session.h"
#include "filehost/WorkspaceLock.h"
#include "filehost/services/ModificationRegister.h"
#include "filehost/services/Reporting.h"
#include "filehost/tree/FileTree.h"
#include "filehost/tree/TreeDiff.h"

#include <optional>

namespace {

using filehost::File;
using filehost::Instance;
using filehost::Kind;
using filehost::Named;
using filehost::Problem;
using filehost::Session;
using filehost::tree::FileTreeNode;

/// The folder that names are confined to.
QString rootOf(const QDir& folder)
{
    return QDir::cleanPath(folder.absoluteFilePath(QStringLiteral("..")));
}

/// A file that no session knows of; nothing when its name is refused.
std::optional<File> fileIn(const QDir& folder, Named what, const QString& name,
                           QList<Problem>& problems)
{
    const QString root = rootOf(folder);
    const QString path = filehost::confinedPath(root, folder.absolutePath(), what, name, problems);
    if (path.isEmpty()) {
        return std::nullopt;
    }
    return File{filehost::canonicalPath(path), filehost::shownPath(root, path)};
}

/// The thread's session if a folder is in its workspace.
Session* sessionFor(const QDir& folder)
{
    Session* const session = Session::current();
    const bool isConcerned =
        session != nullptr &&
        filehost::isInside(filehost::canonicalPath(session->workspace().directory()),
                           filehost::canonicalPath(folder.absolutePath()));
    return isConcerned ? session : nullptr;
}

/// An instance of the session's workspace; nothing with a problem when the folder holds none.
std::optional<Instance> instanceIn(const Session& session, const QDir& folder, const QString& name,
                                   QList<Problem>& problems)
{
    const QString root = session.workspace().directory();
    const QString path = filehost::canonicalPath(folder.absolutePath());
    for (const Kind kind : {Kind::Configuration, Kind::Process}) {
        const QString base =
            filehost::canonicalPath(filehost::folderOf(root, filehost::named(kind)));
        if (path == base) {
            return Instance{kind, name};
        }
        if (filehost::isInside(base, path)) {
            return Instance{kind, QDir(base).relativeFilePath(path) + QLatin1Char('/') + name};
        }
    }
    problems.append({Problem::Code::Name, filehost::shownPath(root, path), 0, 0,
                     QStringLiteral("the folder of \"%1\" is none for instances").arg(name),
                     QStringLiteral("put instances into configuration/ or process/")});
    return std::nullopt;
}

enum class Outcome { Failed, Unchanged, Changed };

/// Stores a tree into the file it was read from.
Outcome storeBack(filehost::tree::FileTree& tree, const QString& root, const File& file,
                  QList<Problem>& problems)
{
    const QByteArray bytes = tree.render();
    if (bytes == tree.inFile()->bytes()) {
        return Outcome::Unchanged;
    }
    filehost::WorkspaceLock lock(root);
    if (!lock.take({}, problems)) {
        return Outcome::Failed;
    }
    const auto text = filehost::parseTree(bytes, file.shown, problems);
    if (!text || !filehost::replaceBytes(file, tree.inFile().get(), bytes, problems)) {
        return Outcome::Failed;
    }
    tree.setInFile(text);
    return Outcome::Changed;
}

/// Stores a tree of other origin into a file, which need not exist.
Outcome storeInto(const filehost::tree::FileTree& tree, const QString& root, const File& file,
                  QList<Problem>& problems)
{
    filehost::WorkspaceLock lock(root);
    if (!lock.take({}, problems)) {
        return Outcome::Failed;
    }
    const bool isNew = !filehost::exists(file);
    const auto inFile = isNew ? nullptr : filehost::readTree(file, problems);
    auto text = filehost::parseTree(tree.render(), file.shown, problems);
    if (!text || (!inFile && !isNew)) {
        return Outcome::Failed; // what cannot be read is not to be overwritten
    }
    if (inFile) {
        text = filehost::tree::closestTo(inFile, text);
        if (text->bytes() == inFile->bytes()) {
            return Outcome::Unchanged;
        }
    }
    return filehost::replaceBytes(file, inFile.get(), text->bytes(), problems) ? Outcome::Changed
                                                                               : Outcome::Failed;
}

} // namespace

QString ConfigurationDataAndProcessDescriptionAccess::getDependency(const QDir& dependencyFolder,
                                                                    const QString& dependencyName)
{
    Session* const session = sessionFor(dependencyFolder);
    if (session != nullptr && filehost::canonicalPath(dependencyFolder.absolutePath()) ==
                                  filehost::canonicalPath(filehost::folderOf(
                                      session->workspace().directory(), Named::Description))) {
        return session->description(dependencyName);
    }
    QList<Problem> problems;
    const std::optional<File> file =
        fileIn(dependencyFolder, Named::Description, dependencyName, problems);
    QString text = file ? filehost::readDescription(*file, problems) : QString();
    if (file && !text.isEmpty()) {
        filehost::rememberHandedOut(text, file->shown);
    }
    filehost::explainMissing(problems, Named::Description, dependencyName,
                             dependencyFolder.absolutePath());
    filehost::report(problems);
    return text;
}

BaseClassSharedPointer
ConfigurationDataAndProcessDescriptionAccess::getParsedConfigurationProcessDescription(
    const QDir& folder, const QString& instanceName, bool isProcess)
{
    QList<Problem> problems;
    if (Session* const session = sessionFor(folder)) {
        const std::optional<Instance> instance =
            instanceIn(*session, folder, instanceName, problems);
        filehost::report(problems);
        return instance ? session->load(*instance) : BaseClassSharedPointer();
    }
    const Named what = isProcess ? Named::Process : Named::Configuration;
    const std::optional<File> file = fileIn(folder, what, instanceName, problems);
    const auto text = file ? filehost::readTree(*file, problems) : nullptr;
    filehost::explainMissing(problems, what, instanceName, folder.absolutePath());
    filehost::report(problems);
    return text ? FileTreeNode::makeRoot(text, file->path) : BaseClassSharedPointer();
}

bool ConfigurationDataAndProcessDescriptionAccess::setParsedConfigurationProcessDescription(
    const QDir& folder, const QString& originFirst, const QString& originSecond,
    const QString& instanceName,
    BaseClassSharedPointer tree, // NOLINT(performance-unnecessary-value-param): by contract
    bool isProcess)
{
    if (tree.isNull()) {
        return false; // why there is none was said when it was asked for
    }
    QList<Problem> problems;
    if (Session* const session = sessionFor(folder)) {
        const std::optional<Instance> instance =
            instanceIn(*session, folder, instanceName, problems);
        filehost::report(problems);
        return instance && session->store(*instance, tree, originFirst, originSecond);
    }
    filehost::tree::FileTree* const source = FileTreeNode::treeOf(tree);
    if (source == nullptr) {
        problems.append(filehost::tree::notATree(instanceName));
    }
    const std::optional<File> file =
        fileIn(folder, isProcess ? Named::Process : Named::Configuration, instanceName, problems);
    Outcome outcome = Outcome::Failed;
    if (source != nullptr && file) {
        outcome = source->path() == file->path
                      ? storeBack(*source, rootOf(folder), *file, problems)
                      : storeInto(*source, rootOf(folder), *file, problems);
    }
    if (outcome == Outcome::Changed) {
        filehost::ModificationRegister::instance().record(
            filehost::ModificationRegister::itemOfNow(originFirst, originSecond, instanceName));
    }
    filehost::report(problems);
    return outcome != Outcome::Failed;
}
