#ifndef UNITFLOW_CHECKER_COLUMNTARGET_H
#define UNITFLOW_CHECKER_COLUMNTARGET_H

#include <QString>

namespace checker {

/// What the engine makes of the URL of an array with a column, as in "Table[2+1]".
struct ColumnTarget {
    QString arrayUrl;
    int column = -1;   ///< -1 when there is none
    QString complaint; ///< why there is none; empty when there is one
};

ColumnTarget readColumnTarget(const QString& target);

} // namespace checker

#endif
