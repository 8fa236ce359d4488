#include "Fixture.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

QStringList resolve(const QStringList& arguments)
{
    return QStringList{QStringLiteral("resolve")} + arguments;
}

/// The temperature of the display by the description "units".
QStringList resolveDisplay(const QStringList& options = {})
{
    return resolve(QStringList{QStringLiteral("controller"), QStringLiteral("display"),
                               QStringLiteral("units"), QStringLiteral("--parameter"),
                               QStringLiteral("Oven1"), QStringLiteral("--parameter"),
                               QStringLiteral("Temperature")} +
                   options);
}

/// A workspace whose controller has another unit than everything that follows it.
class Resolve : public testing::Test {
protected:
    Resolve()
    {
        const QString file = QStringLiteral("configuration/controller.json");
        workspace.write(file, workspace.read(file).replace("°C", "°F"));
    }

    TestWorkspace workspace;
};

TEST_F(Resolve, shows_what_changed)
{
    const Result result = run(workspace, resolveDisplay());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    EXPECT_EQ(result.out, QStringLiteral("display\n"
                                         "  Oven1/Temperature  unit  °C → °F\n"
                                         "1 leaf changed in 1 instance.\n"));
    EXPECT_TRUE(workspace.read(QStringLiteral("configuration/display.json")).contains("°F"));
}

TEST_F(Resolve, of_what_is_up_to_date_says_so)
{
    run(workspace, resolveDisplay());
    const QMap<QString, QByteArray> files = workspace.files();
    const Result result = run(workspace, resolveDisplay());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, QStringLiteral("Nothing changed.\n"));
    EXPECT_EQ(workspace.files(), files);
}

TEST_F(Resolve, for_a_url_that_no_row_answers_did_not_resolve)
{
    const QMap<QString, QByteArray> files = workspace.files();
    const Result result =
        run(workspace, resolveDisplay({QStringLiteral("--url"), QStringLiteral("Settings/Mode")}));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, QString());
    expectGolden(QStringLiteral("resolve-one-url"), result.err);
    EXPECT_EQ(workspace.files(), files);
}

TEST_F(Resolve, for_several_urls_needs_each_of_them)
{
    const Result result =
        run(workspace,
            resolveDisplay({QStringLiteral("--url"), QStringLiteral("Settings/Mode"),
                            QStringLiteral("--url"), QStringLiteral("Settings/TemperatureUnit")}));
    EXPECT_EQ(result.exitCode, 1);
    expectGolden(QStringLiteral("resolve-two-urls"), result.err);
}

TEST_F(Resolve, without_a_leaf_to_write_did_not_resolve)
{
    const Result result =
        run(workspace, resolve({QStringLiteral("controller"), QStringLiteral("display"),
                                QStringLiteral("units")}));
    EXPECT_EQ(result.exitCode, 1);
    expectGolden(QStringLiteral("resolve-all-urls"), result.err);
}

