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

Problem emptyName()
{
    return {Problem::Code::Name,
            {},
            0,
            0,
            QStringLiteral("the name of a FILE is empty"),
            QStringLiteral("name a description, or leave FILE out to check all of them")};
}

/// From the folder of the workspace down; empty for a file elsewhere.
QString pathIn(const Workspace& workspace, const QString& path)
{
    const QString relative = QDir(QFileInfo(workspace.directory()).canonicalFilePath())
                                 .relativeFilePath(QFileInfo(path).canonicalFilePath());
    return relative.startsWith(QLatin1String("../")) ? QString() : relative;
}

bool isInstance(const QString& pathInWorkspace)
{
    return pathInWorkspace.startsWith(QLatin1String("configuration/")) ||
           pathInWorkspace.startsWith(QLatin1String("process/"));
}

Problem noDescription(const QString& argument)
{
    return {Problem::Code::Shape,
            argument,
            0,
            0,
            QStringLiteral("the file is an instance, not a description"),
            QStringLiteral("name a description, links.json or units.json; the instances of a "
                           "description's links are looked at beside it")};
}

CheckedFile withoutNotes(CheckedFile file)
{
    file.findings.erase(std::remove_if(file.findings.begin(), file.findings.end(),
                                       [](const Finding& finding) {
                                           return checker::describe(finding.code).severity ==
                                                  checker::Severity::Note;
                                       }),
                        file.findings.end());
    return file;
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
each link that names it, with what links.json and units.json have to do with
it; another one by itself. FILE may be links.json or units.json, too.

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
    QList<Problem> problems;
    const std::optional<Workspace> workspace =
        Workspace::open(console.options().directory, problems);
    bool isRead = workspace && workspace->checkFolders(problems);
    report(problems, console);
    if (!workspace) {
        return false;
    }
    WorkspaceCheck check(*workspace);
    isRead = add(check.checkLinks(), {}, console) && isRead;
    QList<Problem> unitProblems;
    if (const auto units = check.checkUnits(unitProblems)) {
        files.append(*units);
    }
    isRead = report(unitProblems, console) && isRead;
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
    if (!descriptions.isEmpty()) {
        addWhatBears(*check, console);
    }
    return isRead;
}

/// What is wrong with the links and units of the descriptions that were asked for.
void CheckCommand::addWhatBears(WorkspaceCheck& check, Console& console)
{
    QList<Problem> problems;
    const std::optional<CheckedFile> units = check.checkUnits(problems);
    report(problems, console);
    if (units && !units->findings.isEmpty() && !has(units->name)) {
        files.prepend(*units);
    }
    const CheckedFile links = check.checkLinks(descriptions);
    if (!links.findings.isEmpty() && !has(links.name)) {
        files.prepend(links);
    }
}

bool CheckCommand::has(const QString& name) const
{
    return std::any_of(files.begin(), files.end(),
                       [&](const CheckedFile& file) { return file.name == name; });
}

bool CheckCommand::checkFile(const QString& argument, const std::optional<Workspace>& workspace,
                             std::optional<WorkspaceCheck>& check, Console& console)
{
    if (argument.isEmpty()) {
        return report({emptyName()}, console);
    }
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
    const QString identity = name.isEmpty() ? QFileInfo(path).canonicalFilePath() : name;
    if (!identity.isEmpty() && checkedPaths.contains(identity)) {
        return true;
    }
    checkedPaths.insert(identity);
    if (!name.isEmpty()) {
        descriptions.append(name);
        const CheckedFile file = check->checkDescription(name, problems);
        return add(file, problems, console);
    }
    const QString inWorkspace = workspace ? pathIn(*workspace, path) : QString();
    if (inWorkspace == QLatin1String("links.json")) {
        return add(check->checkLinks(), {}, console);
    }
    if (inWorkspace == QLatin1String("units.json")) {
        const std::optional<CheckedFile> units = check->checkUnits(problems);
        return add(units.value_or(CheckedFile{inWorkspace, {}, {}}), problems, console);
    }
    if (isInstance(inWorkspace)) {
        return report({noDescription(argument)}, console);
    }
    QFile file(path);
    if (!QFileInfo::exists(path)) {
        problems.append(unknownFile(argument, workspace));
    } else if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        problems.append({Problem::Code::Read, argument, 0, 0,
                         QStringLiteral("the file cannot be read"),
                         QStringLiteral("check that it is a file, and its permissions")});
    }
    if (!report(problems, console)) {
        return false;
    }
    return add(checker::checkText(file.readAll(), argument), {}, console);
}

bool CheckCommand::add(const CheckedFile& file, const QList<Problem>& problems, Console& console)
{
    files.append(file);
    return report(problems, console);
}

/// Whether there is nothing to report.
bool CheckCommand::report(const QList<Problem>& problems, Console& console)
{
    console.report(problems);
    unread += problems;
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
        console.print(findingsSarif(files, unread, base));
    } else if (format == "github") {
        console.print(findingsGithub(files, unread, base));
    } else {
        for (const CheckedFile& file : files) {
            const CheckedFile shown = console.options().quiet ? withoutNotes(file) : file;
            console.print(findingsText(shown, console.color()));
        }
        if (!files.isEmpty()) {
            console.show(findingsSummary(files, isRead));
        }
    }
    return exitCode;
}

} // namespace tools
