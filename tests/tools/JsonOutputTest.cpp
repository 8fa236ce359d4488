#include "Fixture.h"
#include "tools/console/Json.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <limits>
#include <ostream>

namespace {

QJsonObject object(const char* json)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString();
    return document.object();
}

QString shown(const QJsonObject& object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson());
}

QStringList asJson(const QStringList& arguments)
{
    return arguments + QStringList{QStringLiteral("--json")};
}

QStringList setUnit()
{
    return asJson({QStringLiteral("set"), QStringLiteral("controller"),
                   QStringLiteral("Settings/TemperatureUnit"), QStringLiteral("°F")});
}

/// A workspace with one link that fails, one that does not answer and one that resolves.
class JsonOutput : public testing::Test {
protected:
    JsonOutput()
    {
        workspace.write(QStringLiteral("links.json"), R"([
    {"source": "controller", "target": "display", "dependency": "broken", "parameters": [1, "a"]},
    {"source": "controller", "target": "display", "dependency": "units"},
    {"source": "controller", "target": "baking", "dependency": "units", "process": true,
     "parameters": ["Limits", "Temperature"]}
])");
        workspace.write(QStringLiteral("dependency/broken.json"), "{\n  \"N\": SwitchNode\n}\n");
        workspace.write(QStringLiteral("process/baking.json"),
                        R"({"Limits": {"Temperature": {"@value": 250}}})");
    }

    /// Adds a link by which a column of the recorder's log follows, which has no unit yet.
    QStringList resolveColumn() const
    {
        QByteArray links = workspace.read(QStringLiteral("links.json"));
        links.chop(links.size() - links.lastIndexOf(']'));
        workspace.write(QStringLiteral("links.json"), links + R"(,
    {"source": "controller", "target": "recorder", "dependency": "columns"}
])");
        workspace.write(QStringLiteral("dependency/columns.json"), columnDescription);
        workspace.write(QStringLiteral("configuration/recorder.json"), R"({"Log": {
        "@type": "array", "@value": [],
        "@arrayInformation": [{"name": "Time", "unitType": "s"}, {"name": "Temperature"}]
    }})");
        return asJson({QStringLiteral("resolve"), QStringLiteral("controller"),
                       QStringLiteral("recorder"), QStringLiteral("columns"),
                       QStringLiteral("--dry-run")});
    }

    /// Draws a description that has a mistake, for a link and with what a write ran.
    QStringList drawTrace() const
    {
        QByteArray description = workspace.read(QStringLiteral("dependency/units.json"));
        description.replace("\"Commands\": {", "\"Commands\": {\n\"CommandSetUnits\": [],");
        workspace.write(QStringLiteral("dependency/units.json"), description);
        const Result trace = run(
            workspace, asJson({QStringLiteral("explain"), QStringLiteral("controller"),
                               QStringLiteral("Settings/TemperatureUnit"), QStringLiteral("°F")}));
        workspace.write(QStringLiteral("trace.ndjson"), trace.out.toUtf8());
        return asJson({QStringLiteral("graph"), QStringLiteral("units"), QStringLiteral("--link"),
                       QStringLiteral("controller:baking"), QStringLiteral("--trace"),
                       workspace.path(QStringLiteral("trace.ndjson"))});
    }

    TestWorkspace workspace;
};

