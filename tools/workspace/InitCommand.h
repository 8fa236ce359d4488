#ifndef UNITFLOW_TOOLS_WORKSPACE_INITCOMMAND_H
#define UNITFLOW_TOOLS_WORKSPACE_INITCOMMAND_H

#include "tools/Command.h"

#include <QString>
#include <QStringList>

#include <string>

namespace tools {

/// `unitflow init`: writes a small workspace that works at once and explains itself. A folder that
/// holds anything is left alone.
class InitCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    ExitCode run(Console& console) override;

private:
    ExitCode work(const QString& directory, Console& console);

    std::string directoryArgument;
    QStringList written; ///< relative to the new workspace
};

} // namespace tools

#endif
