#include "Conditions/ConditionWriteOnUrlsRegExp.h"

#include "internal/Observing.h"
#include "internal/Types.h"
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
            internal::reportWrittenUrl(row, true, url);
            return true;
        }
        internal::reportMismatch(row, *keptPatterns, urls.at(row), url);
    }
    return false;
}

QStringList ConditionWriteOnUrlsRegExp::getConditionUrls() const
{
    return internal::watchedPatterns(urls);
}

TypeDescription ConditionWriteOnUrlsRegExp::typeDescription()
{
    TypeDescription type = ConditionWriteOnUrls::typeDescription();
    type.meaning =
        QStringLiteral("Holds when one of its patterns finds a match in the written URL.");
    type.table.columns.first() = internal::watchedPatternColumn();
    return type;
}
