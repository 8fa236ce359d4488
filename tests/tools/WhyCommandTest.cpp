#include "Fixture.h"
#include "GeneratedWorkspace.h"
#include "ProgramFixture.h"
#include "tools/console/Text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <ostream>
#include <random>

namespace {

const QString why = QStringLiteral("why");

QJsonObject whyJson(const TestWorkspace& workspace, const QString& instance, const QString& url,
                    bool isProcess = false)
{
    QStringList arguments{why, instance, url, QStringLiteral("--json")};
    if (isProcess) {
        arguments.append(QStringLiteral("--process"));
    }
    return run(workspace, arguments).json();
}

/// The rows by their place in the file, with the number of URLs: "5:20 2".
QStringList rowsIn(const QJsonObject& document)
{
    QStringList rows;
    for (const QJsonValue entry : document[QStringLiteral("rows")].toArray()) {
        const QJsonObject row = entry.toObject();
        rows.append(row[QStringLiteral("pointer")].toString() + QLatin1Char(' ') +
                    row[QStringLiteral("urls")].toVariant().toStringList().join(QLatin1Char(',')));
    }
    return rows;
}

/// A workspace in which "s" drives "t" by the description, with these parameters.
void writeOne(const TestWorkspace& workspace, const QByteArray& description,
              const QByteArray& parameters = "[]")
{
    workspace.write(QStringLiteral("configuration/s.json"),
                    R"({"A": "K", "B": "Pa", "N": {"A": 1, "B": "b"}})");
    workspace.write(QStringLiteral("configuration/t.json"),
                    R"({"X": {"@value": 1, "@unitType": "old"}, "Y": 2, "N": {"A": 3}})");
    workspace.write(QStringLiteral("dependency/d.json"), description);
    workspace.write(QStringLiteral("links.json"),
                    R"([{"source": "s", "target": "t", "dependency": "d", "parameters": )" +
                        parameters + "}]");
}

// --- what is shown

TEST(Why, names_rows_writes_units_and_who_decides)
{
    const TestWorkspace workspace;
    const Result result =
        run(workspace, {why, QStringLiteral("display"), QStringLiteral("Oven1/Temperature")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    expectGolden(QStringLiteral("why"), result.out);
}

TEST(Why, names_the_columns_of_an_array)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("dependency/units.json"), columnDescription);
    workspace.write(QStringLiteral("links.json"),
                    R"([{"source": "controller", "target": "recorder", "dependency": "units"}])");
    workspace.write(QStringLiteral("configuration/recorder.json"), R"({"Log": {
        "@type": "array", "@value": [],
        "@arrayInformation": [{"name": "Time", "unitType": "s"}, {"name": "Temperature"}]}})");
    const Result result = run(workspace, {why, QStringLiteral("recorder"), QStringLiteral("Log")});
    EXPECT_EQ(result.exitCode, 0);
    expectGolden(QStringLiteral("why-array"), result.out);
}

TEST(Why, without_a_link_says_that_none_leads_there)
{
    const TestWorkspace workspace;
    const Result result =
        run(workspace, {why, QStringLiteral("recorder"), QStringLiteral("Interval")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, QStringLiteral("recorder\n  Interval  60  s\n"
                                         "No row can set the unit: no link leads to recorder.\n"));
}

TEST(Why, names_the_nearest_rows_when_none_reaches_the_leaf)
{
    const TestWorkspace workspace;
    const Result result =
        run(workspace, {why, QStringLiteral("display"), QStringLiteral("Oven1/Pressure")});
    EXPECT_EQ(result.exitCode, 0);
    expectGolden(QStringLiteral("why-nearest"), result.out);
}

TEST(Why, says_why_rows_with_this_target_do_not_set_it)
{
    const TestWorkspace workspace;
    writeOne(workspace, R"({"U": {"Type": "CommandNode", "Commands": {
        "CommandSetUnitProperties": [["X", ""]],
        "CommandSetUnitByConfigurationParameter": [["", "", "X"], ["missing", "", "X"]],
        "CommandSetUnitByConfigurationParameterArray": [["A", "X[0]"]]}}})");
    const Result result = run(workspace, {why, QStringLiteral("t"), QStringLiteral("X")});
    EXPECT_EQ(result.exitCode, 0);
    expectGolden(QStringLiteral("why-rows-without-effect"), result.out);
}

