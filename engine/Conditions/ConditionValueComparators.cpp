#include "Conditions/ConditionValueComparators.h"

#include "host/ConfigurationAndProcessDataTools.h"
#include "internal/Observing.h"
#include "internal/ParameterTable.h"
#include "internal/WatchedUrls.h"
#include "patterns/PatternList.h"

using Outcome = TraversalObserver::ConditionOutcome;

namespace {

enum Column { Url, Comparator, Value };

const TableDescription& table()
{
    static const TableDescription description{
        {{QStringLiteral("URL"), QStringLiteral("the leaf of the source whose value is compared"),
          CellRole::SourceUrl},
         {QStringLiteral("comparator"), QStringLiteral("== or !="), CellRole::Comparator},
         {QStringLiteral("constant"),
          QStringLiteral("what the value is compared with, read in the type of the value"),
          CellRole::Constant}},
        {{Url, Comparator, Value}}};
    return description;
}

} // namespace

ConditionValueComparators::ConditionValueComparators(const BaseClassSharedPointer& description)
{
    initCondition(description);
}

ConditionValueComparators::~ConditionValueComparators() = default;

bool ConditionValueComparators::initCondition(const BaseClassSharedPointer& description)
{
    for (const internal::ParameterRow& row : internal::parameterRows(description, table())) {
        entries.append({row.text(Url), row.text(Comparator), row.cell(Value)});
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
    return compare(current, entry) == Outcome::Holds;
}

Outcome ConditionValueComparators::compare(const QVariant& current,
                                           const ConditionComparatorEntry& entry)
{
    if (!current.isValid()) {
        return Outcome::NoValue;
    }
    // The current value stands on the left: its type decides how the constant is read.
    if (entry.comparator == QLatin1String("==")) {
        return current == entry.value ? Outcome::Holds : Outcome::Differs;
    }
    if (entry.comparator == QLatin1String("!=")) {
        return current != entry.value ? Outcome::Holds : Outcome::Differs;
    }
    return Outcome::UnknownComparator;
}

/// Compares the value at `url` for one row, and tells the observer.
bool ConditionValueComparators::checkRow(int row, const BaseClassSharedPointer& root,
                                         const QString& url,
                                         const ConditionComparatorEntry& entry) const
{
    const QVariant current = ConfigurationAndProcessDataTools::extractConfigValue(url, root);
    const Outcome outcome = compare(current, entry);
    if (TraversalObserver* const listener = internal::observer()) {
        listener->conditionRowChecked({row, outcome, url, entry.comparator, entry.value, current});
    }
    return outcome == Outcome::Holds;
}

bool ConditionValueComparators::checkCondition(const BaseClassSharedPointer& sourceRoot,
                                               const BaseClassSharedPointer& /*targetRoot*/,
                                               const QString& /*url*/) const
{
    const QList<ConditionComparatorEntry> rows =
        entries; // the host may call initCondition meanwhile
    bool holds = false;
    for (int row = 0; row < rows.size(); ++row) {
        if (checkRow(row, sourceRoot, rows.at(row).url, rows.at(row))) {
            holds = true;
        }
    }
    return holds;
}

TypeDescription ConditionValueComparators::typeDescription()
{
    return {
        TypeDescription::Kind::Condition,
        {},
        QStringLiteral("Holds when a value of the source equals a constant, or differs from one."),
        table()};
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
