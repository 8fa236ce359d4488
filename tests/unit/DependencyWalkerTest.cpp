#include "DependencyWalker.h"

#include "CommandFixture.h"
#include "Nodes/NodeSwitch.h"
#include "Probe.h"

#include <QFile>
#include <QTemporaryDir>

#include <type_traits>
#include <vector>

using testhost::tree;

namespace {

static_assert(std::has_virtual_destructor_v<DependencyWalker>);

class Walker : public testhost::GraphTest {
protected:
    bool build(const QString& json) { return walker.initDependencyGraph(tree("d", json)); }

    bool traverse(const QString& url)
    {
        return walker.traverseDependencyGraph(url, source, target, results, changed, {}, {});
    }

    /// The probes that a write at `url` runs.
    QStringList executedFor(const QString& url)
    {
        traverse(url);
        return executed();
    }

    static QStringList names(const QList<QSharedPointer<NodeBase>>& nodes)
    {
        QStringList names;
        for (const QSharedPointer<NodeBase>& node : nodes) {
            names.append(node->getNodeName());
        }
        return names;
    }

    QStringList matches(const QString& url) const
    {
        QList<QSharedPointer<NodeBase>> nodes;
        walker.filterRegExpMatches(url, nodes);
        return names(nodes);
    }

    DependencyWalker walker;
    testhost::NodePointer source = tree("source", "{}");
    testhost::NodePointer target = tree("target", "{}");
    QVariantList results;
    bool changed = false;
};

/// A top-level switch node that watches a URL and has one probe, labeled like the node.
QString watching(const QString& name, const QString& urls)
{
    return QString(R"("%1": {"Type": "SwitchNode", "Next": {"Only": {"Type": "CommandNode",
                   "ConditionWriteOnUrls": %2, "Commands": {"Probe": "%1"}}}})")
        .arg(name, urls);
}

/// The same for patterns.
QString matching(const QString& name, const QString& patterns)
{
    return watching(name, patterns).replace("ConditionWriteOnUrls", "ConditionWriteOnUrlsRegExp");
}

/// A top-level command node that watches nothing and has one probe, labeled like the node.
QString unconditional(const QString& name)
{
    return QString(R"("%1": {"Type": "CommandNode", "Commands": {"Probe": "%1"}})").arg(name);
}

QString graph(const QStringList& nodes)
{
    return '{' + nodes.join(',') + '}';
}

TEST_F(Walker, starts_empty)
{
    EXPECT_FALSE(walker.isValid());
    EXPECT_FALSE(bool(walker));
    EXPECT_EQ(walker.getDependencyUrlList(), QStringList());
    EXPECT_TRUE(walker.getNodeMap().isEmpty());
    EXPECT_FALSE(traverse("any"));
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(Walker, runs_the_nodes_that_watch_the_written_url)
{
    build(graph({watching("A", R"([["s/a"]])"), watching("B", R"([["s/b"], ["s/a"]])"),
                 watching("C", R"([["s/c"]])")}));

    EXPECT_EQ(executedFor("s/b"), QStringList{"B"});
    EXPECT_EQ(executedFor("s/c"), QStringList{"C"});
    EXPECT_EQ(executedFor("s/d"), QStringList());
    EXPECT_EQ(executedFor("S/b"), QStringList());
    EXPECT_EQ(executedFor("s"), QStringList());
    EXPECT_EQ(executedFor(""), QStringList());
}

TEST_F(Walker, runs_the_nodes_of_one_url_last_built_first)
{
    build(graph(
        {watching("B", R"([["s"]])"), watching("A", R"([["s"]])"), watching("C", R"([["s"]])")}));

    EXPECT_EQ(executedFor("s"), (QStringList{"C", "B", "A"}));
}

TEST_F(Walker, runs_the_nodes_of_matching_patterns_in_build_order)
{
    build(graph({matching("B", R"([["s"]])"), matching("C", R"([["^s/a$"], ["x"]])"),
                 matching("A", R"([["a"]])"), matching("D", R"([["^a"]])")}));

    EXPECT_EQ(matches("s/a"), (QStringList{"A", "B", "C"}));
    EXPECT_EQ(executedFor("s/a"), (QStringList{"A", "B", "C"}));
    EXPECT_EQ(executedFor("s/b"), QStringList{"B"});
    EXPECT_EQ(executedFor(""), QStringList());
}

TEST_F(Walker, runs_watchers_then_matches_then_unconditional_nodes)
{
    build(graph({unconditional("A"), matching("B", R"([["s"]])"), watching("C", R"([["s"]])"),
                 unconditional("D"), watching("E", R"([["s"]])"), matching("F", R"([["."]])")}));

    EXPECT_EQ(executedFor("s"), (QStringList{"E", "C", "B", "F", "A", "D"}));
}

TEST_F(Walker, runs_every_node_and_returns_whether_any_succeeded)
{
    const QString failing = R"("%1": {"Type": "CommandNode",
        "Commands": {"Probe": {"@val": "%1", "@result": false}}})";
    const QString succeeding = R"("%1": {"Type": "CommandNode", "Commands": {"Probe": "%1"}})";
    struct Row {
        const char* title = nullptr;
        QStringList nodes;
        bool result = false;
    };
    const std::vector<Row> table{
        {"all fail", {failing.arg("A"), failing.arg("B")}, false},
        {"the first succeeds", {succeeding.arg("A"), failing.arg("B")}, true},
        {"the last succeeds", {failing.arg("A"), succeeding.arg("B")}, true},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        build(graph(row.nodes));
        host.takeCalls();
        EXPECT_EQ(traverse("any"), row.result);
        EXPECT_EQ(executed(), (QStringList{"A", "B"}));
    }
}

