#ifndef UNITFLOW_TOOLS_WORKSPACE_SOURCESCOMMAND_H
#define UNITFLOW_TOOLS_WORKSPACE_SOURCESCOMMAND_H

#include "tools/Command.h"

#include <QList>
#include <QString>

namespace tools {

/// `unitflow sources`: lists the instances that the manifest flags as sources of dependencies.
class SourcesCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    ExitCode run(Console& console) override;

private:
    struct Source {
        QString instance;
        int links; ///< that start at it
    };

    ExitCode work(Console& console);
    QString text(bool color) const;
    void writeDocument(Console& console, ExitCode exitCode) const;

    QList<Source> sources; ///< in the order of the manifest
};

} // namespace tools

#endif
