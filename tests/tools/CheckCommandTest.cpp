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
        {QStringLiteral("runs"), QStringLiteral("columnKind results tool")},
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

TEST_F(Check, changes_no_file)
{
    const QMap<QString, qint64> times = workspace.times();
    run(workspace, check());
    EXPECT_EQ(workspace.times(), times);
}

} // namespace
