#include "Conditions/ConditionWriteOnUrlsRegExp.h"

#include "internal/WatchedUrls.h"
#include "patterns/PatternList.h"

ConditionWriteOnUrlsRegExp::ConditionWriteOnUrlsRegExp(const BaseClassSharedPointer& description)
    : ConditionWriteOnUrls(description)
{
    keptPatterns = std::make_unique<patterns::PatternList>();
    for (const QString& pattern : qAsConst(urls)) {
        keptPatterns->append(pattern);
    }
}

ConditionWriteOnUrlsRegExp::~ConditionWriteOnUrlsRegExp() = default;

bool ConditionWriteOnUrlsRegExp::checkCondition(const BaseClassSharedPointer& /*sourceRoot*/,
                                                const BaseClassSharedPointer& /*targetRoot*/,
                                                const QString& url) const
{
    for (int row = 0; row < urls.size(); ++row) {
        if (keptPatterns->findsMatch(row, urls.at(row), url)) {
            return true;
        }
    }
    return false;
}

QStringList ConditionWriteOnUrlsRegExp::getConditionUrls() const
{
    return internal::watchedPatterns(urls);
}
