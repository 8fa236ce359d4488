#ifndef UNITFLOW_CHECKER_TREE_H
#define UNITFLOW_CHECKER_TREE_H

#include "host/ConfigurationAndProcessDataBase.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>

namespace checker {

/// The tree of an instance, asked for what descriptions name.
class Tree {
public:
    explicit Tree(const BaseClassSharedPointer& root);

    const BaseClassSharedPointer& root() const { return top; }

    /// Null when the URL names nothing.
    BaseClassSharedPointer at(const QString& url) const;
    /// Whether the URL names something that could have a value, be it that it has none yet.
    bool isLeaf(const QString& url) const;
    /// Invalid when the URL names nothing that has a value.
    QVariant valueAt(const QString& url) const;

    /// The URLs of all leaves, by name. Collected when they are first asked for.
    const QStringList& leaves() const;

private:
    BaseClassSharedPointer top;
    mutable std::optional<QStringList> collected;
};

} // namespace checker

#endif
