#include "Round.h"

#include "NastyPatterns.h"
#include "PatternGenerator.h"

namespace patterns {
namespace {

/// Draws a round of one of several kinds: patterns of any shape, the same with one text in all of
/// them, patterns that are nothing but text, or patterns as people write them.
class RoundGenerator {
public:
    explicit RoundGenerator(std::uint64_t seed) : random(seed) {}

    Round draw()
    {
        drawPatterns();
        Round round;
        round.graphs.push_back(graph(patternsInRound));
        round.graphs.push_back(graph(patternsInRound / 3));
        round.graphs.push_back(graph(random.below(4)));
        drawUrls(round);
        drawSteps(round);
        return round;
    }

private:
    // ---- What there is to match -----------------------------------------------------------------

    void drawPatterns()
    {
        const int kind = random.below(6);
        const QString shared = drawWord(random) + drawWord(random);
        for (int i = 0; i < patternsInRound; ++i) {
            DrawnPattern drawn = kind == 0   ? usual(i)
                                 : kind == 1 ? fewLetters()
                                             : drawPattern(random);
            if (kind == 2) {
                drawn.pattern.prepend("\\Q" + shared + "\\E");
                drawn.sample.prepend(shared);
            }
            pool.push_back(drawn);
        }
    }

    DrawnPattern usual(int number)
    {
        const QString zone = QStringLiteral("Zone%1").arg(number / 3);
        const QString leaf = random.oneOf(QStringList{"Temperature", "Pressure", "Unit", "unit"});
        switch (random.below(5)) {
        case 0:
            return {'^' + zone + '/' + leaf + '$', zone + '/' + leaf, {}};
        case 1:
            return {zone + "/(?<leaf>\\w+)$", zone + '/' + leaf, {}};
        case 2:
            return {"(?<zone>Zone\\d+)/" + leaf, zone + '/' + leaf, {}};
        case 3:
            return {"(?i)" + zone.toLower() + "/.*" + leaf.toLower(), zone + '/' + leaf, {}};
        default:
            return {zone + '|' + leaf, leaf, {}};
        }
    }

    /// Text out of so few letters that many patterns have most of theirs in common.
    DrawnPattern fewLetters()
    {
        static const QStringList alphabets{"ab", "abc", "a", QStringLiteral("a\u0161\u6161"),
                                           QStringLiteral("\u0100\u0200\uFF00")};
        const QString alphabet = random.oneOf(alphabets);
        const auto drawText = [&](int most) {
            QString text;
            for (int length = random.between(1, most); length > 0; --length) {
                text += random.oneOf(alphabet);
            }
            return text;
        };
        const QString text = drawText(random.pick({6, 12, 300}));
        return {text, drawText(7) + text + drawText(7), {}};
    }

    void drawUrls(Round& round)
    {
        round.urls = QStringList{QString()};
        while (round.urls.size() < urlsInRound) {
            round.urls.append(drawUrl(random, random.oneOf(pool).sample));
        }
    }

    // ---- Graphs ---------------------------------------------------------------------------------

    QString pattern() { return random.oneOf(pool).pattern; }

    /// A graph of nodes with about four patterns each, some of them twice, in one place or in two.
    Graph graph(int patternCount)
    {
        Graph graph;
        int drawn = 0;
        while (drawn < patternCount || graph.empty()) {
            Node node{QStringLiteral("N%1").arg(int(graph.size()), 3, 10, QChar('0')), {}};
            for (int edges = random.between(1, 3); edges > 0; --edges) {
                node.edges.push_back(edge());
                drawn += node.edges.back().patterns.size() + node.edges.back().compared.size();
            }
            graph.push_back(node);
        }
        return graph;
    }

    Edge edge()
    {
        Edge edge;
        if (random.oneIn(12)) {
            return edge;
        }
        for (int count = random.below(4); count > 0; --count) {
            edge.patterns.append(pattern());
        }
        if (random.oneIn(6) && !edge.patterns.isEmpty()) {
            edge.patterns.append(random.oneIn(2) ? edge.patterns.first()
                                                 : "RE:" + edge.patterns.first());
        }
        if (random.oneIn(4)) {
            edge.compared.append(pattern());
        }
        if (random.oneIn(6)) {
            edge.urls.append(drawUrl(random, random.oneOf(pool).sample));
        }
        if (random.oneIn(30)) {
            edge.urls.append("RE:" + pattern());
        }
        return edge;
    }

    // ---- The story ------------------------------------------------------------------------------

    using Action = Step::Action;

    /// Every URL is asked, asked again in a copy and where it was, and run. After that anything may
    /// happen, also within something else.
    void drawSteps(Round& round)
    {
        std::vector<Step>& steps = round.steps;
        steps.push_back(build(0, 0));
        for (int url = 0; url < round.urls.size(); ++url) {
            steps.push_back(ask(Action::Filter, 0, url));
        }
        steps.push_back(assign(1, 0));
        for (int url = round.urls.size() - 1; url >= 0; --url) {
            steps.push_back(ask(Action::Filter, random.below(2), url));
            steps.push_back(ask(Action::Traverse, random.below(2), url));
        }
        for (int i = 0; i < 100; ++i) {
            steps.push_back(anything(round, 2));
        }
    }

