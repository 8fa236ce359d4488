#ifndef UNITFLOW_TESTS_CHECKER_EXAMPLEWORKSPACE_H
#define UNITFLOW_TESTS_CHECKER_EXAMPLEWORKSPACE_H

#include "checker/Check.h"
#include "checker/Codes.h"

#include <QTemporaryDir>

#include <iosfwd>

/// A folder with the files of a workspace, which ends with it.
class ExampleWorkspace {
public:
    ExampleWorkspace() = default;
    /// A source "controller" that drives a target "display" through "units".
    explicit ExampleWorkspace(const checker::Example& example);

    QString path(const QString& name = {}) const { return folder.filePath(name); }
    void write(const QString& name, const QString& text) const;
    QString read(const QString& name) const;
    /// Adds all files below a folder.
    void copy(const QString& from) const;

    /// Everything that is found in the links and in all descriptions.
    QList<checker::Finding> check() const;

private:
    QTemporaryDir folder;
};

/// What is found in an example, by itself or in its workspace.
QList<checker::Finding> findingsIn(const checker::Example& example);
/// What is found in a description by itself.
QList<checker::Finding> findingsIn(const QString& description);

/// "line:column+length code", one for each finding.
QStringList told(const QList<checker::Finding>& findings);

void PrintTo(const QString& text, std::ostream* stream);

#endif
