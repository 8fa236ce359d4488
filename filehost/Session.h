#ifndef UNITFLOW_FILEHOST_SESSION_H
#define UNITFLOW_FILEHOST_SESSION_H

#include "filehost/Export.h"
#include "filehost/Problem.h"
#include "filehost/Workspace.h"
#include "host/ConfigurationAndProcessDataBase.h"
#include "host/ModifiedInstanceItem.h"

#include <QList>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>

namespace filehost {

struct ManifestUpdate;

/// One property that differs between the files and what a session has stored so far.
struct LeafChange {
    Instance instance;
    QString url;      ///< of the leaf, from the root of the instance's tree
    QString property; ///< as the file spells it: "@unitType", "@value", ...
    QVariant before;  ///< invalid when the property was not there
    QVariant after;
};

/// What became of an instance when a session was done with it.
struct Completion {
    QList<LeafChange> changes;                 ///< without those that could not be written
    QList<ModifiedInstanceItem> modifications; ///< the stores behind the changes, oldest first
};

/// A unit of work on one workspace. While a session lives, the host services of its thread that
/// concern the workspace's folders go through it: each file is read at most once, stores stay in
/// memory, `commit` writes what changed. Without `commit` no file is touched. A thread has at most
/// one session at a time.
///
/// Several threads may work at the same time, each in a session of its own, next to one that holds
/// the lock for all of them. They must not store the same instance, and none may read what another
/// one stores.
class UNITFLOW_FILEHOST_EXPORT Session {
public:
    enum class Access {
        Read, ///< takes no lock and cannot commit
        Write ///< holds the workspace's lock from `begin` to its end
    };

    /// The session of this thread, null when it has none.
    static Session* current();

    Session(const Workspace& workspace, Access access);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Must come first. With `Access::Write` waits for the workspace's lock, however long;
    /// `waiting` is called once, with a sentence that says for whom, if that takes longer than a
    /// moment. False with a problem when the lock cannot be had at all.
    bool begin(const std::function<void(const QString&)>& waiting);

    /// The same under the lock of a session of another thread, which has begun and outlives this
    /// one.
    bool beginNextTo(const Session& holder);

    const Workspace& workspace() const;

    /// The text of a description; empty with a problem.
    QString description(const QString& name);

    /// The instance's tree as stored so far, one that the caller may change; null with a problem.
    BaseClassSharedPointer load(const Instance& instance);

    /// The same tree for everybody who asks, until another one is stored; nobody may change it.
    BaseClassSharedPointer view(const Instance& instance);

    /// Stores a tree; `modifications` notes it under the two origins if anything changed. False
    /// with a problem.
    bool store(const Instance& instance, const BaseClassSharedPointer& tree,
               const QString& originFirst, const QString& originSecond);

    /// The stores that changed something since the session began, oldest first: what the register
    /// of modifications tells its thread meanwhile. Other sessions never see those that were not
    /// committed.
    QList<ModifiedInstanceItem> modifications() const;

    /// Everything stored so far that differs from the files, in the order of the instances and,
    /// within one, of the file.
    QList<LeafChange> changes() const;

    /// Writes each changed file: atomically, durably, and only the bytes that changed. False with a
    /// problem for each file that could not be written; the other files are written all the same.
    /// The manifest comes last, without what was to be noted for instances that were not written.
    ///
    /// When the others follow `leader` and its file could not be written, none of them is: nobody
    /// is to follow what is not there.
    bool commit(const std::optional<Instance>& leader = std::nullopt);

    /// For work on more instances than memory holds: ends the work on one. Writes its file like
    /// `commit`, which a session that may not write leaves out, tells what that changed, and
    /// forgets the instance and, of what was only read, all but what was used last. A problem when
    /// the file could not be written. The register of modifications does not hear of it: that is
    /// for whoever collects the completions.
    Completion complete(const Instance& instance);

    /// How many files it wrote so far.
    int writtenFiles() const;

    /// Takes over the modifications of sessions next to this one, as if they were its own.
    void adopt(const QList<ModifiedInstanceItem>& items);

    /// Reads the manifest now instead of when it is first used, for a caller who has to wait
    /// anyway. Problems are told at its use.
    void readManifestAhead();

    /// The problems met since the last call, by this session or by a host service on its thread.
    QList<Problem> takeProblems();

    /// Adds a problem for `takeProblems`, unless an equal one waits there already.
    void report(const Problem& problem);

private:
    friend class FileManifestHandler;

    /// Whether the manifest can be updated: it reads as a list, or there is none. False with
    /// problems.
    bool readsManifest();
    /// Keeps updates for `commit`. Only after `readsManifest` said yes.
    void updateManifest(const QList<ManifestUpdate>& updates);

    class Private;
    std::unique_ptr<Private> d; ///< the files read so far and what was stored over them
};

} // namespace filehost

#endif
