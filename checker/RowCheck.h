#ifndef UNITFLOW_CHECKER_ROWCHECK_H
#define UNITFLOW_CHECKER_ROWCHECK_H

#include "checker/Description.h"
#include "checker/Findings.h"
#include "checker/Patterns.h"

namespace checker {

/// Adds what is wrong with the cells of a table, as far as the description alone tells.
void checkRows(const Table& table, const filehost::DescriptionPlaces& places, Patterns& patterns,
               Findings& findings);

/// The names that a target URL takes from groups of a pattern: what stands in each "(?<name>)".
struct GroupPlace {
    QString name;
    int first; ///< of the characters of the whole place
    int count;
};
QList<GroupPlace> groupPlacesIn(const QString& url);

/// The numbers of the places "%1" to "%99" in a URL, each once, ascending.
QList<int> parameterPlacesIn(const QString& url);

} // namespace checker

#endif
