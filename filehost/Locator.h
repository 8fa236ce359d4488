#ifndef UNITFLOW_FILEHOST_LOCATOR_H
#define UNITFLOW_FILEHOST_LOCATOR_H

#include "filehost/Files.h"
#include "filehost/Workspace.h"

#include <QHash>
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
        bool isInside; ///< the workspace
    };

    Folder folderAt(const QString& path);

    Workspace workspace;
    QString canonicalRoot;
    QString configurations;         ///< the folder
    QString processes;              ///< the folder
    QHash<QString, Folder> folders; ///< by path
};

} // namespace filehost

#endif
