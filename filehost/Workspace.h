#ifndef UNITFLOW_FILEHOST_WORKSPACE_H
#define UNITFLOW_FILEHOST_WORKSPACE_H

#include "filehost/Export.h"
#include "filehost/Problem.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <optional>

namespace filehost {

/// Which of the two folders an instance lives in.
enum class Kind { Configuration, Process };

/// One instance of a workspace. The name may hold "/" for subfolders.
struct Instance {
    Kind kind = Kind::Configuration;
    QString name;
};

UNITFLOW_FILEHOST_EXPORT bool operator==(const Instance& left, const Instance& right);
/// Configurations first, then by name.
UNITFLOW_FILEHOST_EXPORT bool operator<(const Instance& left, const Instance& right);

/// One entry of `links.json`: this source drives this target through this description.
struct Link {
    QString source;
    QString target;
    QString dependency;
    bool isProcess;          ///< the target is a process description
    QVariantList parameters; ///< handed to the description's commands
    int line;                ///< where the entry stands
    int column;
};

/// A folder with `configuration/`, `process/`, `dependency/`, `configuration/manifest.json` and
/// `links.json`. Knows where things are; holds nothing of what is in them.
class UNITFLOW_FILEHOST_EXPORT Workspace {
public:
    /// Null, with a problem added, when `directory` is no workspace.
    static std::optional<Workspace> open(const QString& directory, QList<Problem>& problems);

    /// The workspace's folder, absolute.
    QString directory() const;

    /// All instances of a kind, in ascending order. The manifest is none.
    QStringList instanceNames(Kind kind) const;

    /// All descriptions, in ascending order.
    QStringList dependencyNames() const;

    /// The entries of `links.json` in file order, none when there is no such file. All problems of
    /// the file are added at once; entries without a problem are still returned.
    QList<Link> links(QList<Problem>& problems) const;

    /// Whether each of the three folders can be read if it is there; otherwise false with problems.
    /// In a folder that cannot be read, no names are found.
    bool checkFolders(QList<Problem>& problems) const;

    /// Whether the manifest is there and is a list; otherwise false with problems.
    bool checkManifest(QList<Problem>& problems) const;

    /// The absolute path of an instance's file, empty with a problem added when the name is
    /// refused. The file need not exist.
    QString instancePath(const Instance& instance, QList<Problem>& problems) const;

    /// The same for a description.
    QString dependencyPath(const QString& name, QList<Problem>& problems) const;

private:
    explicit Workspace(QString directory);

    QString root;
};

} // namespace filehost

#endif
