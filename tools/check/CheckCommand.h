#ifndef UNITFLOW_TOOLS_CHECK_CHECKCOMMAND_H
#define UNITFLOW_TOOLS_CHECK_CHECKCOMMAND_H

#include "checker/Check.h"
#include "tools/Command.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>
#include <string>
#include <vector>

namespace tools {

/// `unitflow check`: what descriptions and links say that the engine would not do.
class CheckCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    ExitCode run(Console& console) override;

private:
    ExitCode explain(Console& console) const;
    /// False when something could not be read.
    bool checkAll(Console& console);
    bool checkFiles(Console& console);
    bool checkFile(const QString& argument, const std::optional<filehost::Workspace>& workspace,
                   std::optional<checker::WorkspaceCheck>& check, Console& console);
    bool add(const checker::CheckedFile& file, const QList<filehost::Problem>& problems,
             Console& console);
    void addWhatBears(checker::WorkspaceCheck& check, Console& console);
    bool has(const QString& name) const;
    bool report(const QList<filehost::Problem>& problems, Console& console);
    ExitCode write(Console& console, bool isRead) const;
    bool hasFailed() const;

    std::vector<std::string> fileArguments;
    std::string failOn = "error";
    std::string format = "human";
    std::string code;
    QList<checker::CheckedFile> files;
    QSet<QString> checkedPaths;      ///< a file counts once, however often it is named
    QStringList descriptions;        ///< of the workspace, that were asked for
    QList<filehost::Problem> unread; ///< why something could not be checked
};

} // namespace tools

#endif
