#ifndef UNITFLOW_FILEHOST_WORKSPACELOCK_H
#define UNITFLOW_FILEHOST_WORKSPACELOCK_H

#include "filehost/Problem.h"

#include <QList>
#include <QLockFile>
#include <QString>

#include <functional>

namespace filehost {

/// Keeps other writers out of a workspace, in this process and in others, until it is destroyed. A
/// lock that a dead process left behind is taken over, and one that has named nobody for a minute;
/// one that is only held for long is not.
class WorkspaceLock {
public:
    explicit WorkspaceLock(const QString& root);

    /// Waits for the lock, however long. `waiting` may be empty; it is called once, with a
    /// sentence that names the holder, if that takes longer than a moment. False with a problem
    /// when there is no use in waiting.
    bool take(const std::function<void(const QString&)>& waiting, QList<Problem>& problems);

private:
    bool isAbandoned() const;
    QString holder() const;

    QString path;
    QLockFile file;
};

} // namespace filehost

#endif
