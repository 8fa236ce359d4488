#include "Conditions/ConditionValueComparators.h"

#include "host/ConfigurationAndProcessDataTools.h"
#include "internal/ParameterTable.h"
#include "internal/WatchedUrls.h"
#include "patterns/PatternList.h"

ConditionValueComparators::ConditionValueComparators(const BaseClassSharedPointer& description)
{
    initCondition(description);
}

ConditionValueComparators::~ConditionValueComparators() = default;

bool ConditionValueComparators::initCondition(const BaseClassSharedPointer& description)
{
    for (const QVariantList& cells : internal::parameterRows(description)) {
        if (cells.size() != 3) {
            continue;
        }
        entries.append({cells.at(0).toString(), cells.at(1).toString(), cells.at(2)});
        if (keptPatterns) {
            keptPatterns->append(entries.constLast().url);
        }
    }
    return true;
}

// The signature is part of the interface, the entry by value included.
// NOLINTBEGIN(performance-unnecessary-value-param)
bool ConditionValueComparators::valueComparator(const BaseClassSharedPointer& root,
                                                const QString& url,
                                                ConditionComparatorEntry entry) const
// NOLINTEND(performance-unnecessary-value-param)
{
    const QVariant current = ConfigurationAndProcessDataTools::extractConfigValue(url, root);
    if (!current.isValid()) {
        return false;
    }
    // The current value stands on the left: its type decides how the constant is read.
    if (entry.comparator == QLatin1String("==")) {
        return current == entry.value;
    }
    return entry.comparator == QLatin1String("!=") && current != entry.value;
}

bool ConditionValueComparators::checkCondition(const BaseClassSharedPointer& sourceRoot,
                                               const BaseClassSharedPointer& /*targetRoot*/,
                                               const QString& /*url*/) const
{
    const QList<ConditionComparatorEntry> rows =
        entries; // the host may call initCondition meanwhile
    bool holds = false;
    for (const ConditionComparatorEntry& entry : rows) {
        if (valueComparator(sourceRoot, entry.url, entry)) {
            holds = true;
        }
    }
    return holds;
}

QStringList ConditionValueComparators::getConditionUrls() const
{
    QStringList urls;
    for (const ConditionComparatorEntry& entry : entries) {
        urls.append(entry.url);
    }
    return internal::watchedUrls(urls);
}

QString ConditionValueComparators::getConditionAsString() const
{
    QStringList texts;
    for (const ConditionComparatorEntry& entry : entries) {
        texts.append(entry.url + entry.comparator + entry.value.toString());
    }
    return texts.join(QStringLiteral("||"));
}
