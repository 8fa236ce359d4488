#include "hostkit/internal/Tables.h"

#include "host/Array2dDataTypeWrapper.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"

namespace hostkit {

QVariantList rowsOf(const BaseClassSharedPointer& description)
{
    const QVariant value = description->getDataProperty(
        ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue());
    return Array2dDataTypeWrapper(value.toList(), {}).getArrayValueContent();
}

QList<QStringList> rowTexts(const QVariantList& rows)
{
    QList<QStringList> texts;
    for (const QVariant& row : rows) {
        QStringList cells;
        for (const QVariant& cell : row.toList()) {
            cells.append(cell.toString());
        }
        texts.append(cells);
    }
    return texts;
}

} // namespace hostkit
