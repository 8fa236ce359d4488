#ifndef UNITFLOW_CONDITIONS_CONDITIONWRITEONURLS_H
#define UNITFLOW_CONDITIONS_CONDITIONWRITEONURLS_H

#include "Conditions/ConditionBase.h"
#include "TypeDescription.h"

#include <memory>

namespace patterns {
class PatternList;
}

/// Holds when the written URL is one of a list ("ConditionWriteOnUrls").
///
/// Parameter table: one cell, the URL. Rows of any other length are skipped silently.
class UNITFLOW_EXPORT ConditionWriteOnUrls : public ConditionBase {
public:
    explicit ConditionWriteOnUrls(const BaseClassSharedPointer& description);
    ~ConditionWriteOnUrls() override;

    /// Exact comparison, case included. Reads no tree.
    bool checkCondition(const BaseClassSharedPointer& sourceRoot,
                        const BaseClassSharedPointer& targetRoot,
                        const QString& url) const override;

    /// The URLs, each once.
    QStringList getConditionUrls() const override;

    /// The URLs joined by "||".
    QString getConditionAsString() const override;

    /// Appends the rows that `description` holds. Always true.
    bool initCondition(const BaseClassSharedPointer& description);

    /// Its parameter table and what it is for; `name` is left to the registration.
    static TypeDescription typeDescription();

protected:
    QStringList urls; ///< in row order; patterns in the derived class

private:
    friend class ConditionWriteOnUrlsRegExp;
    std::unique_ptr<patterns::PatternList> keptPatterns; // of the rows; null when they are URLs
};

#endif
