#include "Scenario.h"

namespace reference {

QString messageEvent(const QString& file, int line, const QString& function,
                     const QString& category, const QString& text)
{
    return QStringLiteral("message(%1, %2:%3, %4): %5")
        .arg(category, file, QString::number(line), function, text);
}

QString manipulatorEvent(const QString& place, const QString& unit, bool commandResult,
                         bool changed)
{
    return QStringLiteral("manipulateUnit(%1, %2, %3, %4)")
        .arg(place, unit, QString::number(int(commandResult)), QString::number(int(changed)));
}

} // namespace reference
