#ifndef UNITFLOW_HOSTKIT_ADAPTER_H
#define UNITFLOW_HOSTKIT_ADAPTER_H

#include "host/ConfigurationAndProcessDataBase.h"
#include "host/ConfigurationManifestHandler.h"

#include <QJsonArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace hostkit {

/// One leaf of a tree that a check asks for. Names are made of letters, digits, "_" and "%".
struct Leaf {
    QStringList path;        ///< the names from below the root down to the leaf
    QVariant value;          ///< a text, an int, a bool, or a table: a list of lists of those;
                             ///< invalid: the leaf has no value
    QString unit;            ///< null: the leaf has no unit
    QStringList columnUnits; ///< not empty: an array leaf with so many columns
};

using Leaves = QList<Leaf>;

/// What the checks must know about a host beyond `engine/host`: how to write a URL, a text, and
/// what its store is to hold. One adapter serves all checks of a run; they use different names, so
/// that nothing has to be taken back. All calls come from one thread.
class Adapter {
public:
    Adapter() = default;
    Adapter(const Adapter&) = delete;
    Adapter& operator=(const Adapter&) = delete;
    virtual ~Adapter();

    /// The base path that a resolver is made with. The same for the adapter's whole life, and
    /// nothing of an earlier run is below it.
    virtual QString basePath() = 0;

    /// The URL of the node at `path`, in the syntax of the host's `getChildData`. Checks put
    /// expressions into names and URLs, so a name must stand in the URL as it is.
    virtual QString url(const QStringList& path) = 0;

    /// A text in the host's configuration data format, of a tree with exactly these leaves. The
    /// host's parser gets it, as an instance or as a dependency description: there a leaf whose
    /// value is a table is the description of a command or a condition.
    virtual QString text(const Leaves& leaves) = 0;

    /// Lets the store hold an instance, as if a user had made it: a configuration, or a process
    /// description when `isProcess`. `text` is one that `text()` gave.
    virtual void putInstance(const QString& name, bool isProcess, const QString& text) = 0;

    /// Lets the store hold a dependency description.
    virtual void putDescription(const QString& name, const QString& text) = 0;

    /// The handler that the host gives to its resolvers. Owned by the adapter.
    virtual ConfigurationManifestHandler& manifestHandler() = 0;

    // What follows fits most hosts as it is.

    /// A tree with exactly these leaves, not known to the store. Parses `text()`.
    virtual BaseClassSharedPointer tree(const Leaves& leaves);

    /// Makes these the entries of the configuration manifest. Writes the file that the engine
    /// reads; override it when the manifest handler must be told as well.
    virtual void putManifest(const QJsonArray& entries);

    /// A property of an instance's manifest entry, invalid when it has none. Looks into the
    /// manifest's file for an entry with that "instanceName"; override it when the host keeps the
    /// manifest's properties in another form.
    virtual QVariant manifestValue(const QString& instanceName, const QString& key);

    /// A text that the host's parser cannot make a tree of: one that breaks off.
    virtual QString brokenText();

    /// A value that the host refuses to write as the unit of a leaf. Invalid, as here, when there
    /// is none: what checks refusals is then skipped.
    virtual QVariant refusedUnit();
};

} // namespace hostkit

#endif
