#ifndef UNITFLOW_TOOLS_RESOLVECOMMAND_H
#define UNITFLOW_TOOLS_RESOLVECOMMAND_H

#include "filehost/Session.h"
#include "filehost/Workspace.h"
#include "tools/Changes.h"
#include "tools/Command.h"
#include "tools/Links.h"

#include <QList>
#include <QString>

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
    bool readLinks(const filehost::Workspace& workspace, Console& console);
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

    // what came of it
    QList<filehost::Link> links;
    bool linksAreSound = true; ///< false when links.json has entries that cannot be used
    QList<LinkRun> runs;
    Changes changes;
    bool isDone = false;
};

} // namespace tools

#endif
