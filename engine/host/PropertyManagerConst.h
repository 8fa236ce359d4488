#ifndef UNITFLOW_HOST_PROPERTYMANAGERCONST_H
#define UNITFLOW_HOST_PROPERTYMANAGERCONST_H

#include "host/HostExport.h"

#include <QString>

/// Where the host keeps its folders and files.
class UNITFLOW_HOST_API PropertyManagerConst {
public:
    /// The folder of the configuration descriptions below `basePath`.
    static QString getConfigurationFolderPath(const QString& basePath);
    /// The folder of the process descriptions below `basePath`.
    static QString getProcessFolderPath(const QString& basePath);
    /// The folder of the dependency descriptions below `basePath`.
    static QString getDependencyFolderPath(const QString& basePath);
    /// The extension of configuration files, handed to the parser with every text.
    static QString getConfigFileExtension();
    /// The manifest's file name, without a folder.
    static QString getConfigurationManifestFilename();
};

#endif
