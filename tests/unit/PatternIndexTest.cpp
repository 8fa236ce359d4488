#include "patterns/PatternIndex.h"

#include "DependencyWalker.h"
#include "Nodes/NodeSwitch.h"
#include "Probe.h"

#include <QRegularExpression>

#include <atomic>
#include <thread>
#include <vector>

using patterns::PatternIndex;

namespace {

using Nodes = PatternIndex::Nodes;

/// An index, and the plain list of what was added to it.
class IndexedPatterns {
public:
    void add(const QString& pattern)
    {
        added.append({pattern, QSharedPointer<NodeSwitch>::create(pattern, nullptr)});
        index.add(added.constLast().first, added.constLast().second);
    }
    void addWith(const QString& pattern, const QSharedPointer<NodeBase>& node)
    {
        added.append({pattern, node});
        index.add(pattern, node);
    }
    void clear()
    {
        added.clear();
        index.clear();
    }

    /// What a loop over all of them finds, each compiled anew.
    Nodes plainMatches(const QString& url) const
    {
        Nodes nodes;
        for (const auto& [pattern, node] : added) {
            const QRegularExpression expression(pattern);
            if (expression.isValid() && expression.match(url).hasMatch()) {
                nodes.append(node);
            }
        }
        return nodes;
    }

    /// Expects the answer of the loop, also when asked again.
    void check(const QString& url) const
    {
        SCOPED_TRACE(url.toStdString());
        const Nodes expected = plainMatches(url);
        EXPECT_EQ(names(index.matches(url)), names(expected));
        EXPECT_TRUE(index.matches(url) == expected);
    }

    static QStringList names(const Nodes& nodes)
    {
        QStringList names;
        for (const QSharedPointer<NodeBase>& node : nodes) {
            names.append(node.isNull() ? "null" : node->getNodeName());
        }
        return names;
    }

    QList<QPair<QString, QSharedPointer<NodeBase>>> added;
    PatternIndex index;
};

class PatternsOfNodes : public testhost::GraphTest {
protected:
    void add(const QStringList& patterns)
    {
        for (const QString& pattern : patterns) {
            watched.add(pattern);
        }
    }
    void seal() { watched.index.seal(); }
    QStringList matches(const QString& url) const
    {
        return IndexedPatterns::names(watched.index.matches(url));
    }

