#include "checker/GraphCheck.h"

#include "DependencyWalkerDefinitions.h"
#include "checker/RowCheck.h"

#include <QHash>

#include <algorithm>

namespace checker {

using filehost::DescriptionPlaces;
using filehost::json::JsonText;

namespace {

/// A URL or a pattern that a condition watches, and the cell that says so.
struct Watched {
    QString text;
    Index cell;
};

/// What a condition, or a node's subgraph, is found by.
struct Watches {
    std::vector<Watched> urls;
    std::vector<Watched> patterns;

    bool isEmpty() const { return urls.empty() && patterns.empty(); }
};

class GraphChecker {
public:
    GraphChecker(const DescriptionPlaces& places, Patterns& patterns, Findings& findings)
        : places(places), text(places.text()), patterns(patterns), findings(findings)
    {}

    void checkTopLevel(const Node& node);

private:
    void check(const Node& node, bool isTopLevel, bool isInIdle);
    void checkSuccessors(const Node& node);
    void checkEffect(const Node& node, bool isIdle, bool isInIdle);
    bool isIdle(const Node& node, bool isTopLevel) const;
    void checkAlternatives(const Node& successor);
    void checkRunsTwice(const Node& node);
    void collect(const Table& condition, Watches& watches) const;
    void collectBelow(const Node& node, Watches& watches) const;
    bool bothMayHold(const Table& left, const Table& right);
    std::vector<int> firstMatches(const std::vector<Watched>& watched,
                                  const std::vector<Watched>& urls);

