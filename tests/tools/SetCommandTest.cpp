#include "Fixture.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

const QString controller = QStringLiteral("controller");
const QString temperatureUnit = QStringLiteral("Settings/TemperatureUnit");
const QString fahrenheit = QStringLiteral("°F");

QStringList set(const QStringList& arguments)
{
    return QStringList{QStringLiteral("set")} + arguments;
}

/// What everything begins with: another unit for temperatures.
QStringList setUnit(const QStringList& options = {})
{
    return set(QStringList{controller, temperatureUnit, fahrenheit} + options);
}

/// The numbers of the lines that differ, "file:line".
QStringList changedLines(const QMap<QString, QByteArray>& before,
                         const QMap<QString, QByteArray>& after)
{
    QStringList changed;
    EXPECT_EQ(before.keys(), after.keys());
    for (const QString& file : before.keys()) {
        const QList<QByteArray> left = before.value(file).split('\n');
        const QList<QByteArray> right = after.value(file).split('\n');
        EXPECT_EQ(left.size(), right.size());
        for (int line = 0; line < left.size() && line < right.size(); ++line) {
            if (left.at(line) != right.at(line)) {
                changed.append(QStringLiteral("%1:%2").arg(file).arg(line + 1));
            }
        }
    }
    return changed;
}

TEST(Set, shows_each_changed_leaf_by_instance_and_a_total)
{
    const TestWorkspace workspace;
    const Result result = run(workspace, setUnit());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    expectGolden(QStringLiteral("set"), result.out);
}

TEST(Set, changes_the_lines_of_the_changed_leaves_and_of_the_manifest_and_nothing_else)
{
    const TestWorkspace workspace;
    const QMap<QString, QByteArray> before = workspace.files();
    run(workspace, setUnit());
    EXPECT_EQ(changedLines(before, workspace.files()),
              (QStringList{QStringLiteral("configuration/controller.json:4"),
                           QStringLiteral("configuration/display.json:3"),
                           QStringLiteral("configuration/manifest.json:2"),
                           QStringLiteral("configuration/manifest.json:3"),
                           QStringLiteral("configuration/manifest.json:5"),
                           QStringLiteral("process/baking.json:3")}));
}

TEST(Set, dry_run_says_the_same_and_that_nothing_was_written)
{
    const TestWorkspace workspace;
    const Result dry = run(workspace, setUnit({QStringLiteral("--dry-run")}));
    const Result real = run(workspace, setUnit());
    EXPECT_EQ(dry.exitCode, 0);
    EXPECT_EQ(dry.out, real.out + QStringLiteral("Dry run: nothing was written.\n"));
}

TEST(Set, dry_run_leaves_every_byte_and_every_time_stamp)
{
    const TestWorkspace workspace;
    const QMap<QString, QByteArray> files = workspace.files();
    const QMap<QString, qint64> times = workspace.times();
    run(workspace, setUnit({QStringLiteral("--dry-run")}));
    EXPECT_EQ(workspace.files(), files);
    EXPECT_EQ(workspace.times(), times);
}

TEST(Set, of_the_value_that_is_there_changes_nothing_and_says_so)
{
    const TestWorkspace workspace;
    const QMap<QString, QByteArray> files = workspace.files();
    const Result result = run(workspace, set({controller, temperatureUnit, QStringLiteral("°C")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(
        result.out,
        QStringLiteral("Nothing changed: Settings/TemperatureUnit has this value already.\n"));
    EXPECT_EQ(workspace.files(), files);
}

TEST(Set, of_the_value_that_is_there_still_brings_what_follows_up_to_date)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("process/baking.json"),
                    R"({"Limits": {"Temperature": {"@value": 250, "@unitType": "K"}}})");
    const Result result = run(workspace, set({controller, temperatureUnit, QStringLiteral("°C")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, QStringLiteral("baking (process)\n"
                                         "  Limits/Temperature  unit  K → °C\n"
                                         "1 leaf changed in 1 instance.\n"));
}

TEST(Set, shows_a_property_that_was_not_there_as_none)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("process/baking.json"), R"({"Limits": {"Temperature": 250}})");
    const Result result = run(workspace, setUnit());
    EXPECT_TRUE(result.out.contains(QStringLiteral("Limits/Temperature        unit   (none) → °F")))
        << result.out.toStdString();
}

// --- arrays

/// Lets the recorder's log follow, next to what follows anyway.
void linkColumn(const TestWorkspace& workspace)
{
    workspace.write(QStringLiteral("dependency/columns.json"), columnDescription);
    workspace.write(QStringLiteral("links.json"), R"([
    {"source": "controller", "target": "display", "dependency": "units",
     "parameters": ["Oven1", "Temperature"]},
    {"source": "controller", "target": "recorder", "dependency": "columns"}
])");
}

