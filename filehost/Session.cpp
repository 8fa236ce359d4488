#include "filehost/Session.h"

#include "filehost/Descriptions.h"
#include "filehost/Files.h"
#include "filehost/Limits.h"
#include "filehost/Locator.h"
#include "filehost/Manifest.h"
#include "filehost/Names.h"
#include "filehost/WorkspaceLock.h"
#include "filehost/services/ModificationRegister.h"
#include "filehost/tree/FileTree.h"
#include "filehost/tree/ScalarChanges.h"
#include "filehost/tree/TreeDiff.h"

#include <algorithm>
#include <cstddef>
#include <list>
#include <map>
#include <optional>
#include <utility>

namespace filehost {

namespace {

thread_local Session* currentSession = nullptr;

using TextPointer = std::shared_ptr<const json::JsonText>;

// Enough for sources and descriptions that take turns, and little enough to keep in memory.
constexpr std::size_t mostKept = 32;

/// A text that is read when somebody looks into it, for texts that are known to be sound: most of
/// those that are stored are only written to a file.
class StoredText {
public:
    StoredText() = default;
    explicit StoredText(TextPointer text)
        : written(text ? text->bytes() : QByteArray()), text(std::move(text))
    {}
    StoredText(QByteArray bytes, QString shown) : written(std::move(bytes)), shown(std::move(shown))
    {}

    bool isThere() const { return text || !written.isEmpty(); }
    const QByteArray& bytes() const { return written; }
    const TextPointer& read() const
    {
        if (!text && isThere()) {
            QList<Problem> none;
            text = json::JsonText::parse(written, shown, none);
        }
        return text;
    }

private:
    QByteArray written; ///< never empty for a sound text
    QString shown;
    mutable TextPointer text;
};

/// A file of an instance, as it was read and as it is to be.
struct StoredFile {
    Instance instance;
    File file;
    TextPointer inFile;          ///< null when there is none that can be read
    StoredText stored;           ///< as `inFile` until something is stored
    BaseClassSharedPointer view; ///< on `stored`; null until it is asked for
    QList<Problem> whyNot;       ///< what stood against reading it
    /// From `inFile` to `stored`; nothing when only a comparison of the two can tell.
    std::optional<QList<LeafChange>> changes;
    bool isToCommit = false;
    bool isWritten = false;                       ///< by a commit
    std::list<StoredFile*>::iterator placeInList; ///< of files to commit, or of those only read
};

/// The manifest as it was read, and what is to become of it.
struct Manifest {
    StoredText inFile; ///< nothing when there is none
    bool isReadable = false;
    QList<Problem> whyNot; ///< what stands against updating it
    QList<ManifestUpdate> updates;
};

/// A store that changed something.
struct Modification {
    ModifiedInstanceItem item;
    const StoredFile* file; ///< null when another session wrote it
};

struct Description {
    QString text;
    QList<Problem> whyNot; ///< what stood against reading it
};

QList<LeafChange> changesOf(const StoredFile& file)
{
    if (file.changes) {
        return *file.changes;
    }
    QList<LeafChange> changes;
    tree::addChanges(file.instance, file.inFile.get(), *file.stored.read(), changes);
    return changes;
}

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
    Private(const Workspace& workspace, Access access)
        : workspace(workspace), access(access), locator(workspace)
    {}

    bool isOnlyOne();
    void begin();
    bool mayWrite();

    /// The file of an instance, read if it was not read before; null with a problem when the name
    /// is refused.
    StoredFile* fileOf(const Instance& instance);
    const File* placeOf(const Instance& instance, QList<Problem>& refused);
    void read(StoredFile& file) const;
    bool commitFile(StoredFile& file, QList<Problem>& failures);
    void commitManifest(QList<Problem>& failures);
    void publishModifications();
    QList<ModifiedInstanceItem> takeModifications(const StoredFile& file);
    void forget(const StoredFile& file);
    void forgetLeastUsed();
    bool isUnwritten(const QString& instanceName) const;
    void report(const Problem& problem);
    void report(const QList<Problem>& several);

