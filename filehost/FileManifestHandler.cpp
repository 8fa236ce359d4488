#include "filehost/FileManifestHandler.h"

#include "filehost/Manifest.h"
#include "filehost/Names.h"
#include "filehost/Session.h"
#include "filehost/WorkspaceLock.h"
#include "filehost/services/Reporting.h"

#include <optional>
#include <utility>

namespace filehost {

namespace {

/// The thread's session if it is on the workspace.
Session* sessionOn(const Workspace& workspace)
{
    Session* const session = Session::current();
    if (session == nullptr) {
        return nullptr;
    }
    const QString directory = session->workspace().directory();
    const bool isOn = directory == workspace.directory() ||
                      canonicalPath(directory) == canonicalPath(workspace.directory());
    return isOn ? session : nullptr;
}

bool isReadable(const Workspace& workspace, QList<Problem>& problems)
{
    std::shared_ptr<const json::JsonText> text;
    return readManifest(workspace.directory(), text, problems);
}

bool writeAlone(const QString& root, const QList<ManifestUpdate>& updates, QList<Problem>& problems)
{
    WorkspaceLock lock(root);
    std::shared_ptr<const json::JsonText> text;
    if (!lock.take({}, problems) || !readManifest(root, text, problems)) {
        return false;
    }
    const QByteArray bytes = withUpdates(text.get(), updates);
    return (text && text->bytes() == bytes) ||
           replaceBytes(manifestFile(root), text.get(), bytes, problems);
}

} // namespace

class FileManifestHandler::Private {
public:
    Workspace workspace;
    QList<ManifestUpdate> waiting;
    std::optional<bool> readable; ///< what the file was found to be since the last writing
};

FileManifestHandler::FileManifestHandler(const Workspace& workspace)
    : d(std::make_unique<Private>(Private{workspace, {}, {}}))
{}

FileManifestHandler::~FileManifestHandler() = default;

bool FileManifestHandler::update(const QString& instanceName, const QString& propertyKey,
                                 const QVariant& value, bool /*flag*/)
{
    QList<Problem> problems;
    const QVariant held =
        valueForManifest(d->workspace.directory(), instanceName, propertyKey, value, problems);
    if (Session* const session = sessionOn(d->workspace)) {
        d->readable = session->readsManifest();
    } else if (!d->readable) {
        d->readable = isReadable(d->workspace, problems);
    }
    report(problems);
    if (!*d->readable || !held.isValid()) {
        return false;
    }
    d->waiting.append({instanceName, propertyKey, held});
    return true;
}

bool FileManifestHandler::writeToManifestFile()
{
    const QList<ManifestUpdate> updates = std::exchange(d->waiting, {});
    d->readable.reset();
    if (updates.isEmpty()) {
        return true;
    }
    if (Session* const session = sessionOn(d->workspace)) {
        session->updateManifest(updates);
        return true;
    }
    QList<Problem> problems;
    const bool isWritten = writeAlone(d->workspace.directory(), updates, problems);
    report(problems);
    return isWritten;
}

} // namespace filehost
