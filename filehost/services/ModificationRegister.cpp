#include "filehost/services/ModificationRegister.h"

#include <QDateTime>

namespace filehost {

namespace {

/// As Qt::ISODateWithMs spells it. Most of it stays the same for a second, and costs Qt more than
/// all else that is noted of a store.
QString timeOfNow()
{
    constexpr qint64 second = 1000;
    thread_local qint64 knownSecond = -1;
    thread_local QString upToSecond;

    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (now / second != knownSecond) {
        knownSecond = now / second;
        upToSecond = QDateTime::fromMSecsSinceEpoch(now, Qt::UTC).toString(Qt::ISODate);
        upToSecond.chop(1); // the "Z"
    }
    const QString thousandths = QString::number(second + now % second);
    return upToSecond + QLatin1Char('.') + thousandths.midRef(1) + QLatin1Char('Z');
}

} // namespace

ModificationRegister& ModificationRegister::instance()
{
    static ModificationRegister theRegister;
    return theRegister;
}

ModifiedInstanceItem ModificationRegister::itemOfNow(const QString& originFirst,
                                                     const QString& originSecond,
                                                     const QString& instanceName)
{
    return {originFirst, originSecond, instanceName, timeOfNow()};
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