TEST_F(JsonOutput, of_set_has_every_field)
{
    const Result result = run(workspace, setUnit());
    EXPECT_EQ(result.exitCode, 1);
    const QJsonObject expected = object(R"({
        "format": "unitflow/set", "version": 1, "exitCode": 1, "dryRun": false,
        "instance": "controller", "process": false, "url": "Settings/TemperatureUnit",
        "value": "°F",
        "changes": [
            {"instance": "controller", "process": false, "url": "Settings/TemperatureUnit",
             "property": "@value", "before": "°C", "after": "°F", "columns": []},
            {"instance": "baking", "process": true, "url": "Limits/Temperature",
             "property": "@unitType", "before": null, "after": "°F", "columns": []}],
        "links": [
            {"source": "controller", "target": "display", "dependency": "broken", "process": false,
             "parameters": [1, "a"], "urls": ["Settings/TemperatureUnit"], "outcome": "failed",
             "changed": false},
            {"source": "controller", "target": "display", "dependency": "units", "process": false,
             "parameters": [], "urls": ["Settings/TemperatureUnit"], "outcome": "unresolved",
             "changed": false},
            {"source": "controller", "target": "baking", "dependency": "units", "process": true,
             "parameters": ["Limits", "Temperature"], "urls": ["Settings/TemperatureUnit"],
             "outcome": "resolved", "changed": true}],
        "problems": [
            {"severity": "error", "code": "syntax", "file": "dependency/broken.json", "line": 2,
             "column": 8, "message": "any", "advice": "any",
             "link": {"source": "controller", "target": "display", "dependency": "broken",
                      "process": false, "parameters": [1, "a"]}}]
    })");
    QJsonObject actual = result.json();
    QJsonArray problems = actual[QStringLiteral("problems")].toArray();
    ASSERT_EQ(problems.size(), 1);
    QJsonObject problem = problems[0].toObject();
    for (const QString& words : {QStringLiteral("message"), QStringLiteral("advice")}) {
        EXPECT_FALSE(problem[words].toString().isEmpty());
        problem[words] = QStringLiteral("any");
    }
    problems[0] = problem;
    actual[QStringLiteral("problems")] = problems;
    EXPECT_EQ(shown(actual), shown(expected));
}

