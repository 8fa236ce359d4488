#include "tools/explain/TraceTree.h"

#include "Fixture.h"

#include <gtest/gtest.h>

using tools::LinkTrace;
using tools::NodeRun;
using tools::traceTree;
using trace::Event;

namespace {

using Decision = TraversalObserver::EdgeDecision;
using Events = QList<Event>;
using Outcome = TraversalObserver::RowOutcome;
using Selection = TraversalObserver::Selection;

Event start(const QString& url)
{
    return trace::TraversalStarted{url};
}

const Event end = trace::TraversalFinished{true, false};

Event selected(const QString& name, Selection selection)
{
    return trace::NodeSelected{{name, selection, {}}};
}

Event enter(const QString& name)
{
    return trace::NodeEntered{{name, {}}};
}

const Event leave = trace::NodeLeft{{}, true};

Event edge(int index, const QString& successor, Decision decision)
{
    return trace::EdgeDecided{{index, successor, decision}};
}

/// A condition that was asked, with one row.
Events asked(int index, bool holds)
{
    const TraversalObserver::Condition condition{index, {}};
    return {trace::ConditionStarted{condition},
            trace::ConditionRowChecked{
                {0, TraversalObserver::ConditionOutcome::Differs, {}, {}, {}, {}}},
            trace::ConditionFinished{condition, holds}};
}

Events command(const QString& type, const QList<Outcome>& rows)
{
    Events events{trace::CommandStarted{{0, type}}};
    for (const Outcome outcome : rows) {
        events.append(trace::CommandRowExecuted{{0, outcome, {}, {}}});
    }
    events.append(trace::CommandFinished{{0, type}, true});
    return events;
}

/// "node(command:rows edge?conditions->{successor successor})", where a condition that holds is
/// "+", one that fails is "-", and an edge of which nothing is known is "?".
QString textOf(const NodeRun& node)
{
    QStringList parts;
    for (const tools::CommandRun& run : node.commands) {
        parts.append(QStringLiteral("%1:%2").arg(run.command.type).arg(run.rows.size()));
    }
    for (const tools::EdgeRun& run : node.edges) {
        QString text =
            run.edge ? QString::number(run.edge->index) + run.edge->successor : QStringLiteral("?");
        for (const tools::ConditionRun& condition : run.conditions) {
            EXPECT_EQ(condition.rows.size(), 1);
            text += condition.holds ? QStringLiteral("+") : QStringLiteral("-");
        }
        QStringList follows;
        for (const auto& follow : run.follows) {
            follows.append(textOf(*follow));
        }
        parts.append(text + QStringLiteral("{%1}").arg(follows.join(QLatin1Char(' '))));
    }
    return node.node.name + QStringLiteral("(%1)").arg(parts.join(QLatin1Char(' ')));
}

/// "target[url: nodes; url: nodes]" for each link.
QStringList textsOf(const Events& events)
{
    QStringList texts;
    for (const LinkTrace& link : traceTree(events)) {
        QStringList traversals;
        for (const tools::TraversalRun& traversal : link.traversals) {
            QStringList nodes;
            for (const auto& node : traversal.nodes) {
                nodes.append(textOf(*node));
            }
            traversals.append(traversal.url + QStringLiteral(": ") + nodes.join(QLatin1Char(' ')));
        }
        texts.append((link.link ? link.link->target : QStringLiteral("?")) +
                     QStringLiteral("[%1]").arg(traversals.join(QStringLiteral("; "))));
    }
    return texts;
}

QStringList only(const QString& text)
{
    return {text};
}

TEST(TraceTree, has_traversals_under_their_links_and_nodes_under_their_traversals)
{
    const trace::Link toA{"s", "a", "d", false, {}};
    const trace::Link toB{"s", "b", "d", false, {}};
    EXPECT_EQ(textsOf({toA, start("x"), enter("N"), leave, enter("M"), leave, end, start("y"), end,
                       toB, start("x"), end}),
              (QStringList{"a[x: N() M(); y: ]", "b[x: ]"}));
    EXPECT_EQ(textsOf({toA, toB}), (QStringList{"a[]", "b[]"}));
    EXPECT_EQ(textsOf({start("x"), end}), only("?[x: ]")) << "nobody named the link";
    EXPECT_EQ(textsOf({}), QStringList());
}

TEST(TraceTree, has_successors_under_the_edges_that_lead_to_them)
{
    EXPECT_EQ(textsOf({start("x"), enter("N"), edge(0, "A", Decision::FollowedAlways), enter("A"),
                       edge(0, "B", Decision::FollowedAsOnly), enter("B"), leave, leave,
                       edge(1, "C", Decision::LeadsNowhere), edge(2, "D", Decision::FollowedAlways),
                       enter("D"), leave, leave, end}),
              only("?[x: N(0A{A(0B{B()})} 1C{} 2D{D()})]"));
}

TEST(TraceTree, gives_each_edge_the_conditions_that_were_asked_for_it)
{
    EXPECT_EQ(textsOf(Events{start("x"), enter("N")} + asked(0, false) + asked(1, false) +
                      Events{edge(0, "A", Decision::NoConditionHolds)} + asked(0, false) +
                      Events{edge(1, "B", Decision::NoConditionHolds), leave, end}),
              only("?[x: N(0A--{} 1B-{})]"));
}

TEST(TraceTree, keeps_an_edge_one_that_several_conditions_let_pass)
{
    EXPECT_EQ(
        textsOf(Events{start("x"), enter("N")} + asked(0, true) +
                Events{edge(0, "A", Decision::FollowedByCondition), enter("A"), leave} +
                asked(1, false) + asked(2, true) +
                Events{edge(0, "A", Decision::FollowedByCondition), enter("A"), leave} +
                asked(3, false) +
                Events{edge(1, "B", Decision::FollowedAlways), enter("B"), leave, leave, end}),
        only("?[x: N(0A+-+-{A() A()} 1B{B()})]"));
}

TEST(TraceTree, has_commands_with_their_rows)
{
    EXPECT_EQ(textsOf(Events{start("x"), enter("N")} +
                      command("C", {Outcome::Changed, Outcome::NoUnit}) + command("D", {}) +
                      Events{leave, end}),
              only("?[x: N(C:2 D:0)]"));
}

TEST(TraceTree, has_a_traversal_within_another_beside_it)
{
    EXPECT_EQ(textsOf({start("x"), enter("N"), trace::CommandStarted{{0, "C"}}, start("y"),
                       enter("M"), leave, end, trace::CommandRowExecuted{{0, {}, {}, {}}}, leave,
                       enter("O"), leave, end}),
              only("?[x: N(C:1) O(); y: M()]"));
}

TEST(TraceTree, keeps_what_was_told_before_the_process_ended)
{
    EXPECT_EQ(textsOf(Events{start("x"), enter("N")} + asked(0, true)), only("?[x: N(?+{})]"));
    EXPECT_EQ(textsOf({start("x"), enter("N"), trace::CommandStarted{{0, "C"}},
                       trace::CommandRowExecuted{{0, Outcome::ColumnOutOfRange, {}, {}}}}),
              only("?[x: N(C:1)]"));
}

TEST(TraceTree, passes_over_events_that_belong_nowhere)
{
    const Events lost = Events{leave, end, enter("N"), edge(0, "A", Decision::FollowedAlways)} +
                        asked(0, true) + command("C", {Outcome::Changed});
    EXPECT_EQ(textsOf(lost), QStringList());
    EXPECT_EQ(textsOf(Events{start("x"), end} + lost), only("?[x: ]"));
    EXPECT_EQ(textsOf({start("x"), enter("N"), enter("M"), leave, end}), only("?[x: N()]"))
        << "no edge leads to M";
}

TEST(TraceTree, knows_whether_anything_changes_at_any_depth)
{
    const auto changes = [](const QList<Outcome>& rows) {
        const auto traces = traceTree(
            Events{start("x"), enter("N"), edge(0, "A", Decision::FollowedAlways), enter("A")} +
            command("C", rows) + Events{leave, leave, end});
        return changesAnything(traces.front());
    };
    EXPECT_TRUE(changes({Outcome::NoUnit, Outcome::Changed}));
    EXPECT_FALSE(changes({Outcome::Unchanged, Outcome::NoUnit}));
    EXPECT_FALSE(changes({}));
}

TEST(TraceTree, knows_whether_a_node_answers_that_watches_the_url)
{
    const auto answers = [](Selection selection) {
        return isAnswered(
            traceTree({start("x"), selected("N", selection), enter("N"), leave, end}).front());
    };
    EXPECT_TRUE(answers(Selection::Url));
    EXPECT_TRUE(answers(Selection::Pattern));
    EXPECT_FALSE(answers(Selection::Unconditional));
    EXPECT_FALSE(isAnswered(traceTree({start("x"), end}).front()));
}

} // namespace