TEST_F(Walker, runs_a_node_twice_that_watches_the_url_and_a_pattern_that_matches_it)
{
    build(R"({"A": {"Type": "CommandNode", "Commands": {"Probe": "a"}, "Next": {
        "N": {"Type": "CommandNode",
              "ConditionWriteOnUrls": [["s"]], "ConditionWriteOnUrlsRegExp": [["s"]]}}}})");

    EXPECT_EQ(executedFor("s"), (QStringList{"a", "a"}));
    EXPECT_EQ(executedFor("xs"), QStringList{"a"});
}

TEST_F(Walker, runs_a_node_once_for_each_of_its_patterns_that_match)
{
    build(R"({"A": {"Type": "CommandNode", "Commands": {"Probe": "a"}, "Next": {
        "N": {"Type": "CommandNode", "ConditionWriteOnUrlsRegExp": [["x"], ["x"], ["y"]]}}}})");

    EXPECT_EQ(matches("y"), QStringList{"A"});
    EXPECT_EQ(matches("xy"), (QStringList{"A", "A"}))
        << "the list of a node is free of duplicates, so x counts once";
    EXPECT_EQ(executedFor("xy"), (QStringList{"a", "a"}));
}

TEST_F(Walker, runs_a_node_when_anything_in_its_subgraph_is_watched)
{
    build(R"({"Top": {"Type": "CommandNode", "Commands": {"Probe": "top"}, "Next": {
        "A": {"Type": "SwitchNode", "Next": {
            "B": {"Type": "CommandNode", "Commands": {"Probe": "b"},
                  "ConditionWriteOnUrls": [["deep"]]}}}}}})");

    EXPECT_EQ(walker.getDependencyUrlList(), QStringList{"deep"});
    EXPECT_EQ(executedFor("deep"), (QStringList{"top", "b"}));
    EXPECT_EQ(executedFor("other"), QStringList());
}

TEST_F(Walker, runs_unconditional_nodes_for_every_url)
{
    build(graph({unconditional("B"), unconditional("A")}));

    EXPECT_FALSE(walker.isValid());
    EXPECT_EQ(walker.getDependencyUrlList(), QStringList());
    EXPECT_TRUE(walker.getNodeMap().isEmpty());
    EXPECT_EQ(executedFor("any"), (QStringList{"A", "B"}));
    EXPECT_EQ(executedFor(""), (QStringList{"A", "B"}));
}

TEST_F(Walker, takes_a_node_whose_conditions_watch_nothing_for_unconditional)
{
    build(R"({"A": {"Type": "CommandNode", "Commands": {"Probe": "a"}, "Next": {
        "N": {"Type": "CommandNode", "ConditionWriteOnUrls": []}}}})");

    EXPECT_FALSE(walker.isValid());
    EXPECT_EQ(executedFor("any"), QStringList{"a"});
}

