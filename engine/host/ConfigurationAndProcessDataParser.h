#ifndef UNITFLOW_HOST_CONFIGURATIONANDPROCESSDATAPARSER_H
#define UNITFLOW_HOST_CONFIGURATIONANDPROCESSDATAPARSER_H

#include "host/ConfigurationAndProcessDataBase.h"

/// The host's parser of its configuration data format. The walker makes one for each parse.
class UNITFLOW_HOST_API ConfigurationAndProcessDataParser {
public:
    ConfigurationAndProcessDataParser();
    ~ConfigurationAndProcessDataParser();

    /// The tree that `json` describes, null when it cannot be parsed. The engine passes
    /// `PropertyManagerConst::getConfigFileExtension()` as `fileExtension`.
    BaseClassSharedPointer parseFromJson(const QString& json, const QString& fileExtension) const;
};

#endif