TEST(Why, of_a_link_that_does_not_resolve_says_that_its_units_are_dropped)
{
    const TestWorkspace workspace;
    writeOne(workspace, R"({"S": {"Type": "SwitchNode", "Next": {
        "C": {"Type": "CommandNode", "ConditionWriteOnUrls": [["A"]],
              "Commands": {"CommandSetUnitProperties": [["X", "K"]]}},
        "D": {"Type": "CommandNode", "ConditionWriteOnUrls": [["B"]]}}}})");
    const Result result = run(workspace, {why, QStringLiteral("t"), QStringLiteral("X")});
    EXPECT_EQ(result.exitCode, 0);
    expectGolden(QStringLiteral("why-unresolved"), result.out);
}

TEST(Why, of_an_unknown_leaf_is_an_error_that_names_the_nearest)
{
    const TestWorkspace workspace;
    const Result result =
        run(workspace, {why, QStringLiteral("display"), QStringLiteral("Oven1/Presure")});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, QString());
    EXPECT_TRUE(result.err.contains(QStringLiteral("\"Oven1/Pressure\"")))
        << result.err.toStdString();
}

TEST(Why, of_a_node_with_only_children_says_that_it_is_no_leaf)
{
    const TestWorkspace workspace;
    const Result result = run(workspace, {why, QStringLiteral("display"), QStringLiteral("Oven1")});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(
        result.err.contains(QStringLiteral("\"Oven1\" is no leaf: it has no value, only children")))
        << result.err.toStdString();
}

TEST(Why, names_the_link_that_decides_when_several_have_one_description)
{
    const TestWorkspace workspace;
    writeOne(workspace, R"({"U": {"Type": "CommandNode",
        "Commands": {"CommandSetUnitProperties": [["X", "K"]]}}})");
    workspace.write(QStringLiteral("links.json"),
                    R"([{"source": "s", "target": "t", "dependency": "d"},
                        {"source": "t", "target": "t", "dependency": "d"}])");
    EXPECT_TRUE(run(workspace, {why, QStringLiteral("t"), QStringLiteral("X")})
                    .out.contains(QStringLiteral(" for t → t through d\n")));
}

TEST(Why, stays_within_80_columns_but_for_places_and_long_words)
{
    const TestWorkspace workspace;
    QByteArray rows;
    for (int number = 0; number < 12; ++number) {
        rows += (number == 0 ? "" : ",") + QByteArray("[\"Some/Longer/Url/Number") +
                QByteArray::number(number) + "\"]";
    }
    writeOne(workspace, R"({"S": {"Type": "SwitchNode", "Next": {"C": {"Type": "CommandNode",
        "ConditionWriteOnUrls": [)" +
                            rows + R"(],
        "Commands": {"CommandSetUnitProperties": [["X", "K", "a remark that goes on and on and on for a while"]]}}}}})");
    const Result result = run(workspace, {why, QStringLiteral("t"), QStringLiteral("X")});
    for (const QString& line : result.out.split(QLatin1Char('\n'))) {
        EXPECT_LE(tools::displayWidth(line), 80) << line.toStdString();
    }
    EXPECT_TRUE(result.out.contains(QStringLiteral("and 6 more"))) << result.out.toStdString();
}