    Step anything(const Round& round, int depth)
    {
        const int walker = random.below(walkerCount);
        Step step;
        switch (random.below(20)) {
        case 0:
            step = build(walker, random.below(int(round.graphs.size())));
            break;
        case 1:
            step = assign(walker, random.below(walkerCount));
            break;
        case 2:
            step.action = Action::Reset;
            step.walker = walker;
            return step;
        default:
            // Few URLs, so that most have been asked before.
            step = ask(random.oneIn(3) ? Action::Traverse : Action::Filter, walker,
                       random.oneIn(4) ? random.below(round.urls.size()) : random.below(8));
            break;
        }
        const bool callsOut = step.action == Action::Traverse || step.action == Action::Build;
        if (callsOut && depth > 0 && random.oneIn(3)) {
            for (int count = random.between(1, 3); count > 0; --count) {
                step.inside.push_back(anything(round, depth - 1));
            }
            step.at = random.below(int(round.graphs[std::size_t(step.graph)].size()));
        }
        return step;
    }

    static Step ask(Action action, int walker, int url)
    {
        Step step;
        step.action = action;
        step.walker = walker;
        step.url = url;
        return step;
    }

    static Step build(int walker, int graph)
    {
        Step step;
        step.action = Action::Build;
        step.walker = walker;
        step.graph = graph;
        return step;
    }

    static Step assign(int walker, int from)
    {
        Step step;
        step.action = Action::Assign;
        step.walker = walker;
        step.from = from;
        return step;
    }

    Random random;
    std::vector<DrawnPattern> pool;
};

// ---- Text ---------------------------------------------------------------------------------------

std::string quoted(const QString& text)
{
    return '"' + visible(text).toStdString() + '"';
}

void printList(std::ostream& out, const char* title, const QStringList& texts)
{
    if (texts.isEmpty()) {
        return;
    }
    out << ' ' << title;
    for (const QString& text : texts) {
        out << ' ' << quoted(text);
    }
}

void printSteps(std::ostream& out, const Round& round, const std::vector<Step>& steps,
                const std::string& indent)
{
    for (const Step& step : steps) {
        out << indent << question(round, step).toStdString();
        if (!step.inside.empty() && step.action == Step::Action::Build) {
            out << ", while it makes node " << step.at;
        }
        out << (step.inside.empty() ? "\n" : ":\n");
        printSteps(out, round, step.inside, indent + "  ");
    }
}

} // namespace

QString question(const Round& round, const Step& step)
{
    const QString walker = QStringLiteral("walker %1: ").arg(step.walker);
    switch (step.action) {
    case Step::Action::Filter:
        return walker + QStringLiteral("filter \"%1\"").arg(visible(round.urls.at(step.url)));
    case Step::Action::Traverse:
        return walker + QStringLiteral("traverse \"%1\"").arg(visible(round.urls.at(step.url)));
    case Step::Action::Build:
        return walker + QStringLiteral("build graph %1").arg(step.graph);
    case Step::Action::Reset:
        return walker + QStringLiteral("reset");
    case Step::Action::Assign:
        break;
    }
    return walker + QStringLiteral("assign walker %1").arg(step.from);
}

QString commandLabel(const Node& node, int edge)
{
    return QStringLiteral("%1.%2").arg(node.name).arg(edge);
}

QString visible(const QString& text)
{
    QString shown;
    for (const QChar character : text) {
        if (character == '"' || character == '\\') {
            shown += '\\';
        }
        shown += character >= ' ' && character <= '~'
                     ? QString(character)
                     : QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QChar('0'));
    }
    return shown;
}

std::ostream& operator<<(std::ostream& out, const Round& round)
{
    for (std::size_t i = 0; i < round.graphs.size(); ++i) {
        out << "graph " << i << ":\n";
        for (const Node& node : round.graphs[i]) {
            for (int edge = 0; edge < int(node.edges.size()); ++edge) {
                const Edge& conditions = node.edges[std::size_t(edge)];
                out << "  " << commandLabel(node, edge).toStdString();
                printList(out, "patterns", conditions.patterns);
                printList(out, "compared", conditions.compared);
                printList(out, "URLs", conditions.urls);
                out << '\n';
            }
        }
    }
    printSteps(out, round, round.steps, {});
    return out;
}

std::ostream& operator<<(std::ostream& out, const Answers& answers)
{
    for (const Answer& answer : answers) {
        out << "  " << answer.question.toStdString() << " -> "
            << answer.told.join(QStringLiteral(", ")).toStdString() << '\n';
    }
    return out;
}

Round drawRound(std::uint64_t seed)
{
    return RoundGenerator(seed).draw();
}

} // namespace patterns
