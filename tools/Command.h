#ifndef UNITFLOW_TOOLS_COMMAND_H
#define UNITFLOW_TOOLS_COMMAND_H

#include "tools/console/ExitCode.h"

namespace CLI {
class App;
}

namespace tools {

class Console;

/// A subcommand of the program.
class Command {
public:
    Command() = default;
    virtual ~Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    /// Adds the subcommand to the program's command line. Called once, before the line is read:
    /// the options are read into the command itself.
    virtual CLI::App* declare(CLI::App& program) = 0;

    /// Does what the line says.
    virtual ExitCode run(Console& console) = 0;
};

} // namespace tools

#endif