TEST(Why, names_the_description_whose_row_ends_the_process)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("dependency/units.json"),
                    QByteArray(columnDescription).replace("Log[2-1]", "Log[2]"));
    workspace.write(QStringLiteral("links.json"),
                    R"([{"source": "controller", "target": "recorder", "dependency": "units"}])");
    const Result result =
        runProgram(on(workspace, {why, QStringLiteral("recorder"), QStringLiteral("Log")}));
    EXPECT_EQ(result.exitCode, -1);
    EXPECT_EQ(result.out, QString());
    EXPECT_TRUE(result.err.startsWith(QStringLiteral(
        "error: dependency/units.json: a row ends the program here; nothing more is")))
        << result.err.toStdString();
    EXPECT_TRUE(result.err.contains(QStringLiteral("ASSERT failure"))) << result.err.toStdString();
}

TEST(Why, counts_on_leaves_of_the_source_that_have_no_value_yet)
{
    const TestWorkspace workspace;
    writeOne(workspace, R"({"S": {"Type": "SwitchNode", "Next": {"C": {"Type": "CommandNode",
        "ConditionValueComparator": [["P", "==", "on"]],
        "Commands": {"CommandSetUnitByConfigurationParameter": [["P", "", "X"]],
                     "CommandSetUnitProperties": [["Y", "K"]]}}}}})");
    for (const char* none : {"null", "{\"@unitType\": \"m\"}"}) {
        workspace.write(QStringLiteral("configuration/s.json"),
                        "{\"P\": " + QByteArray(none) + "}");
        EXPECT_EQ(rowsIn(whyJson(workspace, QStringLiteral("t"), QStringLiteral("Y"))),
                  QStringList{"/S/Next/C/Commands/CommandSetUnitProperties/0 P"})
            << none;
        const QJsonObject taken = whyJson(workspace, QStringLiteral("t"), QStringLiteral("X"));
        EXPECT_EQ(rowsIn(taken),
                  QStringList{"/S/Next/C/Commands/CommandSetUnitByConfigurationParameter/0 P"})
            << none;
        EXPECT_EQ(taken["rows"].toArray()[0].toObject()["units"], QJsonValue(QJsonArray()));
        EXPECT_TRUE(run(workspace, {why, QStringLiteral("t"), QStringLiteral("X")})
                        .out.contains(QStringLiteral("sets    the value of P, when it has one\n")));
    }
}

TEST(Why, changes_no_file)
{
    const TestWorkspace workspace;
    const QMap<QString, qint64> times = workspace.times();
    run(workspace, {why, QStringLiteral("display"), QStringLiteral("Oven1/Temperature")});
    EXPECT_EQ(workspace.times(), times);
}

TEST(Why, of_the_nearest_rows_has_the_members_of_the_others_in_json)
{
    const TestWorkspace workspace;
    const QJsonObject reached =
        whyJson(workspace, QStringLiteral("display"), QStringLiteral("Oven1/Temperature"));
    const QJsonObject missed =
        whyJson(workspace, QStringLiteral("display"), QStringLiteral("Oven1/Pressure"));
    const QJsonArray rows = reached[QStringLiteral("rows")].toArray();
    const QJsonArray nearest = missed[QStringLiteral("nearest")].toArray();
    ASSERT_EQ(rows.size(), 1);
    ASSERT_EQ(nearest.size(), 1);
    EXPECT_EQ(nearest[0].toObject().keys(), rows[0].toObject().keys());
    EXPECT_EQ(rows[0].toObject()[QStringLiteral("setsIt")], QJsonValue(true));
    EXPECT_EQ(nearest[0].toObject()[QStringLiteral("setsIt")], QJsonValue(false));
}

// --- what a row can reach

struct Way {
    const char* title;
    QByteArray description;
    QStringList rows; ///< for the leaf X, each with its URLs
};

void PrintTo(const Way& way, std::ostream* stream)
{
    *stream << way.title;
}

class WhyReaches : public testing::TestWithParam<Way> {};

TEST_P(WhyReaches, by_each_row_that_some_run_may_execute)
{
    const TestWorkspace workspace;
    writeOne(workspace, GetParam().description);
    EXPECT_EQ(rowsIn(whyJson(workspace, QStringLiteral("t"), QStringLiteral("X"))),
              GetParam().rows);
}

