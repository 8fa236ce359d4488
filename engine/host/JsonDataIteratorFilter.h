#ifndef UNITFLOW_HOST_JSONDATAITERATORFILTER_H
#define UNITFLOW_HOST_JSONDATAITERATORFILTER_H

#include "host/JsonDataIteratorObjectBase.h"

#include <QHash>
#include <QString>
#include <QVariant>

#include <memory>

/// Collects one value of every object that passes a filter.
class UNITFLOW_HOST_API JsonDataIteratorFilter : public JsonDataIteratorObjectBase {
public:
    /// Collects the value under `resultKey` of each object whose properties equal every pair of
    /// `filter`. What `flag` switches is the host's affair; the engine passes true.
    JsonDataIteratorFilter(const QString& resultKey, const QHash<QString, QVariant>& filter,
                           bool flag);
    ~JsonDataIteratorFilter() override;

    void visitObject(const QJsonObject& object) override;

    /// A JSON array of the collected values, in the order met.
    QJsonValue getResult() const override;

private:
    class Private;
    std::unique_ptr<Private> d; ///< the host's own state
};

#endif
