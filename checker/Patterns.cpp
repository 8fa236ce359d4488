#include "checker/Patterns.h"

#include "checker/Backtracking.h"

namespace checker {

bool Pattern::findsMatch(const QString& url) const
{
    return isValid && expression.match(url).hasMatch();
}

const Pattern& Patterns::operator[](const QString& pattern)
{
    auto known = compiled.find(pattern);
    if (known == compiled.end()) {
        Pattern fresh{QRegularExpression(pattern), false, {}};
        fresh.isValid = fresh.expression.isValid();
        fresh.groups = fresh.expression.namedCaptureGroups();
        known = compiled.insert(pattern, fresh);
    }
    return *known;
}

const std::optional<QString>& Patterns::slowText(const QString& pattern)
{
    auto known = slowTexts.find(pattern);
    if (known == slowTexts.end()) {
        known = slowTexts.insert(pattern, findSlowText(pattern));
    }
    return *known;
}

} // namespace checker
