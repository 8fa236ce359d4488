#ifndef UNITFLOW_FILEHOST_NAMES_H
#define UNITFLOW_FILEHOST_NAMES_H

#include "filehost/Problem.h"
#include "filehost/Workspace.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace filehost {

/// What a name stands for; its words appear in problems.
enum class Named { Configuration, Process, Description };

Named named(Kind kind);
QString wordsFor(Named what);

/// Where a workspace keeps what the names stand for.
QString folderOf(const QString& root, Named what);

/// False with a problem when a name is not allowed: an empty or absolute one, one with an empty,
/// "." or ".." segment, with a character that no file name can have, or the manifest's as the name
/// of a configuration.
bool checkName(Named what, const QString& name, QList<Problem>& problems);

/// The path of the file for a name in a folder; empty with a problem when the name is not allowed
/// or a symbolic link leads out of `root`. The file need not exist.
QString confinedPath(const QString& root, const QString& folder, Named what, const QString& name,
                     QList<Problem>& problems);

/// Whether symbolic links take a path, or its folders, out of `root`.
bool leadsOut(const QString& root, const QString& path);

/// The problem of a path that does, or leads nowhere.
Problem leadingOut(const QString& root, const QString& path, const QString& subject);

/// The problem of a folder that is there but cannot be read, or of the outermost such folder
/// between it and `root`. Nothing when there is none, which a folder that is missing does not
/// change.
std::optional<Problem> unreadableFolder(const QString& root, const QString& folder);

/// Without symbolic links where the path exists, else made absolute and clean.
QString canonicalPath(const QString& path);

/// Whether a path is `folder` or below it. Both are compared as they are spelled.
bool isInside(const QString& folder, const QString& path);

/// The path as a user would name it: relative to `root` where it is inside.
QString shownPath(const QString& root, const QString& path);

/// All allowed names of files below a folder of a workspace, in ascending order; without those that
/// symbolic links take out of the workspace.
QStringList namesIn(const QString& folder, Named what);

/// Says in a missing file's problem what it was looked for as, and which name in the folder is
/// alike; or that the folder cannot be read, so that nobody knows whether the file is missing.
void explainMissing(QList<Problem>& problems, Named what, const QString& name,
                    const QString& folder);

} // namespace filehost

#endif
