#include "Fixture.h"
#include "GeneratedWorkspace.h"
#include "tools/console/Text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QSet>
#include <gtest/gtest.h>

#include <functional>

namespace {

QStringList check(const QStringList& arguments = {})
{
    return QStringList{QStringLiteral("check")} + arguments;
}

/// A workspace with an error, a warning and a note, far to the right and beside wide characters.
class Check : public testing::Test {
protected:
    Check()
    {
        workspace.write(QStringLiteral("dependency/units.json"), R"({
    "Units": {
        "Type": "SwitchNode",
        "Next": {
            "温度": { "Type": "CommandNode", "ConditionWriteOnUrls": [["Settings/Mode"]], "Commands": {
                "CommandSetUnitProperties": [["Oven1/Temperature", "K", "a remark", "one too many"],
	["Oven1/Presure", "bar"]],
                "CommandSetUnitPropertiesRegExp": [["^Settings/(?<名>Mode)$", "Oven1/Pressure", "bar"]]
            } }
        }
    }
}
)");
        workspace.write(
            QStringLiteral("links.json"),
            R"([{"source": "controller", "target": "display", "dependency": "units"}])");
    }

    TestWorkspace workspace;
};

TEST_F(Check, shows_each_finding_at_its_line_in_eighty_columns)
{
    const Result result = run(workspace, check());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, QString());
    for (const QString& line : result.out.split(QLatin1Char('\n'))) {
        EXPECT_LE(tools::displayWidth(line), 80) << line.toStdString();
    }
    expectGolden(QStringLiteral("check"), result.out);
}

TEST_F(Check, finds_nothing_in_a_workspace_without_mistakes)
{
    const TestWorkspace generated;
    writeLargeWorkspace(generated, {200, 10, 100});
    generated.write(QStringLiteral("units.json"), R"({ "old": null, "new": "2 old" })");
    const Result result =
        run(generated, check({QStringLiteral("--fail-on"), QStringLiteral("note")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.out.startsWith(QLatin1String("Nothing found in ")))
        << result.out.toStdString();
}

TEST_F(Check, fails_on_the_severity_that_is_asked_for)
{
    const QString units =
        QString::fromUtf8(workspace.read(QStringLiteral("dependency/units.json")));
    const auto exitCode = [&](const char* severity) {
        return run(workspace, check({QStringLiteral("--fail-on"), QLatin1String(severity)}))
            .exitCode;
    };
    QString warning = units;
    warning.replace(QStringLiteral("Presure"), QStringLiteral("Pressure"));
    workspace.write(QStringLiteral("dependency/units.json"), warning.toUtf8());
    EXPECT_EQ(exitCode("error"), 0);
    EXPECT_EQ(exitCode("warning"), 1);
    QString note = warning;
    note.replace(QStringLiteral(", \"one too many\""), QString());
    workspace.write(QStringLiteral("dependency/units.json"), note.toUtf8());
    EXPECT_EQ(exitCode("warning"), 0);
    EXPECT_EQ(exitCode("note"), 1);
}

TEST_F(Check, tells_what_is_wrong_with_the_units_of_the_workspace)
{
    workspace.write(QStringLiteral("units.json"), "{\n  \"box\": \"24 pcs\"\n}\n");
    const Result result = run(workspace, check());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.contains(QLatin1String("error: units.json:2:10 [bad-unit]")))
        << result.out.toStdString();
}

TEST_F(Check, takes_a_file_a_name_or_a_file_of_no_workspace)
{
    workspace.write(QStringLiteral("other.json"), "{\"N\": {}}");
    const auto codes = [&](const QString& file) {
        QStringList found;
        for (const QJsonValue finding :
             run(workspace, check({file, QStringLiteral("--json")})).json()["findings"].toArray()) {
            found.append(finding[QStringLiteral("code")].toString());
        }
        return found;
    };
    const QStringList all{QStringLiteral("row-truncated"), QStringLiteral("unknown-target-url"),
                          QStringLiteral("unused-group")};
    EXPECT_EQ(codes(QStringLiteral("units")), all);
    EXPECT_EQ(codes(QStringLiteral("dependency/units.json")), all);
    EXPECT_EQ(codes(workspace.path(QStringLiteral("dependency/units.json"))), all);
    EXPECT_EQ(codes(workspace.path(QStringLiteral("other.json"))),
              QStringList{QStringLiteral("missing-type")});
}

TEST_F(Check, cannot_check_what_is_not_there)
{
    const Result result = run(workspace, check({QStringLiteral("unit")}));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.err.contains(QLatin1String("\"units\""))) << result.err.toStdString();
    EXPECT_EQ(run(check()).exitCode, 2) << "there is no workspace";
}