    IndexedPatterns watched;
};

const QChar highSurrogate(0xD83D);
const QChar lowSurrogate(0xDE00);

TEST_F(PatternsOfNodes, find_the_nodes_in_build_order)
{
    add({"Line", "/Value$", "^Plant/", "nothing", "Value"});
    seal();

    EXPECT_EQ(matches("Plant/Line7/Value"), (QStringList{"Line", "/Value$", "^Plant/", "Value"}));
    EXPECT_EQ(matches("Plant"), QStringList());
}

TEST_F(PatternsOfNodes, find_nothing_when_there_are_none)
{
    EXPECT_EQ(matches("a"), QStringList());
    seal();
    EXPECT_EQ(matches("a"), QStringList());
    EXPECT_EQ(matches(""), QStringList());
}

TEST_F(PatternsOfNodes, find_a_node_once_for_each_of_its_patterns)
{
    const QSharedPointer<NodeBase> node = QSharedPointer<NodeSwitch>::create("A", nullptr);
    watched.addWith("Line", node);
    watched.add("Plant");
    watched.addWith("Value", node);
    watched.addWith("Other", node);
    watched.addWith(".*", node);
    seal();

    EXPECT_EQ(matches("Plant/Line/Value"), (QStringList{"A", "Plant", "A", "A"}));
}

TEST_F(PatternsOfNodes, find_each_node_of_a_pattern_that_several_watch)
{
    for (const char* pattern : {"Line", "Value", "Line", "[Ll]ine", "Value", "Line", "none"}) {
        watched.add(pattern);
    }
    for (const bool sealed : {false, true}) {
        if (sealed) {
            seal();
        }
        watched.check("Plant/Line/Value");
        watched.check("Line");
        watched.check("Value");
        watched.check("none");
        watched.check("line");
    }
    EXPECT_EQ(matches("Line/Value"),
              (QStringList{"Line", "Value", "Line", "[Ll]ine", "Value", "Line"}));
}

TEST_F(PatternsOfNodes, hand_out_null_nodes_like_others)
{
    watched.addWith("Line", nullptr);
    watched.add("Line");
    seal();

    EXPECT_EQ(matches("Line"), (QStringList{"null", "Line"}));
}

TEST_F(PatternsOfNodes, find_nothing_by_a_url_with_a_lone_surrogate)
{
    add({"", ".*", "Line", "^", "Line|x", "[^a]"});
    seal();

    for (const QString& url : {QString("Line") + lowSurrogate, QString("Line") + highSurrogate,
                               lowSurrogate + QString("Line"), highSurrogate + QString("Line"),
                               QString(lowSurrogate) + highSurrogate + "Line"}) {
        EXPECT_EQ(matches(url), QStringList());
        watched.check(url);
    }
    EXPECT_EQ(matches(QString("Line") + highSurrogate + lowSurrogate).size(), 6);
}

TEST_F(PatternsOfNodes, may_hold_nul)
{
    const QString nul(QChar(0));
    add({"Li" + nul + "ne", nul, nul + "$", nul + nul + nul + nul, "a[" + nul + "]b", "Li"});
    seal();

    for (const QString& url : {"Li" + nul + "ne", "Line" + nul, nul.repeated(4), QString("Line"),
                               "a" + nul + "b", nul.repeated(2), "xLi" + nul + "ne" + nul}) {
        watched.check(url);
    }
    EXPECT_EQ(matches("Li" + nul + "ne").size(), 3);
}

TEST_F(PatternsOfNodes, obey_options_inside_a_pattern)
{
    add({"(?i)PLANT/LINE", "plant(?i)/LINE", "(?i:PLANT)/Line", "(?x) Plant / Line # a comment",
         "(?-i)Plant", "Plant(?x) /L ine", "(?s)Plant.Line", "(?m)^Line$"});
    seal();

    for (const char* url : {"Plant/Line", "plant/line", "PLANT/Line", "Plant / Line", "Plant\nLine",
                            "plant/LINE", "# a comment", "Plant/L ine"}) {
        watched.check(url);
    }
    EXPECT_EQ(matches("Plant/Line").size(), 6);
}

TEST_F(PatternsOfNodes, obey_alternatives_optional_parts_and_look_around)
{
    add({"Plant|Line", "(Plant|Line)/Value", "Plant(/Line)?/Value", "Plant(/Line)*", "Plants?",
         "Plant(?=/Line)", "Plant(?!/Line)", "(?<=Plant)/Line", "(?<!Plant)/Line",
         "Plant(/Line){0}", "(?:Plant/)?Line", "Plants{0,1}/", "(?=Value)"});
    seal();

    for (const char* url : {"Plant", "Line", "Plant/Line", "Plant/Value", "Plant/Line/Value",
                            "Plants/Line", "Works/Line", "Line/Value", "Plants/Value", "Plan"}) {
        watched.check(url);
    }
    EXPECT_EQ(matches("Line"), (QStringList{"Plant|Line", "(?:Plant/)?Line"}));
}

TEST_F(PatternsOfNodes, match_before_a_final_line_end_by_a_dollar_sign)
{
    add({"Line$", "Line\\z", "Line\\Z"});
    seal();

    EXPECT_EQ(matches("Plant/Line\n"), (QStringList{"Line$", "Line\\Z"}));
    EXPECT_EQ(matches("Plant/Line").size(), 3);
    EXPECT_EQ(matches("Plant/Line\n\n"), QStringList());
}

TEST_F(PatternsOfNodes, that_are_invalid_find_nothing_and_say_nothing)
{
    add({"(Line", "Line)", "[Line", "*Line", "Line{2,1}", "Line", "Line\\"});
    seal();

    for (const char* url : {"(Line", "Line)", "[Line", "*Line", "Line{2,1}", "Linee", "Line\\"}) {
        EXPECT_EQ(matches(url), QStringList{"Line"});
    }
}

TEST_F(PatternsOfNodes, find_every_url_by_the_empty_pattern)
{
    add({"", "Line", ".*"});
    seal();

    EXPECT_EQ(matches(""), (QStringList{"", ".*"}));
    EXPECT_EQ(matches(QString()), (QStringList{"", ".*"}));
    EXPECT_EQ(matches("Line"), (QStringList{"", "Line", ".*"}));
}

TEST_F(PatternsOfNodes, that_share_a_literal_are_told_apart)
{
    for (int i = 0; i < 300; ++i) {
        watched.add(QString("^[%1]/Common/Value$").arg(QChar(ushort('A' + i % 60))));
    }
    seal();

    for (const char* url : {"A/Common/Value", "Z/Common/Value", "a/Common/Value", "/Common/Value",
                            "A/Common/Values", "B/Common/Val"}) {
        watched.check(url);
    }
    EXPECT_EQ(matches("A/Common/Value").size(), 5);
}

TEST_F(PatternsOfNodes, that_are_added_after_the_last_seal_are_found)
{
    add({"Plant/Line1", "Plant", "[Pp]lant"});
    watched.check("Plant/Line1");
    seal();
    watched.check("Plant/Line1");
    add({"Plant/Line2", "Plant/Line1", "x|Line"});
    for (int turn = 0; turn < 2; ++turn) {
        watched.check("Plant/Line1");
        watched.check("Plant/Line2");
        watched.check("plant");
        seal();
    }
    EXPECT_EQ(matches("Plant/Line1"),
              (QStringList{"Plant/Line1", "Plant", "[Pp]lant", "Plant/Line1", "x|Line"}));
}

TEST_F(PatternsOfNodes, never_answer_from_before_a_change)
{
    add({"Plant"});
    seal();
    EXPECT_EQ(matches("Plant/Line"), QStringList{"Plant"});
    add({"Line"});
    EXPECT_EQ(matches("Plant/Line"), (QStringList{"Plant", "Line"}));
    seal();
    EXPECT_EQ(matches("Plant/Line"), (QStringList{"Plant", "Line"}));
    watched.clear();
    EXPECT_EQ(matches("Plant/Line"), QStringList());
    add({"Line"});
    EXPECT_EQ(matches("Plant/Line"), QStringList{"Line"});
    watched.index = PatternIndex();
    EXPECT_EQ(matches("Plant/Line"), QStringList());
}

TEST_F(PatternsOfNodes, answer_for_more_urls_than_are_remembered)
{
    for (int i = 0; i < 50; ++i) {
        watched.add(QString("/Line%1$").arg(i));
    }
    seal();
    const int count = 3 * int(patterns::AnswerMemory<Nodes>::capacity);
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < count; ++i) {
            const QString url = QString("Plant%1/Line%2").arg(i).arg(i % 100);
            EXPECT_EQ(matches(url),
                      i % 100 < 50 ? QStringList{QString("/Line%1$").arg(i % 100)} : QStringList());
        }
    }
}

