#include "Conditions/ConditionValueComparatorRegExp.h"

#include "internal/Observing.h"
#include "internal/Types.h"
#include "internal/WatchedUrls.h"
#include "patterns/PatternList.h"

ConditionValueComparatorRegExp::ConditionValueComparatorRegExp(
    const BaseClassSharedPointer& description)
    : ConditionValueComparators(description)
{
    keptPatterns = std::make_unique<patterns::PatternList>();
    for (const ConditionComparatorEntry& entry : qAsConst(entries)) {
        keptPatterns->append(entry.url);
    }
}

ConditionValueComparatorRegExp::~ConditionValueComparatorRegExp() = default;

bool ConditionValueComparatorRegExp::checkCondition(const BaseClassSharedPointer& sourceRoot,
                                                    const BaseClassSharedPointer& /*targetRoot*/,
                                                    const QString& url) const
{
    const QList<ConditionComparatorEntry> rows =
        entries; // the host may call initCondition meanwhile
    bool holds = false;
    for (int row = 0; row < rows.size(); ++row) {
        const ConditionComparatorEntry& entry = rows.at(row);
        if (!keptPatterns->findsMatch(row, entry.url, url)) {
            internal::reportMismatch(row, *keptPatterns, entry.url, url);
        } else if (checkRow(row, sourceRoot, url, entry)) {
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

TypeDescription ConditionValueComparatorRegExp::typeDescription()
{
    TypeDescription type = ConditionValueComparators::typeDescription();
    type.meaning = QStringLiteral("Holds when a pattern finds a match in the written URL and the "
                                  "written value equals a constant, or differs from one.");
    type.table.columns.first() = internal::watchedPatternColumn();
    return type;
}
