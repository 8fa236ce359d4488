#ifndef MINIMAL_HOST_NODE_H
#define MINIMAL_HOST_NODE_H

#include "host/ConfigurationAndProcessDataBase.h"

#include <QJsonValue>

/// A tree made of JSON: members of an object are children, those that start with "@" are the
/// node's properties, and anything but an object is a leaf with that value.
class Node final : public ConfigurationAndProcessDataBase {
public:
    explicit Node(const QJsonValue& json);

    const QHash<QString, BaseClassSharedPointer>& getChildren() const { return children; }

    BaseClassSharedPointer getChildData(const QString& url) override;
    bool hasChildData(const QString& url) override;
    QVariant getDataProperty(const QString& key) override;
    int setDataProperty(const QString& key, const QVariant& value) override;

private:
    QHash<QString, BaseClassSharedPointer> children;
    QHash<QString, QVariant> properties;
};

#endif
