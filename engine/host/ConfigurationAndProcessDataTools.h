#ifndef UNITFLOW_HOST_CONFIGURATIONANDPROCESSDATATOOLS_H
#define UNITFLOW_HOST_CONFIGURATIONANDPROCESSDATATOOLS_H

#include "host/ConfigurationAndProcessDataBase.h"

/// Helpers on host trees.
class UNITFLOW_HOST_API ConfigurationAndProcessDataTools {
public:
    /// The value of the leaf that `url` names below `root`. Must be invalid when `url` names
    /// nothing or the leaf has no value: the engine then skips what needed it. The engine never
    /// passes a null `root` while it builds a graph; conditions pass on the source root they got.
    static QVariant extractConfigValue(const QString& url, const BaseClassSharedPointer& root);
};

#endif