const char* const commands = R"("Commands": {"CommandSetUnitProperties": [["X", "K"]]})";
const QString rowBelowC = QStringLiteral("/S/Next/C/Commands/CommandSetUnitProperties/0 ");

QByteArray behindSwitch(const QByteArray& conditions)
{
    return R"({"S": {"Type": "SwitchNode", "Next": {"C": {"Type": "CommandNode", )" + conditions +
           ", " + commands + "}}}}";
}

INSTANTIATE_TEST_SUITE_P(
    ALeaf, WhyReaches,
    testing::Values(
        Way{"after_the_writes_that_a_condition_names",
            behindSwitch(R"("ConditionWriteOnUrls": [["A"], ["N/B"]])"),
            {rowBelowC + QStringLiteral("A,N/B")}},
        Way{"for_a_watched_url_that_the_source_does_not_have",
            behindSwitch(R"("ConditionWriteOnUrls": [["A"], ["missing"]])"),
            {rowBelowC + QStringLiteral("A,missing")}},
        Way{"after_writes_that_a_pattern_matches",
            behindSwitch(R"("ConditionWriteOnUrlsRegExp": [["^N/"]])"),
            {rowBelowC + QStringLiteral("N/A,N/B")}},
        Way{"when_a_comparison_does_not_hold_at_present",
            behindSwitch(R"("ConditionValueComparator": [["A", "==", "something else"]])"),
            {rowBelowC + QStringLiteral("A")}},
        Way{"when_a_comparison_of_the_written_value_does_not_hold_at_present",
            behindSwitch(R"("ConditionValueComparatorRegExp": [["^N/A$", "==", "other"]])"),
            {rowBelowC + QStringLiteral("N/A")}},
        Way{"not_by_a_comparison_with_a_value_that_is_not_there",
            behindSwitch(R"("ConditionValueComparator": [["missing", "!=", "x"]])"),
            {}},
        Way{"not_by_a_comparison_without_a_known_comparator",
            behindSwitch(R"("ConditionValueComparator": [["A", "<", "x"]])"),
            {}},
        Way{"not_by_a_comparison_without_rows",
            behindSwitch(R"("ConditionValueComparator": [])"),
            {}},
        Way{"after_any_write_that_is_watched_once_a_comparison_may_hold",
            behindSwitch(R"("ConditionValueComparator": [["A", "==", 1]],
                            "ConditionWriteOnUrls": [["B"]])"),
            {rowBelowC + QStringLiteral("A,B")}},
        Way{"by_a_condition_that_is_written_out",
            behindSwitch(R"("ConditionValueComparator": {"@value": [["A", "==", 1]]})"),
            {rowBelowC + QStringLiteral("A")}},
        Way{"behind_a_command_node_that_asks_nothing",
            R"({"S": {"Type": "CommandNode", "Next": {"C": {"Type": "CommandNode",
                "ConditionValueComparator": [["missing", "==", 1], ["A", "==", 1]], )" +
                QByteArray(commands) + "}}}}",
            {rowBelowC + QStringLiteral("A,missing")}},
        Way{"not_behind_a_command_node_with_two_edges",
            R"({"S": {"Type": "CommandNode", "Next": {"D": {"Type": "SwitchNode"},
                "C": {"Type": "CommandNode", )" +
                QByteArray(commands) + "}}}}",
            {}},
        Way{"not_behind_a_node_of_an_unknown_type",
            R"({"S": {"Type": "SwitchNodes", "Next": {"C": {"Type": "CommandNode", )" +
                QByteArray(commands) + "}}}}",
            {}},
        Way{"after_every_write_without_any_condition",
            R"({"C": {"Type": "CommandNode", )" + QByteArray(commands) + "}}",
            {QStringLiteral("/C/Commands/CommandSetUnitProperties/0 A,B,N/A,N/B,")}},
        Way{"by_its_place_when_rows_before_it_are_skipped",
            R"-({"C": {"Type": "CommandNode", "Commands":
                {"CommandSetUnitByConfigurationParameterInstRegExp":
                    [5, ["(A)"], ["^(A)$", "X"]]}}})-",
            {QStringLiteral("/C/Commands/CommandSetUnitByConfigurationParameterInstRegExp/2 A")}}),
    [](const testing::TestParamInfo<Way>& test) { return test.param.title; });