    Workspace workspace;
    Access access;
    Locator locator;
    std::unique_ptr<WorkspaceLock> lock; ///< null next to a session that has it
    bool hasBegun = false;
    std::map<QString, StoredFile> files; ///< by path, so that two names of one file share it
    std::map<Instance, File> places;     ///< where the instances are that were asked for
    std::list<StoredFile*> toCommit;     ///< in the order in which they were first stored
    std::list<StoredFile*> onlyRead;     ///< the others, the last used one first
    std::map<QString, Description> descriptions; ///< by path
    std::optional<Manifest> manifest;            ///< once it was asked for
    std::vector<Modification> modifications;     ///< those that the register does not have
    int registerMark = 0;                        ///< how many it had when the session began
    int writtenFiles = 0;
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
    const File* const place = placeOf(instance, refused);
    report(refused);
    if (place == nullptr) {
        return nullptr;
    }
    const auto [found, isNew] = files.try_emplace(place->path);
    StoredFile& file = found->second;
    if (isNew) {
        file.instance = instance;
        file.file = *place;
        read(file);
        file.placeInList = onlyRead.insert(onlyRead.begin(), &file);
    } else if (!file.isToCommit) {
        onlyRead.splice(onlyRead.begin(), onlyRead, file.placeInList);
    }
    return &file;
}

/// Null with a problem when the name is refused.
const File* Session::Private::placeOf(const Instance& instance, QList<Problem>& refused)
{
    const auto known = places.find(instance);
    if (known != places.end()) {
        return &known->second;
    }
    const std::optional<File> place = locator.locate(instance, refused);
    return place ? &places.emplace(instance, *place).first->second : nullptr;
}

void Session::Private::read(StoredFile& file) const
{
    file.inFile = readTree(file.file, file.whyNot);
    file.stored = StoredText(file.inFile);
    if (!file.inFile) {
        explainMissing(file.whyNot, named(file.instance.kind), file.instance.name,
                       folderOf(workspace.directory(), named(file.instance.kind)));
    }
}

/// Whether the file was written now.
bool Session::Private::commitFile(StoredFile& file, QList<Problem>& failures)
{
    const bool isInFile = file.inFile && file.inFile->bytes() == file.stored.bytes();
    if (isInFile || !replaceBytes(file.file, file.inFile.get(), file.stored.bytes(), failures)) {
        return false;
    }
    file.isWritten = true;
    ++writtenFiles;
    return true;
}

QList<ModifiedInstanceItem> Session::Private::takeModifications(const StoredFile& file)
{
    const auto others = std::stable_partition(
        modifications.begin(), modifications.end(),
        [&file](const Modification& modification) { return modification.file != &file; });
    QList<ModifiedInstanceItem> items;
    std::for_each(others, modifications.end(),
                  [&items](const Modification& modification) { items.append(modification.item); });
    modifications.erase(others, modifications.end());
    return items;
}

void Session::Private::forget(const StoredFile& file)
{
    (file.isToCommit ? toCommit : onlyRead).erase(file.placeInList);
    files.erase(file.file.path);
}

void Session::Private::forgetLeastUsed()
{
    while (onlyRead.size() > mostKept) {
        forget(*onlyRead.back());
    }
    if (places.size() > files.size() + mostKept) {
        places.clear();
    }
    if (descriptions.size() > mostKept) {
        descriptions.clear();
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
    const TextPointer inFile = manifest->inFile.read();
    const QByteArray bytes = withUpdates(inFile.get(), updates);
    const bool isInFile = inFile && inFile->bytes() == bytes;
    const File file = manifestFile(workspace.directory());
    if (!isInFile && replaceBytes(file, inFile.get(), bytes, failures)) {
        manifest->inFile = StoredText(bytes, file.shown);
        ++writtenFiles;
    }
}

void Session::Private::publishModifications()
{
    std::vector<Modification> unwritten;
    for (const Modification& modification : modifications) {
        if (modification.file == nullptr || modification.file->isWritten) {
            ModificationRegister::instance().record(modification.item);
        } else {
            unwritten.push_back(modification);
        }
    }
    modifications = std::move(unwritten);
}

bool Session::Private::isOnlyOne()
{
    if (currentSession == nullptr) {
        return true;
    }
    report(Problem{Problem::Code::Lock, workspace.directory(), 0, 0,
                   QStringLiteral("this thread already has a session"),
                   QStringLiteral("end it before another one begins")});
    return false;
}

void Session::Private::begin()
{
    registerMark = ModificationRegister::instance().size();
    hasBegun = true;
}

bool Session::Private::mayWrite()
{
    if (hasBegun && access == Access::Write) {
        return true;
    }
    report(Problem{Problem::Code::Write, workspace.directory(), 0, 0,
                   QStringLiteral("this session may not write"),
                   QStringLiteral("begin one with write access")});
    return false;
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
    if (!d->isOnlyOne()) {
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
    d->begin();
    currentSession = this;
    return true;
}

bool Session::beginNextTo(const Session& holder)
{
    if (!d->isOnlyOne()) {
        return false;
    }
    if (d->access == Access::Write && !holder.d->lock) {
        d->report(Problem{Problem::Code::Lock, d->workspace.directory(), 0, 0,
                          QStringLiteral("the other session does not hold the lock"),
                          QStringLiteral("begin that one with write access")});
        return false;
    }
    d->begin();
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
    if (!file->stored.isThere()) {
        d->report(file->whyNot);
        return {};
    }
    return tree::FileTreeNode::makeRoot(file->stored.read(), file->file.path);
}

BaseClassSharedPointer Session::view(const Instance& instance)
{
    StoredFile* const file = d->fileOf(instance);
    if (file != nullptr && file->stored.isThere() && !file->view.isNull()) {
        return file->view;
    }
    BaseClassSharedPointer tree = load(instance);
    if (file != nullptr) {
        file->view = tree;
    }
    return tree;
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
    if (!file->stored.isThere() && !hasCode(file->whyNot, Problem::Code::Missing)) {
        d->report(file->whyNot); // what cannot be read is not to be overwritten
        return false;
    }
    const QByteArray bytes = changed->render();
    if (file->stored.isThere() && file->stored.bytes() == bytes) {
        return true;
    }
    const bool isOnFile = &changed->text() == file->inFile.get();
    std::optional<QList<LeafChange>> changes;
    if (isOnFile && bytes.size() <= limits::fileSize) {
        changes = tree::scalarChanges(file->instance, *changed);
    }
    StoredText stored(bytes, file->file.shown);
    if (!changes) {
        QList<Problem> problems;
        const TextPointer text = parseTree(bytes, file->file.shown, problems);
        d->report(problems);
        if (!text) {
            return false;
        }
        stored = StoredText(isOnFile || !file->inFile ? text : tree::closestTo(file->inFile, text));
    }
    if (file->stored.isThere() && file->stored.bytes() == stored.bytes()) {
        return true;
    }
    file->stored = stored;
    file->changes = changes;
    file->view.clear();
    if (!file->isToCommit) {
        d->toCommit.splice(d->toCommit.end(), d->onlyRead, file->placeInList);
        file->isToCommit = true;
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
        changes += changesOf(*file);
    }
    return changes;
}

bool Session::commit(const std::optional<Instance>& leader)
{
    if (!d->mayWrite()) {
        return false;
    }
    QList<Problem> problems;
    const auto isLeading = [&leader](const StoredFile* file) { return file->instance == leader; };
    d->toCommit.sort([&](const StoredFile* left, const StoredFile* right) {
        return isLeading(left) && !isLeading(right);
    });
    for (StoredFile* file : d->toCommit) {
        if (d->commitFile(*file, problems)) {
            file->inFile = file->stored.read();
            file->changes = QList<LeafChange>();
        }
        if (isLeading(file) && !problems.isEmpty()) {
            problems.last().message += QStringLiteral("; so nothing that follows it was written");
            break;
        }
    }
    d->commitManifest(problems);
    d->publishModifications();
    d->report(problems);
    return problems.isEmpty();
}

Completion Session::complete(const Instance& instance)
{
    QList<Problem> refused; // told when the instance was asked for
    const File* const place = d->placeOf(instance, refused);
    const auto found = place == nullptr ? d->files.end() : d->files.find(place->path);
    if (found == d->files.end()) {
        return {};
    }
    StoredFile& file = found->second;
    Completion completion;
    if (file.isToCommit) {
        completion.changes = changesOf(file);
        completion.modifications = d->takeModifications(file);
        QList<Problem> problems;
        if (d->access == Access::Write && !(d->mayWrite() && d->commitFile(file, problems))) {
            completion = {};
        }
        d->report(problems);
    }
    d->forget(file);
    d->forgetLeastUsed();
    return completion;
}

int Session::writtenFiles() const
{
    return d->writtenFiles;
}

void Session::adopt(const QList<ModifiedInstanceItem>& items)
{
    for (const ModifiedInstanceItem& item : items) {
        d->modifications.push_back({item, nullptr});
    }
}

void Session::readManifestAhead()
{
    if (!d->manifest) {
        d->manifest.emplace();
        TextPointer inFile;
        d->manifest->isReadable =
            readManifest(d->workspace.directory(), inFile, d->manifest->whyNot);
        d->manifest->inFile = StoredText(inFile);
    }
}

bool Session::readsManifest()
{
    readManifestAhead();
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
