#include "internal/ParameterTable.h"

#include "host/Array2dDataTypeWrapper.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"

namespace internal {

QList<QVariantList> parameterRows(const BaseClassSharedPointer& description)
{
    if (description.isNull()) {
        return {};
    }
    const QVariant value = description->getDataProperty(
        ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue());
    if (!value.isValid()) {
        return {};
    }
    const QVariantList content = Array2dDataTypeWrapper(value.toList(), {}).getArrayValueContent();

    QList<QVariantList> rows;
    rows.reserve(content.size());
    for (const QVariant& row : content) {
        if (row.canConvert(QMetaType::QVariantList)) {
            rows.append(row.toList());
        }
    }
    return rows;
}

} // namespace internal