TEST(WhyReach, fills_prefixes_templates_and_groups)
{
    const TestWorkspace workspace;
    writeOne(workspace, R"-({"C": {"Type": "CommandNode", "Commands": {
        "CommandSetUnitProperties": [["A", "K"]],
        "CommandSetUnitByConfigurationParameter": [["B", "", "%1%2"]],
        "CommandSetUnitPropertiesRegExp": [["^N/(?<leaf>.*)$", "N/(?<leaf>)", "m"]]}}})-",
             R"(["N/", "A"])");
    const QString table = QStringLiteral("/C/Commands/CommandSetUnit");
    EXPECT_EQ(rowsIn(whyJson(workspace, QStringLiteral("t"), QStringLiteral("N/A"))),
              (QStringList{table + QStringLiteral("Properties/0 A,B,N/A,N/B,"),
                           table + QStringLiteral("ByConfigurationParameter/0 A,B,N/A,N/B,"),
                           table + QStringLiteral("PropertiesRegExp/0 N/A")}));
}

// --- compared with what set and resolve do

/// Writes descriptions of all types of nodes, conditions and commands at random.
class RandomDescription {
public:
    RandomDescription(std::mt19937& random, bool comparesValues)
        : random(random), comparesValues(comparesValues)
    {}

    QByteArray text()
    {
        QJsonObject nodes;
        for (int number = pick(3); number >= 0; --number) {
            nodes[QStringLiteral("T%1").arg(number)] = node(0, false);
        }
        return QJsonDocument(nodes).toJson();
    }

private:
    int pick(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }
    QString one(const QStringList& of) { return of[pick(of.size())]; }
    QString url() { return one({"A", "B", "N/A", "N/B", "missing"}); }
    QString pattern() { return one({"^N/(?<x>.*)$", "(?<x>[AB])$", "^(A)", "B", "(", ""}); }
    QString value() { return one({"K", "Pa", "m"}); }
    QString comparator() { return one({"==", "==", "!=", "<"}); }

    QJsonArray rows(const std::function<QJsonArray()>& row)
    {
        QJsonArray table;
        for (int count = pick(3); count > 0; --count) {
            table.append(row());
        }
        return table;
    }

    QJsonObject node(int depth, bool isBehindEdge)
    {
        const bool isSwitch = pick(2) == 0;
        QJsonObject node{{"Type", isSwitch ? "SwitchNode" : "CommandNode"}};
        if (isBehindEdge) {
            addConditions(node);
        }
        if (!isSwitch) {
            node["Commands"] = commandTables();
        }
        if (depth < 3) {
            QJsonObject next;
            for (int number = pick(isSwitch ? 4 : 2); number > 0; --number) {
                next[QStringLiteral("E%1").arg(number)] = this->node(depth + 1, true);
            }
            node["Next"] = next;
        }
        return node;
    }

    void addConditions(QJsonObject& node)
    {
        if (pick(2) == 0) {
            node["ConditionWriteOnUrls"] = rows([&] { return QJsonArray{url()}; });
        }
        if (pick(3) == 0) {
            node["ConditionWriteOnUrlsRegExp"] = rows([&] { return QJsonArray{pattern()}; });
        }
        if (comparesValues && pick(3) == 0) {
            node["ConditionValueComparator"] = rows([&] {
                return QJsonArray{url(), comparator(), value()};
            });
        }
        if (comparesValues && pick(3) == 0) {
            node["ConditionValueComparatorRegExp"] = rows([&] {
                return QJsonArray{pattern(), comparator(), value()};
            });
        }
    }

