#include "Fixture.h"
#include "GeneratedWorkspace.h"
#include "trace/TraceReader.h"
#include "trace/internal/EventNames.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

#include <map>

namespace {

const QString controller = QStringLiteral("controller");
const QString temperatureUnit = QStringLiteral("Settings/TemperatureUnit");
const QString explainHint = QStringLiteral("\"unitflow explain\" with the same write says why.\n");
const QString fahrenheit = QStringLiteral("°F");

QStringList explain(const QStringList& arguments)
{
    return QStringList{QStringLiteral("explain")} + arguments;
}

QStringList explainUnit(const QStringList& options = {})
{
    return explain(QStringList{controller, temperatureUnit, fahrenheit} + options);
}

/// A workspace whose description has about everything that can be wrong with one.
void writeOddDescription(const TestWorkspace& workspace)
{
    workspace.write(QStringLiteral("dependency/units.json"), R"-({
    "A": {
        "Type": "SwitchNode",
        "Next": {
            "Compared": {
                "Type": "CommandNode",
                "ConditionValueComparator": [
                    ["Settings/Mode", "==", "manual"],
                    ["Settings/Mode"],
                    ["Settings/Offset", "=", 2],
                    ["Settings/Missing", "==", 1]
                ],
                "ConditionValueComparatorRegExp": [
                    ["^Settings/TemperatureUnit$", "==", "K"],
                    ["^Zones/", "==", "K"],
                    ["(", "==", "K"]
                ]
            },
            "Nowhere": { "Type": "SwitchNod" },
            "Twice": {
                "Type": "CommandNode",
                "ConditionWriteOnUrls": [["Settings/Other"], ["Settings/TemperatureUnit"]],
                "ConditionWriteOnUrlsRegExp": [["TemperatureUnit$"]],
                "Commands": {
                    "CommandSetUnitByConfigurationParameter": [
                        ["Settings/TemperatureUnit", "", "Oven1/Temperature"],
                        ["Settings/TemperatureUnit", "", "Oven1/Missing"],
                        ["", "", "Oven1/Pressure"],
                        ["Settings/Nothing", "", "Oven1/Pressure"],
                        ["Settings/TemperatureUnit", "Oven1/Pressure"]
                    ],
                    "CommandSetUnitByConfigurationParameterArray": [
                        ["Settings/TemperatureUnit", "Log"],
                        ["Settings/TemperatureUnit", "Log[x]"],
                        ["Settings/TemperatureUnit", "Brightness[0]"]
                    ],
                    "CommandSetUnitPropertiesRegExp": [
                        ["^Settings/(?<name>.+)Unit$", "Oven1/(?<name>)", "K"],
                        ["^Zones/(.+)$", "Oven1/Pressure", "K"],
                        ["Unit", "Oven1/Pressure", "K"],
                        ["(", "Oven1/Pressure", "K"]
                    ]
                },
                "Next":
{
    "One" : {"Type" : "CommandNode"}, "Two":
    {
        "Type" : "CommandNode"
    }
}
}
}
}
, "Always" : {
    "Type" : "CommandNode",
    "Commands" : {"CommandSetUnitProperties" : [ [ "Brightness", "%" ], [ "Brightness", "" ] ]}
},
             "Near":
{
    "Type" : "SwitchNode", "Next":
    {
        "N":
        {
            "Type" : "CommandNode",
                     "ConditionWriteOnUrls"
                : [ ["Setings/TemperatureUnit"], ["Settings/PressureUnit"] ],
                  "ConditionWriteOnUrlsRegExp"
                : [ ["^settings/temp"], ["^TemperatureUnit$"], ["^Zones"] ]
        }
    }
}
}
)-");
    workspace.write(QStringLiteral("links.json"),
                    R"([{ "source": "controller", "target": "display", "dependency": "units" }])");
}