TEST_F(Resolve, can_have_a_process_description_as_its_target)
{
    const Result result =
        run(workspace, resolve({QStringLiteral("controller"), QStringLiteral("baking"),
                                QStringLiteral("units"), QStringLiteral("--process"),
                                QStringLiteral("--parameter"), QStringLiteral("Limits"),
                                QStringLiteral("--parameter"), QStringLiteral("Temperature")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, QStringLiteral("baking (process)\n"
                                         "  Limits/Temperature  unit  °C → °F\n"
                                         "1 leaf changed in 1 instance.\n"));
}

TEST_F(Resolve, reads_parameters_as_values)
{
    workspace.write(QStringLiteral("configuration/display.json"),
                    R"({"Oven1": {"5": {"@value": 1, "@unitType": "°C"}}})");
    const Result result =
        run(workspace, resolve({QStringLiteral("controller"), QStringLiteral("display"),
                                QStringLiteral("units"), QStringLiteral("--parameter"),
                                QStringLiteral("Oven1"), QStringLiteral("--parameter"),
                                QStringLiteral("5"), QStringLiteral("--json")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.out.contains(QStringLiteral("\"Oven1\",\n        5\n")))
        << result.out.toStdString();
}

TEST_F(Resolve, refuses_null_as_a_parameter)
{
    const Result result =
        run(workspace, resolveDisplay({QStringLiteral("--parameter"), QStringLiteral("null")}));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: VALUE: null is no value")));
}

TEST_F(Resolve, dry_run_leaves_every_byte_and_every_time_stamp)
{
    const QMap<QString, QByteArray> files = workspace.files();
    const QMap<QString, qint64> times = workspace.times();
    const Result result = run(workspace, resolveDisplay({QStringLiteral("--dry-run")}));
    EXPECT_EQ(result.out, QStringLiteral("display\n"
                                         "  Oven1/Temperature  unit  °C → °F\n"
                                         "1 leaf changed in 1 instance.\n"
                                         "Dry run: nothing was written.\n"));
    EXPECT_EQ(workspace.files(), files);
    EXPECT_EQ(workspace.times(), times);
}

TEST_F(Resolve, reports_all_names_that_are_wrong_at_once)
{
    const Result result = run(
        workspace,
        resolve({QStringLiteral("controler"), QStringLiteral("baking"), QStringLiteral("unit")}));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, QString());
    expectGolden(QStringLiteral("resolve-wrong-names"), result.err);
}

TEST_F(Resolve, says_that_a_process_description_cannot_be_a_source)
{
    const Result result = run(
        workspace,
        resolve({QStringLiteral("baking"), QStringLiteral("display"), QStringLiteral("units")}));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(
        result.err,
        QStringLiteral(
            "error: configuration/baking.json: there is no configuration instance \"baking\"\n"
            "    there is a process description of this name, but a process description\n"
            "    cannot be a source; name a configuration\n"));
}

TEST_F(Resolve, with_an_unparsable_description_names_the_place)
{
    workspace.write(QStringLiteral("dependency/units.json"), "{\n  nothing\n}");
    const Result result = run(workspace, resolveDisplay());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: dependency/units.json:2:3: ")))
        << result.err.toStdString();
}

// --- all

TEST_F(Resolve, all_runs_every_link)
{
    const Result result = run(workspace, resolve({QStringLiteral("--all")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    expectGolden(QStringLiteral("resolve-all"), result.out);
}

TEST_F(Resolve, all_names_each_link_that_failed_and_runs_the_others)
{
    workspace.write(QStringLiteral("links.json"), R"([
    {"source": "controller", "target": "display", "dependency": "units"},
    {"source": "controller", "target": "display", "dependency": "unit"},
    {"source": "controler", "target": "display", "dependency": "units"},
    {"source": "controller", "target": "baking", "dependency": "units", "process": true,
     "parameters": ["Limits", "Temperature"]}
])");
    const Result result = run(workspace, resolve({QStringLiteral("--all")}));
    EXPECT_EQ(result.exitCode, 1);
    expectGolden(QStringLiteral("resolve-all-failures"), result.err);
    EXPECT_TRUE(result.out.endsWith(QStringLiteral("1 leaf changed in 1 instance.\n"
                                                   "1 of 4 links resolved, 1 not resolved, "
                                                   "2 failed; 2 files written.\n")))
        << result.out.toStdString();
}

TEST_F(Resolve, all_fails_when_an_entry_of_the_links_is_broken)
{
    workspace.write(QStringLiteral("links.json"), R"([
    {"source": "controller", "target": "display"},
    {"source": "controller", "target": "baking", "dependency": "units", "process": true,
     "parameters": ["Limits", "Temperature"]}
])");
    const Result result = run(workspace, resolve({QStringLiteral("--all")}));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: links.json:2:5: ")))
        << result.err.toStdString();
    EXPECT_TRUE(workspace.read(QStringLiteral("process/baking.json")).contains("°F"));
}

TEST_F(Resolve, all_without_links_has_nothing_to_do)
{
    workspace.remove(QStringLiteral("links.json"));
    const Result result = run(workspace, resolve({QStringLiteral("--all")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, QStringLiteral("0 of 0 links resolved.\n"));
}

TEST_F(Resolve, all_dry_run_leaves_every_byte_and_every_time_stamp)
{
    const QMap<QString, QByteArray> files = workspace.files();
    const QMap<QString, qint64> times = workspace.times();
    const Result result =
        run(workspace, resolve({QStringLiteral("--all"), QStringLiteral("--dry-run")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.out.endsWith(QStringLiteral("2 of 2 links resolved.\n"
                                                   "Dry run: nothing was written.\n")));
    EXPECT_EQ(workspace.files(), files);
    EXPECT_EQ(workspace.times(), times);
}

// --- usage

struct Misuse {
    const char* title;
    QStringList arguments;
};

void PrintTo(const Misuse& row, std::ostream* stream)
{
    *stream << row.title;
}

class ResolveMisuse : public testing::TestWithParam<Misuse> {};

TEST_P(ResolveMisuse, is_an_error_with_a_hint)
{
    const TestWorkspace workspace;
    const Result result = run(workspace, resolve(GetParam().arguments));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, QString());
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: ")));
    EXPECT_TRUE(result.err.endsWith(QStringLiteral("\"unitflow resolve --help\" shows how\n")))
        << result.err.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Given, ResolveMisuse,
    testing::Values(
        Misuse{"nothing", {}},
        Misuse{"two_names", {QStringLiteral("controller"), QStringLiteral("display")}},
        Misuse{"all_and_a_name", {QStringLiteral("--all"), QStringLiteral("controller")}},
        Misuse{"all_and_a_url",
               {QStringLiteral("--all"), QStringLiteral("--url"), QStringLiteral("a")}},
        Misuse{"all_and_a_parameter",
               {QStringLiteral("--all"), QStringLiteral("--parameter"), QStringLiteral("a")}},
        Misuse{"all_and_process", {QStringLiteral("--all"), QStringLiteral("--process")}},
        Misuse{"no_job", {QStringLiteral("--all"), QStringLiteral("--jobs"), QStringLiteral("0")}},
        Misuse{"less_than_no_job",
               {QStringLiteral("--all"), QStringLiteral("--jobs"), QStringLiteral("-1")}},
        Misuse{"jobs_that_are_no_number",
               {QStringLiteral("--all"), QStringLiteral("--jobs"), QStringLiteral("many")}},
        Misuse{"half_a_job",
               {QStringLiteral("--all"), QStringLiteral("--jobs"), QStringLiteral("1.5")}},
        Misuse{"far_too_many_jobs",
               {QStringLiteral("--all"), QStringLiteral("--jobs"), QStringLiteral("9999999999")}},
        Misuse{"jobs_without_a_number", {QStringLiteral("--all"), QStringLiteral("--jobs")}},
        Misuse{"jobs_without_all",
               {QStringLiteral("controller"), QStringLiteral("display"), QStringLiteral("units"),
                QStringLiteral("--jobs"), QStringLiteral("2")}},
        Misuse{"a_url_without_text",
               {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"),
                QStringLiteral("--url")}}),
    [](const testing::TestParamInfo<Misuse>& test) { return test.param.title; });

TEST_F(Resolve, notes_the_time_in_the_entries_of_the_changed_instances_only)
{
    const QByteArray old = "\"2025-01-01T00:00:00.000Z\"";
    run(workspace, resolveDisplay());
    const QList<QByteArray> lines =
        workspace.read(QStringLiteral("configuration/manifest.json")).split('\n');
    ASSERT_EQ(lines.size(), 7);
    EXPECT_TRUE(lines.at(1).contains(old));  // controller
    EXPECT_FALSE(lines.at(2).contains(old)); // display
    EXPECT_TRUE(lines.at(4).contains(old));  // baking
}

TEST_F(Resolve, leaves_the_manifest_alone_when_nothing_changed)
{
    run(workspace, resolveDisplay());
    const QMap<QString, qint64> times = workspace.times();
    run(workspace, resolveDisplay());
    const QString manifest = workspace.path(QStringLiteral("configuration/manifest.json"));
    EXPECT_EQ(workspace.times().value(manifest), times.value(manifest));
}

TEST_F(Resolve, dry_run_leaves_the_manifest_alone)
{
    const QMap<QString, QByteArray> files = workspace.files();
    run(workspace, resolveDisplay({QStringLiteral("--dry-run")}));
    EXPECT_EQ(workspace.files(), files);
}

TEST_F(Resolve, with_a_manifest_that_is_no_json_is_an_error_and_keeps_what_follows)
{
    workspace.write(QStringLiteral("configuration/manifest.json"), "[");
    const Result result = run(workspace, resolveDisplay());
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: configuration/manifest.json:1:2:")))
        << result.err.toStdString();
    EXPECT_TRUE(workspace.read(QStringLiteral("configuration/display.json")).contains("°F"));
}

} // namespace
