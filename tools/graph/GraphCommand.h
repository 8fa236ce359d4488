#ifndef UNITFLOW_TOOLS_GRAPH_GRAPHCOMMAND_H
#define UNITFLOW_TOOLS_GRAPH_GRAPHCOMMAND_H

#include "filehost/Workspace.h"
#include "tools/Command.h"
#include "tools/explain/TraceTree.h"
#include "tools/graph/Graph.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace tools {

/// `unitflow graph`: a description as a picture, or in a form to make one of.
class GraphCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    ExitCode run(Console& console) override;

private:
    // What cannot be done is reported, and false.
    bool chooseFormat(Console& console);
    bool checkUsage(Console& console) const;
    bool isTextAlone() const;
    bool readDescription(Console& console);
    bool chooseDescription(const filehost::Workspace& workspace, Console& console);
    bool addLink(const filehost::Workspace& workspace, Console& console);
    std::optional<filehost::Link> chosenLink(const filehost::Workspace& workspace,
                                             Console& console) const;
    bool addTrace(Console& console);
    const LinkTrace* chosenRun(const std::vector<LinkTrace>& runs, Console& console) const;

    QByteArray json(Console& console, ExitCode exitCode) const;
    std::optional<QByteArray> rendered(Console& console) const;
    ExitCode write(Console& console);
    bool writePage(Console& console) const;
    ExitCode fail(Console& console) const;
    void hint(Console& console) const;

    std::string nameArgument;
    std::string formatArgument;
    std::string fileArgument;
    std::string pageArgument;
    std::string linkArgument;
    std::string traceArgument;

    QString format;
    Graph graph;
};

} // namespace tools

#endif
