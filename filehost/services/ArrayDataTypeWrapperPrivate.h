#ifndef UNITFLOW_FILEHOST_SERVICES_ARRAYDATATYPEWRAPPERPRIVATE_H
#define UNITFLOW_FILEHOST_SERVICES_ARRAYDATATYPEWRAPPERPRIVATE_H

#include "host/ArrayDataTypeWrapper.h"

/// The rows, and one map for each column with its "name" and its "unitType".
class ArrayDataTypeWrapper::Private {
public:
    QVariantList rows;
    QVariantList columns;
};

#endif
