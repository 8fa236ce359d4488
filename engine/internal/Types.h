#ifndef UNITFLOW_INTERNAL_TYPES_H
#define UNITFLOW_INTERNAL_TYPES_H

#include "TypeDescription.h"

#include <deque>
#include <typeindex>
#include <typeinfo>

namespace internal {

struct RegisteredType {
    TypeDescription description;
    std::type_index type = typeid(void);
};

/// In the order of their registration; filled while the library is loaded.
std::deque<RegisteredType>& registeredTypes();

/// The first column of a condition whose rows hold patterns in place of URLs.
ColumnDescription watchedPatternColumn();

/// Columns that several commands have.
ColumnDescription patternWithGroupsColumn();
ColumnDescription targetUrlByGroupsColumn();
ColumnDescription parameterUrlColumn();
ColumnDescription unitColumn();
ColumnDescription remarkColumn();

/// The name under which descriptions know a class of the engine; empty for one of a host.
QString typeName(const std::type_info& type);

} // namespace internal

#endif