TEST_F(JsonOutput, of_resolve_has_every_field)
{
    const Result result =
        run(workspace, asJson({QStringLiteral("resolve"), QStringLiteral("controller"),
                               QStringLiteral("baking"), QStringLiteral("units"),
                               QStringLiteral("--process"), QStringLiteral("--dry-run"),
                               QStringLiteral("--parameter"), QStringLiteral("Limits"),
                               QStringLiteral("--parameter"), QStringLiteral("Temperature")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(shown(result.json()), shown(object(R"({
        "format": "unitflow/resolve", "version": 2, "exitCode": 0, "dryRun": true, "all": false,
        "changes": [
            {"instance": "baking", "process": true, "url": "Limits/Temperature",
             "property": "@unitType", "before": null, "after": "°C", "columns": []}],
        "links": [
            {"source": "controller", "target": "baking", "dependency": "units", "process": true,
             "parameters": ["Limits", "Temperature"], "urls": [], "outcome": "resolved",
             "changed": true}],
        "summary": {"resolved": 1, "unresolved": 0, "failed": 0, "left": 0, "leaves": 1,
                    "instances": 1, "files": 0},
        "problems": []
    })")));
}

TEST_F(JsonOutput, of_a_changed_array_names_the_changed_columns)
{
    const Result result = run(workspace, resolveColumn());
    EXPECT_EQ(result.exitCode, 0);
    const QJsonArray changes = result.json()[QStringLiteral("changes")].toArray();
    ASSERT_EQ(changes.size(), 1);
    EXPECT_EQ(shown(changes[0].toObject()), shown(object(R"({
        "instance": "recorder", "process": false, "url": "Log", "property": "@arrayInformation",
        "before": [{"name": "Time", "unitType": "s"}, {"name": "Temperature"}],
        "after": [{"name": "Time", "unitType": "s"}, {"name": "Temperature", "unitType": "°C"}],
        "columns": [{"index": 1, "name": "Temperature", "before": null, "after": "°C"}]
    })")));
}

TEST_F(JsonOutput, of_sources_has_every_field)
{
    const Result result = run(workspace, asJson({QStringLiteral("sources")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(shown(result.json()), shown(object(R"({
        "format": "unitflow/sources", "version": 1, "exitCode": 0,
        "sources": [{"instance": "controller", "links": 3}],
        "problems": []
    })")));
}

TEST_F(JsonOutput, of_resolve_all_has_the_outcome_of_every_link)
{
    const Result result =
        run(workspace, asJson({QStringLiteral("resolve"), QStringLiteral("--all")}));
    EXPECT_EQ(result.exitCode, 1);
    const QJsonObject document = result.json();
    EXPECT_EQ(document[QStringLiteral("all")], QJsonValue(true));
    QStringList outcomes;
    for (const QJsonValue link : document[QStringLiteral("links")].toArray()) {
        outcomes.append(link.toObject()[QStringLiteral("outcome")].toString());
    }
    EXPECT_EQ(outcomes, (QStringList{QStringLiteral("failed"), QStringLiteral("unresolved"),
                                     QStringLiteral("resolved")}));
    EXPECT_EQ(shown(document[QStringLiteral("summary")].toObject()), shown(object(R"({
        "resolved": 1, "unresolved": 1, "failed": 1, "left": 0, "leaves": 1, "instances": 1,
        "files": 2
    })")))
        << "the files are that of the instance and the manifest";
}

TEST_F(JsonOutput, of_show_has_every_field)
{
    const Result result =
        run(workspace, asJson({QStringLiteral("show"), QStringLiteral("recorder"), QString()}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(shown(result.json()), shown(object(R"({
        "format": "unitflow/show", "version": 1, "exitCode": 0, "instance": "recorder",
        "process": false, "url": "",
        "leaves": [
            {"url": "Interval", "value": 60, "unit": "s", "type": null, "columns": []},
            {"url": "Log", "value": [[0, 20.5], [60, 181.25], [120, 182.5]], "unit": null,
             "type": "array",
             "columns": [{"name": "Time", "unit": "s"}, {"name": "Temperature", "unit": "°C"}]}],
        "problems": []
    })")));
}

TEST_F(JsonOutput, of_show_without_an_instance_has_every_field)
{
    const Result result = run(workspace, asJson({QStringLiteral("show")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(shown(result.json()), shown(object(R"({
        "format": "unitflow/workspace", "version": 1, "exitCode": 0,
        "instances": [
            {"name": "controller", "process": false, "sourceOf": 3, "targetOf": 0},
            {"name": "display", "process": false, "sourceOf": 0, "targetOf": 2},
            {"name": "recorder", "process": false, "sourceOf": 0, "targetOf": 0},
            {"name": "baking", "process": true, "sourceOf": 0, "targetOf": 1}],
        "dependencies": [{"name": "broken", "usedBy": 1}, {"name": "units", "usedBy": 2}],
        "links": [
            {"source": "controller", "target": "display", "dependency": "broken", "process": false,
             "parameters": [1, "a"]},
            {"source": "controller", "target": "display", "dependency": "units", "process": false,
             "parameters": []},
            {"source": "controller", "target": "baking", "dependency": "units", "process": true,
             "parameters": ["Limits", "Temperature"]}],
        "problems": []
    })")));
}

TEST_F(JsonOutput, of_types_has_every_field)
{
    const Result result = run(asJson(
        {QStringLiteral("types"), QStringLiteral("CommandSetUnitByConfigurationParameterArray")}));
    EXPECT_EQ(result.exitCode, 0);
    QJsonObject document = result.json();
    QJsonArray types = document[QStringLiteral("types")].toArray();
    ASSERT_EQ(types.size(), 1);
    QJsonObject type = types[0].toObject();
    EXPECT_TRUE(type.take(QStringLiteral("example")).toString().startsWith(QLatin1Char('{')));
    EXPECT_TRUE(type.take(QStringLiteral("meaning")).toString().endsWith(QLatin1Char('.')));
    QJsonArray columns;
    for (const QJsonValue entry : type[QStringLiteral("columns")].toArray()) {
        QJsonObject column = entry.toObject();
        EXPECT_FALSE(column.take(QStringLiteral("meaning")).toString().isEmpty());
        columns.append(column);
    }
    type[QStringLiteral("columns")] = columns;
    types[0] = type;
    document[QStringLiteral("types")] = types;
    EXPECT_EQ(shown(document), shown(object(R"({
        "format": "unitflow/types", "version": 1, "exitCode": 0,
        "types": [
            {"name": "CommandSetUnitByConfigurationParameterArray", "kind": "command",
             "columns": [{"name": "parameter URL", "role": "source-url"},
                         {"name": "remark", "role": "remark"},
                         {"name": "array target", "role": "target-column"}],
             "rows": [{"columns": ["parameter URL", "array target"]},
                      {"columns": ["parameter URL", "remark", "array target"]}],
             "shorterRows": "skipped", "longerRows": "skipped"}],
        "problems": []
    })")));
}

TEST_F(JsonOutput, of_init_has_every_field)
{
    const QTemporaryDir folder;
    const Result result = run({QStringLiteral("-C"), folder.path(), QStringLiteral("init"),
                               QStringLiteral("line"), QStringLiteral("--json")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(shown(result.json()), shown(object(R"({
        "format": "unitflow/init", "version": 1, "exitCode": 0, "directory": "line",
        "files": ["README.md", "configuration/controller.json", "configuration/display.json",
                  "configuration/manifest.json", "dependency/temperature-unit.json", "links.json",
                  "process/baking.json"],
        "problems": []
    })")));
}

TEST_F(JsonOutput, begins_with_its_format)
{
    const Result result = run(workspace, asJson({QStringLiteral("show")}));
    EXPECT_TRUE(result.out.startsWith(
        QStringLiteral("{\n  \"format\": \"unitflow/workspace\",\n  \"version\": 1,\n")));
    EXPECT_TRUE(result.out.endsWith(QStringLiteral("}\n")));
}

TEST_F(JsonOutput, is_written_although_the_run_is_quiet)
{
    const Result result =
        run(workspace, asJson({QStringLiteral("show"), QStringLiteral("--quiet")}));
    EXPECT_EQ(result.json()[QStringLiteral("format")].toString(),
              QStringLiteral("unitflow/workspace"));
}

TEST_F(JsonOutput, has_null_where_a_problem_has_no_place_no_advice_or_no_link)
{
    const Result result = run(workspace, asJson({QStringLiteral("set"), QStringLiteral("../x"),
                                                 QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(result.exitCode, 2);
    const QJsonObject problem = result.json()[QStringLiteral("problems")].toArray()[0].toObject();
    EXPECT_EQ(problem[QStringLiteral("code")].toString(), QStringLiteral("name"));
    for (const char* member : {"file", "line", "column", "link"}) {
        EXPECT_TRUE(problem[QLatin1String(member)].isNull()) << member;
    }
}

struct Failure {
    const char* title;
    QStringList arguments;
    QString format;
    QString folder = QStringLiteral(".");
};

void PrintTo(const Failure& row, std::ostream* stream)
{
    *stream << row.title;
}

class FailedRun : public testing::TestWithParam<Failure> {};

TEST_P(FailedRun, still_writes_a_document_with_the_problem)
{
    const TestWorkspace workspace;
    const Result result = run(QStringList{QStringLiteral("-C"), workspace.path(GetParam().folder)} +
                              asJson(GetParam().arguments));
    EXPECT_EQ(result.exitCode, 2);
    const QJsonObject document = result.json();
    EXPECT_EQ(document[QStringLiteral("format")].toString(), GetParam().format);
    EXPECT_EQ(document[QStringLiteral("exitCode")], QJsonValue(2));
    EXPECT_EQ(document[QStringLiteral("problems")].toArray().size(), 1);
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: ")));
}

INSTANTIATE_TEST_SUITE_P(
    Of, FailedRun,
    testing::Values(Failure{"set",
                            {QStringLiteral("set"), QStringLiteral("controller"),
                             QStringLiteral("no"), QStringLiteral("1")},
                            QStringLiteral("unitflow/set")},
                    Failure{"set_without_a_value",
                            {QStringLiteral("set"), QStringLiteral("controller"),
                             QStringLiteral("Settings/Mode"), QStringLiteral("null")},
                            QStringLiteral("unitflow/set")},
                    Failure{"resolve",
                            {QStringLiteral("resolve"), QStringLiteral("controller"),
                             QStringLiteral("display"), QStringLiteral("no")},
                            QStringLiteral("unitflow/resolve")},
                    Failure{"show",
                            {QStringLiteral("show"), QStringLiteral("no")},
                            QStringLiteral("unitflow/show")},
                    Failure{"show_without_a_workspace",
                            {QStringLiteral("show")},
                            QStringLiteral("unitflow/workspace"),
                            QStringLiteral("nowhere")},
                    Failure{"init",
                            {QStringLiteral("init"), QStringLiteral("process")},
                            QStringLiteral("unitflow/init")}),
    [](const testing::TestParamInfo<Failure>& test) { return test.param.title; });

TEST(JsonText, keeps_the_kind_of_a_number)
{
    EXPECT_EQ(tools::toJsonText(2), QStringLiteral("2"));
    EXPECT_EQ(tools::toJsonText(2.0), QStringLiteral("2.0"));
    EXPECT_EQ(tools::toJsonText(std::numeric_limits<qulonglong>::max()),
              QStringLiteral("18446744073709551615"));
    EXPECT_EQ(tools::toJsonText(std::numeric_limits<qlonglong>::min()),
              QStringLiteral("-9223372036854775808"));
}

TEST(JsonText, is_null_for_what_json_cannot_say)
{
    EXPECT_EQ(tools::toJsonText({}), QStringLiteral("null"));
    EXPECT_EQ(tools::toJsonText(std::numeric_limits<double>::infinity()), QStringLiteral("null"));
}

// --- the document about it

/// The members of a document as docs/json-output.md spells them. What may hold any value is not
/// looked into.
void addFields(const QJsonValue& value, const QString& path, QSet<QString>& fields)
{
    static const QSet<QString> anyValue{QStringLiteral("value"),      QStringLiteral("before"),
                                        QStringLiteral("after"),      QStringLiteral("unit"),
                                        QStringLiteral("parameters"), QStringLiteral("schema"),
                                        QStringLiteral("nearest")};
    if (value.isArray()) {
        for (const QJsonValue item : value.toArray()) {
            addFields(item, path + QStringLiteral("[]"), fields);
        }
        return;
    }
    const QJsonObject members = value.toObject();
    for (auto member = members.begin(); member != members.end(); ++member) {
        const QString field =
            path.isEmpty() ? member.key() : path + QLatin1Char('.') + member.key();
        fields.insert(field);
        if (!anyValue.contains(member.key())) {
            addFields(member.value(), field, fields);
        }
    }
}

/// The fields in the tables of a document by the headings that they stand under.
QMap<QString, QSet<QString>> documentedFields()
{
    QFile file(QStringLiteral(UNITFLOW_DOCS_FOLDER "/json-output.md"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QRegularExpression row(QStringLiteral("^\\| `([^`]+)` \\| [^|]+ \\| [^|]+ \\|$"));
    QMap<QString, QSet<QString>> fields;
    QString heading;
    for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("## "))) {
            heading = line.mid(3);
        }
        const QRegularExpressionMatch match = row.match(line);
        if (match.hasMatch()) {
            fields[heading].insert(match.captured(1));
        }
    }
    return fields;
}

TEST_F(JsonOutput, has_exactly_the_fields_that_are_documented)
{
    const QMap<QString, QSet<QString>> documented = documentedFields();
    const QSet<QString> common = documented[QStringLiteral("Every document")];
    const QSet<QString> runs =
        documented[QStringLiteral("Changes")] + documented[QStringLiteral("Links that were run")];
    ASSERT_FALSE(common.isEmpty());
    ASSERT_FALSE(runs.isEmpty());

    const QTemporaryDir folder;
    const QList<QStringList> commands{
        resolveColumn(),
        asJson({QStringLiteral("resolve"), QStringLiteral("--all"), QStringLiteral("--dry-run")}),
        setUnit(),
        asJson({QStringLiteral("resolve"), QStringLiteral("controller"), QStringLiteral("display"),
                QStringLiteral("units"), QStringLiteral("--url"), QStringLiteral("Settings/Mode")}),
        asJson({QStringLiteral("show"), QStringLiteral("recorder")}),
        asJson({QStringLiteral("show")}),
        asJson({QStringLiteral("sources")}),
        asJson({QStringLiteral("why"), QStringLiteral("recorder"), QStringLiteral("Log")}),
        asJson({QStringLiteral("why"), QStringLiteral("display"),
                QStringLiteral("Oven1/Temperature")}),
        asJson({QStringLiteral("types")}),
        asJson({QStringLiteral("schema")}),
        asJson({QStringLiteral("check")}),
        drawTrace(),
        asJson({QStringLiteral("init"), folder.filePath(QStringLiteral("line"))})};

    QMap<QString, QSet<QString>> found;
    for (const QStringList& command : commands) {
        const QJsonObject document = run(workspace, command).json();
        addFields(document, {}, found[document[QStringLiteral("format")].toString()]);
    }

    EXPECT_EQ(found.size(), 11);
    QSet<QString> foundCommon;
    for (auto format = found.begin(); format != found.end(); ++format) {
        QSet<QString> expected = documented.value(format.key());
        if (format.value().contains(QStringLiteral("changes"))) {
            expected += runs;
        }
        foundCommon += format.value() & common;
        EXPECT_EQ(format.value() - common, expected) << format.key().toStdString();
    }
    EXPECT_EQ(foundCommon, common);
}

} // namespace
