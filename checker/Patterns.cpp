#include "checker/Patterns.h"

#include "checker/Backtracking.h"

namespace checker {

QString withoutMachineCode()
{
    return QStringLiteral("(*NO_JIT)");
}

int Pattern::errorOffset() const
{
    return expression.patternErrorOffset() - withoutMachineCode().size();
}

bool Pattern::findsMatch(const QString& url) const
{
    return isValid && expression.match(url).hasMatch();
}

const Pattern& Patterns::operator[](const QString& pattern)
{
    auto known = compiled.find(pattern);
    if (known == compiled.end()) {
        // Most patterns are compiled to be looked at and matched a few times: machine code for each
        // would take far longer than all the rest of a check.
        Pattern fresh{QRegularExpression(withoutMachineCode() + pattern), false, {}};
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
