#ifndef UNITFLOW_CHECKER_CHECK_H
#define UNITFLOW_CHECKER_CHECK_H

#include "checker/Findings.h"
#include "checker/Patterns.h"
#include "checker/Tree.h"
#include "filehost/Session.h"
#include "filehost/Workspace.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <memory>

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

    /// `links.json`: whether it can be read, and whether what its links name is there.
    CheckedFile checkLinks();

    /// A description by itself and for each link that names it. Links to instances that cannot be
    /// read are left out. Problems are those of a file that cannot be read at all.
    CheckedFile checkDescription(const QString& name, QList<filehost::Problem>& problems);

private:
    std::shared_ptr<const Tree> sourceTree(const filehost::Link& link);

    filehost::Workspace workspace;
    filehost::Session session;
    QList<filehost::Problem> linkProblems;
    QList<filehost::Link> links;
    QHash<QString, QList<int>> linksOf; ///< numbers of links, by description
    Patterns patterns;
    QString lastSource; ///< successive links often have one source
    std::shared_ptr<const Tree> lastSourceTree;
};

} // namespace checker

#endif
