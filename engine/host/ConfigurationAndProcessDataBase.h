#ifndef UNITFLOW_HOST_CONFIGURATIONANDPROCESSDATABASE_H
#define UNITFLOW_HOST_CONFIGURATIONANDPROCESSDATABASE_H

#include "host/HostExport.h"

#include <QHash>
#include <QSharedPointer>
#include <QString>
#include <QVariant>

class ConfigurationAndProcessDataBase;

/// The handle of every tree node. Null means that there is no such tree or node.
using BaseClassSharedPointer = QSharedPointer<ConfigurationAndProcessDataBase>;

/// A node of a host tree: named children and named data properties.
///
/// The host implements it. The engine calls it on the thread that called the engine, takes no lock
/// around a call, and keeps no node longer than the graph or the call that needs it. An
/// implementation may do anything inside a call, the engine's own operations included.
class UNITFLOW_HOST_API ConfigurationAndProcessDataBase {
public:
    virtual ~ConfigurationAndProcessDataBase() = default;

    /// All direct children by name. The engine copies the hash and visits it in ascending key
    /// order. A null child counts as absent, but below "Next" it is an edge that leads to no node,
    /// and below "Commands" a command without rows. Not virtual: the host defines it once for all
    /// its node classes.
    const QHash<QString, BaseClassSharedPointer>& getChildMap() const;

    /// The node that `url` names below this one, null when it names nothing. A direct child's name
    /// is such a URL; how longer URLs are written is the host's affair.
    virtual BaseClassSharedPointer getChildData(const QString& url) = 0;

    /// Whether `getChildData(url)` finds a node.
    virtual bool hasChildData(const QString& url) = 0;

    /// The property under `key` (one of `ConfigurationAndProcessDataDefinitions`), invalid when
    /// the node has no such property.
    virtual QVariant getDataProperty(const QString& key) = 0;

    /// Writes a property. Returns 0 when it was written and changed, 1 when the value was accepted
    /// without a change, anything else when it was not written. Writes are never rolled back by
    /// the engine.
    virtual int setDataProperty(const QString& key, const QVariant& value) = 0;
};

#endif
