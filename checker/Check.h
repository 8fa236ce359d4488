#ifndef UNITFLOW_CHECKER_CHECK_H
#define UNITFLOW_CHECKER_CHECK_H

#include "checker/Description.h"
#include "checker/Findings.h"
#include "checker/LinkCheck.h"
#include "checker/Patterns.h"
#include "checker/Tree.h"
#include "checker/Units.h"
#include "filehost/Session.h"
#include "filehost/Workspace.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace checker {

/// What was found in a file, in the order of its text.
struct CheckedFile {
    QString name;     ///< as the user would name it
    QByteArray bytes; ///< what the places of the findings are in
    QList<Finding> findings;
};

/// Checks a description by itself.
CheckedFile checkText(const QByteArray& bytes, const QString& name);

/// Checks descriptions and links of a workspace. While it lives, its thread can have no session.
class WorkspaceCheck {
public:
    explicit WorkspaceCheck(const filehost::Workspace& workspace);

    /// `links.json`: whether it can be read, and whether what its links name is there. With
    /// descriptions, only what bears on them.
    CheckedFile checkLinks(const QStringList& descriptions = {});

    /// `units.json`: whether it can be read, and whether its definitions are units. Nothing when
    /// the workspace has none. Problems are those of units that cannot be had at all.
    std::optional<CheckedFile> checkUnits(QList<filehost::Problem>& problems);

    /// A description by itself and for each link that names it. Links to instances that cannot be
    /// read are left out. Problems are those of a file that cannot be read at all.
    CheckedFile checkDescription(const QString& name, QList<filehost::Problem>& problems);

private:
    std::shared_ptr<const Tree> sourceTree(const filehost::Link& link);
    void checkLinks(const QString& name, const std::vector<Node>& nodes,
                    const std::shared_ptr<const filehost::json::JsonText>& text, Findings& findings,
                    QList<filehost::Problem>& problems);
    void checkParameters(const filehost::Link& link, const filehost::DescriptionPlaces& places,
                         filehost::json::JsonText::Index entry, CheckedFile& checked);
    ParameterUse useOf(const QString& description);
    Units* knownUnits(QList<filehost::Problem>& problems);
    void readUnits(QList<filehost::Problem>& problems);

    filehost::Workspace workspace;
    filehost::Session session;
    QList<filehost::Problem> linkProblems;
    QList<filehost::Link> links;
    QHash<QString, QList<int>> linksOf; ///< numbers of links, by description
    Patterns patterns;
    QHash<QString, ParameterUse> parameterUses; ///< by description
    bool areUnitsRead = false;                  ///< when they are first needed
    std::unique_ptr<Units> units;
    std::optional<CheckedFile> unitsFile;
    QString lastSource; ///< successive links often have one source
    std::shared_ptr<const Tree> lastSourceTree;
};

} // namespace checker

#endif
