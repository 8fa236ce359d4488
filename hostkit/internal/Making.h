#ifndef UNITFLOW_HOSTKIT_INTERNAL_MAKING_H
#define UNITFLOW_HOSTKIT_INTERNAL_MAKING_H

#include "hostkit/Adapter.h"

#include <initializer_list>

namespace hostkit {

/// A leaf with a value and no unit.
inline Leaf valueLeaf(const QStringList& path, const QVariant& value)
{
    return {path, value, {}, {}};
}

/// A leaf with a value and a unit.
inline Leaf unitLeaf(const QStringList& path, const QString& unit)
{
    return {path, QStringLiteral("signal"), unit, {}};
}

/// The value of a table.
inline QVariantList table(std::initializer_list<QVariantList> rows)
{
    QVariantList value;
    for (const QVariantList& row : rows) {
        value.append(QVariant(row));
    }
    return value;
}

/// An array leaf of one row with these units.
inline Leaf arrayLeaf(const QStringList& path, const QStringList& columnUnits)
{
    QVariantList row;
    for (int column = 0; column < columnUnits.size(); ++column) {
        row.append(column);
    }
    return {path, table({row}), {}, columnUnits};
}

} // namespace hostkit

#endif