TEST(Set, shows_the_columns_of_an_array_that_follow)
{
    const TestWorkspace workspace;
    linkColumn(workspace);
    const Result result = run(workspace, setUnit());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    expectGolden(QStringLiteral("set-column"), result.out);
}

TEST(Set, changes_the_unit_of_a_column_and_keeps_the_other_keys)
{
    const TestWorkspace workspace;
    linkColumn(workspace);
    QByteArray expected = workspace.read(QStringLiteral("configuration/recorder.json"));
    expected.replace("\"unitType\": \"°C\"", "\"unitType\": \"°F\"");
    run(workspace, setUnit());
    EXPECT_EQ(workspace.read(QStringLiteral("configuration/recorder.json")), expected);
}

TEST(Set, shows_a_column_without_a_name_by_its_index_and_one_without_a_unit_as_none)
{
    const TestWorkspace workspace;
    linkColumn(workspace);
    workspace.write(QStringLiteral("configuration/recorder.json"),
                    R"({"Log": {"@type": "array", "@arrayInformation": [{}, {"width": 5}]}})");
    const Result result = run(workspace, setUnit());
    EXPECT_TRUE(result.out.contains(QStringLiteral("Log[1]                    unit   (none) → °F")))
        << result.out.toStdString();
    EXPECT_EQ(workspace.read(QStringLiteral("configuration/recorder.json")),
              QByteArray(R"({"Log": {"@type": "array", "@arrayInformation": [{}, )"
                         R"({"width": 5, "unitType": "°F"}]}})"));
}

// --- the manifest

const QString manifest = QStringLiteral("configuration/manifest.json");

TEST(Set, notes_the_time_in_the_entries_of_the_changed_instances_only)
{
    const TestWorkspace workspace;
    const QByteArray old = "\"2025-01-01T00:00:00.000Z\"";
    run(workspace, setUnit());
    const QList<QByteArray> lines = workspace.read(manifest).split('\n');
    ASSERT_EQ(lines.size(), 7);
    EXPECT_FALSE(lines.at(1).contains(old)); // controller
    EXPECT_FALSE(lines.at(2).contains(old)); // display
    EXPECT_TRUE(lines.at(3).contains(old));  // recorder
    EXPECT_FALSE(lines.at(4).contains(old)); // baking
}

TEST(Set, leaves_the_manifest_alone_when_nothing_changed)
{
    const TestWorkspace workspace;
    const QMap<QString, qint64> times = workspace.times();
    run(workspace, set({controller, temperatureUnit, QStringLiteral("°C")}));
    EXPECT_EQ(workspace.times().value(workspace.path(manifest)),
              times.value(workspace.path(manifest)));
}

TEST(Set, makes_a_missing_manifest)
{
    const TestWorkspace workspace;
    workspace.remove(manifest);
    const Result result = run(workspace, setUnit());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(workspace.read(manifest).startsWith("[\n    {\n        \"instanceName\": "
                                                    "\"controller\",\n        \"lastModified\""))
        << workspace.read(manifest).toStdString();
}

TEST(Set, of_a_source_that_the_manifest_does_not_flag_says_so_in_one_line_and_still_works)
{
    const TestWorkspace workspace;
    workspace.write(manifest, R"([{"instanceName": "controller", "hasDependency": 1}])");
    const Result result = run(workspace, setUnit());
    EXPECT_EQ(result.exitCode, 0);
    expectGolden(QStringLiteral("set"), result.out);
    expectGolden(QStringLiteral("set-not-flagged"), result.err);
}

