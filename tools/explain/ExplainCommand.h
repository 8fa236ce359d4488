#ifndef UNITFLOW_TOOLS_EXPLAIN_EXPLAINCOMMAND_H
#define UNITFLOW_TOOLS_EXPLAIN_EXPLAINCOMMAND_H

#include "filehost/Session.h"
#include "filehost/Workspace.h"
#include "tools/Command.h"
#include "tools/workspace/Changes.h"
#include "tools/workspace/SourceWrite.h"

#include <QList>
#include <QString>

#include <optional>
#include <string>

namespace tools {

class Outline;
class TraceRecorder;
struct LinkTrace;
struct NearMiss;

/// `unitflow explain`: runs what a write would run, writes nothing, and shows what the engine did
/// meanwhile; or shows a trace of somebody else's run.
class ExplainCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    ExitCode run(Console& console) override;

private:
    bool checkUsage(Console& console) const;
    bool readArguments(Console& console);
    ExitCode explainWrite(Console& console);
    ExitCode explainFile(Console& console);

    void runLinks(filehost::Session& session, const QList<filehost::Link>& links,
                  TraceRecorder& recorder, Console& console);
    void showLinks(filehost::Session& session, const TraceRecorder& recorder, Console& console);
    bool addLink(filehost::Session& session, const LinkRun& run, const LinkTrace& trace,
                 const QList<NearMiss>& misses, Outline& outline) const;
    void showChanges(const Changes& changes, Console& console) const;

    // as given
    std::optional<std::string> instanceArgument;
    std::optional<std::string> urlArgument;
    std::optional<std::string> valueArgument;
    std::string traceArgument;
    bool isProcess = false;
    bool isText = false;
    bool isAll = false;

    SourceWrite write; ///< as understood
    QList<LinkRun> runs;
    bool isAnyNodeRun = false; ///< for any of the links
};

} // namespace tools

#endif
