#ifndef UNITFLOW_HOST_JSONDATAITERATOR_H
#define UNITFLOW_HOST_JSONDATAITERATOR_H

#include "host/JsonDataIteratorObjectBase.h"

#include <QJsonArray>

#include <memory>

/// Drives a visitor over the objects of a JSON array.
class UNITFLOW_HOST_API JsonDataIterator {
public:
    /// `visitor` is borrowed and outlives the iterator.
    explicit JsonDataIterator(JsonDataIteratorObjectBase& visitor);
    ~JsonDataIterator();

    /// Hands the objects of `array` to the visitor. The host decides whether nested arrays and
    /// objects are visited too.
    void iterate(QJsonArray& array);

    /// The visitor's result.
    QJsonValue getResult() const;

private:
    class Private;
    std::unique_ptr<Private> d; ///< the host's own state
};

#endif
