// The manifest: its handler, and the iteration over its entries, which looks at the objects of the
// top level only.

#include "Manifest.h"

#include "Host.h"
#include "host/JsonDataIterator.h"
#include "host/JsonDataIteratorFilter.h"

#include <QMap>

using testhost::Host;

namespace {

QString text(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

QString describe(const QHash<QString, QVariant>& filter)
{
    QMap<QString, QString> pairs; // in a lasting order
    for (auto pair = filter.cbegin(); pair != filter.cend(); ++pair) {
        pairs.insert(pair.key(),
                     pair.key() + QStringLiteral(": ") + testhost::describe(pair.value()));
    }
    return '{' + QStringList(pairs.values()).join(QStringLiteral(", ")) + '}';
}

} // namespace

namespace testhost {

bool ManifestHandler::update(const QString& instanceName, const QString& propertyKey,
                             const QVariant& value, bool flag)
{
    const bool updated = updating.isEmpty() || updating.takeFirst();
    Host::current().record(
        QStringLiteral("update(%1, %2, %3, %4) -> %5")
            .arg(instanceName, propertyKey, describe(value), text(flag), text(updated)));
    return updated;
}

bool ManifestHandler::writeToManifestFile()
{
    Host::current().record(QStringLiteral("writeToManifestFile() -> %1").arg(text(writing)));
    return writing;
}

} // namespace testhost

class JsonDataIteratorFilter::Private {
public:
    QString resultKey;
    QHash<QString, QVariant> filter;
    QJsonArray collected;
};

JsonDataIteratorFilter::JsonDataIteratorFilter(const QString& resultKey,
                                               const QHash<QString, QVariant>& filter, bool flag)
    : d(new Private{resultKey, filter, {}})
{
    Host::current().record(QStringLiteral("JsonDataIteratorFilter(%1, %2, %3)")
                               .arg(resultKey, describe(filter), text(flag)));
}

JsonDataIteratorFilter::~JsonDataIteratorFilter()
{
    Host::current().record(QStringLiteral("~JsonDataIteratorFilter()"));
}

void JsonDataIteratorFilter::visitObject(const QJsonObject& object)
{
    for (auto pair = d->filter.cbegin(); pair != d->filter.cend(); ++pair) {
        const QVariant value = object.value(pair.key()).toVariant();
        if (value.userType() != pair.value().userType() || value != pair.value()) {
            return;
        }
    }
    d->collected.append(object.value(d->resultKey));
}

QJsonValue JsonDataIteratorFilter::getResult() const
{
    return d->collected;
}

class JsonDataIterator::Private {
public:
    JsonDataIteratorObjectBase& visitor;
};

JsonDataIterator::JsonDataIterator(JsonDataIteratorObjectBase& visitor) : d(new Private{visitor})
{
    Host::current().record(QStringLiteral("JsonDataIterator()"));
}

JsonDataIterator::~JsonDataIterator()
{
    Host::current().record(QStringLiteral("~JsonDataIterator()"));
}

void JsonDataIterator::iterate(QJsonArray& array)
{
    for (const QJsonValue& value : qAsConst(array)) {
        if (value.isObject()) {
            d->visitor.visitObject(value.toObject());
        }
    }
    Host::current().record(QStringLiteral("iterate(%1 values)").arg(array.size()));
}

QJsonValue JsonDataIterator::getResult() const
{
    Host& host = Host::current();
    QJsonValue result = host.iterationResult.value_or(d->visitor.getResult());
    host.record(QStringLiteral("getResult()"));
    return result;
}
