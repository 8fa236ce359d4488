#ifndef UNITFLOW_BENCHMARKS_MEMORYTREE_H
#define UNITFLOW_BENCHMARKS_MEMORYTREE_H

#include "host/ConfigurationAndProcessDataBase.h"

#include <QHash>
#include <QString>
#include <QVariant>

/// The tree that the measured commands write into: as quick as a tree of nodes with names can
/// plainly be, so that what the engine adds to it stands out. Nothing of it is looked at as a
/// description, so its nodes have no children as far as `getChildMap` tells.
class MemoryTree final : public ConfigurationAndProcessDataBase {
public:
    /// The node at `url`, made if it is not there.
    MemoryTree& make(const QString& url);

    BaseClassSharedPointer getChildData(const QString& url) override;
    bool hasChildData(const QString& url) override;
    QVariant getDataProperty(const QString& key) override;
    int setDataProperty(const QString& key, const QVariant& value) override;

private:
    QHash<QString, QSharedPointer<MemoryTree>> children;
    QHash<QString, QVariant> properties;
};

#endif
