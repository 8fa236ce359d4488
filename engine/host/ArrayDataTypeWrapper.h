#ifndef UNITFLOW_HOST_ARRAYDATATYPEWRAPPER_H
#define UNITFLOW_HOST_ARRAYDATATYPEWRAPPER_H

#include "host/ConfigurationAndProcessDataBase.h"

#include <QVariantList>

#include <memory>

/// The value and the array information of an array property, as the host stores them. The engine
/// makes one on the stack, uses it within one call and never copies it.
class UNITFLOW_HOST_API ArrayDataTypeWrapper {
public:
    /// `value` holds the rows, `arrayInformation` whatever the host keeps per column; either may
    /// be empty.
    ArrayDataTypeWrapper(const QVariantList& value, const QVariantList& arrayInformation);
    ~ArrayDataTypeWrapper();

    /// The rows. A row that is a list holds its cells; the engine passes over any other row.
    QVariantList getArrayValueContent() const;

    /// Writes the wrapper's array information to the array leaf that `url` names below `root`.
    /// The result is a write status as of `ConfigurationAndProcessDataBase::setDataProperty`.
    int setArrayInfoWithStatus(const BaseClassSharedPointer& root, const QString& url);

protected:
    class Private;
    std::unique_ptr<Private> d; ///< the host's own state
};

#endif
