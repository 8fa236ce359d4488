#include "Conditions/ConditionWriteOnUrlsRegExp.h"

#include "internal/Pattern.h"
#include "internal/WatchedUrls.h"

#include <algorithm>

ConditionWriteOnUrlsRegExp::ConditionWriteOnUrlsRegExp(const BaseClassSharedPointer& description)
    : ConditionWriteOnUrls(description)
{}

ConditionWriteOnUrlsRegExp::~ConditionWriteOnUrlsRegExp() = default;

bool ConditionWriteOnUrlsRegExp::checkCondition(const BaseClassSharedPointer& /*sourceRoot*/,
                                                const BaseClassSharedPointer& /*targetRoot*/,
                                                const QString& url) const
{
    return std::any_of(urls.cbegin(), urls.cend(), [&url](const QString& pattern) {
        return internal::findsMatch(pattern, url);
    });
}

QStringList ConditionWriteOnUrlsRegExp::getConditionUrls() const
{
    return internal::watchedPatterns(urls);
}
