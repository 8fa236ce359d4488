#include "filehost/Session.h"

#include "filehost/Descriptions.h"
#include "filehost/Files.h"
#include "filehost/Manifest.h"
#include "filehost/Names.h"
#include "filehost/WorkspaceLock.h"
#include "filehost/services/ModificationRegister.h"
#include "filehost/tree/FileTree.h"
#include "filehost/tree/TreeDiff.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

namespace filehost {

namespace {

thread_local Session* currentSession = nullptr;

using TextPointer = std::shared_ptr<const json::JsonText>;

/// A file of an instance, as it was read and as it is to be.
struct StoredFile {
    Instance instance;
    File file;
    TextPointer inFile;     ///< null when there is none that can be read
    TextPointer stored;     ///< null like `inFile` until something is stored
    QList<Problem> whyNot;  ///< what stood against reading it
    bool isWritten = false; ///< by a commit
};

/// The manifest as it was read, and what is to become of it.
struct Manifest {
    TextPointer inFile; ///< null when there is none
    bool isReadable = false;
    QList<Problem> whyNot; ///< what stands against updating it
    QList<ManifestUpdate> updates;
};

/// A store that changed something.
struct Modification {
    ModifiedInstanceItem item;
    const StoredFile* file;
};

struct Description {
    QString text;
    QList<Problem> whyNot; ///< what stood against reading it
};

bool hasCode(const QList<Problem>& problems, Problem::Code code)
{
    return std::any_of(problems.begin(), problems.end(),
                       [code](const Problem& problem) { return problem.code == code; });
}

bool isEqual(const Problem& left, const Problem& right)
{
    return left.code == right.code && left.file == right.file && left.line == right.line &&
           left.column == right.column && left.message == right.message;
}

} // namespace

class Session::Private {
public:
    Private(const Workspace& workspace, Access access) : workspace(workspace), access(access) {}

    /// The file of an instance, read if it was not read before; null with a problem when the name
    /// is refused.
    StoredFile* fileOf(const Instance& instance);
    void commitFiles(QList<Problem>& failures);
    void commitManifest(QList<Problem>& failures);
    void publishModifications();
    bool isUnwritten(const QString& instanceName) const;
    void report(const Problem& problem);
    void report(const QList<Problem>& several);

