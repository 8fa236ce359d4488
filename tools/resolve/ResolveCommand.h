#ifndef UNITFLOW_TOOLS_RESOLVE_RESOLVECOMMAND_H
#define UNITFLOW_TOOLS_RESOLVE_RESOLVECOMMAND_H

#include "filehost/Session.h"
#include "filehost/Workspace.h"
#include "tools/Command.h"
#include "tools/workspace/Changes.h"
#include "tools/workspace/Links.h"

#include <optional>
#include <string>
#include <vector>

namespace tools {

/// `unitflow resolve`: runs one description between two instances, or every link, and shows what
/// changed.
class ResolveCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    ExitCode run(Console& console) override;

private:
    bool checkUsage(Console& console) const;
    ExitCode work(Console& console);
    bool readArguments(Console& console);
    bool loadArguments(filehost::Session& session, Console& console) const;

    void showText(Console& console) const;
    void writeDocument(Console& console, ExitCode exitCode) const;

    // as given
    std::string sourceArgument;
    std::string targetArgument;
    std::string dependencyArgument;
    std::vector<std::string> urlArguments;
    std::vector<std::string> parameterArguments;
    bool isProcess = false;
    bool isAll = false;
    bool isDryRun = false;
    std::optional<int> jobs;

    // what came of it, without --all
    filehost::Link link{{}, {}, {}, false, {}, 0, 0};
    std::optional<LinkRun> linkRun; ///< nothing when it could not be run
    Changes changes;
};

} // namespace tools

#endif