    QJsonObject commandTables()
    {
        QJsonObject tables;
        if (pick(2) == 0) {
            tables["CommandSetUnitProperties"] = rows([&] {
                return QJsonArray{url(), one({"K", "bar", ""})};
            });
        }
        if (pick(2) == 0) {
            tables["CommandSetUnitByConfigurationParameter"] = rows([&] {
                return QJsonArray{url(), "", one({"A", "%1%2", "N/B"})};
            });
        }
        if (pick(2) == 0) {
            tables["CommandSetUnitPropertiesRegExp"] = rows([&] {
                return QJsonArray{pattern(), one({"A", "(?<x>)", "N/(?<x>)"}), value()};
            });
        }
        if (pick(2) == 0) {
            tables["CommandSetUnitByConfigurationParameterInstRegExp"] = rows([&] {
                return QJsonArray{pattern(), one({"B", "(?<x>)", "N/(?<x>)"})};
            });
        }
        if (pick(3) == 0) {
            tables["CommandSetUnitByConfigurationParameterArray"] = rows([&] {
                return QJsonArray{url(), one({"T[0]", "T[2-1]", "A[0]", "T[x]"})};
            });
        }
        return tables;
    }

    std::mt19937& random;
    const bool comparesValues;
};

/// Instances that drive one another and themselves.
class RandomInstances {
public:
    RandomInstances(const TestWorkspace& workspace, unsigned seed, bool comparesValues)
        : random(seed)
    {
        const QStringList values{"K", "Pa", "m"};
        const auto value = [&] { return values[pick(3)]; };
        // A comparison may be with a leaf that has no value yet.
        const auto leafValue = [&] {
            const QStringList none{"null", "\"\""};
            return comparesValues && pick(4) == 0 ? none[pick(2)]
                                                  : QStringLiteral("\"%1\"").arg(value());
        };
        for (const QString& name : names) {
            workspace.write(QStringLiteral("configuration/%1.json").arg(name),
                            QStringLiteral(R"({"A": {"@value": %1, "@unitType": %2}, "B": %3,
                "N": {"A": %4, "B": {"@value": %3, "@unitType": "x"}},
                "T": {"@type": "array", "@value": [],
                      "@arrayInformation": [{"name": "t", "unitType": "s"}, {"name": "u"}]}})")
                                .arg(leafValue(), QStringLiteral("\"%1\"").arg(value()),
                                     leafValue(), leafValue())
                                .toUtf8());
        }
        for (int number = 0; number < 3; ++number) {
            workspace.write(QStringLiteral("dependency/d%1.json").arg(number),
                            RandomDescription(random, comparesValues).text());
        }
        QJsonArray links;
        for (int count = 1 + pick(4); count > 0; --count) {
            QJsonObject link{{"source", names[pick(3)]},
                             {"target", names[pick(3)]},
                             {"dependency", QStringLiteral("d%1").arg(pick(3))}};
            if (pick(2) == 0) {
                link["parameters"] = QJsonArray{"N/", "A"};
            }
            links.append(link);
        }
        workspace.write(QStringLiteral("links.json"), QJsonDocument(links).toJson());
    }

    int pick(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }

    const QStringList names{"i", "j", "k"};
    const QStringList leaves{"A", "B", "N/A", "N/B", "T"};

private:
    std::mt19937 random;
};

/// What a run would change, by "instance url": the unit, or the units of all columns.
QMap<QString, QJsonValue> unitsAfter(const QJsonObject& document, bool isProcess = false)
{
    QMap<QString, QJsonValue> units;
    for (const QJsonValue entry : document[QStringLiteral("changes")].toArray()) {
        const QJsonObject change = entry.toObject();
        if (change[QStringLiteral("process")].toBool() != isProcess) {
            continue;
        }
        const QString leaf = change[QStringLiteral("instance")].toString() + QLatin1Char(' ') +
                             change[QStringLiteral("url")].toString();
        if (change[QStringLiteral("property")] == QJsonValue("@unitType")) {
            units[leaf] = change[QStringLiteral("after")];
        } else if (change[QStringLiteral("property")] == QJsonValue("@arrayInformation")) {
            QJsonArray columns;
            for (const QJsonValue column : change[QStringLiteral("after")].toArray()) {
                columns.append(column.toObject()[QStringLiteral("unitType")].toString());
            }
            units[leaf] = columns;
        }
    }
    return units;
}

