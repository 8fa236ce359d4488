#ifndef UNITFLOW_TOOLS_WORKSPACE_SETCOMMAND_H
#define UNITFLOW_TOOLS_WORKSPACE_SETCOMMAND_H

#include "filehost/Session.h"
#include "filehost/Workspace.h"
#include "tools/Command.h"
#include "tools/workspace/Changes.h"
#include "tools/workspace/SourceWrite.h"

#include <QList>

#include <string>

namespace tools {

/// `unitflow set`: writes a value, runs the links that start at its instance and shows what
/// changed. Nothing is written when the value itself cannot be; a link that fails does not keep the
/// others from running.
class SetCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    ExitCode run(Console& console) override;

private:
    ExitCode work(Console& console);
    bool readArguments(Console& console);
    void runLinks(filehost::Session& session, const QList<filehost::Link>& links, Console& console);

    void showText(Console& console) const;
    void writeDocument(Console& console, ExitCode exitCode) const;

    // as given
    std::string instanceArgument;
    std::string urlArgument;
    std::string valueArgument;
    bool isProcess = false;
    bool isDryRun = false;
    bool isText = false;

    SourceWrite write; ///< as understood

    // what came of it
    QList<LinkRun> runs;
    bool isAnyNodeRun = false; ///< for any of the links
    Changes changes;
    bool isDone = false; ///< the value stands, whatever became of the links
};

} // namespace tools

#endif
