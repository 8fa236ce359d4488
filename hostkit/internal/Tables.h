#ifndef UNITFLOW_HOSTKIT_INTERNAL_TABLES_H
#define UNITFLOW_HOSTKIT_INTERNAL_TABLES_H

#include "host/ConfigurationAndProcessDataBase.h"

#include <QList>
#include <QStringList>
#include <QVariantList>

namespace hostkit {

/// The rows of a description's table, as the engine reads them.
QVariantList rowsOf(const BaseClassSharedPointer& description);

/// The cells as text; a row that is no list has none.
QList<QStringList> rowTexts(const QVariantList& rows);

} // namespace hostkit

#endif