TEST_F(Walker, does_not_count_conditions_of_a_top_level_node)
{
    build(R"({"A": {"Type": "CommandNode", "Commands": {"Probe": "a"},
        "ConditionWriteOnUrls": [["s"]]}})");

    EXPECT_FALSE(walker.isValid()) << "conditions guard edges, and no edge leads here";
    EXPECT_EQ(executedFor("any"), QStringList{"a"});
}

TEST_F(Walker, does_nothing_for_a_url_that_nobody_watches)
{
    build(graph({watching("A", R"([["s"]])"), matching("B", R"([["^s$"]])")}));
    host.takeCalls();
    results = {"kept"};

    EXPECT_FALSE(traverse("other"));
    EXPECT_FALSE(changed);
    changed = true;
    EXPECT_FALSE(traverse("other"));
    EXPECT_TRUE(changed);
    EXPECT_EQ(results, QVariantList{"kept"});
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(Walker, does_nothing_without_a_source)
{
    build(graph({watching("A", R"([["s"]])"), unconditional("B")}));
    source = nullptr;
    host.takeCalls();

    EXPECT_FALSE(traverse("s"));
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(Walker, skips_top_level_children_without_a_known_type_in_silence)
{
    struct Row {
        const char* title;
        const char* node;
    };
    const std::vector<Row> table{
        {"no type", R"({"Commands": {"Probe": "a"}})"},
        {"a keyword in another case", R"({"type": "CommandNode", "Commands": {"Probe": "a"}})"},
        {"a type in another case", R"({"Type": "commandnode", "Commands": {"Probe": "a"}})"},
        {"an unknown type", R"({"Type": "Node", "Commands": {"Unknown": "a"}})"},
        {"a type that is a list", R"({"Type": ["CommandNode"], "Commands": {"Probe": "a"}})"},
        {"a type that is a number", R"({"Type": 5, "Commands": {"Probe": "a"}})"},
        {"a plain value", R"("CommandNode")"},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        EXPECT_TRUE(build(QString(R"({"A": %1, "B": {"Type": "CommandNode",
                                     "Commands": {"Probe": "b"}}})")
                              .arg(row.node)));
        EXPECT_EQ(executedFor("any"), QStringList{"b"});
    }
}

TEST_F(Walker, does_not_take_a_type_that_is_no_text_for_the_empty_type)
{
    const testhost::Registered<DependencyWalkerFactory::NodeFactory, NodeSwitch> registered("");

    build(R"({"A": {"Type": ["CommandNode"], "Next": {
        "N": {"Type": "CommandNode", "Commands": {"Probe": "a"}}}}})");
    EXPECT_EQ(executedFor("any"), QStringList());
    build(R"({"A": {"Type": "", "Next": {
        "N": {"Type": ["CommandNode"]}, "O": {"Type": "CommandNode", "Commands": {"Probe": "o"}}}}})");
    EXPECT_EQ(executedFor("any"), QStringList{"o"});
}

TEST_F(Walker, takes_keywords_in_another_case_for_ordinary_names)
{
    build(R"({
        "A": {"type": "CommandNode", "Commands": {"Probe": "a"}},
        "B": {"Type": "CommandNode", "commands": {"Probe": "b"}},
        "C": {"Type": "SwitchNode", "next": {
            "N": {"Type": "CommandNode", "Commands": {"Probe": "c"}}}},
        "D": {"Type": "CommandNode", "Commands": {"Probe": "d"}, "Next": {
            "N": {"Type": "SwitchNode", "ConditionWriteOnUrls": [["re:s"]]}}}})");

    EXPECT_EQ(executedFor("s"), QStringList());
    EXPECT_EQ(executedFor("re:s"), QStringList{"d"});
}

TEST_F(Walker, knows_one_top_level_node_of_each_name)
{
    const char* const second = R"({"Type": "CommandNode", "Commands": {"Probe": "second"}})";
    const testhost::NodePointer description =
        tree("d", R"({"A": {"Type": "CommandNode", "Commands": {"Probe": "first"}}})");
    description->setChild("A", tree("d/A", second));

    EXPECT_TRUE(walker.initDependencyGraph(description));
    EXPECT_EQ(executedFor("any"), QStringList{"second"}) << "the tree holds one child of that name";
}

