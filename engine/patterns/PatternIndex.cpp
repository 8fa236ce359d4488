#include "patterns/PatternIndex.h"

#include "patterns/LiteralIndex.h"
#include "patterns/Pattern.h"
#include "patterns/RequiredLiteral.h"
#include "patterns/TextHash.h"

#include <QSharedData>
#include <QtAlgorithms>

#include <algorithm>
#include <utility>
#include <vector>

namespace patterns {

namespace {

constexpr int none = -1;

bool isWellFormed(const QString& text)
{
    constexpr ushort upperHalf = 0x8000; // where the surrogates are
    ushort bits = 0;
    for (const QChar unit : text) {
        bits |= unit.unicode();
    }
    return bits < upperHalf || text.isValidUtf16();
}

} // namespace

/// Everything but the answers.
class PatternIndex::Patterns : public QSharedData {
public:
    void add(const QString& text, const QSharedPointer<NodeBase>& node);
    bool isSealed() const { return sealedCount == patterns.size(); }
    void seal();
    Nodes find(const QString& url) const;

private:
    using Numbers = LiteralIndex::Numbers;

    /// A pattern, known by its number, and those who watch it in the order in which they
    /// were added; the answer when no other pattern matches.
    struct Watched {
        Pattern pattern;
        Nodes nodes;
        int firstPlace; // among all that were added
        int lastPlace;
    };

    void joinEqual();
    Numbers candidatesFor(const QString& url) const;
    Nodes nodesOf(const Numbers& matching) const;

    std::vector<Watched> patterns;
    std::vector<int> nextPlaces; // of the same pattern, by place

    LiteralIndex index;
    std::vector<int> alwaysTried;
    std::size_t sealedCount = 0; // of the patterns, those that the two above know
};

void PatternIndex::Patterns::add(const QString& text, const QSharedPointer<NodeBase>& node)
{
    const int place = int(nextPlaces.size());
    nextPlaces.push_back(none);
    patterns.push_back({Pattern(text), {node}, place, place});
}

/// Lets equal ones of the patterns since the last seal be one.
void PatternIndex::Patterns::joinEqual()
{
    constexpr int hashBits = 64;
    const int tableBits = hashBits - int(qCountLeadingZeroBits(quint64(patterns.size()) * 2));
    std::vector<std::size_t> table(std::size_t(1) << tableBits); // zero: unused; open addressing
    std::size_t count = sealedCount;
    for (std::size_t number = sealedCount; number < patterns.size(); ++number) {
        Watched& watched = patterns[number];
        const QString& text = watched.pattern.text();
        std::size_t at = textHash(text) >> (hashBits - tableBits);
        while (table[at] != 0 && patterns[table[at] - 1].pattern.text() != text) {
            at = (at + 1) & (table.size() - 1);
        }
        if (table[at] != 0) {
            Watched& first = patterns[table[at] - 1];
            first.nodes.append(watched.nodes);
            nextPlaces[std::size_t(first.lastPlace)] = watched.firstPlace;
            first.lastPlace = watched.lastPlace;
            continue;
        }
        if (number != count) {
            patterns[count] = std::move(watched);
        }
        table[at] = ++count;
    }
    patterns.erase(patterns.begin() + std::ptrdiff_t(count), patterns.end());
}

void PatternIndex::Patterns::seal()
{
    joinEqual();
    Literals literals;
    std::vector<LiteralIndex::Item> items;
    items.reserve(patterns.size());
    alwaysTried.clear();
    for (int number = 0; number < int(patterns.size()); ++number) {
        const std::size_t first = literals.size();
        addRequiredLiterals(patterns[std::size_t(number)].pattern.text(), literals);
        const LiteralIndex::Item item{number, first, literals.size()};
        if (LiteralIndex::canHold(literals, item)) {
            items.push_back(item);
        } else {
            alwaysTried.push_back(number);
        }
    }
    index = LiteralIndex(literals, items);
    sealedCount = patterns.size();
    patterns.shrink_to_fit();
    nextPlaces.shrink_to_fit();
}

PatternIndex::Patterns::Numbers PatternIndex::Patterns::candidatesFor(const QString& url) const
{
    Numbers candidates = index.find(url);
    for (const int number : alwaysTried) {
        candidates.append(number);
    }
    for (std::size_t number = sealedCount; number < patterns.size(); ++number) {
        candidates.append(int(number));
    }
    return candidates;
}

PatternIndex::Nodes PatternIndex::Patterns::find(const QString& url) const
{
    const Numbers candidates = candidatesFor(url);
    if (candidates.isEmpty() || !isWellFormed(url)) {
        return {};
    }
    Numbers matching;
    for (const int number : candidates) {
        if (patterns[std::size_t(number)].pattern.findsMatchInWellFormed(url)) {
            matching.append(number);
        }
    }
    return nodesOf(matching);
}

PatternIndex::Nodes PatternIndex::Patterns::nodesOf(const Numbers& matching) const
{
    if (matching.size() == 1) {
        return patterns[std::size_t(matching[0])].nodes;
    }
    std::vector<std::pair<int, const QSharedPointer<NodeBase>*>> byPlace;
    for (const int number : matching) {
        const Watched& watched = patterns[std::size_t(number)];
        int place = watched.firstPlace;
        for (const QSharedPointer<NodeBase>& node : watched.nodes) {
            byPlace.emplace_back(place, &node);
            place = nextPlaces[std::size_t(place)];
        }
    }
    std::sort(byPlace.begin(), byPlace.end());
    Nodes nodes;
    nodes.reserve(int(byPlace.size()));
    for (const auto& [place, node] : byPlace) {
        nodes.append(*node);
    }
    return nodes;
}

PatternIndex::PatternIndex() = default;

PatternIndex::PatternIndex(const PatternIndex& other) : patterns(other.patterns) {}

PatternIndex& PatternIndex::operator=(const PatternIndex& other)
{
    if (this != &other) {
        patterns = other.patterns;
        memory.reset();
    }
    return *this;
}

PatternIndex::~PatternIndex() = default;

void PatternIndex::add(const QString& pattern, const QSharedPointer<NodeBase>& node)
{
    memory.reset();
    if (!patterns) {
        patterns = new Patterns;
    }
    patterns->add(pattern, node);
}

void PatternIndex::seal()
{
    const Patterns* const added = patterns.constData();
    if (added != nullptr && !added->isSealed()) {
        patterns->seal();
    }
}

void PatternIndex::clear()
{
    memory.reset();
    patterns = nullptr;
}

PatternIndex::Nodes PatternIndex::matches(const QString& url) const
{
    if (!patterns) {
        return {};
    }
    if (!memory) {
        memory = std::make_unique<AnswerMemory<Nodes>>();
    }
    return memory->get(url, [this, &url] { return patterns->find(url); });
}

} // namespace patterns