TEST(Explain, shows_the_decisive_path_with_places_and_what_would_change)
{
    const TestWorkspace workspace;
    const Result result = run(workspace, explainUnit());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    expectGolden(QStringLiteral("explain"), result.out);
}

TEST(Explain, writes_nothing)
{
    const TestWorkspace workspace;
    const QMap<QString, QByteArray> files = workspace.files();
    const QMap<QString, qint64> times = workspace.times();
    run(workspace, explainUnit());
    run(workspace, explainUnit({QStringLiteral("--json")}));
    EXPECT_EQ(workspace.files(), files);
    EXPECT_EQ(workspace.times(), times);
}

TEST(Explain, says_why_what_did_not_happen_did_not)
{
    const TestWorkspace workspace;
    writeOddDescription(workspace);
    const Result result = run(workspace, explainUnit());
    EXPECT_EQ(result.exitCode, 0);
    expectGolden(QStringLiteral("explain-odd"), result.out);
}

TEST(Explain, names_the_leaf_that_is_nearest_to_a_missing_target)
{
    const TestWorkspace workspace;
    QByteArray description = workspace.files().value(QStringLiteral("dependency/units.json"));
    ASSERT_TRUE(description.contains("%1/%2"));
    description.replace("%1/%2", "%1/Temprature");
    workspace.write(QStringLiteral("dependency/units.json"), description);
    const QString text = run(workspace, explainUnit()).out;
    EXPECT_TRUE(text.contains(QStringLiteral("the target has no such leaf; the nearest is")) &&
                text.contains(QStringLiteral(" Oven1/Temperature ")))
        << text.toStdString();
}

TEST(Explain, says_that_a_misspelled_condition_is_among_the_mistakes_of_a_description)
{
    const TestWorkspace workspace;
    EXPECT_FALSE(run(workspace, explainUnit()).out.contains(QStringLiteral("mistake")));
    QByteArray description = workspace.files().value(QStringLiteral("dependency/units.json"));
    ASSERT_TRUE(description.contains("ConditionWriteOnUrls"));
    description.replace("ConditionWriteOnUrls", "ConditionWriteOnURLs");
    workspace.write(QStringLiteral("dependency/units.json"), description);
    const Result result = run(workspace, explainUnit());
    EXPECT_TRUE(result.out.contains(QStringLiteral(
        "\n1 mistake is in dependency/units.json; \"unitflow check\" tells more.\n")))
        << result.out.toStdString();
}

TEST(Explain, shows_every_step_with_all)
{
    const TestWorkspace workspace;
    writeOddDescription(workspace);
    expectGolden(QStringLiteral("explain-odd-all"),
                 run(workspace, explainUnit({QStringLiteral("--all")})).out);
}

TEST(Explain, takes_the_value_that_is_there_when_none_is_given)
{
    const TestWorkspace workspace;
    const Result given =
        run(workspace, explain({controller, temperatureUnit, QStringLiteral("°C")}));
    const Result kept = run(workspace, explain({controller, temperatureUnit}));
    EXPECT_EQ(kept.exitCode, 0);
    EXPECT_EQ(kept.out, given.out);
    EXPECT_TRUE(kept.out.contains(QStringLiteral("Nothing would change.\n")));
}