TEST_F(Walker, skips_null_top_level_children)
{
    const testhost::NodePointer description = tree("d", graph({unconditional("B")}));
    description->setChild("A", nullptr);

    EXPECT_TRUE(walker.initDependencyGraph(description));
    EXPECT_EQ(executedFor("any"), QStringList{"B"});
}

TEST_F(Walker, asks_the_host_for_children_then_types_in_ascending_order)
{
    build(R"({"C": {"Type": "?"}, "B": {}, "A": {"Type": "SwitchNode"}})");

    EXPECT_EQ(host.takeCalls(),
              (QStringList{"getChildMap(d)", "extractConfigValue(Type, d/A)", "getChildMap(d/A)",
                           "extractConfigValue(Type, d/B)", "extractConfigValue(Type, d/C)"}));
}

TEST_F(Walker, lists_the_watched_urls_in_build_order_each_once)
{
    build(graph({watching("B", R"([["z"], ["a"]])"), watching("A", R"([["m"], ["z"], ["b"]])"),
                 matching("C", R"([["c"]])"), watching("D", R"([["b"], ["y"]])")}));

    EXPECT_EQ(walker.getDependencyUrlList(), (QStringList{"m", "z", "b", "a", "y"}));
}

TEST_F(Walker, indexes_prefixed_urls_as_patterns_whoever_watches_them)
{
    build(graph({watching("A", R"([["RE:s.*"], ["re:s"]])")}));

    EXPECT_EQ(walker.getDependencyUrlList(), QStringList{"re:s"});
    EXPECT_EQ(matches("xsx"), QStringList{"A"});
    EXPECT_TRUE(walker.getNodeMap().contains("s.*"));
}

TEST_F(Walker, finds_every_url_by_the_pattern_for_everything_and_by_the_empty_one)
{
    build(graph({watching("A", R"([["RE:.*"]])"), watching("B", R"([["RE:"]])")}));

    EXPECT_EQ(matches("s/a"), (QStringList{"A", "B"}));
    EXPECT_EQ(matches(""), (QStringList{"A", "B"}));
    EXPECT_TRUE(walker.getNodeMap().contains(".*"));
    EXPECT_TRUE(walker.getNodeMap().contains(""));
}

TEST_F(Walker, finds_nothing_by_an_invalid_pattern_and_says_nothing)
{
    build(graph({matching("A", R"([["("]])"), matching("B", R"([["s"]])")}));

    EXPECT_TRUE(walker.isValid());
    EXPECT_EQ(matches("s("), QStringList{"B"});
    EXPECT_EQ(executedFor("s("), QStringList{"B"});
}

TEST_F(Walker, replaces_what_the_list_of_matches_held)
{
    build(graph({matching("A", R"([["s"]])")}));
    QList<QSharedPointer<NodeBase>> nodes{nullptr, nullptr};

    walker.filterRegExpMatches("other", nodes);
    EXPECT_TRUE(nodes.isEmpty());
    nodes = {nullptr};
    walker.filterRegExpMatches("s", nodes);
    EXPECT_EQ(names(nodes), QStringList{"A"});
}

TEST_F(Walker, hands_out_urls_and_patterns_without_prefix_in_one_map)
{
    build(R"({"A": {"Type": "SwitchNode", "Next": {"N": {"Type": "CommandNode",
        "ConditionWriteOnUrls": [["s"]], "ConditionWriteOnUrlsRegExp": [["p.*"]]}}}})");

    QMultiHash<QString, QSharedPointer<NodeBase>> map = walker.getNodeMap();
    EXPECT_EQ(map.size(), 2);
    EXPECT_EQ(names(map.values("s")), QStringList{"A"});
    EXPECT_EQ(names(map.values("p.*")), QStringList{"A"});
    EXPECT_EQ(map.value("s"), map.value("p.*"));
    map.clear();
    EXPECT_EQ(walker.getNodeMap().size(), 2);
}

TEST_F(Walker, keeps_a_url_and_a_pattern_of_the_same_text_apart)
{
    build(graph(
        {watching("A", R"([["s"]])"), matching("B", R"([["s"]])"), watching("C", R"([["s"]])")}));

    EXPECT_EQ(walker.getNodeMap().count("s"), 3);
    EXPECT_EQ(walker.getDependencyUrlList(), QStringList{"s"});
    EXPECT_EQ(executedFor("s"), (QStringList{"C", "A", "B"}));
    EXPECT_EQ(executedFor("xs"), QStringList{"B"});
}