    Workspace workspace;
    Access access;
    std::unique_ptr<WorkspaceLock> lock;
    bool hasBegun = false;
    std::map<QString, StoredFile> files; ///< by path, so that two names of one file share it
    std::vector<StoredFile*> toCommit;   ///< in the order in which they were first stored
    std::map<QString, Description> descriptions; ///< by path
    std::optional<Manifest> manifest;            ///< once it was asked for
    std::vector<Modification> modifications;     ///< those that the register does not have
    int registerMark = 0;                        ///< how many it had when the session began
    QList<Problem> problems;
};

void Session::Private::report(const Problem& problem)
{
    const bool isKnown = std::any_of(problems.begin(), problems.end(),
                                     [&](const Problem& known) { return isEqual(known, problem); });
    if (!isKnown) {
        problems.append(problem);
    }
}

void Session::Private::report(const QList<Problem>& several)
{
    for (const Problem& problem : several) {
        report(problem);
    }
}

StoredFile* Session::Private::fileOf(const Instance& instance)
{
    QList<Problem> refused;
    const QString path = workspace.instancePath(instance, refused);
    report(refused);
    if (path.isEmpty()) {
        return nullptr;
    }
    const auto [place, isNew] = files.try_emplace(canonicalPath(path));
    StoredFile& file = place->second;
    if (isNew) {
        file.instance = instance;
        file.file = {place->first, shownPath(workspace.directory(), path)};
        file.inFile = readTree(file.file, file.whyNot);
        file.stored = file.inFile;
        explainMissing(file.whyNot, named(instance.kind), instance.name,
                       folderOf(workspace.directory(), named(instance.kind)));
    }
    return &file;
}

void Session::Private::commitFiles(QList<Problem>& failures)
{
    for (StoredFile* file : toCommit) {
        const bool isInFile = file->inFile && file->inFile->bytes() == file->stored->bytes();
        if (!isInFile &&
            replaceBytes(file->file, file->inFile.get(), file->stored->bytes(), failures)) {
            file->inFile = file->stored;
            file->isWritten = true;
        }
    }
}

/// Whether an instance was stored, but no file of its name was written: it could not be, or it was
/// changed back.
bool Session::Private::isUnwritten(const QString& instanceName) const
{
    bool isStored = false;
    for (const StoredFile* file : toCommit) {
        if (file->instance.name == instanceName) {
            isStored = true;
            if (file->isWritten) {
                return false;
            }
        }
    }
    return isStored;
}

void Session::Private::commitManifest(QList<Problem>& failures)
{
    if (!manifest) {
        return;
    }
    QList<ManifestUpdate> updates = std::exchange(manifest->updates, {});
    updates.erase(std::remove_if(updates.begin(), updates.end(),
                                 [this](const ManifestUpdate& update) {
                                     return isUnwritten(update.instanceName);
                                 }),
                  updates.end());
    if (updates.isEmpty()) {
        return;
    }
    const QByteArray bytes = withUpdates(manifest->inFile.get(), updates);
    const bool isInFile = manifest->inFile && manifest->inFile->bytes() == bytes;
    const File file = manifestFile(workspace.directory());
    if (!isInFile && replaceBytes(file, manifest->inFile.get(), bytes, failures)) {
        manifest->inFile = json::JsonText::parse(bytes, file.shown, failures);
    }
}

void Session::Private::publishModifications()
{
    std::vector<Modification> unwritten;
    for (const Modification& modification : modifications) {
        if (modification.file->isWritten) {
            ModificationRegister::instance().record(modification.item);
        } else {
            unwritten.push_back(modification);
        }
    }
    modifications = std::move(unwritten);
}

Session* Session::current()
{
    return currentSession;
}

Session::Session(const Workspace& workspace, Access access)
    : d(std::make_unique<Private>(workspace, access))
{}

Session::~Session()
{
    if (currentSession == this) {
        currentSession = nullptr;
    }
}

bool Session::begin(const std::function<void(const QString&)>& waiting)
{
    if (currentSession != nullptr) {
        report({Problem::Code::Lock, d->workspace.directory(), 0, 0,
                QStringLiteral("this thread already has a session"),
                QStringLiteral("end it before another one begins")});
        return false;
    }
    if (d->access == Access::Write) {
        d->lock = std::make_unique<WorkspaceLock>(d->workspace.directory());
        QList<Problem> problems;
        const bool isLocked = d->lock->take(waiting, problems);
        d->report(problems);
        if (!isLocked) {
            return false;
        }
    }
    d->registerMark = ModificationRegister::instance().size();
    d->hasBegun = true;
    currentSession = this;
    return true;
}

const Workspace& Session::workspace() const
{
    return d->workspace;
}

QString Session::description(const QString& name)
{
    QList<Problem> refused;
    const QString path = d->workspace.dependencyPath(name, refused);
    d->report(refused);
    if (path.isEmpty()) {
        return {};
    }
    const File file{path, shownPath(d->workspace.directory(), path)};
    const auto [place, isNew] = d->descriptions.try_emplace(path);
    Description& description = place->second;
    if (isNew) {
        description.text = readDescription(file, description.whyNot);
        explainMissing(description.whyNot, Named::Description, name,
                       folderOf(d->workspace.directory(), Named::Description));
    }
    d->report(description.whyNot);
    rememberHandedOut(description.text, file.shown);
    return description.text;
}

BaseClassSharedPointer Session::load(const Instance& instance)
{
    const StoredFile* const file = d->fileOf(instance);
    if (file == nullptr) {
        return {};
    }
    if (!file->stored) {
        d->report(file->whyNot);
        return {};
    }
    return tree::FileTreeNode::makeRoot(file->stored, file->file.path);
}

bool Session::store(const Instance& instance, const BaseClassSharedPointer& tree,
                    const QString& originFirst, const QString& originSecond)
{
    const tree::FileTree* const changed = tree::FileTreeNode::treeOf(tree);
    if (changed == nullptr) {
        d->report(tree::notATree(instance.name));
        return false;
    }
    StoredFile* const file = d->fileOf(instance);
    if (file == nullptr) {
        return false;
    }
    if (!file->stored && !hasCode(file->whyNot, Problem::Code::Missing)) {
        d->report(file->whyNot); // what cannot be read is not to be overwritten
        return false;
    }
    const QByteArray bytes = changed->render();
    if (file->stored && file->stored->bytes() == bytes) {
        return true;
    }
    QList<Problem> problems;
    const TextPointer text = parseTree(bytes, file->file.shown, problems);
    d->report(problems);
    if (!text) {
        return false;
    }
    const bool isOnFile = &changed->text() == file->inFile.get();
    const TextPointer closest =
        isOnFile || !file->inFile ? text : tree::closestTo(file->inFile, text);
    if (file->stored && file->stored->bytes() == closest->bytes()) {
        return true;
    }
    file->stored = closest;
    if (std::find(d->toCommit.begin(), d->toCommit.end(), file) == d->toCommit.end()) {
        d->toCommit.push_back(file);
    }
    d->modifications.push_back(
        {ModificationRegister::itemOfNow(originFirst, originSecond, instance.name), file});
    return true;
}

QList<ModifiedInstanceItem> Session::modifications() const
{
    QList<ModifiedInstanceItem> items =
        ModificationRegister::instance().itemsSince(d->registerMark);
    for (const Modification& modification : d->modifications) {
        items.append(modification.item);
    }
    return items;
}

QList<LeafChange> Session::changes() const
{
    std::vector<const StoredFile*> stored(d->toCommit.begin(), d->toCommit.end());
    std::sort(stored.begin(), stored.end(), [](const StoredFile* left, const StoredFile* right) {
        return left->instance < right->instance;
    });
    QList<LeafChange> changes;
    for (const StoredFile* file : stored) {
        tree::addChanges(file->instance, file->inFile.get(), *file->stored, changes);
    }
    return changes;
}

bool Session::commit()
{
    if (!d->hasBegun || d->access != Access::Write) {
        report({Problem::Code::Write, d->workspace.directory(), 0, 0,
                QStringLiteral("this session may not write"),
                QStringLiteral("begin one with write access")});
        return false;
    }
    QList<Problem> problems;
    d->commitFiles(problems);
    d->commitManifest(problems);
    d->publishModifications();
    d->report(problems);
    return problems.isEmpty();
}

bool Session::readsManifest()
{
    if (!d->manifest) {
        d->manifest.emplace();
        d->manifest->isReadable =
            readManifest(d->workspace.directory(), d->manifest->inFile, d->manifest->whyNot);
    }
    d->report(d->manifest->whyNot);
    return d->manifest->isReadable;
}

void Session::updateManifest(const QList<ManifestUpdate>& updates)
{
    d->manifest->updates += updates;
}

QList<Problem> Session::takeProblems()
{
    return std::exchange(d->problems, {});
}

void Session::report(const Problem& problem)
{
    d->report(problem);
}

} // namespace filehost