TEST(Set, of_an_instance_without_links_needs_no_flag)
{
    const TestWorkspace workspace;
    const Result result =
        run(workspace,
            set({QStringLiteral("recorder"), QStringLiteral("Interval"), QStringLiteral("30")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
}

TEST(Set, with_a_manifest_that_is_no_json_says_where_and_does_the_rest)
{
    const TestWorkspace workspace;
    workspace.write(manifest, "[\n    {\"instanceName\": controller}\n]\n");
    const Result result = run(workspace, setUnit());
    EXPECT_EQ(result.exitCode, 2);
    expectGolden(QStringLiteral("set"), result.out);
    expectGolden(QStringLiteral("set-broken-manifest"), result.err);
    EXPECT_TRUE(workspace.read(QStringLiteral("configuration/display.json")).contains("°F"));
    EXPECT_EQ(workspace.read(manifest), QByteArray("[\n    {\"instanceName\": controller}\n]\n"));
}

// --- values

struct Written {
    const char* title;
    QStringList arguments;
    const char* line; ///< what stands in the file then
};

void PrintTo(const Written& row, std::ostream* stream)
{
    *stream << row.title;
}

class WrittenValue : public testing::TestWithParam<Written> {};

TEST_P(WrittenValue, stands_in_the_file)
{
    const TestWorkspace workspace;
    const Result result =
        run(workspace,
            set(QStringList{controller, QStringLiteral("Settings/Mode")} + GetParam().arguments));
    EXPECT_EQ(result.exitCode, 0) << testing::PrintToString(result);
    const QByteArray file = workspace.read(QStringLiteral("configuration/controller.json"));
    EXPECT_TRUE(file.contains(GetParam().line)) << file.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Given, WrittenValue,
    testing::Values(Written{"as_text", {QStringLiteral("manual")}, R"("Mode": "manual",)"},
                    Written{"as_number", {QStringLiteral("7")}, R"("Mode": 7,)"},
                    Written{"as_text_that_looks_like_a_number",
                            {QStringLiteral("7"), QStringLiteral("--string")},
                            R"("Mode": "7",)"},
                    Written{"as_null_in_words",
                            {QStringLiteral("--string"), QStringLiteral("null")},
                            R"("Mode": "null",)"},
                    Written{"as_negative_number", {QStringLiteral("-5")}, R"("Mode": -5,)"},
                    Written{"as_negative_number_behind_two_dashes",
                            {QStringLiteral("--"), QStringLiteral("-5")},
                            R"("Mode": -5,)"},
                    Written{"as_text_with_dashes_behind_two_dashes",
                            {QStringLiteral("--"), QStringLiteral("--dry-run")},
                            R"("Mode": "--dry-run",)"},
                    Written{
                        "as_the_name_of_a_command", {QStringLiteral("show")}, R"("Mode": "show",)"},
                    Written{"as_true", {QStringLiteral("true")}, R"("Mode": true,)"},
                    Written{"as_empty_text", {QString()}, R"("Mode": "",)"},
                    Written{"as_list", {QStringLiteral("[[1, 2], [3]]")}, R"("Mode": [[1)"},
                    Written{"as_text_in_quotes", {QStringLiteral("\"5\"")}, R"("Mode": "5",)"}),
    [](const testing::TestParamInfo<Written>& test) { return test.param.title; });

TEST(Set, of_null_is_refused_with_a_way_out)
{
    const TestWorkspace workspace;
    const QMap<QString, QByteArray> files = workspace.files();
    const Result result =
        run(workspace, set({controller, temperatureUnit, QStringLiteral("null")}));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, QString());
    expectGolden(QStringLiteral("set-null"), result.err);
    EXPECT_EQ(workspace.files(), files);
}

TEST(Set, of_a_value_nested_too_deep_for_its_place_is_refused)
{
    const TestWorkspace workspace;
    const QMap<QString, QByteArray> files = workspace.files();
    const QString deep = QString(1024, QLatin1Char('[')) + QString(1024, QLatin1Char(']'));
    const Result result = run(workspace, set({controller, QStringLiteral("Settings/Mode"), deep}));
    EXPECT_EQ(result.exitCode, 2);
    expectGolden(QStringLiteral("set-too-deep"), result.err);
    EXPECT_EQ(workspace.files(), files);
}

// --- what is not there

struct Absence {
    const char* title;
    QStringList arguments;
};

void PrintTo(const Absence& row, std::ostream* stream)
{
    *stream << row.title;
}

class Absent : public testing::TestWithParam<Absence> {};

TEST_P(Absent, leaf_is_an_error_that_names_what_is_near_and_changes_nothing)
{
    const TestWorkspace workspace;
    const QMap<QString, QByteArray> files = workspace.files();
    const Result result = run(workspace, set(GetParam().arguments));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, QString());
    expectGolden(QStringLiteral("set-") + QLatin1String(GetParam().title), result.err);
    EXPECT_EQ(workspace.files(), files);
}

INSTANTIATE_TEST_SUITE_P(
    Because, Absent,
    testing::Values(
        Absence{"of_an_unknown_url", {controller, QStringLiteral("Settings/TempUnit"), fahrenheit}},
        Absence{"of_an_unknown_url_in_a_process",
                {QStringLiteral("baking"), QStringLiteral("Limits/Temp"), QStringLiteral("1"),
                 QStringLiteral("--process")}},
        Absence{"the_node_has_only_children", {controller, QStringLiteral("Settings"), fahrenheit}},
        Absence{"the_url_is_empty", {controller, QString(), fahrenheit}},
        Absence{"of_an_unknown_instance",
                {QStringLiteral("controler"), temperatureUnit, fahrenheit}},
        Absence{"the_instance_is_a_process",
                {QStringLiteral("baking"), QStringLiteral("Limits/Temperature"), fahrenheit}},
        Absence{"the_instance_is_no_process",
                {controller, temperatureUnit, fahrenheit, QStringLiteral("--process")}},
        Absence{"the_name_leads_out",
                {QStringLiteral("../process/baking"), QStringLiteral("Limits/Temperature"),
                 fahrenheit}}),
    [](const testing::TestParamInfo<Absence>& test) { return test.param.title; });

TEST(Set, without_a_workspace_is_an_error)
{
    const Result result = run(setUnit({QStringLiteral("-C"), QStringLiteral("/nowhere")}));
    EXPECT_EQ(result.exitCode, 2);
    expectGolden(QStringLiteral("set-without-a-workspace"), result.err);
}

TEST(Set, of_a_broken_source_names_the_place)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("configuration/controller.json"),
                    "{\n  \"a\": 1\n  \"b\": 2\n}");
    const Result result = run(workspace, setUnit());
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: configuration/controller.json:3:3: ")))
        << result.err.toStdString();
}

