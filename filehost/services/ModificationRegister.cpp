#include "filehost/services/ModificationRegister.h"

#include <QDateTime>

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
    const std::lock_guard<std::mutex> guard(mutex);
    recorded.append(item);
}

int ModificationRegister::size() const
{
    const std::lock_guard<std::mutex> guard(mutex);
    return recorded.size();
}

QList<ModifiedInstanceItem> ModificationRegister::itemsSince(int mark) const
{
    const std::lock_guard<std::mutex> guard(mutex);
    return recorded.mid(mark);
}

} // namespace filehost