TEST_F(Check, tells_syntax_errors_and_goes_on_with_the_other_files)
{
    workspace.write(QStringLiteral("dependency/broken.json"), "{\n  \"N\": SwitchNode\n}\n");
    const QJsonArray findings =
        run(workspace, check({QStringLiteral("--format"), QStringLiteral("json")}))
            .json()[QStringLiteral("findings")]
            .toArray();
    ASSERT_EQ(findings.size(), 4);
    EXPECT_EQ(findings.first()[QStringLiteral("code")].toString(), QStringLiteral("syntax"));
    EXPECT_EQ(findings.first()[QStringLiteral("line")].toInt(), 2);
    EXPECT_EQ(findings.first()[QStringLiteral("column")].toInt(), 8);
}

TEST_F(Check, writes_commands_for_a_workflow)
{
    const Result result =
        run(workspace, check({QStringLiteral("--format"), QStringLiteral("github")}));
    EXPECT_EQ(result.exitCode, 1);
    const QStringList lines = result.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines.at(0).startsWith(QLatin1String("::warning file=")));
    EXPECT_TRUE(
        lines.at(0).contains(QLatin1String(",line=6,col=46,endColumn=100,title=row-truncated::")))
        << lines.at(0).toStdString();
    EXPECT_TRUE(lines.at(1).startsWith(QLatin1String("::error file=")));
    EXPECT_TRUE(lines.at(2).startsWith(QLatin1String("::notice file=")));
}

/// What SARIF 2.1.0 requires of the members that are written.
TEST_F(Check, writes_sarif_as_its_readers_want_it)
{
    const Result result =
        run(workspace, check({QStringLiteral("--format"), QStringLiteral("sarif")}));
    EXPECT_EQ(result.exitCode, 1);
    const QJsonObject sarif = result.json();
    EXPECT_EQ(sarif[QStringLiteral("version")], QStringLiteral("2.1.0"));
    ASSERT_EQ(sarif[QStringLiteral("runs")].toArray().size(), 1);
    const QJsonObject only = sarif[QStringLiteral("runs")].toArray().first().toObject();
    EXPECT_EQ(only[QStringLiteral("columnKind")], QStringLiteral("unicodeCodePoints"));
    const QJsonObject driver =
        only[QStringLiteral("tool")].toObject()[QStringLiteral("driver")].toObject();
    EXPECT_EQ(driver[QStringLiteral("name")], QStringLiteral("unitflow"));

    const QSet<QString> levels{QStringLiteral("error"), QStringLiteral("warning"),
                               QStringLiteral("note")};
    QSet<QString> rules;
    for (const QJsonValue rule : driver[QStringLiteral("rules")].toArray()) {
        rules.insert(rule[QStringLiteral("id")].toString());
        for (const char* text : {"shortDescription", "fullDescription", "help"}) {
            EXPECT_FALSE(rule[QLatin1String(text)][QStringLiteral("text")].toString().isEmpty());
        }
        EXPECT_TRUE(levels.contains(
            rule[QStringLiteral("defaultConfiguration")][QStringLiteral("level")].toString()));
    }
    const QJsonArray results = only[QStringLiteral("results")].toArray();
    ASSERT_EQ(results.size(), 3);
    for (const QJsonValue found : results) {
        EXPECT_TRUE(rules.contains(found[QStringLiteral("ruleId")].toString()));
        EXPECT_TRUE(levels.contains(found[QStringLiteral("level")].toString()));
        EXPECT_FALSE(found[QStringLiteral("message")][QStringLiteral("text")].toString().isEmpty());
        const QJsonValue location = found[QStringLiteral("locations")]
                                        .toArray()
                                        .first()[QStringLiteral("physicalLocation")];
        EXPECT_TRUE(
            location[QStringLiteral("artifactLocation")][QStringLiteral("uri")].toString().endsWith(
                QLatin1String("dependency/units.json")));
        const QJsonValue region = location[QStringLiteral("region")];
        EXPECT_GE(region[QStringLiteral("startLine")].toInt(), 1);
        EXPECT_GE(region[QStringLiteral("startColumn")].toInt(), 1);
        EXPECT_GT(region[QStringLiteral("endColumn")].toInt(),
                  region[QStringLiteral("startColumn")].toInt());
    }
}

