#ifndef UNITFLOW_FILEHOST_MANIFEST_H
#define UNITFLOW_FILEHOST_MANIFEST_H

#include "filehost/Files.h"
#include "filehost/Problem.h"
#include "filehost/json/JsonText.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariant>

#include <memory>

namespace filehost {

/// One property of an instance's entry in the manifest.
struct ManifestUpdate {
    QString instanceName;
    QString key;
    QVariant value; ///< normalized
};

/// The manifest of the workspace at `root`.
File manifestFile(const QString& root);

/// Reads the manifest. `text` is null when there is none, which is no problem. False with problems
/// when it cannot be read, or is no list.
bool readManifest(const QString& root, std::shared_ptr<const json::JsonText>& text,
                  QList<Problem>& problems);

/// The manifest with updates; of several for one property the last one counts. An instance's entry
/// is the first object, at any depth, with its name as "instanceName"; one that has none gets one
/// at the end. `text` is null for a manifest that is to be made; there is an update then.
QByteArray withUpdates(const json::JsonText* text, const QList<ManifestUpdate>& updates);

/// The value as a manifest can hold it under the key; invalid with a problem when it cannot.
QVariant valueForManifest(const QString& root, const QString& instanceName, const QString& key,
                          const QVariant& value, QList<Problem>& problems);

} // namespace filehost

#endif
