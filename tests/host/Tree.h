#ifndef UNITFLOW_TESTS_HOST_TREE_H
#define UNITFLOW_TESTS_HOST_TREE_H

#include "host/ConfigurationAndProcessDataBase.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QVariant>

namespace testhost {

class Node;
using NodePointer = QSharedPointer<Node>;

/// A tree from compact JSON text, named `label` in the records of calls.
///
/// An object is a node and its members are its children, except for those whose names start with
/// "@": they are properties of the node, under that very name. Any other value is short for a leaf
/// with just that "@val". Text that is not a JSON object gives null.
NodePointer tree(const QString& label, const QString& json);

/// A description with this parameter table, which is given as JSON text: `table("[[1, 2]]")`.
NodePointer table(const QString& rows);

/// A value as the records show it: text as 'text', a list as [item, item], anything else
/// as type(text).
QString describe(const QVariant& value);

/// Where a node stands, as the records show it: "target/A/B"; "null" for none.
QString where(const ConfigurationAndProcessDataBase* node);

/// A node of the in-memory host. What the engine may call is recorded with the current `Host`; all
/// else is for tests and leaves no trace.
class Node final : public ConfigurationAndProcessDataBase {
public:
    explicit Node(const QString& place);

    BaseClassSharedPointer getChildData(const QString& url) override;
    bool hasChildData(const QString& url) override;
    QVariant getDataProperty(const QString& key) override;
    int setDataProperty(const QString& key, const QVariant& value) override;

    /// The node at `url` (child names joined by "/", or one name as it stands), null for none.
    BaseClassSharedPointer find(const QString& url) const;
    /// The same for a test that knows that it is there.
    Node& at(const QString& url) const;

    /// A tree of its own with the same children and properties.
    NodePointer copy() const;

    NodePointer addChild(const QString& name);
    void setChild(const QString& name, const BaseClassSharedPointer& child);
    void removeChild(const QString& name);

    QVariant property(const QString& key) const;
    void setProperty(const QString& key, const QVariant& value);
    /// Writes as the engine does, with its status.
    int write(const QString& key, const QVariant& value);
    QVariant unit() const;

    /// Answers the next writes with these statuses, one for each; a write that is answered by
    /// anything but 0 stores nothing. Afterwards the answers are true again: 0 for a new value, 1
    /// for the one that was there.
    void answerWritesWith(const QList<int>& statuses);

    const QString& place() const { return ownPlace; }

private:
    friend class ::ConfigurationAndProcessDataBase;

    QString ownPlace;
    QHash<QString, BaseClassSharedPointer> children;
    QMap<QString, QVariant> properties;
    QList<int> nextStatuses;
};

} // namespace testhost

#endif
