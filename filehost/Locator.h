#ifndef UNITFLOW_FILEHOST_LOCATOR_H
#define UNITFLOW_FILEHOST_LOCATOR_H

#include "filehost/Files.h"
#include "filehost/Workspace.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <optional>

namespace filehost {

/// Finds the files of many instances: what `Workspace::instancePath` finds, without symbolic links.
/// Those in the way to a folder are followed once, since looking at all the folders in a path costs
/// as much as reading a file.
class Locator {
public:
    explicit Locator(const Workspace& workspace);

    /// Where an instance's file is or would be; nothing with a problem when the name is refused.
    std::optional<File> locate(const Instance& instance, QList<Problem>& problems);

private:
    struct Folder {
        QString canonical;
        bool isInside = false; ///< the workspace
        int asked = 0;         ///< for how many files
        /// Names of what is no regular file, symbolic links for example; known once many files
        /// were asked for, because a look at each costs more than a list of all.
        std::optional<QSet<QString>> others;
    };

    Folder& folderAt(const QString& path);
    static bool isPlainFile(Folder& folder, const QString& path, int nameAt);

    Workspace workspace;
    QString canonicalRoot;
    QString configurations;         ///< the folder
    QString processes;              ///< the folder
    QHash<QString, Folder> folders; ///< by path
};

} // namespace filehost

#endif
