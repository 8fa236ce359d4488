#include "internal/ParameterTable.h"

#include "host/Array2dDataTypeWrapper.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"

namespace internal {

ParameterRows parameterRows(const BaseClassSharedPointer& description,
                            const TableDescription& table)
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

    ParameterRows rows;
    rows.reserve(content.size());
    for (const QVariant& row : content) {
        if (!row.canConvert(QMetaType::QVariantList)) {
            continue;
        }
        QVariantList cells = row.toList();
        if (const QList<int>* layout = table.layoutFor(cells.size())) {
            rows.append({std::move(cells), *layout});
        }
    }
    return rows;
}

} // namespace internal
