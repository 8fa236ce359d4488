#include "Conditions/ConditionWriteOnUrls.h"

#include "internal/ParameterTable.h"
#include "internal/WatchedUrls.h"
#include "patterns/PatternList.h"

ConditionWriteOnUrls::ConditionWriteOnUrls(const BaseClassSharedPointer& description)
{
    initCondition(description);
}

ConditionWriteOnUrls::~ConditionWriteOnUrls() = default;

bool ConditionWriteOnUrls::initCondition(const BaseClassSharedPointer& description)
{
    for (const QVariantList& cells : internal::parameterRows(description)) {
        if (cells.size() != 1) {
            continue;
        }
        urls.append(cells.at(0).toString());
        if (keptPatterns) {
            keptPatterns->append(urls.constLast());
        }
    }
    return true;
}

bool ConditionWriteOnUrls::checkCondition(const BaseClassSharedPointer& /*sourceRoot*/,
                                          const BaseClassSharedPointer& /*targetRoot*/,
                                          const QString& url) const
{
    return urls.contains(url);
}

QStringList ConditionWriteOnUrls::getConditionUrls() const
{
    return internal::watchedUrls(urls);
}

QString ConditionWriteOnUrls::getConditionAsString() const
{
    return urls.join(QStringLiteral("||"));
}
