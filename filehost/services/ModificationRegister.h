#ifndef UNITFLOW_FILEHOST_SERVICES_MODIFICATIONREGISTER_H
#define UNITFLOW_FILEHOST_SERVICES_MODIFICATIONREGISTER_H

#include "host/ModifiedInstanceItem.h"

#include <QList>
#include <QString>

#include <mutex>

namespace filehost {

/// Every store that changed a file since the process started, oldest first. For any thread.
class ModificationRegister {
public:
    static ModificationRegister& instance();

    /// A modification of this moment, which the register does not have yet.
    static ModifiedInstanceItem itemOfNow(const QString& originFirst, const QString& originSecond,
                                          const QString& instanceName);

    void record(const ModifiedInstanceItem& item);

    int size() const;

    /// All items but the first `mark`.
    QList<ModifiedInstanceItem> itemsSince(int mark) const;

private:
    mutable std::mutex mutex;
    QList<ModifiedInstanceItem> recorded;
};

} // namespace filehost

#endif
