#ifndef EMBED_TREE_H
#define EMBED_TREE_H

#include "host/ConfigurationAndProcessDataBase.h"

#include <QJsonObject>

/// The application's own data: a node with children and properties.
///
/// In JSON the members of an object are its children, except those whose names start with "@": they
/// are its properties. Anything but an object is short for a leaf with that "@value". A URL is the
/// names of nodes joined by ".".
class Tree final : public ConfigurationAndProcessDataBase {
public:
    explicit Tree(const QJsonValue& json);

    /// A tree of its own that looks the same.
    BaseClassSharedPointer copy() const;

    const QHash<QString, BaseClassSharedPointer>& getChildren() const { return children; }

    // The four operations that the engine calls.
    BaseClassSharedPointer getChildData(const QString& url) override;
    bool hasChildData(const QString& url) override;
    QVariant getDataProperty(const QString& key) override;
    int setDataProperty(const QString& key, const QVariant& value) override;

private:
    Tree() = default;

    QHash<QString, BaseClassSharedPointer> children;
    QHash<QString, QVariant> properties;
};

/// What a write came to, as numbers that the engine understands. They decide what a resolution
/// reports, so they must be true.
enum WriteStatus { WrittenAndChanged = 0, AcceptedUnchanged = 1, NotWritten = 2 };

#endif