TEST_F(Walker, passes_odd_urls_through)
{
    const QString withNul = QString("a") + QChar(0) + "b";
    const QString loneSurrogate = QString("a") + QChar(0xDC00);
    for (const QString& url : {withNul, loneSurrogate, QString("")}) {
        host.rowsOf = [&url](const QVariantList&) { return QVariantList{QVariantList{url}}; };
        build(graph({watching("A", "[]"), matching("B", "[]")}));
        host.rowsOf = nullptr;
        host.takeCalls();
        EXPECT_EQ(walker.getDependencyUrlList(), QStringList{url});
        EXPECT_EQ(executedFor(url).constFirst(), "A");
        EXPECT_EQ(executedFor("other").size(), url.isEmpty() ? 1 : 0);
    }
}

TEST_F(Walker, keeps_its_graph_when_the_description_is_null)
{
    build(graph({watching("A", R"([["s"]])"), unconditional("B")}));

    EXPECT_TRUE(walker.initDependencyGraph(nullptr));
    EXPECT_EQ(executedFor("s"), (QStringList{"A", "B"}));
}

TEST_F(Walker, is_empty_after_an_empty_description)
{
    build(graph({watching("A", R"([["s"]])"), matching("B", R"([["s"]])"), unconditional("C")}));

    EXPECT_TRUE(build("{}"));
    EXPECT_FALSE(walker.isValid());
    EXPECT_EQ(walker.getDependencyUrlList(), QStringList());
    EXPECT_TRUE(walker.getNodeMap().isEmpty());
    EXPECT_EQ(matches("s"), QStringList());
    EXPECT_EQ(executedFor("s"), QStringList());
}

TEST_F(Walker, forgets_the_graph_before_when_it_is_built_again)
{
    build(graph({watching("A", R"([["s"]])"), matching("B", R"([["s"]])"), unconditional("C")}));
    build(graph({watching("D", R"([["t"]])")}));

    EXPECT_EQ(walker.getDependencyUrlList(), QStringList{"t"});
    EXPECT_EQ(executedFor("s"), QStringList());
    EXPECT_EQ(executedFor("t"), QStringList{"D"});
}

TEST_F(Walker, forgets_urls_and_patterns_on_reset_and_still_runs_unconditional_nodes)
{
    build(graph({watching("A", R"([["s"]])"), matching("B", R"([["s"]])"), unconditional("C")}));
    EXPECT_TRUE(walker.isValid());

    walker.reset();

    EXPECT_FALSE(walker.isValid());
    EXPECT_EQ(walker.getDependencyUrlList(), QStringList());
    EXPECT_TRUE(walker.getNodeMap().isEmpty());
    EXPECT_EQ(matches("s"), QStringList());
    EXPECT_EQ(executedFor("s"), QStringList{"C"});
}

TEST_F(Walker, is_valid_when_it_watches_a_url_or_a_pattern)
{
    build(graph({watching("A", R"([["s"]])")}));
    EXPECT_TRUE(walker.isValid());
    EXPECT_TRUE(bool(walker));
    build(graph({matching("A", R"([["s"]])")}));
    EXPECT_TRUE(walker.isValid());
    EXPECT_TRUE(bool(walker));
    build(graph({unconditional("A")}));
    EXPECT_FALSE(walker.isValid());
    EXPECT_FALSE(bool(walker));
}

TEST_F(Walker, copies_share_the_nodes_and_go_their_own_ways)
{
    build(graph({watching("A", R"([["s"]])"), matching("B", R"([["s"]])"), unconditional("C")}));

    DependencyWalker copy(walker);
    EXPECT_EQ(copy.getNodeMap().value("s"), walker.getNodeMap().value("s"));
    build("{}");

    EXPECT_EQ(copy.getDependencyUrlList(), QStringList{"s"});
    host.takeCalls();
    EXPECT_TRUE(copy.traverseDependencyGraph("s", source, target, results, changed, {}, {}));
    EXPECT_EQ(executed(), (QStringList{"A", "B", "C"}));

    walker = copy;
    copy.reset();
    EXPECT_EQ(executedFor("s"), (QStringList{"A", "B", "C"}));
}

