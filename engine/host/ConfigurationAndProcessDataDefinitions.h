#ifndef UNITFLOW_HOST_CONFIGURATIONANDPROCESSDATADEFINITIONS_H
#define UNITFLOW_HOST_CONFIGURATIONANDPROCESSDATADEFINITIONS_H

#include "host/HostExport.h"

#include <QString>

/// The host's property keys. The engine never spells a key itself.
class UNITFLOW_HOST_API ConfigurationAndProcessDataDefinitions {
public:
    /// The value of a node; on a command's or condition's description, its parameter table.
    static QString getKeyDataPropertyValue();
    /// The unit of a leaf, the property that unit commands write.
    static QString getKeyDataPropertyUnitType();
    /// The data type of a leaf, compared with `getKeyDataTypeArray()`.
    static QString getKeyDataPropertyType();
    /// The type name that marks an array leaf: a value, not a key.
    static QString getKeyDataTypeArray();
    /// The per-column information of an array leaf.
    static QString getKeyDataPropertyArrayInformation();
    /// The manifest key under which an instance is flagged as a source of dependencies.
    static QString getKeyDataPropertyHasDependency();
};

#endif
