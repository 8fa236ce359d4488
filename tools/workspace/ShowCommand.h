#ifndef UNITFLOW_TOOLS_WORKSPACE_SHOWCOMMAND_H
#define UNITFLOW_TOOLS_WORKSPACE_SHOWCOMMAND_H

#include "filehost/Workspace.h"
#include "tools/Command.h"
#include "tools/workspace/Leaves.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <string>

namespace tools {

/// `unitflow show`: the leaves of an instance, or what the workspace has.
class ShowCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    ExitCode run(Console& console) override;

private:
    ExitCode showWorkspace(const std::optional<filehost::Workspace>& workspace, Console& console);
    ExitCode showInstance(const std::optional<filehost::Workspace>& workspace, Console& console);

    /// Null when they cannot be had.
    std::optional<QList<Leaf>> findLeaves(const filehost::Workspace& workspace,
                                          const filehost::Instance& instance,
                                          Console& console) const;
    QString wantedUrl() const;
    void writeLeaves(const QList<Leaf>& leaves, Console& console, ExitCode exitCode) const;

    std::string instanceArgument;
    std::string urlArgument;
    bool isProcess = false;
};

} // namespace tools

#endif