TEST_F(Walker, releases_its_nodes_when_it_ends)
{
    QWeakPointer<NodeBase> node;
    {
        DependencyWalker shortLived;
        shortLived.initDependencyGraph(tree("d", graph({watching("A", R"([["s"]])")})));
        node = shortLived.getNodeMap().value("s");
        EXPECT_FALSE(node.isNull());
    }
    EXPECT_TRUE(node.isNull());
}

TEST_F(Walker, builds_from_text_through_the_parser_of_the_host)
{
    EXPECT_TRUE(walker.initDependencyGraphByJsonString(R"({"A": {"Type": "?"}})"));

    EXPECT_EQ(host.takeCalls(),
              (QStringList{R"(parseFromJson({"A": {"Type": "?"}}, .tree))", "getChildMap(parsed)",
                           "extractConfigValue(Type, parsed/A)"}));
}

TEST_F(Walker, keeps_its_graph_when_the_host_makes_no_tree_of_the_text)
{
    build(graph({watching("A", R"([["s"]])"), unconditional("B")}));

    EXPECT_FALSE(walker.initDependencyGraphByJsonString("no tree"));
    EXPECT_FALSE(walker.initDependencyGraphByJsonString(""));
    EXPECT_EQ(executedFor("s"), (QStringList{"A", "B"}));
}

TEST_F(Walker, is_empty_after_text_that_makes_a_tree_without_children)
{
    build(graph({watching("A", R"([["s"]])"), unconditional("B")}));

    EXPECT_TRUE(walker.initDependencyGraphByJsonString("{}"));
    EXPECT_FALSE(walker.isValid());
    EXPECT_EQ(executedFor("s"), QStringList());
}

