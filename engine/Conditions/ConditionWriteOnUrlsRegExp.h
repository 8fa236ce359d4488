#ifndef UNITFLOW_CONDITIONS_CONDITIONWRITEONURLSREGEXP_H
#define UNITFLOW_CONDITIONS_CONDITIONWRITEONURLSREGEXP_H

#include "Conditions/ConditionWriteOnUrls.h"

/// Holds when one of a list of patterns finds a match anywhere in the written URL
/// ("ConditionWriteOnUrlsRegExp").
///
/// Parameter table: one cell, the pattern (Perl-compatible, no options). Rows of any other length
/// are skipped silently; an invalid pattern finds nothing.
class UNITFLOW_EXPORT ConditionWriteOnUrlsRegExp : public ConditionWriteOnUrls {
public:
    explicit ConditionWriteOnUrlsRegExp(const BaseClassSharedPointer& description);
    ~ConditionWriteOnUrlsRegExp() override;

    bool checkCondition(const BaseClassSharedPointer& sourceRoot,
                        const BaseClassSharedPointer& targetRoot,
                        const QString& url) const override;

    /// The patterns with their prefix. A pattern written twice is listed twice.
    QStringList getConditionUrls() const override;

    /// As that of the base class, but with patterns in place of URLs.
    static TypeDescription typeDescription();
};

#endif
