#include "tools/workspace/InitCommand.h"

#include "filehost/Problem.h"
#include "tools/console/Console.h"
#include "tools/console/Json.h"
#include "tools/console/Table.h"
#include "tools/console/Text.h"

#include <CLI/CLI.hpp>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

// The macro declares a function, which must not happen inside a namespace. It is needed because
// nothing else refers to the resource in this static library.
static void registerStarter()
{
    Q_INIT_RESOURCE(starter);
}

namespace tools {

namespace {

using filehost::Problem;

const QString starterFolder = QStringLiteral(":/starter");

/// The files of the starter, relative to it, in ascending order.
QStringList starterFiles()
{
    registerStarter();
    QStringList files;
    QDirIterator all(starterFolder, QDir::Files, QDirIterator::Subdirectories);
    while (all.hasNext()) {
        files.append(QDir(starterFolder).relativeFilePath(all.next()));
    }
    files.sort();
    return files;
}

/// Empty on success, otherwise why not.
QString copyFile(const QString& from, const QString& to)
{
    QFile original(from);
    QFile copy(to);
    if (!original.open(QIODevice::ReadOnly)) {
        return original.errorString();
    }
    const QByteArray bytes = original.readAll();
    if (!QDir().mkpath(QFileInfo(to).path())) {
        return QStringLiteral("its folder cannot be made");
    }
    const bool isWritten = copy.open(QIODevice::WriteOnly | QIODevice::NewOnly) &&
                           copy.write(bytes) == bytes.size() && copy.flush();
    return isWritten ? QString() : copy.errorString();
}

QString resultText(const QString& directory, const QStringList& files, bool color)
{
    Table table;
    table.addHeading(printable(directory));
    for (const QString& file : files) {
        table.addRow({file});
    }
    return table.toText(color) +
           QStringLiteral("%1 files written; README.md says what to try.\n").arg(files.size());
}

} // namespace

CLI::App* InitCommand::declare(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("init", "Write a small workspace to start from");
    command->add_option("DIR", directoryArgument, "A folder that is empty or not there yet")
        ->required()
        ->option_text(" ");
    command->footer(
        R"(Examples:
  unitflow init my-line
  cd my-line
  unitflow set controller Settings/TemperatureUnit °F)");
    return command;
}

ExitCode InitCommand::run(Console& console)
{
    const QString given = QString::fromStdString(directoryArgument);
    const QString directory = QDir(console.options().directory).filePath(given);
    const ExitCode exitCode = work(QDir::cleanPath(directory), console);
    if (console.options().json) {
        JsonDocument json(QStringLiteral("init"));
        json.add(QStringLiteral("directory"), given);
        json.add(QStringLiteral("files"), written);
        console.write(json, exitCode);
    } else if (exitCode == ExitCode::Done) {
        console.show(resultText(given, written, console.color()));
    }
    return exitCode;
}

ExitCode InitCommand::work(const QString& directory, Console& console)
{
    constexpr QDir::Filters everything =
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    const QFileInfo place(directory);
    const bool isFree = !place.exists() || (place.isDir() && QDir(directory).isEmpty(everything));
    if (!isFree) {
        console.report(Problem{Problem::Code::Write, directory, 0, 0,
                               place.isDir() ? QStringLiteral("the folder is not empty")
                                             : QStringLiteral("this is no folder"),
                               QStringLiteral("name a folder that is empty or not there yet")});
        return ExitCode::Failed;
    }

    for (const QString& file : starterFiles()) {
        const QString path = QDir(directory).filePath(file);
        const QString error = copyFile(starterFolder + QLatin1Char('/') + file, path);
        if (!error.isEmpty()) {
            console.report(Problem{
                Problem::Code::Write, path, 0, 0, error,
                QStringLiteral("check the folder, the permissions and the space on the disk")});
            return ExitCode::Failed;
        }
        written.append(file);
    }
    return ExitCode::Done;
}

} // namespace tools
