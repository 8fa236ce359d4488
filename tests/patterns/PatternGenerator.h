#ifndef UNITFLOW_TESTS_PATTERNS_PATTERNGENERATOR_H
#define UNITFLOW_TESTS_PATTERNS_PATTERNGENERATOR_H

#include "Random.h"

#include <QString>

#include <set>
#include <string>

namespace patterns {

/// A pattern from the grammar.
struct DrawnPattern {
    QString pattern;
    QString sample;                   ///< a text that it finds a match in, more often than not
    std::set<std::string> constructs; ///< what of the dialect it is made of
};

/// A pattern of any shape that the dialect knows, small enough that no search in it takes long.
/// Some are invalid.
DrawnPattern drawPattern(Random& random);

/// Every construct that `drawPattern` makes patterns of, apart from the invalid ones.
std::set<std::string> constructsOfTheDialect();

/// A word that patterns and URLs are made of.
QString drawWord(Random& random);

/// A URL that has to do with a pattern's sample: the sample itself, within other text, or nearly.
QString drawUrl(Random& random, const QString& sample);

} // namespace patterns

#endif