TEST(Explain, counts_the_links_that_have_nothing_to_tell)
{
    const TestWorkspace workspace;
    const Result result = run(workspace, explain({controller, QStringLiteral("Settings/Mode")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, QStringLiteral("2 links do not watch Settings/Mode; --all shows them.\n"
                                         "\n"
                                         "Nothing would change.\n"
                                         "Nothing follows: no link of controller answers a write "
                                         "to Settings/Mode.\n"
                                         "Dry run: nothing was written.\n"));
}

TEST(Explain, says_that_no_link_starts_there)
{
    const TestWorkspace workspace;
    EXPECT_EQ(run(workspace, explain({QStringLiteral("display"), QStringLiteral("Brightness"),
                                      QStringLiteral("5")}))
                  .out,
              QStringLiteral("display\n"
                             "  Brightness  value  80 → 5\n"
                             "1 leaf changed in 1 instance.\n"
                             "Nothing follows: no link starts at display.\n"
                             "Dry run: nothing was written.\n"));
}

/// A workspace in which a write to "P" of "s" runs the description for "t".
void writeOneLink(const TestWorkspace& workspace, const QByteArray& description)
{
    workspace.write(QStringLiteral("configuration/s.json"), R"({"P": "K"})");
    workspace.write(QStringLiteral("configuration/t.json"), R"({"X": 1, "In": {"Y": 2}})");
    workspace.write(QStringLiteral("dependency/d.json"), description);
    workspace.write(QStringLiteral("links.json"),
                    R"([{"source": "s", "target": "t", "dependency": "d"}])");
}

TEST(Explain, tells_a_link_that_answers_in_vain_from_one_that_does_not)
{
    const TestWorkspace workspace;
    writeOneLink(workspace, R"({"S": {"Type": "SwitchNode", "Next": {"C": {"Type": "CommandNode",
        "ConditionWriteOnUrls": [["P"]],
        "Commands": {"CommandSetUnitProperties": [["Missing", "K"]]}}}}})");
    const QStringList write{QStringLiteral("s"), QStringLiteral("P"), QStringLiteral("m")};
    const QString inVain = QStringLiteral("Nothing follows: links of s answer a write to P, but "
                                          "none of their commands succeeds.\n");
    const Result explained = run(workspace, explain(write));
    EXPECT_TRUE(explained.out.contains(inVain)) << explained.out.toStdString();
    EXPECT_FALSE(explained.out.contains(explainHint));
    const Result set = run(workspace, QStringList{QStringLiteral("set")} + write);
    EXPECT_TRUE(set.out.contains(inVain + explainHint)) << set.out.toStdString();
}

TEST(Explain, of_nodes_that_always_run_does_not_say_that_nothing_watches)
{
    const TestWorkspace workspace;
    writeOneLink(workspace, R"({"U": {"Type": "CommandNode",
        "Commands": {"CommandSetUnitProperties": [["X", "K"], "X"]}}})");
    const QString text = run(workspace, explain({QStringLiteral("s"), QStringLiteral("P")})).out;
    EXPECT_TRUE(text.contains(QStringLiteral("sets X to K")));
    EXPECT_FALSE(text.contains(QStringLiteral("watches P"))) << text.toStdString();
    EXPECT_FALSE(text.contains(QStringLiteral("not watch"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("skips a row that is no list")));
}

TEST(Explain, shows_what_a_link_fails_for_and_runs_the_others)
{
    const TestWorkspace workspace;
    workspace.remove(QStringLiteral("process/baking.json"));
    const Result result = run(workspace, explainUnit());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.contains(QStringLiteral("process/baking.json")));
    EXPECT_TRUE(result.out.contains(QStringLiteral("sets Oven1/Temperature to °F")));
    EXPECT_TRUE(result.out.contains(QStringLiteral("  fails: what it needs cannot be had")));
}

TEST(Explain, is_refused_like_a_write_when_there_is_no_such_leaf)
{
    const TestWorkspace workspace;
    const QStringList wrong{controller, QStringLiteral("Settings/Temperature"), fahrenheit};
    const Result explained = run(workspace, explain(wrong));
    const Result written = run(workspace, QStringList{QStringLiteral("set")} + wrong);
    EXPECT_EQ(explained.exitCode, 2);
    EXPECT_EQ(explained.out, QString());
    EXPECT_EQ(explained.err, written.err);
}

