#include "filehost/services/ModificationRegister.h"

#include <QDateTime>
#include <QMutexLocker>

namespace filehost {

ModificationRegister& ModificationRegister::instance()
{
    static ModificationRegister theRegister;
    return theRegister;
}

ModifiedInstanceItem ModificationRegister::itemOfNow(const QString& originFirst,
                                                     const QString& originSecond,
                                                     const QString& instanceName)
{
    return {originFirst, originSecond, instanceName,
            QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs)};
}

void ModificationRegister::record(const ModifiedInstanceItem& item)
{
    const QMutexLocker locker(&mutex);
    recorded.append(item);
}

int ModificationRegister::size() const
{
    const QMutexLocker locker(&mutex);
    return recorded.size();
}

QList<ModifiedInstanceItem> ModificationRegister::itemsSince(int mark) const
{
    const QMutexLocker locker(&mutex);
    return recorded.mid(mark);
}

} // namespace filehost
