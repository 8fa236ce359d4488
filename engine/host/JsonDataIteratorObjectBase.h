#ifndef UNITFLOW_HOST_JSONDATAITERATOROBJECTBASE_H
#define UNITFLOW_HOST_JSONDATAITERATOROBJECTBASE_H

#include "host/HostExport.h"

#include <QJsonObject>
#include <QJsonValue>

/// A visitor of JSON objects.
class UNITFLOW_HOST_API JsonDataIteratorObjectBase {
public:
    virtual ~JsonDataIteratorObjectBase() = default;

    /// Called once for every object met, in document order.
    virtual void visitObject(const QJsonObject& object) = 0;

    /// What the visits so far add up to.
    virtual QJsonValue getResult() const = 0;
};

#endif