TEST(Explain, wants_a_write_or_a_trace_and_not_both)
{
    const TestWorkspace workspace;
    const Result neither = run(workspace, explain({}));
    EXPECT_EQ(neither.exitCode, 2);
    EXPECT_EQ(neither.err, QStringLiteral("error: INSTANCE and URL are missing\n"
                                          "    \"unitflow explain --help\" shows how\n"));
    const Result half = run(workspace, explain({controller}));
    EXPECT_EQ(half.exitCode, 2);
    EXPECT_EQ(half.err, neither.err);
    const Result both =
        run(workspace, explainUnit({QStringLiteral("--trace"), QStringLiteral("file")}));
    EXPECT_EQ(both.exitCode, 2);
    EXPECT_EQ(both.err, QStringLiteral("error: --trace takes no write\n"
                                       "    \"unitflow explain --help\" shows how\n"));
}

TEST(Explain, takes_an_empty_value_as_one)
{
    const TestWorkspace workspace;
    const Result result =
        run(workspace, explain({controller, QStringLiteral("Settings/Mode"), QString()}));
    EXPECT_TRUE(result.out.contains(QStringLiteral("Settings/Mode  value  automatic → \"\"")))
        << result.out.toStdString();
}

TEST(Explain, has_the_lines_of_the_trace_format_with_json)
{
    const TestWorkspace workspace;
    const Result result = run(workspace, explainUnit({QStringLiteral("--json")}));
    EXPECT_EQ(result.exitCode, 0);
    expectGolden(QStringLiteral("explain-json"), result.out);
    EXPECT_TRUE(trace::readTrace(result.out.toUtf8()).errors.isEmpty());
}

TEST(ExplainTrace, shows_the_events_of_a_file_without_any_workspace)
{
    const TestWorkspace workspace;
    writeOddDescription(workspace);
    workspace.write(QStringLiteral("trace.ndjson"),
                    run(workspace, explainUnit({QStringLiteral("--json")})).out.toUtf8());
    const Result result = run({QStringLiteral("explain"), QStringLiteral("--trace"),
                               workspace.path(QStringLiteral("trace.ndjson")), QStringLiteral("-C"),
                               QStringLiteral("nowhere")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    expectGolden(QStringLiteral("explain-trace"), result.out);
}

TEST(ExplainTrace, writes_the_same_lines_again_with_json)
{
    const TestWorkspace workspace;
    const Result result = run(workspace, explainUnit({QStringLiteral("--json")}));
    workspace.write(QStringLiteral("trace.ndjson"), result.out.toUtf8());
    EXPECT_EQ(run(explain({QStringLiteral("--json"), QStringLiteral("--trace"),
                           workspace.path(QStringLiteral("trace.ndjson"))}))
                  .out,
              result.out);
}

TEST(ExplainTrace, names_the_line_of_what_is_no_event_and_shows_the_rest)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("trace.ndjson"),
                    R"({"format":"unitflow/trace","version":1}
{"event":"traversal-started","url":"s"}
{"event":"nothing"}
{"event":"node-selected","name":"Top","selection":"unconditional","watched":""}
{"event":"node-entered","name":"Top","type":"CommandNode"}
)");
    const QString file = workspace.path(QStringLiteral("trace.ndjson"));
    const Result result = run(explain({QStringLiteral("--trace"), file}));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err,
              QStringLiteral("error: %1:3:1: there is no event \"nothing\"\n").arg(file));
    EXPECT_EQ(result.out, QStringLiteral("(no link is named)\n"
                                         "  a write to s\n"
                                         "    Top always runs: it watches nothing\n"
                                         "      does nothing: it has no command and no edge\n"
                                         "    what follows is not told\n"));
}

