// The array wrappers. A table is recorded when its rows are read, a wrapper of columns with every
// call. Array information is a list with the unit of each column.

#include "Host.h"
#include "host/Array2dDataTypeWrapper.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"

using testhost::Host;

class ArrayDataTypeWrapper::Private {
public:
    QVariantList value;
    QVariantList arrayInformation;
};

ArrayDataTypeWrapper::ArrayDataTypeWrapper(const QVariantList& value,
                                           const QVariantList& arrayInformation)
    : d(new Private{value, arrayInformation})
{}

ArrayDataTypeWrapper::~ArrayDataTypeWrapper() = default;

QVariantList ArrayDataTypeWrapper::getArrayValueContent() const
{
    Host& host = Host::current();
    QVariantList rows = host.rowsOf ? host.rowsOf(d->value) : d->value;
    host.record(QStringLiteral("getArrayValueContent(%1 rows, %2 columns described)")
                    .arg(d->value.size())
                    .arg(d->arrayInformation.size()));
    return rows;
}

int ArrayDataTypeWrapper::setArrayInfoWithStatus(const BaseClassSharedPointer& root,
                                                 const QString& url)
{
    const auto* node = dynamic_cast<const testhost::Node*>(root.data());
    const bool isThere = node != nullptr && !node->find(url).isNull();
    const int status =
        isThere ? node->at(url).write(
                      ConfigurationAndProcessDataDefinitions::getKeyDataPropertyArrayInformation(),
                      d->arrayInformation)
                : 2;
    Host::current().record(QStringLiteral("setArrayInfoWithStatus(%1, %2, %3) -> %4")
                               .arg(testhost::where(node), url,
                                    testhost::describe(d->arrayInformation),
                                    QString::number(status)));
    return status;
}

Array2dDataTypeWrapper::Array2dDataTypeWrapper(const QVariantList& value,
                                               const QVariantList& arrayInformation)
    : ArrayDataTypeWrapper(value, arrayInformation)
{
    if (!arrayInformation.isEmpty()) {
        Host::current().record(
            QStringLiteral("Array2dDataTypeWrapper(%1 rows, %2)")
                .arg(QString::number(value.size()), testhost::describe(arrayInformation)));
    }
}

Array2dDataTypeWrapper::~Array2dDataTypeWrapper() = default;

QStringList Array2dDataTypeWrapper::getColumnUnitTypes() const
{
    QStringList units;
    for (const QVariant& unit : d->arrayInformation) {
        units.append(unit.toString());
    }
    Host::current().record(QStringLiteral("getColumnUnitTypes()"));
    return units;
}

bool Array2dDataTypeWrapper::setColumnUnitTypes(const QStringList& unitTypes)
{
    Host& host = Host::current();
    const bool takes = host.takingColumnUnits;
    if (takes) {
        d->arrayInformation.clear();
        for (const QString& unit : unitTypes) {
            d->arrayInformation.append(unit);
        }
    }
    host.record(QStringLiteral("setColumnUnitTypes(%1) -> %2")
                    .arg(unitTypes.join(QLatin1Char('|')),
                         takes ? QStringLiteral("true") : QStringLiteral("false")));
    return takes;
}