TEST_F(PatternsOfNodes, let_go_of_their_nodes_when_they_are_cleared)
{
    add({"Line", "Plant"});
    seal();
    EXPECT_EQ(matches("Line").size(), 1);
    const QWeakPointer<NodeBase> node = watched.added.constFirst().second;

    watched.clear();
    EXPECT_TRUE(node.isNull());
}

TEST_F(PatternsOfNodes, are_copied_and_go_their_own_ways)
{
    add({"Plant", "Line"});
    seal();
    EXPECT_EQ(matches("Plant/Line").size(), 2);

    IndexedPatterns copy = watched;
    copy.check("Plant/Line");
    copy.add("Value");
    copy.check("Plant/Line/Value");
    watched.check("Plant/Line/Value");
    watched.add("/Li");
    watched.index.seal();
    copy.check("Plant/Line/Value");
    watched.check("Plant/Line/Value");
    copy.clear();
    copy.check("Plant/Line/Value");
    watched.check("Plant/Line/Value");
    watched = copy;
    watched.check("Plant/Line/Value");
}

TEST_F(PatternsOfNodes, are_copied_while_they_are_added)
{
    add({"Plant"});
    IndexedPatterns copy = watched;
    add({"Line"});
    seal();
    copy.index.seal();

    EXPECT_EQ(matches("Plant/Line").size(), 2);
    copy.check("Plant/Line");
}

