#ifndef UNITFLOW_HOST_MODIFIEDINSTANCEITEM_H
#define UNITFLOW_HOST_MODIFIEDINSTANCEITEM_H

#include <QString>

/// One modification of an instance, as the host's register keeps it.
struct ModifiedInstanceItem {
    QString originFirst;      ///< first origin of whoever stored the description
    QString originSecond;     ///< second origin of whoever stored the description
    QString instanceName;     ///< the instance, and its entry in the manifest
    QString modificationTime; ///< when, in the text form that the manifest keeps
};

#endif
