#include "filehost/LinkPlan.h"

#include "filehost/Locator.h"
#include "filehost/Names.h"

#include <QHash>
#include <QPair>
#include <QString>

#include <numeric>
#include <optional>
#include <utility>

namespace filehost {

namespace {

/// Numbers for files, the same one for two names of one file.
class FileNumbers {
public:
    explicit FileNumbers(const Workspace& workspace) : locator(workspace) {}

    std::size_t numberOf(const Instance& instance)
    {
        const QPair<int, QString> name(static_cast<int>(instance.kind), instance.name);
        const auto known = byName.constFind(name);
        if (known != byName.constEnd()) {
            return *known;
        }
        const QString path = pathOf(instance);
        const auto sameFile = byPath.constFind(path);
        const std::size_t number =
            sameFile == byPath.constEnd() ? static_cast<std::size_t>(byPath.size()) : *sameFile;
        byPath.insert(path, number);
        byName.insert(name, number);
        return number;
    }

    std::size_t count() const { return static_cast<std::size_t>(byPath.size()); }

private:
    QString pathOf(const Instance& instance)
    {
        QList<Problem> refused; // told by the session that runs into it
        const std::optional<File> file = locator.locate(instance, refused);
        // No path begins like this, and nothing is written under a name without one.
        return file ? file->path : wordsFor(named(instance.kind)) + instance.name;
    }

    Locator locator;
    QHash<QPair<int, QString>, std::size_t> byName;
    QHash<QString, std::size_t> byPath;
};

/// Sets that grow together; each is known by one of its members.
class DisjointSets {
public:
    explicit DisjointSets(std::size_t count) : parents(count)
    {
        std::iota(parents.begin(), parents.end(), std::size_t{0});
    }

    std::size_t find(std::size_t member)
    {
        while (parents[member] != member) {
            parents[member] = parents[parents[member]]; // keeps the ways short
            member = parents[member];
        }
        return member;
    }

    void unite(std::size_t left, std::size_t right) { parents[find(left)] = find(right); }

private:
    std::vector<std::size_t> parents;
};

/// The files that a link works on.
struct Ends {
    std::size_t source;
    std::size_t target;
};

} // namespace

LinkPlan::LinkPlan(const Workspace& workspace, const QList<Link>& links)
    : uses(static_cast<std::size_t>(links.size()))
{
    FileNumbers numbers(workspace);
    std::vector<Ends> ends;
    ends.reserve(uses.size());
    for (const Link& link : links) {
        ends.push_back({numbers.numberOf(sourceOf(link)), numbers.numberOf(targetOf(link))});
    }

    std::vector<bool> isWritten(numbers.count(), false);
    for (const Ends& end : ends) {
        isWritten[end.target] = true;
    }
    DisjointSets sets(numbers.count());
    std::vector<std::size_t> lastUses(numbers.count(), 0);
    for (std::size_t link = 0; link < ends.size(); ++link) {
        const Ends& end = ends[link];
        lastUses[end.source] = link;
        lastUses[end.target] = link;
        if (isWritten[end.source]) {
            sets.unite(end.source, end.target);
        }
    }

    constexpr auto none = static_cast<std::size_t>(-1);
    std::vector<std::size_t> unitOfSet(numbers.count(), none);
    for (std::size_t link = 0; link < ends.size(); ++link) {
        const Ends& end = ends[link];
        std::size_t& unit = unitOfSet[sets.find(end.target)];
        if (unit == none) {
            unit = linksOfUnits.size();
            linksOfUnits.emplace_back();
        }
        linksOfUnits[unit].push_back(static_cast<int>(link));
        uses[link].isLastOfTarget = lastUses[end.target] == link;
        uses[link].isLastOfSource =
            isWritten[end.source] && end.source != end.target && lastUses[end.source] == link;
    }
}

Instance targetOf(const Link& link)
{
    return {link.isProcess ? Kind::Process : Kind::Configuration, link.target};
}

Instance sourceOf(const Link& link)
{
    return {Kind::Configuration, link.source};
}

} // namespace filehost