/// Readers refuse members that SARIF 2.1.0 does not have: it lists those of each object.
TEST_F(Check, writes_no_member_that_sarif_does_not_have)
{
    const QMap<QString, QString> known{
        {{}, QStringLiteral("$schema version runs")},
        {QStringLiteral("runs"), QStringLiteral("columnKind invocations results tool")},
        {QStringLiteral("invocations"),
         QStringLiteral("executionSuccessful toolExecutionNotifications")},
        {QStringLiteral("toolExecutionNotifications"), QStringLiteral("level locations message")},
        {QStringLiteral("tool"), QStringLiteral("driver")},
        {QStringLiteral("driver"), QStringLiteral("informationUri name rules version")},
        {QStringLiteral("rules"), QStringLiteral("defaultConfiguration fullDescription help "
                                                 "helpUri id shortDescription")},
        {QStringLiteral("defaultConfiguration"), QStringLiteral("level")},
        {QStringLiteral("fullDescription"), QStringLiteral("markdown text")},
        {QStringLiteral("shortDescription"), QStringLiteral("markdown text")},
        {QStringLiteral("help"), QStringLiteral("markdown text")},
        {QStringLiteral("results"), QStringLiteral("level locations message ruleId ruleIndex")},
        {QStringLiteral("message"), QStringLiteral("markdown text")},
        {QStringLiteral("locations"), QStringLiteral("logicalLocations physicalLocation")},
        {QStringLiteral("logicalLocations"), QStringLiteral("fullyQualifiedName")},
        {QStringLiteral("physicalLocation"), QStringLiteral("artifactLocation region")},
        {QStringLiteral("artifactLocation"), QStringLiteral("uri")},
        {QStringLiteral("region"), QStringLiteral("endColumn endLine startColumn startLine")},
    };
    QSet<QString> met;
    const std::function<void(const QString&, const QJsonValue&)> visit =
        [&](const QString& name, const QJsonValue& value) {
            for (const QJsonValue element : value.toArray()) {
                visit(name, element);
            }
            const QJsonObject object = value.toObject();
            const QStringList members = known.value(name).split(QLatin1Char(' '));
            for (auto member = object.begin(); member != object.end(); ++member) {
                EXPECT_TRUE(members.contains(member.key()))
                    << name.toStdString() << " has " << member.key().toStdString();
                met.insert(name);
                visit(member.key(), member.value());
            }
        };
    workspace.write(QStringLiteral("configuration/broken.json"), "{");
    workspace.write(QStringLiteral("links.json"),
                    R"([{"source": "controller", "target": "display", "dependency": "units"},
{"source": "broken", "target": "display", "dependency": "units"}])");
    visit({}, run(workspace, check({QStringLiteral("--format"), QStringLiteral("sarif")})).json());
    EXPECT_EQ(met.size(), known.size());
}