class WalkerFile : public Walker {
protected:
    QString write(const QByteArray& bytes)
    {
        QFile file(folder.filePath("graph.json"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }

    /// The text that the parser gets from a file with these bytes.
    QString parsed(const QByteArray& bytes)
    {
        walker.initDependencyGraphByJsonFile(write(bytes));
        const QStringList calls = host.takeCalls({"parseFromJson("});
        return calls.isEmpty() ? "nothing" : calls.constFirst().mid(14).chopped(8);
    }

    QTemporaryDir folder;
};

TEST_F(WalkerFile, builds_the_graph)
{
    EXPECT_TRUE(
        walker.initDependencyGraphByJsonFile(write(graph({watching("A", R"([["s"]])")}).toUtf8())));
    EXPECT_EQ(walker.getDependencyUrlList(), QStringList{"s"});
}

TEST_F(WalkerFile, is_read_as_utf8_text_up_to_the_first_zero_byte)
{
    EXPECT_EQ(parsed("{\"°\": 1}"), "{\"°\": 1}");
    EXPECT_EQ(parsed(QByteArray("{}\0 and more", 12)), "{}");
    EXPECT_EQ(parsed(QByteArray("\0{}", 3)), "");
    EXPECT_EQ(parsed("{}\r\n"), "{}\n") << "line ends are those of text";
    EXPECT_EQ(parsed(""), "");
}

TEST_F(WalkerFile, with_a_zero_byte_builds_what_stands_before_it)
{
    const QByteArray bytes = graph({watching("A", R"([["s"]])")}).toUtf8();

    EXPECT_TRUE(walker.initDependencyGraphByJsonFile(write(bytes + '\0' + "no tree")));
    EXPECT_EQ(walker.getDependencyUrlList(), QStringList{"s"});
}

TEST_F(WalkerFile, that_makes_no_tree_leaves_the_graph)
{
    build(graph({watching("A", R"([["s"]])")}));

    EXPECT_FALSE(walker.initDependencyGraphByJsonFile(write("no tree")));
    EXPECT_EQ(walker.getDependencyUrlList(), QStringList{"s"});
}

TEST_F(WalkerFile, that_cannot_be_opened_leaves_the_graph_and_says_nothing)
{
    build(graph({watching("A", R"([["s"]])")}));
    host.takeCalls();

    EXPECT_FALSE(walker.initDependencyGraphByJsonFile(folder.filePath("missing.json")));
    EXPECT_FALSE(walker.initDependencyGraphByJsonFile(folder.path()));
    EXPECT_FALSE(walker.initDependencyGraphByJsonFile(QString("/tmp/a") + QChar(0) + "b"));
    EXPECT_FALSE(walker.initDependencyGraphByJsonFile(""));
    EXPECT_FALSE(walker.initDependencyGraphByJsonFile(QString()));
    EXPECT_EQ(walker.getDependencyUrlList(), QStringList{"s"});
    EXPECT_EQ(host.takeCalls(), QStringList());
}

/// A command that keeps what it was handed.
class KeepingCommand : public CommandBase {
public:
    explicit KeepingCommand(const BaseClassSharedPointer&) {}
    bool executeCommand(const BaseClassSharedPointer& sourceRoot,
                        const BaseClassSharedPointer& targetRoot, const QString& url,
                        QVariantList& results, bool& changed, const QVariantList& parameters,
                        const QSharedPointer<UnitManipulatorBase>& manipulator) override
    {
        sourceSeen = sourceRoot;
        targetSeen = targetRoot;
        urlSeen = url;
        resultsSeen = &results;
        changedSeen = &changed;
        parametersSeen = parameters;
        manipulatorSeen = manipulator;
        return true;
    }
    QString getCommandAsString() const override { return {}; }
    bool initCommand(const BaseClassSharedPointer&) override { return true; }

    static inline BaseClassSharedPointer sourceSeen;
    static inline BaseClassSharedPointer targetSeen;
    static inline QString urlSeen;
    static inline QVariantList* resultsSeen = nullptr;
    static inline bool* changedSeen = nullptr;
    static inline QVariantList parametersSeen;
    static inline QSharedPointer<UnitManipulatorBase> manipulatorSeen;
};

TEST_F(Walker, hands_all_arguments_to_the_commands)
{
    const testhost::Registered<DependencyWalkerFactory::CommandFactory, KeepingCommand> registered(
        "Keeping");
    build(R"({"A": {"Type": "CommandNode", "Commands": {"Keeping": {}}}})");
    const QSharedPointer<UnitManipulatorBase> manipulator =
        QSharedPointer<ScriptedManipulator>::create();

    walker.traverseDependencyGraph("s", source, target, results, changed, {"p", 5}, manipulator);

    EXPECT_EQ(KeepingCommand::sourceSeen, source);
    EXPECT_EQ(KeepingCommand::targetSeen, target);
    EXPECT_EQ(KeepingCommand::urlSeen, "s");
    EXPECT_EQ(KeepingCommand::resultsSeen, &results);
    EXPECT_EQ(KeepingCommand::changedSeen, &changed);
    EXPECT_EQ(KeepingCommand::parametersSeen, (QVariantList{"p", 5}));
    EXPECT_EQ(KeepingCommand::manipulatorSeen, manipulator);
    KeepingCommand::sourceSeen = KeepingCommand::targetSeen = nullptr;
    KeepingCommand::manipulatorSeen = nullptr;
}

TEST_F(Walker, traverses_alike_for_a_caller_who_does_not_ask_for_changes)
{
    target = tree("target", R"({"a": 1})");
    build(
        R"({"A": {"Type": "CommandNode", "Commands": {"CommandSetUnitProperties": [["a", "K"]]}}})");
    host.takeCalls();

    EXPECT_TRUE(walker.traverseDependencyGraph("s", source, target, results, {}, {}));
    EXPECT_FALSE(changed);
    EXPECT_EQ(host.takeCalls(), (QStringList{"getChildData(target, a)",
                                             "setDataProperty(target/a, @unit, 'K') -> 0"}));
}

TEST_F(Walker, hands_on_the_arguments_of_a_caller_who_does_not_ask_for_changes)
{
    const testhost::Registered<DependencyWalkerFactory::CommandFactory, KeepingCommand> registered(
        "Keeping");
    build(R"({"A": {"Type": "CommandNode", "Commands": {"Keeping": {}}}})");

    walker.traverseDependencyGraph("s", source, target, results, {"p", 5}, {});

    EXPECT_EQ(KeepingCommand::sourceSeen, source);
    EXPECT_EQ(KeepingCommand::targetSeen, target);
    EXPECT_EQ(KeepingCommand::urlSeen, "s");
    EXPECT_EQ(KeepingCommand::resultsSeen, &results);
    EXPECT_EQ(KeepingCommand::parametersSeen, (QVariantList{"p", 5}));
    KeepingCommand::sourceSeen = KeepingCommand::targetSeen = nullptr;
}

TEST_F(Walker, starts_with_nothing_changed_for_a_caller_who_does_not_ask_for_changes)
{
    target = tree("target", R"({"a": {"@unit": "K"}})");
    build(
        R"({"A": {"Type": "CommandNode", "Commands": {"CommandSetUnitProperties": [["a", "K"]]}}})");

    EXPECT_TRUE(walker.traverseDependencyGraph("s", source, target, results, {},
                                               QSharedPointer<ScriptedManipulator>::create()));
    EXPECT_EQ(host.takeCalls({"manipulateUnit"}), QStringList{"manipulateUnit(target/a, K, 1, 0)"});
}

TEST_F(Walker, carries_the_changed_flag_across_nodes_and_urls)
{
    target = tree("target", R"({"a": {"@unit": "K"}, "b": {"@unit": "m"}})");
    build(R"({
        "A": {"Type": "CommandNode", "Commands": {"CommandSetUnitProperties": [["a", "K"]]}},
        "B": {"Type": "SwitchNode", "Next": {"N": {"Type": "CommandNode",
            "ConditionWriteOnUrls": [["s"]],
            "Commands": {"CommandSetUnitProperties": [["b", "mm"]]}}}}})");

    EXPECT_TRUE(traverse("other"));
    EXPECT_FALSE(changed) << "A wrote what was there";
    EXPECT_TRUE(traverse("s"));
    EXPECT_TRUE(changed) << "B changed something";
    EXPECT_TRUE(traverse("other"));
    EXPECT_TRUE(changed) << "nobody takes it back";
}

TEST_F(Walker, runs_a_whole_graph_from_text_to_units)
{
    source = tree("source", R"({"Settings": {"TemperatureUnit": "°C", "Mode": "lab"}})");
    target = tree("target", R"({"Inst1": {"T": 20, "P": 3}, "Inst1Line": {"T": 1}})");
    ASSERT_TRUE(walker.initDependencyGraphByJsonString(R"({
        "FollowTemperature": {"Type": "SwitchNode", "Next": {
            "Copy": {"Type": "CommandNode",
                "ConditionWriteOnUrls": [["Settings/TemperatureUnit"]],
                "Commands": {"CommandSetUnitByConfigurationParameter":
                    [["Settings/TemperatureUnit", "", "%1/T"], ["Settings/TemperatureUnit", "", "%1%2/T"]]}}}},
        "FollowMode": {"Type": "SwitchNode", "Next": {
            "Lab": {"Type": "CommandNode",
                "ConditionValueComparator": [["Settings/Mode", "==", "lab"]],
                "Commands": {"CommandSetUnitProperties": [["/P", "mbar"]]}},
            "Plant": {"Type": "CommandNode",
                "ConditionValueComparator": [["Settings/Mode", "==", "plant"]],
                "Commands": {"CommandSetUnitProperties": [["/P", "bar"]]}}}}})"));
    EXPECT_EQ(walker.getDependencyUrlList(),
              (QStringList{"Settings/Mode", "Settings/TemperatureUnit"}));
    host.takeCalls();

    EXPECT_TRUE(walker.traverseDependencyGraph("Settings/TemperatureUnit", source, target, results,
                                               changed, {"Inst1", "Line"}, {}));
    EXPECT_EQ(host.takeCalls(),
              (QStringList{"getChildData(target, Inst1/T)",
                           "extractConfigValue(Settings/TemperatureUnit, source)",
                           "setDataProperty(target/Inst1/T, @unit, '°C') -> 0",
                           "getChildData(target, Inst1Line/T)",
                           "extractConfigValue(Settings/TemperatureUnit, source)",
                           "setDataProperty(target/Inst1Line/T, @unit, '°C') -> 0"}));

    EXPECT_TRUE(walker.traverseDependencyGraph("Settings/Mode", source, target, results, changed,
                                               {"Inst1", "Line"}, {}));
    EXPECT_EQ(host.takeCalls(), (QStringList{"extractConfigValue(Settings/Mode, source)",
                                             "getChildData(target, Inst1/P)",
                                             "setDataProperty(target/Inst1/P, @unit, 'mbar') -> 0",
                                             "extractConfigValue(Settings/Mode, source)"}));
}

} // namespace
