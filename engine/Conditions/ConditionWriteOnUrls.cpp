#include "Conditions/ConditionWriteOnUrls.h"

#include "internal/Observing.h"
#include "internal/ParameterTable.h"
#include "internal/WatchedUrls.h"
#include "patterns/PatternList.h"

namespace {

enum Column { Url };

const TableDescription& table()
{
    static const TableDescription description{
        {{QStringLiteral("URL"), QStringLiteral("the leaf of the source that was written"),
          CellRole::SourceUrl}},
        {{Url}}};
    return description;
}

} // namespace

ConditionWriteOnUrls::ConditionWriteOnUrls(const BaseClassSharedPointer& description)
{
    initCondition(description);
}

ConditionWriteOnUrls::~ConditionWriteOnUrls() = default;

bool ConditionWriteOnUrls::initCondition(const BaseClassSharedPointer& description)
{
    for (const internal::ParameterRow& row : internal::parameterRows(description, table())) {
        urls.append(row.text(Url));
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
    const int found = urls.indexOf(url);
    if (internal::observer() != nullptr) {
        const int looked = found < 0 ? urls.size() : found;
        for (int row = 0; row < looked; ++row) {
            internal::reportWrittenUrl(row, false, urls.at(row));
        }
        if (found >= 0) {
            internal::reportWrittenUrl(found, true, url);
        }
    }
    return found >= 0;
}

TypeDescription ConditionWriteOnUrls::typeDescription()
{
    return {TypeDescription::Kind::Condition,
            {},
            QStringLiteral("Holds when one of its URLs was written."),
            table()};
}

QStringList ConditionWriteOnUrls::getConditionUrls() const
{
    return internal::watchedUrls(urls);
}

QString ConditionWriteOnUrls::getConditionAsString() const
{
    return urls.join(QStringLiteral("||"));
}
