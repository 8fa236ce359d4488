#ifndef UNITFLOW_TOOLS_WORKSPACE_LEAVES_H
#define UNITFLOW_TOOLS_WORKSPACE_LEAVES_H

#include "host/ConfigurationAndProcessDataBase.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace tools {

/// A column of an array leaf.
struct Column {
    QString name;
    QString unit;
};

/// A node with a value or a unit, or one without children.
struct Leaf {
    QString url; ///< from the root of its instance
    QVariant value;
    QVariant unit;
    QVariant type;
    QList<Column> columns; ///< of an array leaf
};

/// `node` and what is below it, as far as they are leaves, in ascending order of their names.
/// `url` is that of `node` itself.
QList<Leaf> leavesBelow(const BaseClassSharedPointer& node, const QString& url);

QStringList urlsOf(const QList<Leaf>& leaves);

/// The columns that an array information names.
QList<Column> columnsOf(const QVariant& arrayInformation);

bool isLeaf(const BaseClassSharedPointer& node);

} // namespace tools

#endif