QJsonValue unitsOf(const QJsonObject& leaf)
{
    QJsonArray columns;
    for (const QJsonValue column : leaf[QStringLiteral("columns")].toArray()) {
        columns.append(column.toObject()[QStringLiteral("unit")]);
    }
    return columns.isEmpty() ? leaf[QStringLiteral("unit")] : QJsonValue(columns);
}

QJsonValue present(const TestWorkspace& workspace, const QString& instance, const QString& url)
{
    const QJsonArray leaves =
        run(workspace, {QStringLiteral("show"), instance, url, QStringLiteral("--json")})
            .json()[QStringLiteral("leaves")]
            .toArray();
    return unitsOf(leaves[0].toObject());
}

TEST(WhyAgrees, with_what_resolving_all_then_does)
{
    int decided = 0;
    for (unsigned seed = 1; seed <= 25; ++seed) {
        SCOPED_TRACE(seed);
        const TestWorkspace workspace;
        const RandomInstances random(workspace, seed, true);
        const QMap<QString, QJsonValue> after =
            unitsAfter(run(workspace, {QStringLiteral("resolve"), QStringLiteral("--all"),
                                       QStringLiteral("--dry-run"), QStringLiteral("--json")})
                           .json());
        for (const QString& instance : random.names) {
            for (const QString& url : random.leaves) {
                SCOPED_TRACE((instance + QLatin1Char(' ') + url).toStdString());
                const QJsonObject found = whyJson(workspace, instance, url);
                const QJsonObject resolved = found[QStringLiteral("resolved")].toObject();
                const QString leaf = instance + QLatin1Char(' ') + url;
                EXPECT_EQ(unitsOf(resolved), after.value(leaf, present(workspace, instance, url)));

                const QJsonArray rows = found[QStringLiteral("rows")].toArray();
                const QJsonArray decisions = resolved[QStringLiteral("decisions")].toArray();
                decided += decisions.size();
                EXPECT_TRUE(!after.contains(leaf) || !decisions.isEmpty());
                for (const QJsonValue entry : decisions) {
                    const QJsonObject decision = entry.toObject();
                    const QJsonValue column = decision[QStringLiteral("arrayColumn")];
                    EXPECT_EQ(decision[QStringLiteral("unit")],
                              column.isNull() ? resolved[QStringLiteral("unit")]
                                              : unitsOf(resolved).toArray()[column.toInt()]);
                    const QJsonObject row =
                        rows[decision[QStringLiteral("row")].toInt(-1)].toObject();
                    EXPECT_TRUE(row[QStringLiteral("units")].toArray().contains(
                        decision[QStringLiteral("unit")]));
                    EXPECT_EQ(row[QStringLiteral("arrayColumn")],
                              decision[QStringLiteral("arrayColumn")]);
                }
            }
        }
    }
    EXPECT_GT(decided, 50);
}

/// Whether a row may run for a link from the instance after a write of the URL.
bool mayFollow(const QJsonObject& row, const QString& source, const QString& url)
{
    return row[QStringLiteral("link")].toObject()[QStringLiteral("source")] == QJsonValue(source) &&
           row[QStringLiteral("urls")].toArray().contains(url);
}

