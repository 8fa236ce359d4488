#include "host/JsonDataIteratorFilter.h"

#include "host/JsonDataIterator.h"

#include <QJsonArray>

#include <algorithm>

class JsonDataIteratorFilter::Private {
public:
    bool accepts(const QJsonObject& object) const;

    QString resultKey;
    QHash<QString, QJsonValue> filter;
    bool isDeep; ///< objects inside objects count as well
    QJsonArray result;
};

/// JSON values are equal in type and value, so true is neither 1 nor "true", while 1 is 1.0.
bool JsonDataIteratorFilter::Private::accepts(const QJsonObject& object) const
{
    return std::all_of(filter.keyValueBegin(), filter.keyValueEnd(), [&](const auto& wanted) {
        const QJsonValue found = object.value(wanted.first);
        return found.isDouble() && wanted.second.isDouble()
                   ? std::equal_to<double>()(found.toDouble(), wanted.second.toDouble())
                   : found == wanted.second;
    });
}

JsonDataIteratorFilter::JsonDataIteratorFilter(const QString& resultKey,
                                               const QHash<QString, QVariant>& filter, bool flag)
    : d(std::make_unique<Private>(Private{resultKey, {}, flag, {}}))
{
    for (auto pair = filter.begin(); pair != filter.end(); ++pair) {
        d->filter.insert(pair.key(), QJsonValue::fromVariant(pair.value()));
    }
}

JsonDataIteratorFilter::~JsonDataIteratorFilter() = default;

/// An object that passes but has no result to give is passed over. With the flag, what is inside
/// the object follows it, in the order of its keys: QJsonObject keeps no other.
void JsonDataIteratorFilter::visitObject(const QJsonObject& object)
{
    if (object.contains(d->resultKey) && d->accepts(object)) {
        d->result.append(object.value(d->resultKey));
    }
    if (!d->isDeep) {
        return;
    }
    JsonDataIterator inside(*this);
    for (const QJsonValue& value : object) {
        QJsonArray alone{value};
        inside.iterate(alone);
    }
}

QJsonValue JsonDataIteratorFilter::getResult() const
{
    return d->result;
}
