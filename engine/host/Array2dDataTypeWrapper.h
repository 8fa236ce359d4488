#ifndef UNITFLOW_HOST_ARRAY2DDATATYPEWRAPPER_H
#define UNITFLOW_HOST_ARRAY2DDATATYPEWRAPPER_H

#include "host/ArrayDataTypeWrapper.h"

#include <QStringList>

/// A two-dimensional array: the form of every parameter table, and of array leaves with units per
/// column.
class UNITFLOW_HOST_API Array2dDataTypeWrapper : public ArrayDataTypeWrapper {
public:
    Array2dDataTypeWrapper(const QVariantList& value, const QVariantList& arrayInformation);
    ~Array2dDataTypeWrapper();

    /// One unit per column, in column order.
    QStringList getColumnUnitTypes() const;

    /// Takes over one unit per column. False when the list is refused; nothing is written to a
    /// tree before `setArrayInfoWithStatus`.
    bool setColumnUnitTypes(const QStringList& unitTypes);
};

#endif
