#include "host/JsonDataIterator.h"

namespace {

void visitObjects(JsonDataIteratorObjectBase& visitor, const QJsonArray& array)
{
    for (const QJsonValue& element : array) {
        if (element.isObject()) {
            visitor.visitObject(element.toObject());
        } else if (element.isArray()) {
            visitObjects(visitor, element.toArray());
        }
    }
}

} // namespace

class JsonDataIterator::Private {
public:
    JsonDataIteratorObjectBase& visitor;
};

JsonDataIterator::JsonDataIterator(JsonDataIteratorObjectBase& visitor)
    : d(std::make_unique<Private>(Private{visitor}))
{}

JsonDataIterator::~JsonDataIterator() = default;

/// Goes into arrays in the array, as if their elements stood there themselves. What is inside an
/// object is the visitor's affair.
void JsonDataIterator::iterate(QJsonArray& array)
{
    visitObjects(d->visitor, array);
}

QJsonValue JsonDataIterator::getResult() const
{
    return d->visitor.getResult();
}