// --- nothing follows

TEST(Set, that_no_row_answers_is_no_error_and_says_so_in_one_line)
{
    const TestWorkspace workspace;
    const Result result = run(
        workspace, set({controller, QStringLiteral("Settings/Mode"), QStringLiteral("manual")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    expectGolden(QStringLiteral("set-unanswered"), result.out);
}

TEST(Set, at_an_instance_without_links_says_so_in_one_line)
{
    const TestWorkspace workspace;
    const Result result =
        run(workspace,
            set({QStringLiteral("display"), QStringLiteral("Brightness"), QStringLiteral("90")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    expectGolden(QStringLiteral("set-without-links"), result.out);
}

TEST(Set, without_any_links_file_writes_the_value)
{
    const TestWorkspace workspace;
    workspace.remove(QStringLiteral("links.json"));
    const Result result = run(workspace, setUnit());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(
        result.out.endsWith(QStringLiteral("Nothing follows: no link starts at controller.\n")));
}

TEST(Set, in_a_process_description_writes_there_and_runs_no_link)
{
    const TestWorkspace workspace;
    // A configuration of the same name has a link; it is not the one that was written.
    workspace.write(QStringLiteral("process/controller.json"),
                    R"({"Settings": {"TemperatureUnit": "K"}})");
    const QByteArray configuration =
        workspace.read(QStringLiteral("configuration/controller.json"));
    const Result result = run(workspace, setUnit({QStringLiteral("--process")}));
    EXPECT_EQ(result.exitCode, 0);
    expectGolden(QStringLiteral("set-process"), result.out);
    EXPECT_EQ(workspace.read(QStringLiteral("process/controller.json")),
              QByteArray(R"({"Settings": {"TemperatureUnit": "°F"}})"));
    EXPECT_EQ(workspace.read(QStringLiteral("configuration/controller.json")), configuration);
}

// --- links that fail

const QByteArray twoLinks = R"([
    {
        "source": "controller",
        "target": "display",
        "dependency": "%1"
    },
    {
        "source": "controller",
        "target": "baking",
        "dependency": "units",
        "process": true,
        "parameters": ["Limits", "Temperature"]
    }
]
)";

/// A workspace whose first link runs a description of its own.
class BrokenLink : public testing::Test {
protected:
    void useDescription(const QByteArray& description)
    {
        workspace.write(QStringLiteral("links.json"), QByteArray(twoLinks).replace("%1", "own"));
        workspace.write(QStringLiteral("dependency/own.json"), description);
    }

    /// The value was written and the other link ran.
    void expectOthersDone(const Result& result)
    {
        EXPECT_EQ(result.out, QStringLiteral("controller\n"
                                             "  Settings/TemperatureUnit  value  °C → °F\n"
                                             "baking (process)\n"
                                             "  Limits/Temperature        unit   °C → °F\n"
                                             "2 leaves changed in 2 instances.\n"));
        EXPECT_TRUE(workspace.read(QStringLiteral("process/baking.json")).contains("°F"));
    }

    TestWorkspace workspace;
};

TEST_F(BrokenLink, without_its_description_is_an_error_and_the_others_run)
{
    workspace.write(QStringLiteral("links.json"), QByteArray(twoLinks).replace("%1", "unit"));
    const Result result = run(workspace, setUnit());
    EXPECT_EQ(result.exitCode, 1);
    expectGolden(QStringLiteral("set-missing-description"), result.err);
    expectOthersDone(result);
}

TEST_F(BrokenLink, whose_description_is_no_json_names_file_line_and_column)
{
    useDescription("{\n    \"Units\": {\n        \"Type\": SwitchNode\n    }\n}\n");
    const Result result = run(workspace, setUnit());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: dependency/own.json:3:17: ")));
    expectGolden(QStringLiteral("set-unparsable-description"), result.err);
    expectOthersDone(result);
}

TEST_F(BrokenLink, whose_description_is_empty_is_an_error)
{
    useDescription("");
    const Result result = run(workspace, setUnit());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: dependency/own.json:1:1: ")))
        << result.err.toStdString();
    expectOthersDone(result);
}

TEST_F(BrokenLink, whose_target_is_missing_is_one_error)
{
    workspace.write(QStringLiteral("links.json"), QByteArray(twoLinks).replace("%1", "units"));
    workspace.remove(QStringLiteral("configuration/display.json"));
    const Result result = run(workspace, setUnit());
    EXPECT_EQ(result.exitCode, 1);
    expectGolden(QStringLiteral("set-missing-target"), result.err);
    expectOthersDone(result);
    EXPECT_FALSE(workspace.files().contains(QStringLiteral("configuration/display.json")));
}

TEST_F(BrokenLink, whose_description_names_an_unknown_command_is_a_warning_that_names_the_link)
{
    useDescription(R"({"Units": {"Type": "CommandNode", "Commands": {"CommandSetUnits": []}}})");
    const Result result = run(workspace, setUnit());
    EXPECT_EQ(result.exitCode, 0);
    expectGolden(QStringLiteral("set-unknown-command"), result.err);
    expectOthersDone(result);
}

TEST_F(BrokenLink, whose_entry_is_broken_is_an_error_and_the_others_run)
{
    workspace.write(QStringLiteral("links.json"), QByteArray(twoLinks).replace(R"("%1")", "5"));
    const Result result = run(workspace, setUnit());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: links.json:5:23: ")))
        << result.err.toStdString();
    expectOthersDone(result);
}

TEST(Set, with_a_links_file_that_is_no_json_writes_nothing)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("links.json"), "[\n    {\n");
    const QMap<QString, QByteArray> files = workspace.files();
    const Result result = run(workspace, setUnit());
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, QString());
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: links.json:3:1: ")))
        << result.err.toStdString();
    EXPECT_EQ(workspace.files(), files);
}

TEST(Set, sees_what_an_earlier_link_stored_in_the_same_target)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("links.json"), R"([
        {"source": "controller", "target": "display", "dependency": "units",
         "parameters": ["Oven1", "Temperature"]},
        {"source": "controller", "target": "display", "dependency": "units",
         "parameters": ["Oven1", "Pressure"]}])");
    const Result result = run(workspace, setUnit());
    EXPECT_EQ(result.exitCode, 0);
    expectGolden(QStringLiteral("set-same-target-twice"), result.out);
}

// --- quiet

TEST(Set, quiet_writes_no_data_and_does_the_work)
{
    const TestWorkspace workspace;
    const Result result = run(workspace, setUnit({QStringLiteral("--quiet")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, QString());
    EXPECT_EQ(result.err, QString());
    EXPECT_TRUE(workspace.read(QStringLiteral("configuration/display.json")).contains("°F"));
}

TEST(Set, quiet_still_writes_errors)
{
    const TestWorkspace workspace;
    const Result result =
        run(workspace,
            set({controller, QStringLiteral("nothing"), fahrenheit, QStringLiteral("--quiet")}));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: ")));
}

} // namespace