    const DescriptionPlaces& places;
    const JsonText& text;
    Patterns& patterns;
    Findings& findings;
};

void GraphChecker::checkTopLevel(const Node& node)
{
    for (const Table& condition : node.conditions) {
        findings.add(Code::UnreadCondition, places.keyAt(condition.member),
                     QStringLiteral("no edge leads to a top-level node, so its conditions are not "
                                    "read and it is not found by what they watch"),
                     QStringLiteral("put a switch node above it: conditions guard the edge from "
                                    "there"));
    }
    check(node, true, false);
    checkRunsTwice(node);
}

/// `isInIdle`: that it does nothing is told of a node above.
void GraphChecker::check(const Node& node, bool isTopLevel, bool isInIdle)
{
    const bool doesNothing = isInIdle || isIdle(node, isTopLevel);
    for (const Table& condition : node.conditions) {
        checkRows(condition, places, patterns, findings);
    }
    for (const Table& command : node.commands) {
        checkRows(command, places, patterns, findings);
    }
    if (node.type != nullptr) {
        checkSuccessors(node);
        checkEffect(node, doesNothing, isInIdle);
    }
    for (const Node& successor : node.successors) {
        check(successor, false, doesNothing);
    }
}

void GraphChecker::checkSuccessors(const Node& node)
{
    if (node.type->asksConditions) {
        for (const Node& successor : node.successors) {
            checkAlternatives(successor);
        }
        return;
    }
    if (node.successors.size() > 1) {
        findings.add(
            Code::SeveralSuccessors, places.keyAt(node.next),
            QStringLiteral("the command node %1 has %2 successors and follows none of "
                           "them")
                .arg(quoted(text.key(node.member)), QString::number(node.successors.size())),
            QStringLiteral("put a switch node between: it follows each edge that its "
                           "conditions allow"));
        return;
    }
    for (const Node& successor : node.successors) {
        for (const Table& condition : successor.conditions) {
            findings.add(Code::UnaskedCondition, places.keyAt(condition.member),
                         QStringLiteral("a command node goes on to its only successor without "
                                        "asking conditions; what this one watches only makes the "
                                        "top-level node run"),
                         QStringLiteral("put a switch node between: it asks the conditions of its "
                                        "edges"));
        }
    }
}

void GraphChecker::checkEffect(const Node& node, bool isIdle, bool isInIdle)
{
    const QString name = quoted(text.key(node.member));
    if (!node.type->runsCommands && node.ownCommands != JsonText::none) {
        findings.add(Code::UnreadCommands, places.keyAt(node.ownCommands),
                     QStringLiteral("%1 is a switch node, which runs no commands").arg(name),
                     QStringLiteral("move them to a command node among its successors"));
    }
    if (isInIdle) {
        return;
    }
    if (node.type->asksConditions && node.successors.empty()) {
        findings.add(
            Code::SwitchWithoutEdges, places.keyAt(node.member),
            QStringLiteral("the switch node %1 has no edges; nothing happens there").arg(name),
            QStringLiteral("write its successors under \"Next\", or remove it"));
    } else if (isIdle) {
        findings.add(Code::NoEffect, places.keyAt(node.member),
                     node.successors.empty()
                         ? QStringLiteral("the command node %1 has neither commands nor a "
                                          "successor; nothing happens there")
                               .arg(name)
                         : QStringLiteral("neither %1 nor any node below has commands or watches "
                                          "anything; nothing happens there")
                               .arg(name),
                     QStringLiteral("write commands under \"Commands\", or remove it"));
    }
}

/// Whether nothing below has commands, right or wrong, or watches anything. A node that only
/// watches is one on purpose: it names what is run when nothing was written.
bool GraphChecker::isIdle(const Node& node, bool isTopLevel) const
{
    const auto isEmpty = [&](Index member) {
        if (member == JsonText::none) {
            return true;
        }
        const JsonText::Children children = text.children(member);
        return text.kind(member) == JsonText::Kind::Object &&
               std::all_of(children.begin(), children.end(), [&](Index child) {
                   return text.key(child).startsWith(QLatin1Char('@'));
               });
    };
    const bool isKnown = node.type != nullptr;
    const bool hasConditions = !isTopLevel && !node.conditions.empty();
    if (!isKnown || hasConditions || !isEmpty(node.ownCommands) ||
        (node.successors.empty() && !isEmpty(node.next))) {
        return false;
    }
    return std::all_of(node.successors.begin(), node.successors.end(),
                       [&](const Node& successor) { return isIdle(successor, false); });
}

void GraphChecker::checkAlternatives(const Node& successor)
{
    for (std::size_t later = 1; later < successor.conditions.size(); ++later) {
        const Table& condition = successor.conditions[later];
        const auto earlier =
            std::find_if(successor.conditions.begin(),
                         successor.conditions.begin() + static_cast<std::ptrdiff_t>(later),
                         [&](const Table& other) { return bothMayHold(other, condition); });
        if (earlier != successor.conditions.begin() + static_cast<std::ptrdiff_t>(later)) {
            findings.add(
                Code::AlternativeConditions, places.keyAt(condition.member),
                QStringLiteral("conditions of one edge are alternatives: %1 runs when this one "
                               "holds or %2 does, and twice when both do")
                    .arg(quoted(text.key(successor.member)), quoted(earlier->type->name)),
                QStringLiteral("for \"this and that\" put one switch node behind the other, a "
                               "condition on each edge"));
        }
    }
}

/// Conditions that look at the written URL only hold together where a pattern of one finds a URL of
/// the other. Of all others one cannot tell.
bool GraphChecker::bothMayHold(const Table& left, const Table& right)
{
    const auto looksAtUrlOnly = [](const Table& condition) {
        return condition.type->table.columns.size() == 1;
    };
    const auto patternsOf = [&](const Table& condition) {
        Watches watches;
        collect(condition, watches);
        return watches;
    };
    const Watches ofLeft = patternsOf(left);
    const Watches ofRight = patternsOf(right);
    if (ofLeft.isEmpty() || ofRight.isEmpty()) {
        return false; // one of them never holds
    }
    const Watches* const plain = looksAtUrlOnly(left) && ofLeft.patterns.empty()     ? &ofLeft
                                 : looksAtUrlOnly(right) && ofRight.patterns.empty() ? &ofRight
                                                                                     : nullptr;
    const Watches& other = plain == &ofLeft ? ofRight : ofLeft;
    if (plain == nullptr || !other.urls.empty()) {
        return true;
    }
    const std::vector<int> matches = firstMatches(other.patterns, plain->urls);
    return std::any_of(matches.begin(), matches.end(), [](int url) { return url >= 0; });
}

/// For each pattern the number of the first URL that it matches, or -1.
std::vector<int> GraphChecker::firstMatches(const std::vector<Watched>& watched,
                                            const std::vector<Watched>& urls)
{
    const auto textsOf = [](const std::vector<Watched>& list) {
        QStringList texts;
        for (const Watched& entry : list) {
            texts.append(entry.text);
        }
        return texts;
    };
    return patterns.firstMatches(textsOf(watched), textsOf(urls));
}

void GraphChecker::checkRunsTwice(const Node& node)
{
    Watches watches;
    collectBelow(node, watches);
    if (watches.urls.empty() || watches.patterns.empty()) {
        return; // as in most nodes
    }
    const std::vector<int> matches = firstMatches(watches.patterns, watches.urls);
    for (std::size_t number = 0; number < matches.size(); ++number) {
        if (matches[number] < 0) {
            continue;
        }
        const Watched& url = watches.urls[static_cast<std::size_t>(matches[number])];
        findings.add(Code::RunsTwice, places.valueAt(watches.patterns[number].cell),
                     QStringLiteral("the top-level node %1 also watches %2 in line %3, which this "
                                    "pattern matches; a write there runs it twice")
                         .arg(quoted(text.key(node.member)), quoted(url.text),
                              QString::number(places.valueAt(url.cell).line)),
                     QStringLiteral("let the pattern not match it, or remove the URL where it need "
                                    "not be run without a write"));
    }
}

void GraphChecker::collectBelow(const Node& node, Watches& watches) const
{
    for (const Node& successor : node.successors) {
        if (successor.type == nullptr) {
            continue; // its conditions are not read
        }
        collectBelow(successor, watches);
        for (const Table& condition : successor.conditions) {
            collect(condition, watches);
        }
    }
}

void GraphChecker::collect(const Table& condition, Watches& watches) const
{
    const QString prefix = DependencyWalkerDefinitions::getPrefixRegularExpression();
    const bool hasPatterns = condition.type->table.columns.first().role == CellRole::Pattern;
    for (const Row& row : condition.rows) {
        const Index cell = row.cells.front();
        const QString watched = textOf(places, cell);
        if (hasPatterns) {
            watches.patterns.push_back({watched, cell});
        } else if (watched.startsWith(prefix)) {
            watches.patterns.push_back({watched.mid(prefix.size()), cell});
        } else {
            watches.urls.push_back({watched, cell});
        }
    }
}

} // namespace

void checkGraph(const std::vector<Node>& nodes, const DescriptionPlaces& places, Patterns& patterns,
                Findings& findings)
{
    GraphChecker checker(places, patterns, findings);
    for (const Node& node : nodes) {
        checker.checkTopLevel(node);
    }
}

} // namespace checker
