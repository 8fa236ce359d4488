#include "checker/Patterns.h"

#include "checker/Backtracking.h"
#include "patterns/LiteralIndex.h"
#include "patterns/RequiredLiteral.h"

#include <cstddef>

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

std::vector<int> Patterns::firstMatches(const QStringList& texts, const QStringList& urls)
{
    patterns::Literals literals;
    std::vector<patterns::LiteralIndex::Item> items;
    std::vector<int> alwaysTried;
    for (int number = 0; number < texts.size(); ++number) {
        const std::size_t first = literals.size();
        patterns::addRequiredLiterals(texts.at(number), literals);
        const patterns::LiteralIndex::Item item{number, first, literals.size()};
        if (patterns::LiteralIndex::canHold(literals, item)) {
            items.push_back(item);
        } else {
            alwaysTried.push_back(number);
        }
    }
    const patterns::LiteralIndex index(literals, items);

    std::vector<int> found(static_cast<std::size_t>(texts.size()), -1);
    for (int at = 0; at < urls.size(); ++at) {
        const auto tryOne = [&](int number) {
            int& first = found[static_cast<std::size_t>(number)];
            if (first < 0 && (*this)[texts.at(number)].findsMatch(urls.at(at))) {
                first = at;
            }
        };
        for (const int number : index.find(urls.at(at))) {
            tryOne(number);
        }
        for (const int number : alwaysTried) {
            tryOne(number);
        }
    }
    return found;
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
