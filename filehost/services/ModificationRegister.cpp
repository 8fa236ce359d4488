#include "filehost/services/ModificationRegister.h"

#include <QDateTime>
#include <QMutexLocker>

namespace filehost {

ModificationRegister& ModificationRegister::instance()
{
    static ModificationRegister theRegister;
    return theRegister;
}

void ModificationRegister::record(const QString& originFirst, const QString& originSecond,
                                  const QString& instanceName)
{
    const QString now = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs);
    const QMutexLocker locker(&mutex);
    recorded.append({originFirst, originSecond, instanceName, now});
}

QList<ModifiedInstanceItem> ModificationRegister::items() const
{
    const QMutexLocker locker(&mutex);
    return recorded;
}

} // namespace filehost
