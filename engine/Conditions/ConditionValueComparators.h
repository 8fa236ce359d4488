#ifndef UNITFLOW_CONDITIONS_CONDITIONVALUECOMPARATORS_H
#define UNITFLOW_CONDITIONS_CONDITIONVALUECOMPARATORS_H

#include "Conditions/ConditionBase.h"
#include "TraversalObserver.h"
#include "TypeDescription.h"

#include <QList>
#include <QVariant>

#include <memory>

namespace patterns {
class PatternList;
}

/// Compares values of the source with constants ("ConditionValueComparator"). Holds when at least
/// one comparison holds.
///
/// Parameter table: URL, comparator ("==" or "!="), constant. Rows of any other length than three
/// are skipped silently.
class UNITFLOW_EXPORT ConditionValueComparators : public ConditionBase {
public:
    struct ConditionComparatorEntry {
        QString url;        ///< below the source root; a pattern over URLs in the derived class
        QString comparator; ///< "==" or "!="; with any other text the comparison fails
        QVariant value;     ///< the constant, as the description holds it
    };

    explicit ConditionValueComparators(const BaseClassSharedPointer& description);
    ~ConditionValueComparators() override;

    /// Compares the present values below `sourceRoot`; `targetRoot` and `url` play no part.
    bool checkCondition(const BaseClassSharedPointer& sourceRoot,
                        const BaseClassSharedPointer& targetRoot,
                        const QString& url) const override;

    /// The rows' URLs, each once.
    QStringList getConditionUrls() const override;

    /// "url==value" for each row, joined by "||".
    QString getConditionAsString() const override;

    /// Appends the rows that `description` holds. Always true.
    bool initCondition(const BaseClassSharedPointer& description);

    /// Its parameter table and what it is for; `name` is left to the registration.
    static TypeDescription typeDescription();

    /// Compares the value at `url` below `root` with the entry's constant, as `QVariant` compares:
    /// the constant is converted to the type of the value. A missing value gives false with either
    /// comparator.
    bool valueComparator(const BaseClassSharedPointer& root, const QString& url,
                         ConditionComparatorEntry entry) const;

protected:
    QList<ConditionComparatorEntry> entries; ///< in row order

private:
    static TraversalObserver::ConditionOutcome compare(const QVariant& current,
                                                       const ConditionComparatorEntry& entry);
    bool checkRow(int row, const BaseClassSharedPointer& root, const QString& url,
                  const ConditionComparatorEntry& entry) const;

    friend class ConditionValueComparatorRegExp;
    std::unique_ptr<patterns::PatternList> keptPatterns; // of the rows; null when they name URLs
};

#endif
