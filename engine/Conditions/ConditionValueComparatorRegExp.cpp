#include "Conditions/ConditionValueComparatorRegExp.h"

#include "internal/Pattern.h"
#include "internal/WatchedUrls.h"

ConditionValueComparatorRegExp::ConditionValueComparatorRegExp(
    const BaseClassSharedPointer& description)
    : ConditionValueComparators(description)
{}

ConditionValueComparatorRegExp::~ConditionValueComparatorRegExp() = default;

bool ConditionValueComparatorRegExp::checkCondition(const BaseClassSharedPointer& sourceRoot,
                                                    const BaseClassSharedPointer& /*targetRoot*/,
                                                    const QString& url) const
{
    const QList<ConditionComparatorEntry> rows =
        entries; // the host may call initCondition meanwhile
    bool holds = false;
    for (const ConditionComparatorEntry& entry : rows) {
        if (internal::findsMatch(entry.url, url) && valueComparator(sourceRoot, url, entry)) {
            holds = true;
        }
    }
    return holds;
}

QStringList ConditionValueComparatorRegExp::getConditionUrls() const
{
    QStringList patterns;
    for (const ConditionComparatorEntry& entry : entries) {
        patterns.append(entry.url);
    }
    return internal::watchedPatterns(patterns);
}