TEST(ExplainTrace, tells_of_types_that_a_host_added_and_of_tables_without_rows)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("trace.ndjson"),
                    R"({"format":"unitflow/trace","version":1}
{"event":"traversal-started","url":"s"}
{"event":"node-selected","name":"Top","selection":"url","watched":"s"}
{"event":"node-entered","name":"Top","type":""}
{"event":"command-started","index":0,"type":""}
{"event":"command-started","index":1,"type":"CommandSetUnitProperties"}
{"event":"condition-started","index":0,"type":""}
{"event":"condition-finished","index":0,"type":"","holds":false}
{"event":"condition-started","index":1,"type":"ConditionWriteOnUrls"}
{"event":"condition-finished","index":1,"type":"ConditionWriteOnUrls","holds":false}
{"event":"edge-decided","index":0,"successor":"Next","decision":"no-condition-holds"}
)");
    EXPECT_EQ(
        run(explain({QStringLiteral("--trace"), workspace.path(QStringLiteral("trace.ndjson"))}))
            .out,
        QStringLiteral("(no link is named)\n"
                       "  a write to s\n"
                       "    Top runs: it watches this URL\n"
                       "      runs a command that the engine does not know\n"
                       "      does nothing: CommandSetUnitProperties has no row\n"
                       "      Next is not reached\n"
                       "        fails: a condition that the engine does not know\n"
                       "        fails: ConditionWriteOnUrls has no row\n"
                       "    what follows is not told\n"));
}

TEST(ExplainTrace, has_words_for_everything_that_can_become_of_a_row_or_an_edge)
{
    QByteArray text = "{\"format\":\"unitflow/trace\",\"version\":1}\n"
                      "{\"event\":\"traversal-started\",\"url\":\"s\"}\n";
    int line = 0;
    const auto inNode = [&](const QByteArray& events) {
        const QByteArray name = "Node" + QByteArray::number(++line);
        text += "{\"event\":\"node-selected\",\"name\":\"" + name +
                "\",\"selection\":\"unconditional\",\"watched\":\"\"}\n"
                "{\"event\":\"node-entered\",\"name\":\"" +
                name + "\",\"type\":\"CommandNode\"}\n" + events +
                "{\"event\":\"node-left\",\"name\":\"" + name +
                "\",\"type\":\"CommandNode\",\"outcome\":true}\n";
    };
    for (const auto& outcome : trace::internal::rowOutcomeNames()) {
        inNode("{\"event\":\"command-started\",\"index\":0,\"type\":\"CommandSetUnitProperties\"}\n"
               "{\"event\":\"command-row\",\"row\":0,\"outcome\":\"" +
               QByteArray(outcome.name.data()) +
               "\",\"target\":\"A\",\"unit\":\"K\",\"status\":7}\n");
    }
    for (const auto& outcome : trace::internal::conditionOutcomeNames()) {
        inNode(
            "{\"event\":\"condition-started\",\"index\":0,\"type\":\"ConditionValueComparator\"}\n"
            "{\"event\":\"condition-row\",\"row\":0,\"outcome\":\"" +
            QByteArray(outcome.name.data()) +
            "\",\"url\":\"U\",\"comparator\":\"==\",\"expected\":1,\"actual\":2}\n"
            "{\"event\":\"condition-finished\",\"index\":0,\"type\":\"ConditionValueComparator\","
            "\"holds\":false}\n"
            "{\"event\":\"edge-decided\",\"index\":0,\"successor\":\"Next\","
            "\"decision\":\"no-condition-holds\"}\n");
    }
    for (const auto& decision : trace::internal::edgeDecisionNames()) {
        const QByteArray name(decision.name.data());
        inNode(
            "{\"event\":\"edge-decided\",\"index\":0,\"successor\":\"Next\",\"decision\":\"" +
            name + "\"}\n" +
            (name.startsWith("followed")
                 ? "{\"event\":\"node-entered\",\"name\":\"Next\",\"type\":\"SwitchNode\"}\n"
                   "{\"event\":\"node-left\",\"name\":\"Next\",\"type\":\"SwitchNode\",\"outcome\":"
                   "false}\n"
                 : ""));
    }
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("trace.ndjson"), text);
    const Result result =
        run(explain({QStringLiteral("--trace"), workspace.path(QStringLiteral("trace.ndjson")),
                     QStringLiteral("--all")}));
    EXPECT_EQ(result.err, QString());
    expectGolden(QStringLiteral("explain-every-outcome"), result.out);
}

