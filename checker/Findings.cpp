#include "checker/Findings.h"

#include "filehost/NearestNames.h"

#include <algorithm>
#include <utility>

namespace checker {

namespace {

Code codeOf(filehost::Problem::Code code, Code misshapen)
{
    using Problem = filehost::Problem::Code;
    switch (code) {
    case Problem::Syntax:
        return Code::Syntax;
    case Problem::DuplicateKey:
        return Code::DuplicateKey;
    case Problem::NumberRange:
    case Problem::Depth:
    case Problem::Size:
        return Code::BeyondLimits;
    case Problem::Shape:
    case Problem::Name:
        return misshapen;
    default:
        return Code::MissingFile;
    }
}

bool standsBefore(const Finding& left, const Finding& right)
{
    return left.place.line != right.place.line ? left.place.line < right.place.line
                                               : left.place.column < right.place.column;
}

} // namespace

Findings::Findings(const filehost::DescriptionPlaces& places) : places(places) {}

void Findings::add(Code code, const Place& place, const QString& message, const QString& advice)
{
    found.append({code, places.text().file(), place, message, advice, std::nullopt, 0});
}

void Findings::add(const filehost::Link& link, Code code, const Place& place,
                   const QString& message, const std::function<QString()>& advice)
{
    const QString key =
        QStringLiteral("%1 %2 %3").arg(static_cast<int>(code)).arg(place.bytes.begin).arg(message);
    const auto known = ofLinks.constFind(key);
    if (known != ofLinks.cend()) {
        ++found[*known].otherLinks;
        return;
    }
    ofLinks.insert(key, found.size());
    add(code, place, message, advice());
    found.last().link = link;
}

bool Findings::contains(Code code) const
{
    return std::any_of(found.begin(), found.end(),
                       [code](const Finding& finding) { return finding.code == code; });
}

QList<Finding> Findings::take()
{
    ofLinks.clear();
    sortByPlace(found);
    return std::exchange(found, {});
}

void sortByPlace(QList<Finding>& findings)
{
    std::stable_sort(findings.begin(), findings.end(), standsBefore);
}

Finding findingOf(const filehost::Problem& problem, Code misshapen)
{
    const Place place{problem.line, problem.column, problem.line > 0 ? 1 : 0, {0, 0}, {}};
    return {codeOf(problem.code, misshapen),
            problem.file,
            place,
            problem.message,
            problem.advice,
            std::nullopt,
            0};
}

QString quoted(const QString& text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

QString didYouMean(const QString& name, const QStringList& candidates, const QString& otherwise)
{
    const QString nearest = filehost::nearestName(name, candidates);
    return nearest.isEmpty() ? otherwise : QStringLiteral("did you mean %1?").arg(quoted(nearest));
}

} // namespace checker
