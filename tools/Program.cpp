#include "tools/Program.h"

#include "tools/Command.h"
#include "tools/Console.h"
#include "tools/InitCommand.h"
#include "tools/Messages.h"
#include "tools/NearestNames.h"
#include "tools/ResolveCommand.h"
#include "tools/SetCommand.h"
#include "tools/ShowCommand.h"
#include "tools/Text.h"

#include <CLI/CLI.hpp>
#include <QString>

#include <algorithm>
#include <map>
#include <memory>
#include <ostream>
#include <utility>

namespace tools {

namespace {

const char* const examples = R"(
Exit code: 0 done, 1 something did not resolve, 2 wrong usage or input/output error.

Examples:
  unitflow init my-line
  unitflow -C my-line show controller
  unitflow -C my-line set controller Settings/TemperatureUnit °F --dry-run
  unitflow set --help)";

/// The subcommands, in the order in which the help lists them.
std::vector<std::unique_ptr<Command>> makeCommands()
{
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(std::make_unique<SetCommand>());
    commands.push_back(std::make_unique<ResolveCommand>());
    commands.push_back(std::make_unique<ShowCommand>());
    commands.push_back(std::make_unique<InitCommand>());
    return commands;
}

/// The options that stand before or behind every subcommand.
struct GlobalArguments {
    std::string directory = ".";
    bool json = false;
    bool quiet = false;
};

void declare(CLI::App& program, GlobalArguments& arguments)
{
    program.add_option("-C", arguments.directory, "The workspace; the current folder without it")
        ->option_text("DIR");
    program.add_flag("--json", arguments.json, "Write one JSON document instead of text");
    program.add_flag("--quiet", arguments.quiet, "Write errors and warnings only");
    program.set_version_flag("--version", "unitflow " UNITFLOW_VERSION, "Show the version");
    program.require_subcommand(1);
    program.footer(examples);
}

QString names(const CLI::App& command)
{
    return QString::fromStdString(
        command.get_parent() == nullptr ? command.get_name() : "unitflow " + command.get_name());
}

/// Everything that could have been meant by a word that was not expected.
QStringList expectedWords(const CLI::App& program, const CLI::App& command, bool isOption)
{
    QStringList words;
    if (!isOption && &command == &program) {
        for (const CLI::App* subcommand : program.get_subcommands(nullptr)) {
            words.append(QString::fromStdString(subcommand->get_name()));
        }
    }
    if (isOption) {
        for (const CLI::App* app : {&command, &program}) {
            for (const CLI::Option* option : app->get_options()) {
                words.append(QString::fromStdString(option->get_name()));
            }
        }
    }
    return words;
}

/// What is wrong with the command line, and where to read on.
QString usageError(const CLI::App& program, const CLI::ParseError& error)
{
    const std::vector<CLI::App*> parsed = program.get_subcommands();
    const CLI::App& command = parsed.empty() ? program : *parsed.front();
    const std::vector<std::string> unexpected = program.remaining(true);

    QString text = QString::fromStdString(error.what());
    QString nearest;
    if (!unexpected.empty()) {
        const QString word = QString::fromStdString(unexpected.front());
        text = QStringLiteral("%1 was not expected").arg(quoted(word));
        nearest = nearestNamesSentence(
            word, expectedWords(program, command, word.startsWith(QLatin1Char('-'))));
    }
    if (!nearest.isEmpty()) {
        nearest += QLatin1Char(' ');
    }
    return QStringLiteral("%1\n    %2\"%3 --help\" shows how.").arg(text, nearest, names(command));
}

bool isUtf8(const std::string& text)
{
    return QString::fromStdString(text).toStdString() == text;
}

/// Runs a command. What is logged meanwhile and belongs to nothing in particular is not lost.
ExitCode runCommand(Command& command, Console& console)
{
    const auto warn = [&console](Severity severity, const QString& message) {
        console.report({severity, {filehost::Problem::Code::Read, {}, 0, 0, message, {}}, {}});
    };
    Messages messages([&](const QString& lastWords) { warn(Severity::Error, lastWords); });
    const ExitCode exitCode = command.run(console);
    for (const QString& message : messages.take()) {
        warn(Severity::Warning, message);
    }
    return exitCode;
}

/// A full disk or a closed pipe shows only now.
ExitCode flushed(const Streams& streams, ExitCode exitCode)
{
    if (streams.out.flush()) {
        return exitCode;
    }
    Console(streams, {}).complain(QStringLiteral("the output could not be written"));
    return ExitCode::Failed;
}

} // namespace

ExitCode run(const std::vector<std::string>& arguments, const Streams& streams)
{
    CLI::App program("Units of configuration leaves follow written configuration values.",
                     "unitflow");
    GlobalArguments global;
    declare(program, global);

    std::map<const CLI::App*, std::unique_ptr<Command>> commands;
    for (std::unique_ptr<Command>& command : makeCommands()) {
        CLI::App* const declared = command->declare(program)->fallthrough();
        commands.emplace(declared, std::move(command));
    }

    Console early(streams, {});
    if (!std::all_of(arguments.begin(), arguments.end(), isUtf8)) {
        early.complain(QStringLiteral("the command line is not UTF-8"));
        return ExitCode::Failed;
    }
    try {
        program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::Success& question) { // --help and --version
        program.exit(question, streams.out, streams.err);
        return flushed(streams, ExitCode::Done);
    } catch (const CLI::ParseError& error) {
        early.complain(usageError(program, error));
        return ExitCode::Failed;
    }

    Console console(streams, {QString::fromStdString(global.directory), global.json, global.quiet});
    Command& command = *commands.at(program.get_subcommands().front());
    return flushed(streams, runCommand(command, console));
}

} // namespace tools