/// What is shown of a trace, whatever becomes of it.
Result shown(const TestWorkspace& workspace, const QByteArray& text,
             const QStringList& options = {})
{
    workspace.write(QStringLiteral("trace.ndjson"), text);
    return run(explain(
        QStringList{QStringLiteral("--trace"), workspace.path(QStringLiteral("trace.ndjson"))} +
        options));
}

TEST(ExplainTrace, of_a_trace_that_stops_shows_what_came_before)
{
    const TestWorkspace workspace;
    writeOddDescription(workspace);
    const QByteArray whole = run(workspace, explainUnit({QStringLiteral("--json")})).out.toUtf8();
    const QStringList all{QStringLiteral("--all")};
    for (int end = whole.indexOf('\n'); end >= 0; end = whole.indexOf('\n', end + 1)) {
        const QByteArray cut = whole.left(end + 1);
        for (const QStringList& options : {QStringList(), all}) {
            const Result result = shown(workspace, cut, options);
            EXPECT_EQ(result.exitCode, 0) << end;
            EXPECT_EQ(result.err, QString()) << end;
        }
    }
    const int lastLine = whole.lastIndexOf('\n', -2) + 1;
    for (int end = lastLine + 1; end < whole.size() - 1; end += 3) {
        const Result result = shown(workspace, whole.left(end));
        EXPECT_EQ(result.exitCode, 2) << end;
        EXPECT_FALSE(result.out.isEmpty());
    }
}

TEST(ExplainTrace, of_a_trace_that_lacks_a_line_shows_the_others)
{
    const TestWorkspace workspace;
    writeOddDescription(workspace);
    const QByteArray whole = run(workspace, explainUnit({QStringLiteral("--json")})).out.toUtf8();
    for (int begin = whole.indexOf('\n') + 1; begin < whole.size();
         begin = whole.indexOf('\n', begin) + 1) {
        QByteArray text = whole;
        text.remove(begin, whole.indexOf('\n', begin) + 1 - begin);
        const Result result = shown(workspace, text, {QStringLiteral("--all")});
        EXPECT_EQ(result.exitCode, 0) << begin;
        EXPECT_EQ(result.err, QString()) << begin;
    }
}

TEST(ExplainTrace, says_of_an_edge_no_more_than_the_trace_does)
{
    const TestWorkspace workspace;
    const QByteArray begin = R"({"format":"unitflow/trace","version":1}
{"event":"traversal-started","url":"s"}
{"event":"node-selected","name":"Top","selection":"url","watched":"s"}
{"event":"node-entered","name":"Top","type":"SwitchNode"}
)";
    const QByteArray condition =
        R"({"event":"condition-started","index":0,"type":"ConditionWriteOnUrls"}
{"event":"condition-row","row":0,"outcome":"differs","url":"t"}
)";
    const QByteArray decided = "{\"event\":\"edge-decided\",\"index\":0,\"successor\":\"A\","
                               "\"decision\":\"followed-always\"}\n";
    const QByteArray entered =
        "{\"event\":\"node-entered\",\"name\":\"A\",\"type\":\"SwitchNode\"}\n";
    const QString undecided = shown(workspace, begin + condition).out;
    EXPECT_TRUE(undecided.contains(QStringLiteral("an edge is not decided\n")))
        << undecided.toStdString();
    EXPECT_TRUE(undecided.contains(QStringLiteral("fails: t was not written")));
    const QString isReached = QStringLiteral("A is reached: no condition stands before it\n");
    EXPECT_TRUE(shown(workspace, begin + decided).out.contains(isReached));
    EXPECT_TRUE(shown(workspace, begin + decided + entered).out.contains(isReached));
    const QString untold = shown(workspace, begin + condition + entered).out;
    EXPECT_TRUE(untold.contains(QStringLiteral("an edge is reached\n"))) << untold.toStdString();
}

