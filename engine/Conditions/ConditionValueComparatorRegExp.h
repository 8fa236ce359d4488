#ifndef UNITFLOW_CONDITIONS_CONDITIONVALUECOMPARATORREGEXP_H
#define UNITFLOW_CONDITIONS_CONDITIONVALUECOMPARATORREGEXP_H

#include "Conditions/ConditionValueComparators.h"

/// Compares the value that was written with constants, wherever a pattern finds a match in the
/// written URL ("ConditionValueComparatorRegExp"). Holds when at least one row holds.
///
/// Parameter table: pattern (Perl-compatible, no options), comparator ("==" or "!="), constant.
/// Rows of any other length than three are skipped silently; an invalid pattern finds nothing.
class UNITFLOW_EXPORT ConditionValueComparatorRegExp : public ConditionValueComparators {
public:
    explicit ConditionValueComparatorRegExp(const BaseClassSharedPointer& description);
    ~ConditionValueComparatorRegExp() override;

    /// Reads the value at `url` below `sourceRoot`, once for each row whose pattern matches.
    bool checkCondition(const BaseClassSharedPointer& sourceRoot,
                        const BaseClassSharedPointer& targetRoot,
                        const QString& url) const override;

    /// The patterns with their prefix. A pattern written twice is listed twice.
    QStringList getConditionUrls() const override;

    /// As that of the base class, but with patterns in place of URLs.
    static TypeDescription typeDescription();
};

#endif
