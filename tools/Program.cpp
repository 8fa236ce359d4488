#include "tools/Program.h"

#include "filehost/NearestNames.h"
#include "tools/Command.h"
#include "tools/check/CheckCommand.h"
#include "tools/console/Console.h"
#include "tools/console/Messages.h"
#include "tools/console/Text.h"
#include "tools/explain/ExplainCommand.h"
#include "tools/graph/GraphCommand.h"
#include "tools/resolve/ResolveCommand.h"
#include "tools/types/SchemaCommand.h"
#include "tools/types/TypesCommand.h"
#include "tools/why/WhyCommand.h"
#include "tools/workspace/InitCommand.h"
#include "tools/workspace/SetCommand.h"
#include "tools/workspace/ShowCommand.h"
#include "tools/workspace/SourcesCommand.h"

#include <CLI/CLI.hpp>
#include <QString>

#include <algorithm>
#include <map>
#include <memory>
#include <ostream>
#include <utility>

namespace tools {

namespace {

const char* const optionsOfAll = R"(

The options -C DIR, --json and --quiet go with every command: "unitflow --help".)";

/// The subcommands, in the order in which the help lists them.
std::vector<std::unique_ptr<Command>> makeCommands()
{
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(std::make_unique<SetCommand>());
    commands.push_back(std::make_unique<ExplainCommand>());
    commands.push_back(std::make_unique<ResolveCommand>());
    commands.push_back(std::make_unique<ShowCommand>());
    commands.push_back(std::make_unique<SourcesCommand>());
    commands.push_back(std::make_unique<WhyCommand>());
    commands.push_back(std::make_unique<TypesCommand>());
    commands.push_back(std::make_unique<SchemaCommand>());
    commands.push_back(std::make_unique<CheckCommand>());
    commands.push_back(std::make_unique<GraphCommand>());
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
    program.get_formatter()->column_width(22);
    program.set_help_flag("-h,--help", "Show this help");
    program.add_option("-C", arguments.directory, "The workspace; the current folder without it")
        ->type_name("DIR");
    program.add_flag("--json", arguments.json, "Write one JSON document instead of text");
    program.add_flag("--quiet", arguments.quiet, "Write errors and warnings only");
    program.set_version_flag("--version", "unitflow " UNITFLOW_VERSION, "Show the version");
    program.require_subcommand(1);
    program.footer(
        R"(Exit code: 0 if all is done, 1 if something did not resolve or mistakes were
found, 2 after wrong usage or an input or output error. Colors are for terminals
only, and not if NO_COLOR is set.

Examples:
  unitflow init my-line
  unitflow -C my-line show controller
  unitflow -C my-line set controller Settings/TemperatureUnit °F --dry-run
  unitflow set --help)");
}

QString nameOf(const CLI::App& command)
{
    return QString::fromStdString(
        command.get_parent() == nullptr ? command.get_name() : "unitflow " + command.get_name());
}

/// What could have been meant by a word that was not expected.
QStringList expectedWords(const CLI::App& program, const CLI::App& command, const QString& word)
{
    QStringList words;
    if (word.startsWith(QLatin1Char('-'))) {
        for (const CLI::App* app : {&command, &program}) {
            for (const CLI::Option* option : app->get_options()) {
                if (!option->get_positional()) {
                    words.append(QString::fromStdString(option->get_name()));
                }
            }
        }
        words.removeDuplicates();
    } else if (&command == &program) {
        for (const CLI::App* subcommand : program.get_subcommands(nullptr)) {
            words.append(QString::fromStdString(subcommand->get_name()));
        }
    }
    return words;
}

/// What to do about a word that was not expected; may be empty.
QString adviceOn(const CLI::App& program, const CLI::App& command, const QString& word)
{
    const QStringList expected = expectedWords(program, command, word);
    if (expected.contains(word)) {
        return QStringLiteral("behind \"--\" nothing is an option");
    }
    const bool isAlike = !filehost::nearestName(word, expected).isEmpty();
    const bool isTypo = isAlike && word.startsWith(QLatin1String("--"));
    if (word.startsWith(QLatin1Char('-')) && &command != &program && !isTypo) {
        return QStringLiteral("a value that begins with \"-\" goes behind \"--\"");
    }
    return isAlike ? nearestNamesText(word, expected) : QString();
}

/// Says what is wrong with the command line, and where to read on.
void reportUsage(const CLI::App& program, const CLI::ParseError& error, Console& console)
{
    const std::vector<CLI::App*> parsed = program.get_subcommands();
    const CLI::App& command = parsed.empty() ? program : *parsed.front();
    const std::vector<std::string> unexpected = program.remaining(true);

    const QString help = QStringLiteral("\"%1 --help\" shows how").arg(nameOf(command));
    if (unexpected.empty()) {
        console.complain(parsed.empty() ? QStringLiteral("a command is missing")
                                        : QString::fromStdString(error.what()),
                         help);
        return;
    }
    const QString word = QString::fromStdString(unexpected.front());
    const QString advice = adviceOn(program, command, word);
    console.complain(QStringLiteral("%1 was not expected").arg(quoted(word)),
                     advice.isEmpty() ? help : advice + QStringLiteral("; ") + help);
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
    Console(streams, {})
        .complain(QStringLiteral("the output cannot be written"),
                  QStringLiteral("check the disk, or what it was written to"));
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
        declared->footer(declared->get_footer() + optionsOfAll);
        commands.emplace(declared, std::move(command));
    }

    Console early(streams, {});
    if (!std::all_of(arguments.begin(), arguments.end(), isUtf8)) {
        early.complain(QStringLiteral("the command line is not UTF-8"),
                       QStringLiteral("set the terminal, or the script, to UTF-8"));
        return ExitCode::Failed;
    }
    try {
        program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::Success& question) { // --help and --version
        program.exit(question, streams.out, streams.err);
        return flushed(streams, ExitCode::Done);
    } catch (const CLI::ParseError& error) {
        reportUsage(program, error, early);
        return ExitCode::Failed;
    }

    Console console(streams, {QString::fromStdString(global.directory), global.json, global.quiet});
    Command& command = *commands.at(program.get_subcommands().front());
    return flushed(streams, runCommand(command, console));
}

} // namespace tools
