#include "filehost/WorkspaceLock.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

namespace filehost {

namespace {

constexpr int moment = 200; // milliseconds
constexpr int minute = 60;  // seconds

} // namespace

WorkspaceLock::WorkspaceLock(const QString& root)
    : path(QDir(root).filePath(QStringLiteral(".unitflow.lock"))), file(path)
{
    file.setStaleLockTime(0); // age alone makes no lock stale
}

bool WorkspaceLock::take(const std::function<void(const QString&)>& waiting,
                         QList<Problem>& problems)
{
    bool isFirst = true;
    // Trying again and again answers sooner than one long wait, whose pauses grow to seconds.
    while (!file.tryLock(moment)) {
        if (file.error() != QLockFile::LockFailedError) {
            problems.append({Problem::Code::Lock, path, 0, 0,
                             QStringLiteral("the workspace cannot be locked for writing"),
                             QStringLiteral("check that its folder exists and may be written")});
            return false;
        }
        if (isAbandoned() && file.removeStaleLockFile()) { // refused while somebody has it open
            continue;
        }
        if (isFirst && waiting) {
            waiting(QStringLiteral("waiting for the workspace, which is locked by %1; if that is "
                                   "a mistake, remove %2")
                        .arg(holder(), path));
        }
        isFirst = false;
    }
    return true;
}

/// Whether the file names nobody, and has had the time to: a machine that stops while a lock is
/// taken leaves an empty file behind.
bool WorkspaceLock::isAbandoned() const
{
    qint64 process = 0;
    QString host;
    QString program;
    return !file.getLockInfo(&process, &host, &program) &&
           QFileInfo(path).lastModified().secsTo(QDateTime::currentDateTime()) > minute;
}

QString WorkspaceLock::holder() const
{
    qint64 process = 0;
    QString host;
    QString program;
    if (!file.getLockInfo(&process, &host, &program)) {
        return QStringLiteral("an unknown process");
    }
    return QStringLiteral("process %1 (%2) on %3").arg(process).arg(program, host);
}

} // namespace filehost
