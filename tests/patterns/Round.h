#ifndef UNITFLOW_TESTS_PATTERNS_ROUND_H
#define UNITFLOW_TESTS_PATTERNS_ROUND_H

#include <QString>
#include <QStringList>

#include <cstdint>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace patterns {

/// One successor of a switch node: what its conditions list. Without any it is always followed.
struct Edge {
    QStringList patterns; ///< a write at a URL that one of these matches
    QStringList compared; ///< the same, with a look at the value there
    QStringList urls;     ///< a write at one of these
};

/// A top-level switch node.
struct Node {
    QString name;
    std::vector<Edge> edges;
};

using Graph = std::vector<Node>; // in the order in which it is built

/// Something that is done with one of a few walkers.
struct Step {
    enum class Action {
        Filter,   ///< asks which nodes have a pattern that matches the URL
        Traverse, ///< runs the graph; `inside` is run within the first command
        Build,    ///< builds `graph`; `inside` is run while node number `at` is made
        Reset,
        Assign ///< becomes a copy of the walker `from`
    };
    Action action = Action::Filter;
    int walker = 0;
    int url = 0;
    int graph = 0;
    int at = 0;
    int from = 0;
    std::vector<Step> inside;
};

constexpr int walkerCount = 3;

/// Some graphs, and a story with them.
struct Round {
    std::vector<Graph> graphs;
    QStringList urls;
    std::vector<Step> steps;
};

/// What one step told: the nodes found or the commands run, in order. Steps within others tell
/// theirs first.
struct Answer {
    QString question;
    QStringList told;

    friend bool operator==(const Answer& left, const Answer& right)
    {
        return left.question == right.question && left.told == right.told;
    }
    friend bool operator!=(const Answer& left, const Answer& right) { return !(left == right); }
};
using Answers = std::vector<Answer>;

/// How a step is called in the answers.
QString question(const Round& round, const Step& step);

/// The label of the command behind an edge.
QString commandLabel(const Node& node, int edge);

/// A text with everything that is hard to see written as an escape.
QString visible(const QString& text);

/// The whole round, to be read.
std::ostream& operator<<(std::ostream& out, const Round& round);
std::ostream& operator<<(std::ostream& out, const Answers& answers);

/// The same round for the same seed on every machine. The first graph has `patternsInRound`
/// patterns or more, of which every URL is asked.
Round drawRound(std::uint64_t seed);

constexpr int patternsInRound = 120;
constexpr int urlsInRound = 90;

} // namespace patterns

#endif
