#ifndef UNITFLOW_FILEHOST_TREE_TREEFORMAT_H
#define UNITFLOW_FILEHOST_TREE_TREEFORMAT_H

#include "filehost/json/JsonText.h"

#include <QString>
#include <QStringView>
#include <QVariant>

#include <vector>

namespace filehost::tree {

/// A child or a property of a tree's node: its name and its value in the text.
struct Entry {
    QString name;
    json::JsonText::Index index;
};

/// What a JSON value is as a node of a tree. An object's members are the node's children, those
/// whose key starts with "@" its properties; a scalar or an array is short for a node with just
/// "@value"; null is a node without properties.
struct NodeEntries {
    std::vector<Entry> properties; ///< in the order of the text; a null one counts as absent
    std::vector<Entry> children;   ///< in the order of the text
};

NodeEntries entries(const json::JsonText& text, json::JsonText::Index node);

/// The value of a node's property in the text; `none` when it has no such property there.
json::JsonText::Index property(const json::JsonText& text, json::JsonText::Index node,
                               const QString& key);

bool isPropertyKey(QStringView key);

/// The value of a property; invalid when the text says null.
QVariant propertyValue(const json::JsonText& text, json::JsonText::Index property);

} // namespace filehost::tree

#endif