TEST(ExplainTrace, names_each_written_url_and_what_came_of_it)
{
    const TestWorkspace workspace;
    EXPECT_EQ(shown(workspace, R"({"format":"unitflow/trace","version":1}
{"event":"link","source":"s","target":"t","dependency":"d","process":false,"parameters":[]}
{"event":"traversal-started","url":"A"}
{"event":"node-selected","name":"Top","selection":"url","watched":"A"}
{"event":"node-entered","name":"Top","type":"CommandNode"}
{"event":"node-left","name":"Top","type":"CommandNode","outcome":false}
{"event":"traversal-finished","outcome":false,"changed":false}
{"event":"traversal-started","url":"B"}
{"event":"traversal-finished","outcome":false,"changed":false}
{"event":"link","source":"s","target":"u","dependency":"d","process":false,"parameters":[]}
{"event":"traversal-started","url":"B"}
{"event":"traversal-finished","outcome":false,"changed":false}
{"event":"link","source":"s","target":"v","dependency":"d","process":false,"parameters":[]}
{"event":"traversal-started","url":""}
)")
                  .out,
              QStringLiteral("s → t through d\n"
                             "  a write to A\n"
                             "    Top runs: it watches this URL\n"
                             "      does nothing: it has no command and no edge\n"
                             "    no command succeeds\n"
                             "  a write to B\n"
                             "    no node watches it\n"
                             "\n"
                             "s → v through d\n"
                             "  without a write\n"
                             "    what follows is not told\n"
                             "\n"
                             "1 other link does not watch what was written; --all shows them.\n"));
}

TEST(ExplainTrace, of_a_file_that_is_no_trace_is_an_error)
{
    const TestWorkspace workspace;
    const QString file = workspace.path(QStringLiteral("links.json"));
    const Result result = run(explain({QStringLiteral("--trace"), file}));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, QString());
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: %1:1:1: ").arg(file)));
    EXPECT_EQ(run(explain({QStringLiteral("--trace"), QStringLiteral("missing")})).exitCode, 2);
}

// --- what explain says, and what set then does

using Units = std::map<QString, QString>; // by "instance url" and, of an array, its column

QString titleOf(const QJsonObject& entry, const QString& instance)
{
    return entry.value(instance).toString() + (entry.value(QStringLiteral("process")).toBool()
                                                   ? QStringLiteral(" (process) ")
                                                   : QStringLiteral(" "));
}

/// The units that the changed leaves have at the end, as the changes of a run tell them.
Units unitsSet(const QJsonObject& document)
{
    Units units;
    for (const QJsonValue value : document.value(QStringLiteral("changes")).toArray()) {
        const QJsonObject change = value.toObject();
        const QString leaf = titleOf(change, QStringLiteral("instance")) +
                             change.value(QStringLiteral("url")).toString();
        const QString property = change.value(QStringLiteral("property")).toString();
        if (property == QStringLiteral("@unitType")) {
            units[leaf] = change.value(QStringLiteral("after")).toString();
        }
        for (const QJsonValue column : change.value(QStringLiteral("columns")).toArray()) {
            const QJsonObject entry = column.toObject();
            units[leaf + QStringLiteral("[%1]").arg(entry.value(QStringLiteral("index")).toInt())] =
                entry.value(QStringLiteral("after")).toString();
        }
    }
    return units;
}

/// The same, as the events of a trace tell them: what the last write to each leaf left there.
Units unitsTold(const Result& explained)
{
    Units units;
    QString target;
    for (const QByteArray& line : explained.out.toUtf8().split('\n')) {
        const QJsonObject event = QJsonDocument::fromJson(line).object();
        if (event.value(QStringLiteral("event")) == QStringLiteral("link")) {
            target = titleOf(event, QStringLiteral("target"));
        }
        if (event.value(QStringLiteral("outcome")) == QStringLiteral("changed")) {
            QString leaf = target + event.value(QStringLiteral("target")).toString();
            if (event.contains(QStringLiteral("column"))) {
                leaf += QStringLiteral("[%1]").arg(event.value(QStringLiteral("column")).toInt());
            }
            units[leaf] = event.value(QStringLiteral("unit")).toString();
        }
    }
    return units;
}

