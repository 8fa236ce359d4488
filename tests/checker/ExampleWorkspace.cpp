#include "ExampleWorkspace.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

#include <ostream>

using checker::checkText;
using checker::describe;
using checker::Example;
using checker::Finding;
using checker::WorkspaceCheck;

ExampleWorkspace::ExampleWorkspace(const Example& example)
{
    write("dependency/units.json", example.description);
    if (!example.source.isEmpty()) {
        write("configuration/controller.json", example.source);
    }
    if (!example.target.isEmpty()) {
        write("configuration/display.json", example.target);
    }
    if (!example.units.isEmpty()) {
        write("units.json", example.units);
    }
    const QString parameters =
        example.parameters.isEmpty() ? QString() : ", \"parameters\": " + example.parameters;
    write("links.json", R"([{ "source": "controller", "target": "display", "dependency": "units")" +
                            parameters + "}]");
}

void ExampleWorkspace::write(const QString& name, const QString& text) const
{
    QDir().mkpath(QFileInfo(path(name)).path());
    QFile file(path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
}

QString ExampleWorkspace::read(const QString& name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void ExampleWorkspace::copy(const QString& from) const
{
    QDirIterator files(from, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        write(QDir(from).relativeFilePath(file.fileName()), QString::fromUtf8(file.readAll()));
    }
}

QList<Finding> ExampleWorkspace::check() const
{
    QList<filehost::Problem> problems;
    const auto workspace = filehost::Workspace::open(folder.path(), problems);
    EXPECT_TRUE(workspace);
    WorkspaceCheck check(*workspace);
    QList<Finding> findings = check.checkLinks().findings;
    for (const QString& name : workspace->dependencyNames()) {
        findings += check.checkDescription(name, problems).findings;
    }
    if (const auto units = check.checkUnits(problems)) {
        findings += units->findings;
    }
    EXPECT_TRUE(problems.isEmpty());
    return findings;
}

QList<Finding> findingsIn(const Example& example)
{
    return example.source.isEmpty() ? findingsIn(example.description)
                                    : ExampleWorkspace(example).check();
}

QList<Finding> findingsIn(const QString& description)
{
    return checkText(description.toUtf8(), "a.json").findings;
}

QStringList told(const QList<Finding>& findings)
{
    QStringList lines;
    for (const Finding& finding : findings) {
        lines.append(QString("%1:%2+%3 %4")
                         .arg(finding.place.line)
                         .arg(finding.place.column)
                         .arg(finding.place.length)
                         .arg(describe(finding.code).name));
    }
    return lines;
}

void PrintTo(const QString& text, std::ostream* stream)
{
    *stream << text.toStdString();
}