TEST_F(PatternsOfNodes, answer_copies_on_several_threads)
{
    for (int i = 0; i < 200; ++i) {
        watched.add(QString("^(?<inst>[^/]+)/Sensor%1/").arg(i));
    }
    add({"[0-9]/Value", "("});
    seal();
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    threads.reserve(3);
    for (int thread = 0; thread < 3; ++thread) {
        threads.emplace_back([copy = watched.index, &wrong] {
            for (int i = 0; i < 600; ++i) {
                const QString url = QString("Plant/Sensor%1/Value").arg(i % 250);
                wrong += copy.matches(url).size() == (i % 250 < 200 ? 2 : 1) ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}

/// A top-level switch node that watches patterns and has one probe, labeled like the node.
QString matching(const QString& name, const QString& patterns)
{
    return QString(R"("%1": {"Type": "SwitchNode", "Next": {"Only": {"Type": "CommandNode",
                   "ConditionWriteOnUrlsRegExp": %2, "Commands": {"Probe": "%1"}}}})")
        .arg(name, patterns);
}

class WalkerPatterns : public testhost::GraphTest {
protected:
    bool build(const QStringList& nodes)
    {
        return walker.initDependencyGraph(testhost::tree("d", '{' + nodes.join(',') + '}'));
    }

    static QStringList matches(const DependencyWalker& asked, const QString& url)
    {
        Nodes nodes;
        asked.filterRegExpMatches(url, nodes);
        return IndexedPatterns::names(nodes);
    }

    QStringList executedFor(const QString& url)
    {
        QVariantList results;
        bool changed = false;
        walker.traverseDependencyGraph(url, source, target, results, changed, {}, {});
        return executed();
    }

    DependencyWalker walker;
    testhost::NodePointer source = testhost::tree("source", "{}");
    testhost::NodePointer target = testhost::tree("target", "{}");
};

TEST_F(WalkerPatterns, are_the_new_ones_after_a_rebuild_and_none_after_a_reset)
{
    build({matching("A", R"([["^Plant/"]])"), matching("B", R"([["Line"]])")});
    EXPECT_EQ(executedFor("Plant/Line"), (QStringList{"A", "B"}));
    build({matching("C", R"([["Line"]])")});
    EXPECT_EQ(executedFor("Plant/Line"), QStringList{"C"});
    walker.reset();
    EXPECT_EQ(executedFor("Plant/Line"), QStringList());
    build({matching("D", R"([["Plant"]])")});
    EXPECT_EQ(executedFor("Plant/Line"), QStringList{"D"});
}

TEST_F(WalkerPatterns, answer_in_the_middle_of_a_build)
{
    build({matching("Z", R"([["Plant"]])")});
    QStringList during;
    host.insideNext("extractConfigValue(Type, d/B)",
                    [&] { during = matches(walker, "Plant/Line"); });

    build({matching("A", R"([["Line"]])"), matching("B", R"([["Plant"]])")});
    EXPECT_EQ(during, QStringList{"A"});
    EXPECT_EQ(matches(walker, "Plant/Line"), (QStringList{"A", "B"}));
}

TEST_F(WalkerPatterns, of_two_builds_that_mix_are_all_found)
{
    host.insideNext("extractConfigValue(Type, d/B)", [&] {
        build({matching("X", R"([["Plant"]])"), matching("Y", R"([["none"]])")});
        EXPECT_EQ(matches(walker, "Plant/Line"), QStringList{"X"});
    });

    build({matching("A", R"([["Plant"]])"), matching("B", R"([["Plant"]])"),
           matching("C", R"([["Line"]])")});
    EXPECT_EQ(matches(walker, "Plant/Line"), (QStringList{"X", "B", "C"}));
    EXPECT_EQ(matches(walker, "none"), QStringList{"Y"});
}

TEST_F(WalkerPatterns, of_a_copy_made_in_the_middle_of_a_build_are_those_so_far)
{
    DependencyWalker copy;
    host.insideNext("extractConfigValue(Type, d/B)", [&] { copy = walker; });

    build({matching("A", R"([["Plant"]])"), matching("B", R"([["Plant"]])")});
    EXPECT_EQ(matches(copy, "Plant"), QStringList{"A"});
    EXPECT_EQ(matches(walker, "Plant"), (QStringList{"A", "B"}));
}

TEST_F(WalkerPatterns, of_copies_are_asked_by_two_threads)
{
    QStringList nodes;
    for (int i = 0; i < 50; ++i) {
        nodes.append(QString(R"("N%1": {"Type": "SwitchNode", "Next": {"Only": {
            "Type": "CommandNode",
            "ConditionWriteOnUrlsRegExp": [["^Plant/(?<inst>[^/]+)/Sensor%1$"]],
            "Commands": {"CommandSetUnitPropertiesRegExp": [["^(?<inst>[a-z]+)$", "a", "K"]],
                         "CommandSetUnitByConfigurationParameterInstRegExp":
                             [["^(?<inst>[a-z]+)$", "a"]]}}}})")
                         .arg(i));
    }
    build(nodes);
    std::atomic<int> wrong{0};
    const auto work = [&](DependencyWalker& own) {
        QVariantList results;
        bool changed = false;
        for (int i = 0; i < 500; ++i) {
            const QString url = QString("Plant/Line%1/Sensor%2").arg(i % 3).arg(i % 60);
            Nodes found;
            own.filterRegExpMatches(url, found);
            const bool succeeded =
                own.traverseDependencyGraph(url, source, target, results, changed, {}, {});
            wrong += found.size() == (i % 60 < 50 ? 1 : 0) && !succeeded ? 0 : 1;
        }
    };
    DependencyWalker copy = walker;
    std::thread other([&] { work(copy); });
    work(walker);
    other.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