TEST_F(Check, explains_a_code)
{
    const Result result = run(check({QStringLiteral("--explain"), QStringLiteral("row-fatal")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.out.startsWith(QLatin1String("## row-fatal\n")));
    const Result unknown = run(check({QStringLiteral("--explain"), QStringLiteral("row-fetal")}));
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_TRUE(unknown.err.contains(QLatin1String("\"row-fatal\"")));
}

TEST_F(Check, tells_of_a_description_what_its_links_and_the_units_have_wrong)
{
    workspace.write(QStringLiteral("links.json"),
                    R"([{"source": "controler", "target": "display", "dependency": "units"},
{"source": "none", "target": "display", "dependency": "other"},
{"source": "controller", "dependency": "units"}])");
    workspace.write(QStringLiteral("units.json"), "{ \"box\": \"24 pcs\" }");
    const Result result = run(workspace, check({QStringLiteral("units")}));
    EXPECT_EQ(result.exitCode, 1);
    for (const char* place : {"links.json:1:13 [missing-file]", "links.json:3:1 [bad-link]",
                              "units.json:1:10 [bad-unit]"}) {
        EXPECT_TRUE(result.out.contains(QLatin1String(place))) << result.out.toStdString();
    }
    EXPECT_FALSE(result.out.contains(QLatin1String("links.json:2:"))) << "this is of another one";

    workspace.write(QStringLiteral("links.json"), "[{]");
    const Result broken = run(workspace, check({QStringLiteral("units")}));
    EXPECT_EQ(broken.exitCode, 1);
    EXPECT_TRUE(broken.out.contains(QLatin1String("links.json:1:3 [syntax]")))
        << broken.out.toStdString();
}

TEST_F(Check, judges_each_file_as_what_it_is_and_once)
{
    workspace.write(QStringLiteral("units.json"), "{ \"box\": \"24 pcs\" }");
    const auto checked = [&](const QStringList& files) {
        return run(workspace, check(files + QStringList{QStringLiteral("--json")}));
    };
    const Result links = checked({QStringLiteral("links.json")});
    EXPECT_EQ(links.exitCode, 0) << links.out.toStdString();
    const Result units = checked({QStringLiteral("units.json")});
    EXPECT_EQ(units.json()[QStringLiteral("findings")]
                  .toArray()
                  .first()[QStringLiteral("code")]
                  .toString(),
              QStringLiteral("bad-unit"));
    const Result instance = run(workspace, check({QStringLiteral("configuration/display.json")}));
    EXPECT_EQ(instance.exitCode, 2);
    EXPECT_TRUE(instance.err.contains(QLatin1String("is an instance")))
        << instance.err.toStdString();
    const Result twice = checked({QStringLiteral("links.json"), QStringLiteral("./links.json")});
    EXPECT_EQ(twice.json()[QStringLiteral("files")].toArray().size(), 1);
    const Result empty = run(workspace, check({QString()}));
    EXPECT_EQ(empty.exitCode, 2);
    EXPECT_TRUE(empty.err.contains(QLatin1String("FILE is empty"))) << empty.err.toStdString();
}

TEST_F(Check, tells_in_each_format_what_could_not_be_read)
{
    workspace.write(QStringLiteral("configuration/display.json"), "{");
    const auto result = [&](const char* format) {
        return run(workspace, check({QStringLiteral("--format"), QLatin1String(format)}));
    };
    EXPECT_EQ(result("github").exitCode, 2);
    EXPECT_TRUE(result("github").out.contains(QLatin1String("configuration/display.json,line=1")))
        << result("github").out.toStdString();
    const QJsonObject invocation = result("sarif")
                                       .json()[QStringLiteral("runs")]
                                       .toArray()
                                       .first()[QStringLiteral("invocations")]
                                       .toArray()
                                       .first()
                                       .toObject();
    EXPECT_EQ(invocation[QStringLiteral("executionSuccessful")], false);
    EXPECT_EQ(invocation[QStringLiteral("toolExecutionNotifications")].toArray().size(), 1);

    workspace.write(QStringLiteral("dependency/units.json"),
                    R"({"N": {"Type": "CommandNode", "Commands":
{"CommandSetUnitProperties": [["X", "m"]]}}})");
    const QString summary = result("human").out;
    EXPECT_FALSE(summary.contains(QLatin1String("Nothing found")));
    EXPECT_TRUE(summary.endsWith(QLatin1String(", but not everything could be read.\n")))
        << summary.toStdString();
}

TEST_F(Check, shows_lines_that_end_in_two_characters_without_the_first)
{
    const QByteArray units = workspace.read(QStringLiteral("dependency/units.json"));
    workspace.write(QStringLiteral("dependency/units.json"),
                    QByteArray(units).replace("\n", "\r\n"));
    const Result result = run(workspace, check());
    EXPECT_FALSE(result.out.contains(QLatin1String("000d"))) << result.out.toStdString();
    workspace.write(QStringLiteral("dependency/units.json"), units);
    EXPECT_EQ(result.out, run(workspace, check()).out);
}

TEST_F(Check, leaves_notes_out_when_it_is_to_be_quiet)
{
    const Result result = run(workspace, check({QStringLiteral("--quiet")}));
    EXPECT_TRUE(result.out.contains(QLatin1String("error: ")));
    EXPECT_TRUE(result.out.contains(QLatin1String("warning: ")));
    EXPECT_FALSE(result.out.contains(QLatin1String("note: "))) << result.out.toStdString();
}

TEST_F(Check, changes_no_file)
{
    const QMap<QString, qint64> times = workspace.times();
    run(workspace, check());
    EXPECT_EQ(workspace.times(), times);
}

} // namespace