/// Those of `told` that were no other before: a leaf may be changed and changed back.
Units withoutChangedBack(Units told, const Units& before)
{
    for (const auto& [leaf, unit] : before) {
        const auto found = told.find(leaf);
        if (found != told.end() && found->second == unit) {
            told.erase(found);
        }
    }
    return told;
}

/// The units in the files, as `show` tells them.
Units unitsIn(const TestWorkspace& workspace)
{
    Units units;
    for (const char* kind : {"configuration", "process"}) {
        for (const QString& file : workspace.files().keys()) {
            const QString folder = QLatin1String(kind) + QStringLiteral("/");
            if (!file.startsWith(folder) || file.endsWith(QStringLiteral("manifest.json"))) {
                continue;
            }
            const QString name = file.mid(folder.size()).chopped(5);
            const bool isProcess = folder.startsWith(QLatin1Char('p'));
            const QJsonObject shown =
                run(workspace,
                    QStringList{QStringLiteral("show"), name, QStringLiteral("--json")} +
                        (isProcess ? QStringList{QStringLiteral("--process")} : QStringList()))
                    .json();
            const QString title =
                name + (isProcess ? QStringLiteral(" (process) ") : QStringLiteral(" "));
            for (const QJsonValue value : shown.value(QStringLiteral("leaves")).toArray()) {
                const QJsonObject leaf = value.toObject();
                const QString url = title + leaf.value(QStringLiteral("url")).toString();
                if (leaf.value(QStringLiteral("unit")).isString()) {
                    units[url] = leaf.value(QStringLiteral("unit")).toString();
                }
                const QJsonArray columns = leaf.value(QStringLiteral("columns")).toArray();
                for (int column = 0; column < columns.size(); ++column) {
                    units[url + QStringLiteral("[%1]").arg(column)] =
                        columns.at(column).toObject().value(QStringLiteral("unit")).toString();
                }
            }
        }
    }
    return units;
}

/// An instance at which a link starts, if there is any.
QString aSource(const TestWorkspace& workspace)
{
    const QJsonArray links =
        QJsonDocument::fromJson(workspace.read(QStringLiteral("links.json"))).array();
    return links.first().toObject().value(QStringLiteral("source")).toString(QStringLiteral("i0"));
}

TEST(Explain, tells_exactly_the_changes_that_the_write_then_makes)
{
    int changes = 0;
    for (unsigned seed = 1; seed <= 100; ++seed) {
        SCOPED_TRACE(seed);
        const TestWorkspace workspace;
        writeRandomWorkspace(workspace, seed);
        const QStringList write{aSource(workspace),
                                QStringList{"A", "A", "A", "B", "N/C"}.at(int(seed % 5)),
                                QStringLiteral("new")};
        const Units before = unitsIn(workspace);

        const Result text = run(workspace, explain(write));
        const Result told = run(workspace, explain(write + QStringList{QStringLiteral("--json")}));
        const Result dry =
            run(workspace, QStringList{QStringLiteral("set"), QStringLiteral("--dry-run")} + write);
        const Result done =
            run(workspace, QStringList{QStringLiteral("set"), QStringLiteral("--json")} + write);

        const Units set = unitsSet(done.json());
        EXPECT_EQ(withoutChangedBack(unitsTold(told), before), set);
        EXPECT_EQ(text.exitCode, dry.exitCode);
        EXPECT_EQ(told.exitCode, dry.exitCode);
        if (done.exitCode != 2 && dry.out.contains(QStringLiteral(" changed in "))) {
            const QString withoutHint = QString(dry.out).remove(explainHint);
            EXPECT_TRUE(text.out.endsWith(withoutHint)) << text.out.toStdString();
        }
        changes += int(set.size());
    }
    EXPECT_GT(changes, 50);
}

} // namespace
