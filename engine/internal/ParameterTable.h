#ifndef UNITFLOW_INTERNAL_PARAMETERTABLE_H
#define UNITFLOW_INTERNAL_PARAMETERTABLE_H

#include "host/ConfigurationAndProcessDataBase.h"

#include <QList>
#include <QVariantList>

namespace internal {

/// The rows of the parameter table that a command's or condition's description holds, each as its
/// cells. Rows that are no lists are left out. Empty when `description` is null or has no value.
QList<QVariantList> parameterRows(const BaseClassSharedPointer& description);

} // namespace internal

#endif
