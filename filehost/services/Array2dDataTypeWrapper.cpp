#include "host/Array2dDataTypeWrapper.h"

#include "filehost/services/ArrayDataTypeWrapperPrivate.h"

#include <QVariantMap>

namespace {

QString unitKey()
{
    return QStringLiteral("unitType");
}

QString unitOf(const QVariant& column)
{
    return column.toMap().value(unitKey()).toString();
}

} // namespace

Array2dDataTypeWrapper::Array2dDataTypeWrapper(const QVariantList& value,
                                               const QVariantList& arrayInformation)
    : ArrayDataTypeWrapper(value, arrayInformation)
{}

Array2dDataTypeWrapper::~Array2dDataTypeWrapper() = default;

QStringList Array2dDataTypeWrapper::getColumnUnitTypes() const
{
    QStringList unitTypes;
    for (const QVariant& column : std::as_const(d->columns)) {
        unitTypes.append(unitOf(column));
    }
    return unitTypes;
}

bool Array2dDataTypeWrapper::setColumnUnitTypes(const QStringList& unitTypes)
{
    if (unitTypes.size() != d->columns.size()) {
        return false;
    }
    QVariantList columns = d->columns;
    for (int i = 0; i < columns.size(); ++i) {
        if (unitOf(columns[i]) == unitTypes[i]) {
            continue; // in particular, a column that has no unit gets no empty one
        }
        if (columns[i].userType() != QMetaType::QVariantMap) {
            return false;
        }
        QVariantMap column = columns[i].toMap();
        column.insert(unitKey(), unitTypes[i]);
        columns[i] = column;
    }
    d->columns = columns;
    return true;
}
