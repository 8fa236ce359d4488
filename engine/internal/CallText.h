#ifndef UNITFLOW_INTERNAL_CALLTEXT_H
#define UNITFLOW_INTERNAL_CALLTEXT_H

#include <QStringList>

namespace internal {

/// How a command prints one of its rows: "name(cell,cell);".
inline QString callText(const QString& name, const QStringList& cells)
{
    return name + QLatin1Char('(') + cells.join(QLatin1Char(',')) + QLatin1String(");");
}

} // namespace internal

#endif
