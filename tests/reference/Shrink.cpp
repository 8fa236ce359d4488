#include "Shrink.h"

#include <QJsonArray>

namespace reference {
namespace {

using Accept = std::function<bool(const QJsonValue&)>;

/// Tries to delete parts of `value`; `accept` takes the whole value with the part left out, or
/// refuses it. Returns what is left. Large parts are tried before what they hold.
QJsonValue shrinkValue(const QJsonValue& value, const Accept& accept);

QJsonValue shrinkObject(QJsonObject object, const Accept& accept)
{
    for (const QString& key : object.keys()) {
        QJsonObject without = object;
        without.remove(key);
        if (accept(without)) {
            object = without;
            continue;
        }
        object[key] = shrinkValue(object[key], [&](const QJsonValue& smaller) {
            QJsonObject with = object;
            with[key] = smaller;
            return accept(with);
        });
    }
    return object;
}

QJsonValue shrinkArray(QJsonArray array, const Accept& accept)
{
    for (int i = array.size() - 1; i >= 0; --i) {
        QJsonArray without = array;
        without.removeAt(i);
        if (accept(without)) {
            array = without;
            continue;
        }
        array[i] = shrinkValue(array[i], [&](const QJsonValue& smaller) {
            QJsonArray with = array;
            with[i] = smaller;
            return accept(with);
        });
    }
    return array;
}

QJsonValue shrinkValue(const QJsonValue& value, const Accept& accept)
{
    if (value.isObject()) {
        return shrinkObject(value.toObject(), accept);
    }
    return value.isArray() ? shrinkArray(value.toArray(), accept) : value;
}

} // namespace

Scenario shrink(const Scenario& scenario, const std::function<bool(const Scenario&)>& fails)
{
    Scenario smallest = scenario;
    for (;;) {
        const Scenario before = smallest;
        smallest = shrinkValue(before, [&](const QJsonValue& smaller) {
                       return fails(smaller.toObject());
                   }).toObject();
        if (smallest == before) {
            return smallest;
        }
    }
}

} // namespace reference
