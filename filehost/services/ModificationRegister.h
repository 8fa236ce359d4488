#ifndef UNITFLOW_FILEHOST_SERVICES_MODIFICATIONREGISTER_H
#define UNITFLOW_FILEHOST_SERVICES_MODIFICATIONREGISTER_H

#include "host/ModifiedInstanceItem.h"

#include <QList>
#include <QMutex>
#include <QString>

namespace filehost {

/// Every store that changed something since the process started, oldest first. For any thread.
class ModificationRegister {
public:
    static ModificationRegister& instance();

    /// Notes the present time with it.
    void record(const QString& originFirst, const QString& originSecond,
                const QString& instanceName);

    QList<ModifiedInstanceItem> items() const;

private:
    mutable QMutex mutex;
    QList<ModifiedInstanceItem> recorded;
};

} // namespace filehost

#endif
