#ifndef UNITFLOW_FILEHOST_FILEMANIFESTHANDLER_H
#define UNITFLOW_FILEHOST_FILEMANIFESTHANDLER_H

#include "filehost/Export.h"
#include "filehost/Workspace.h"
#include "host/ConfigurationManifestHandler.h"

#include <memory>

namespace filehost {

/// Keeps `configuration/manifest.json` of a workspace. An instance's entry is the object with its
/// name as "instanceName"; the handler does not ask whether there is such an instance, or of which
/// kind. Every byte that needs no change stays.
///
/// While the thread has a session on the workspace, the manifest is one of the session's files:
/// its `commit` writes it, together with the instances. Problems go to the thread's session.
class UNITFLOW_FILEHOST_EXPORT FileManifestHandler final : public ConfigurationManifestHandler {
public:
    explicit FileManifestHandler(const Workspace& workspace);
    ~FileManifestHandler() override;
    FileManifestHandler(const FileManifestHandler&) = delete;
    FileManifestHandler& operator=(const FileManifestHandler&) = delete;

    /// Sets a property for the next `writeToManifestFile`. An instance without an entry gets one,
    /// at the end. False with a problem when the manifest cannot be read or is no list, and for a
    /// value that it cannot hold. `flag` means nothing here.
    bool update(const QString& instanceName, const QString& propertyKey, const QVariant& value,
                bool flag) override;

    /// Writes what was updated since the last call, or hands it to the session. Makes a manifest
    /// when there is none; leaves alone one that would not change. False with a problem when it
    /// cannot be written, which a session only finds out at its `commit`.
    bool writeToManifestFile() override;

private:
    class Private;
    std::unique_ptr<Private> d; ///< the updates that wait to be written
};

} // namespace filehost

#endif
