#include "tools/workspace/Manifest.h"

#include "SourceDependencyManager.h"
#include "filehost/FileDependencyResolver.h"
#include "filehost/FileManifestHandler.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/PropertyManagerConst.h"
#include "tools/console/Console.h"
#include "tools/console/Messages.h"
#include "tools/console/Text.h"

#include <QDir>

namespace tools {

namespace {

using filehost::Problem;
using filehost::Workspace;

QDir folderOf(const Workspace& workspace)
{
    return PropertyManagerConst::getConfigurationFolderPath(workspace.directory());
}

/// The manifest's file, as problems name it.
QString fileOf(const Workspace& workspace)
{
    return QDir(workspace.directory())
        .relativeFilePath(
            folderOf(workspace).filePath(PropertyManagerConst::getConfigurationManifestFilename()));
}

Problem inManifest(const Workspace& workspace, const QString& message)
{
    return {Problem::Code::Shape, fileOf(workspace), 0, 0, message, {}};
}

/// What the engine logs ends up as warnings about the manifest.
class ManifestMessages {
public:
    ManifestMessages(const Workspace& workspace, Console& console)
        : workspace(workspace), console(console), messages([this](const QString& lastWords) {
              this->console.report(inManifest(this->workspace, lastWords));
          })
    {}

    void report()
    {
        for (const QString& message : messages.take()) {
            console.report({Severity::Warning, inManifest(workspace, message), std::nullopt});
        }
    }

    void drop() { messages.take(); }

private:
    const Workspace& workspace;
    Console& console;
    Messages messages;
};

/// Scans a manifest that was found to be readable.
QStringList scan(const Workspace& workspace, Console& console)
{
    ManifestMessages messages(workspace, console);
    SourceDependencyManager manager;
    manager.scanManifestFileForDependencyInstances(folderOf(workspace));
    messages.report();
    return manager.getDependencySourceInstanceList();
}

} // namespace

bool updateManifest(const Workspace& workspace, filehost::Session& session, Console& console)
{
    ManifestMessages messages(workspace, console);
    filehost::FileManifestHandler handler(workspace);
    filehost::FileDependencyResolver resolver(workspace);
    resolver.setConfigurationManifestHandler(&handler);
    resolver.updateConfigurationManifest();

    const QList<Problem> problems = session.takeProblems();
    console.report(problems);
    if (problems.isEmpty()) {
        messages.report();
    } else {
        messages.drop(); // each instance that could not be updated, for the same reason
    }
    return problems.isEmpty();
}

std::optional<QStringList> flaggedSources(const Workspace& workspace, Console& console)
{
    QList<Problem> problems;
    if (!workspace.checkManifest(problems)) {
        console.report(problems);
        return std::nullopt;
    }
    return scan(workspace, console);
}

void warnIfNotFlagged(const Workspace& workspace, const QString& instance, int links,
                      Console& console)
{
    QList<Problem> problems;
    const bool isThere = workspace.checkManifest(problems);
    const bool isMissing = problems.size() == 1 && problems.first().code == Problem::Code::Missing;
    if (links == 0 || (!isThere && !isMissing) ||
        (isThere && scan(workspace, console).contains(instance))) {
        return;
    }
    const QString message =
        QStringLiteral("%1 drives %2, but its entry has no \"%3\": true")
            .arg(quoted(instance), counted(links, QStringLiteral("link"), QStringLiteral("links")),
                 ConfigurationAndProcessDataDefinitions::getKeyDataPropertyHasDependency());
    console.report({Severity::Warning, inManifest(workspace, message), std::nullopt});
}

} // namespace tools
