#include "tools/check/CheckCommand.h"

#include "tools/check/FindingText.h"
#include "tools/console/Console.h"
#include "tools/console/Json.h"
#include "tools/console/Names.h"
#include "tools/console/Text.h"
#include "tools/workspace/Access.h"

#include <CLI/CLI.hpp>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace tools {

namespace {

using checker::CheckedFile;
using checker::Finding;
using checker::WorkspaceCheck;
using filehost::Problem;
using filehost::Workspace;

/// The name of the description that a file is; empty when it is none of the workspace.
QString descriptionAt(const Workspace& workspace, const QString& path)
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    for (const QString& name : workspace.dependencyNames()) {
        QList<Problem> ignored;
        if (QFileInfo(workspace.dependencyPath(name, ignored)).canonicalFilePath() == canonical) {
            return name;
        }
    }
    return {};
}

Problem unknownFile(const QString& argument, const std::optional<Workspace>& workspace)
{
    const QStringList names = workspace ? workspace->dependencyNames() : QStringList();
    return {Problem::Code::Missing,
            {},
            0,
            0,
            QStringLiteral("there is no file and no description %1").arg(quoted(argument)),
            nearestNamesText(argument, names)};
}

} // namespace

CLI::App* CheckCommand::declare(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("check", "Find mistakes in descriptions and links");
    command->add_option("FILE", fileArguments, "Only these descriptions")->option_text(" ");
    command
        ->add_option("--fail-on", failOn, "The mildest severity that counts: error, warning, note")
        ->check(CLI::IsMember({"error", "warning", "note"}))
        ->option_text("SEVERITY");
    command->add_option("--format", format, "human, json, sarif (2.1.0) or github")
        ->check(CLI::IsMember({"human", "json", "sarif", "github"}))
        ->option_text("FORMAT");
    command->add_option("--explain", code, "Explain a code of a finding, with examples")
        ->option_text("CODE");
    command->footer(
        R"(Without FILE: every description and link of the workspace. FILE is the path of a
description, or its name in the workspace. One of the workspace is checked for
each link that names it, another one by itself.

Exit code: 0 if nothing was found that --fail-on counts, 1 if something was, 2
if something could not be read.

Examples:
  unitflow check
  unitflow check dependency/display-units.json
  unitflow check --fail-on warning --format github
  unitflow check --explain unknown-command)");
    return command;
}

ExitCode CheckCommand::run(Console& console)
{
    if (!code.empty()) {
        return explain(console);
    }
    if (format == "json") {
        console.chooseJson();
    }
    const bool isRead = fileArguments.empty() ? checkAll(console) : checkFiles(console);
    return write(console, isRead);
}

ExitCode CheckCommand::explain(Console& console) const
{
    const QString name = QString::fromStdString(code);
    const checker::CodeDescription* description = checker::findCode(name);
    if (description == nullptr) {
        QStringList names;
        for (const checker::CodeDescription& known : checker::codes()) {
            names.append(known.name);
        }
        console.complain(QStringLiteral("there is no code %1").arg(quoted(name)),
                         nearestNamesText(name, names));
        return ExitCode::Failed;
    }
    console.print(checker::explain(*description));
    return ExitCode::Done;
}

bool CheckCommand::checkAll(Console& console)
{
    const std::optional<Workspace> workspace = openWorkspace(console);
    if (!workspace) {
        return false;
    }
    QList<Problem> problems;
    bool isRead = workspace->checkFolders(problems);
    console.report(problems);
    WorkspaceCheck check(*workspace);
    isRead = add(check.checkLinks(), {}, console) && isRead;
    QList<Problem> unitProblems;
    if (const auto units = check.checkUnits(unitProblems)) {
        files.append(*units);
    }
    isRead = unitProblems.isEmpty() && isRead;
    console.report(unitProblems);
    for (const QString& name : workspace->dependencyNames()) {
        QList<Problem> unreadable;
        const CheckedFile file = check.checkDescription(name, unreadable);
        isRead = add(file, unreadable, console) && isRead;
    }
    return isRead;
}

bool CheckCommand::checkFiles(Console& console)
{
    QList<Problem> ignored; // files are checked by themselves where there is no workspace
    const std::optional<Workspace> workspace =
        Workspace::open(console.options().directory, ignored);
    std::optional<WorkspaceCheck> check;
    if (workspace) {
        check.emplace(*workspace);
    }
    bool isRead = true;
    for (const std::string& argument : fileArguments) {
        isRead = checkFile(QString::fromStdString(argument), workspace, check, console) && isRead;
    }
    return isRead;
}

bool CheckCommand::checkFile(const QString& argument, const std::optional<Workspace>& workspace,
                             std::optional<WorkspaceCheck>& check, Console& console)
{
    QString path = argument;
    if (!QFileInfo::exists(path) && workspace) {
        path = QDir(workspace->directory()).filePath(argument);
    }
    QString name;
    if (workspace) {
        name = QFileInfo::exists(path)                           ? descriptionAt(*workspace, path)
               : workspace->dependencyNames().contains(argument) ? argument
                                                                 : QString();
    }
    QList<Problem> problems;
    if (!name.isEmpty()) {
        const CheckedFile file = check->checkDescription(name, problems);
        return add(file, problems, console);
    }
    QFile file(path);
    if (!QFileInfo::exists(path)) {
        problems.append(unknownFile(argument, workspace));
    } else if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        problems.append({Problem::Code::Read, argument, 0, 0,
                         QStringLiteral("the file cannot be read"),
                         QStringLiteral("check that it is a file, and its permissions")});
    }
    if (!problems.isEmpty()) {
        console.report(problems);
        return false;
    }
    return add(checker::checkText(file.readAll(), argument), {}, console);
}

bool CheckCommand::add(const CheckedFile& file, const QList<Problem>& problems, Console& console)
{
    console.report(problems);
    files.append(file);
    return problems.isEmpty();
}

bool CheckCommand::hasFailed() const
{
    using Severity = checker::Severity;
    const Severity mildest = failOn == "note"      ? Severity::Note
                             : failOn == "warning" ? Severity::Warning
                                                   : Severity::Error;
    return std::any_of(files.begin(), files.end(), [&](const CheckedFile& file) {
        return std::any_of(file.findings.begin(), file.findings.end(), [&](const Finding& finding) {
            return checker::describe(finding.code).severity >= mildest;
        });
    });
}

ExitCode CheckCommand::write(Console& console, bool isRead) const
{
    const ExitCode exitCode = !isRead       ? ExitCode::Failed
                              : hasFailed() ? ExitCode::Found
                                            : ExitCode::Done;
    const QString base = QDir::current().relativeFilePath(console.options().directory);
    if (console.options().json) {
        JsonDocument json(QStringLiteral("check"));
        addFindings(json, files);
        console.write(json, exitCode);
    } else if (format == "sarif") {
        console.print(findingsSarif(files, base));
    } else if (format == "github") {
        console.print(findingsGithub(files, base));
    } else {
        for (const CheckedFile& file : files) {
            console.print(findingsText(file, console.color()));
        }
        if (!files.isEmpty()) {
            console.show(findingsSummary(files));
        }
    }
    return exitCode;
}

} // namespace tools