TEST(WhyAgrees, with_whatever_a_write_sets)
{
    int followed = 0;
    for (unsigned seed = 1; seed <= 25; ++seed) {
        const TestWorkspace workspace;
        RandomInstances random(workspace, seed, true);
        for (int count = 0; count < 8; ++count) {
            const QString source = random.names[random.pick(3)];
            const QString url = random.leaves[random.pick(4)];
            const QString value = QStringList{"K", "Pa", "m", "other"}[random.pick(4)];
            SCOPED_TRACE(seed);
            SCOPED_TRACE((source + ' ' + url + " = " + value).toStdString());
            const QMap<QString, QJsonValue> after =
                unitsAfter(run(workspace, {QStringLiteral("set"), source, url, value,
                                           QStringLiteral("--dry-run"), QStringLiteral("--json")})
                               .json());
            for (auto changed = after.begin(); changed != after.end(); ++changed) {
                const QStringList leaf = changed.key().split(QLatin1Char(' '));
                const QJsonArray rows =
                    whyJson(workspace, leaf[0], leaf[1])[QStringLiteral("rows")].toArray();
                EXPECT_TRUE(std::any_of(rows.begin(), rows.end(), [&](const QJsonValue& row) {
                    return mayFollow(row.toObject(), source, url);
                })) << changed.key().toStdString();
                ++followed;
            }
        }
    }
    EXPECT_GT(followed, 50);
}

TEST(WhyAgrees, that_a_row_sets_the_unit_after_each_of_its_writes_when_nothing_is_compared)
{
    int followed = 0;
    for (unsigned seed = 1; seed <= 25; ++seed) {
        const TestWorkspace workspace;
        const RandomInstances random(workspace, seed, false);
        for (const QString& instance : random.names) {
            for (const QString& leaf : random.leaves) {
                const QJsonArray rows =
                    whyJson(workspace, instance, leaf)[QStringLiteral("rows")].toArray();
                if (rows.size() != 1 || leaf == QLatin1String("T")) {
                    continue; // another row may come later and set another unit
                }
                const QJsonObject row = rows[0].toObject();
                const QString source =
                    row[QStringLiteral("link")].toObject()[QStringLiteral("source")].toString();
                for (const QJsonValue entry : row[QStringLiteral("urls")].toArray()) {
                    const QString url = entry.toString();
                    if (!random.leaves.contains(url) || url == QLatin1String("T")) {
                        continue; // only resolve runs it
                    }
                    SCOPED_TRACE(seed);
                    SCOPED_TRACE(
                        (instance + ' ' + leaf + " after " + source + ' ' + url).toStdString());
                    const QString value = run(workspace, {QStringLiteral("show"), source, url,
                                                          QStringLiteral("--json")})
                                              .json()[QStringLiteral("leaves")]
                                              .toArray()[0]
                                              .toObject()[QStringLiteral("value")]
                                              .toString();
                    const QMap<QString, QJsonValue> after = unitsAfter(
                        run(workspace, {QStringLiteral("set"), source, url, value,
                                        QStringLiteral("--dry-run"), QStringLiteral("--json")})
                            .json());
                    const QJsonValue unit =
                        after.value(instance + ' ' + leaf, present(workspace, instance, leaf));
                    EXPECT_TRUE(row[QStringLiteral("units")].toArray().contains(unit));
                    ++followed;
                }
            }
        }
    }
    EXPECT_GT(followed, 20);
}

TEST(WhyAgrees, with_what_resolving_all_does_in_broken_workspaces)
{
    int changes = 0;
    for (unsigned seed = 1; seed <= 25; ++seed) {
        const TestWorkspace workspace;
        writeRandomWorkspace(workspace, seed);
        const QJsonObject resolved =
            run(workspace, {QStringLiteral("resolve"), QStringLiteral("--all"),
                            QStringLiteral("--dry-run"), QStringLiteral("--json")})
                .json();
        for (const bool isProcess : {false, true}) {
            const QMap<QString, QJsonValue> after = unitsAfter(resolved, isProcess);
            for (auto changed = after.begin(); changed != after.end(); ++changed) {
                SCOPED_TRACE(seed);
                SCOPED_TRACE(changed.key().toStdString());
                const QStringList leaf = changed.key().split(QLatin1Char(' '));
                const QJsonObject found = whyJson(workspace, leaf[0], leaf[1], isProcess);
                EXPECT_EQ(unitsOf(found[QStringLiteral("resolved")].toObject()), changed.value());
                ++changes;
            }
        }
    }
    EXPECT_GT(changes, 50);
}

} // namespace
