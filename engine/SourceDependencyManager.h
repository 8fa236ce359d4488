#ifndef UNITFLOW_SOURCEDEPENDENCYMANAGER_H
#define UNITFLOW_SOURCEDEPENDENCYMANAGER_H

#include "Export.h"

#include <QDir>
#include <QJsonValue>
#include <QString>
#include <QStringList>

/// Tells which instances are sources of dependencies, by the flags in the configuration manifest.
///
/// Answers come from the last scan that succeeded; nothing is read in between.
class UNITFLOW_EXPORT SourceDependencyManager {
public:
    SourceDependencyManager();
    SourceDependencyManager(const SourceDependencyManager& other);
    SourceDependencyManager& operator=(const SourceDependencyManager& other);
    virtual ~SourceDependencyManager();

    /// Reads the manifest in `folder` and takes over the names of all entries whose flag is the
    /// boolean true, in manifest order. False when the file does not open (with a warning) or is no
    /// JSON (silently); the names then stay as they were.
    bool scanManifestFileForDependencyInstances(const QDir& folder);

    /// Whether the name is among those found, compared whole and with case.
    bool buildsDependency(const QString& instanceName) const;

    /// The names found.
    QStringList getDependencySourceInstanceList() const;

    /// A null string for a name without "/", any other name as it is.
    QString stripPathOfInstanceName(const QString& instanceName);

    /// The strings of a JSON array. Anything else in it is passed over with a warning each; a value
    /// that is no array gives a warning and an empty list.
    QStringList jsonValueToStringList(const QJsonValue& value);

private:
    QStringList dependencySourceInstanceList;
};

#endif
