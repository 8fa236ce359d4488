#include "Fixture.h"
#include "tools/Program.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QSet>
#include <QStandardPaths>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

#include <ostream>
#include <sstream>

namespace {

/// Among others: names that mean something in one of the forms, and a node that nothing reaches.
const char* const hostileDescription = R"json({
    "say \"hi\"": {
        "Type": "SwitchNode",
        "Next": {
            "a]|}b": {
                "Type": "CommandNode",
                "ConditionWriteOnUrls": [["--> end"], ["a\\nb\\N"], ["&lt;x&gt; & %%{"], [""]],
                "Commands": {
                    "CommandSetUnitProperties": [
                        ["<script>alert(1)</script>", "\\"], ["%1 %2", "`x`"], ["new\nline", "#quot;"]
                    ]
                }
            },
            "end": {
                "Type": "CommandNode",
                "ConditionWriteOnUrlsRegExp": [["^\\w+\\\\$"]]
            },
            "": {
                "Type": "SwitchNode",
                "Next": {
                    "\u202Eevil": {
                        "Type": "CommandNode",
                        "ConditionValueComparator": [["Ä/ö", "==", "日本"]]
                    }
                }
            },
            "class n1 url;\\": { "Type": "Nothing" }
        }
    }
}
)json";

/// The oven line of the examples.
class GraphTest : public testing::Test {
protected:
    GraphTest()
    {
        const QDir ovenLine(QStringLiteral(UNITFLOW_EXAMPLES_FOLDER "/oven-line"));
        QDirIterator files(ovenLine.path(), QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            workspace.write(ovenLine.relativeFilePath(file.fileName()), file.readAll());
        }
        workspace.remove(QStringLiteral("dependency/units.json"));
    }

    Result graph(const QStringList& arguments) const
    {
        return run(workspace, QStringList{QStringLiteral("graph")} + arguments);
    }

    Result graph(const QString& description, const QString& format,
                 const QStringList& more = {}) const
    {
        return graph(QStringList{description, QStringLiteral("--format"), format} + more);
    }

    /// Keeps the trace of a write of the controller.
    QString explained(const QString& url, const QString& value) const
    {
        const Result result =
            run(workspace, {QStringLiteral("explain"), QStringLiteral("controller"), url, value,
                            QStringLiteral("--json")});
        workspace.write(QStringLiteral("trace.ndjson"), result.out.toUtf8());
        return workspace.path(QStringLiteral("trace.ndjson"));
    }

    void addHostile() const
    {
        workspace.write(QStringLiteral("dependency/hostile.json"), hostileDescription);
    }

    TestWorkspace workspace;
};

const QString displayUnits = QStringLiteral("display-units");

QStringList descriptions()
{
    return {QStringLiteral("air-total"),     QStringLiteral("chamber-log"),
            QStringLiteral("display-units"), QStringLiteral("process-units"),
            QStringLiteral("recorder-card"), QStringLiteral("zone-inputs")};
}

bool hasGraphviz()
{
    return !QStandardPaths::findExecutable(QStringLiteral("dot")).isEmpty();
}

/// Lets no program be found as long as it lives.
class NoPrograms {
public:
    NoPrograms() : path(qgetenv("PATH")) { qputenv("PATH", "/nowhere"); }
    ~NoPrograms() { qputenv("PATH", path); }
    NoPrograms(const NoPrograms&) = delete;
    NoPrograms& operator=(const NoPrograms&) = delete;

private:
    const QByteArray path;
};

/// The node, edge, ... of that id in a list of a document.
QJsonObject item(const QJsonObject& document, const char* list, const QString& key,
                 const QString& value)
{
    for (const QJsonValue each : document[QLatin1String(list)].toArray()) {
        if (each.toObject()[key].toString() == value) {
            return each.toObject();
        }
    }
    ADD_FAILURE() << "no " << value.toStdString();
    return {};
}

QStringList texts(const QJsonValue& list)
{
    QStringList all;
    for (const QJsonValue each : list.toArray()) {
        all.append(each.toString());
    }
    return all;
}

/// The line of a form that begins like this, without the blanks before it.
QString lineOf(const QString& text, const QString& beginning)
{
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        if (line.trimmed().startsWith(beginning)) {
            return line.trimmed();
        }
    }
    ADD_FAILURE() << "no line " << beginning.toStdString();
    return {};
}

// --- the forms

TEST_F(GraphTest, is_one_path_in_a_line_unless_another_form_is_asked_for)
{
    const Result result = graph(QStringList{displayUnits});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    EXPECT_EQ(result.out, QStringLiteral("Written->Mode->Calibration\n"
                                         "Written->Mode->Production\n"));
}

TEST_F(GraphTest, of_each_example_has_every_form)
{
    for (const QString& description : descriptions()) {
        for (const char* format : {"text", "dot", "mermaid", "json"}) {
            const Result result = graph(description, QLatin1String(format));
            EXPECT_EQ(result.exitCode, 0);
            EXPECT_EQ(result.err, QString());
            expectGolden(QStringLiteral("graph-%1-%2").arg(description, QLatin1String(format)),
                         result.out);
        }
    }
}

TEST_F(GraphTest, is_the_same_each_time)
{
    addHostile();
    for (const char* format : {"text", "dot", "mermaid", "json"}) {
        const Result first = graph(QStringLiteral("hostile"), QLatin1String(format));
        EXPECT_EQ(first.out, graph(QStringLiteral("hostile"), QLatin1String(format)).out);
    }
}

TEST_F(GraphTest, json_is_what_the_option_of_all_commands_asks_for)
{
    EXPECT_EQ(graph({displayUnits, QStringLiteral("--json")}).out,
              graph(displayUnits, QStringLiteral("json")).out);
}

TEST_F(GraphTest, says_what_each_write_may_run)
{
    const QJsonObject document =
        graph(QStringLiteral("process-units"), QStringLiteral("json")).json();
    const QJsonObject write =
        item(document, "writes", QStringLiteral("text"), QStringLiteral("Settings/PressureUnit"));
    QStringList names;
    for (const QString& id : texts(write[QStringLiteral("nodes")])) {
        names.append(
            item(document, "nodes", QStringLiteral("id"), id)[QStringLiteral("name")].toString());
    }
    EXPECT_EQ(names, (QStringList{QStringLiteral("Units"), QStringLiteral("Pressure"),
                                  QStringLiteral("Belt")}));
    EXPECT_EQ(texts(write[QStringLiteral("edges")]).size(), 1);
}

TEST_F(GraphTest, has_a_node_in_front_of_what_runs_with_every_write)
{
    const QString dot = graph(QStringLiteral("process-units"), QStringLiteral("dot")).out;
    EXPECT_TRUE(dot.contains(QLatin1String("class=\"entry every\"")));
    EXPECT_FALSE(
        graph(displayUnits, QStringLiteral("dot")).out.contains(QLatin1String("every write")));
}

TEST_F(GraphTest, says_to_which_column_each_cell_belongs)
{
    const QJsonArray rows =
        item(graph(QStringLiteral("chamber-log"), QStringLiteral("json")).json(), "nodes",
             QStringLiteral("name"), QStringLiteral("ChamberLog"))[QStringLiteral("commands")]
            .toArray()[0]
            .toObject()[QStringLiteral("rows")]
            .toArray();
    EXPECT_EQ(rows[0].toObject()[QStringLiteral("layout")].toArray(), (QJsonArray{0, 2}));
    EXPECT_EQ(rows[1].toObject()[QStringLiteral("layout")].toArray(), (QJsonArray{0, 1, 2}));
}

TEST_F(GraphTest, says_by_which_entries_each_write_starts)
{
    workspace.write(QStringLiteral("dependency/entries.json"), R"({
    "Url": {"Type": "SwitchNode", "Next": {
        "U": {"Type": "CommandNode", "ConditionWriteOnUrls": [["Settings/FlowUnit"]]}}},
    "Pattern": {"Type": "SwitchNode", "Next": {
        "P": {"Type": "CommandNode", "ConditionWriteOnUrlsRegExp": [["^Settings/F"]]},
        "Q": {"Type": "CommandNode", "ConditionWriteOnUrlsRegExp": [["^Zones/"]]}}},
    "Always": {"Type": "CommandNode"}
})");
    workspace.write(QStringLiteral("links.json"),
                    R"([{"source": "controller", "target": "display", "dependency": "entries"}])");
    const QJsonObject document = graph(QStringLiteral("entries"), QStringLiteral("json"),
                                       {QStringLiteral("--link"), QStringLiteral("1")})
                                     .json();
    const auto entries = [&](const char* write) {
        return texts(item(document, "writes", QStringLiteral("text"),
                          QLatin1String(write))[QStringLiteral("entries")])
            .join(QLatin1Char(' '));
    };
    EXPECT_EQ(entries("Settings/FlowUnit"), QStringLiteral("w1 w2 w4"));
    EXPECT_EQ(entries("^Settings/F"), QStringLiteral("w2 w4"));
    EXPECT_EQ(entries("Zones/Cure/Signal"), QStringLiteral("w3 w4"));
}

TEST_F(GraphTest, of_a_description_without_nodes_says_so)
{
    workspace.write(QStringLiteral("dependency/nothing.json"), "{}");
    const Result result = graph({QStringLiteral("nothing")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, QString());
    EXPECT_EQ(result.err, QStringLiteral("There is no node in dependency/nothing.json.\n"));
}

// --- mistakes in the description

TEST_F(GraphTest, draws_dashed_what_no_write_gets_to)
{
    workspace.write(QStringLiteral("dependency/mistakes.json"), R"({
    "Top": {
        "Type": "SwitchNode",
        "Next": {
            "First": {
                "Type": "SwitchNode",
                "ConditionWriteOnUrls": [["Settings/A"]],
                "Next": {
                    "Both": { "Type": "CommandNode", "ConditionWriteOnUrls": [["Settings/B"]],
                              "Commands": { "CommandSetUnitProperties": [["A", "m"], ["B"]] } }
                }
            }
        }
    }
})");
    const QString mistakes = QStringLiteral("mistakes");
    const QJsonObject document = graph(mistakes, QStringLiteral("json")).json();
    const QString name = QStringLiteral("name");
    EXPECT_TRUE(item(document, "nodes", name, QStringLiteral("First"))[QStringLiteral("reachable")]
                    .toBool());
    const QJsonObject both = item(document, "nodes", name, QStringLiteral("Both"));
    EXPECT_FALSE(both[QStringLiteral("reachable")].toBool());
    const QJsonObject finding = both[QStringLiteral("findings")].toArray()[0].toObject();
    EXPECT_EQ(finding[QStringLiteral("code")].toString(), QStringLiteral("row-fatal"));
    const QJsonObject row = both[QStringLiteral("commands")]
                                .toArray()[0]
                                .toObject()[QStringLiteral("rows")]
                                .toArray()[1]
                                .toObject();
    EXPECT_FALSE(row[QStringLiteral("counts")].toBool());
    EXPECT_TRUE(row[QStringLiteral("note")].toString().contains(QLatin1String("1 cell")));

    const Result dot = graph(mistakes, QStringLiteral("dot"));
    EXPECT_TRUE(lineOf(dot.out, QStringLiteral("n3 ["))
                    .contains(QLatin1String("class=\"command unreachable\"")));
    EXPECT_TRUE(lineOf(dot.out, QStringLiteral("n3 [")).contains(QLatin1String("dashed")));
    EXPECT_TRUE(lineOf(dot.out, QStringLiteral("n2 -> n3")).contains(QLatin1String("dashed")));
    EXPECT_FALSE(lineOf(dot.out, QStringLiteral("n1 -> n2")).contains(QLatin1String("dashed")));
    EXPECT_EQ(dot.err, QStringLiteral("1 mistake is in it; \"unitflow check "
                                      "dependency/mistakes.json\" tells more.\n"));
    EXPECT_EQ(graph(mistakes, QStringLiteral("dot"), {QStringLiteral("--quiet")}).err, QString());

    const QString mermaid = graph(mistakes, QStringLiteral("mermaid")).out;
    EXPECT_TRUE(mermaid.contains(QLatin1String("class n3 unreachable")));
    EXPECT_TRUE(mermaid.contains(QLatin1String("n2 -.->|")));
}

TEST_F(GraphTest, of_what_cannot_be_parsed_is_an_error_with_its_place)
{
    workspace.write(QStringLiteral("dependency/broken.json"), "{\n  \"N\": SwitchNode\n}\n");
    const Result result = graph(QStringLiteral("broken"), QStringLiteral("dot"));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, QString());
    EXPECT_TRUE(result.err.startsWith(QLatin1String("error: dependency/broken.json:2:8: ")));

    const Result json = graph(QStringLiteral("broken"), QStringLiteral("json"));
    EXPECT_EQ(json.exitCode, 2);
    EXPECT_EQ(json.json()[QStringLiteral("exitCode")].toInt(), 2);
    EXPECT_EQ(json.json()[QStringLiteral("problems")].toArray().size(), 1);
}

// --- hostile names

TEST_F(GraphTest, of_hostile_names_is_spelled_for_each_form)
{
    addHostile();
    for (const char* format : {"text", "dot", "mermaid", "json"}) {
        const Result result = graph(QStringLiteral("hostile"), QLatin1String(format));
        EXPECT_EQ(result.exitCode, 0);
        expectGolden(QStringLiteral("graph-hostile-") + QLatin1String(format), result.out);
    }
}

TEST_F(GraphTest, for_mermaid_leaves_nothing_in_a_label_that_the_language_knows)
{
    addHostile();
    const QString mermaid = graph(QStringLiteral("hostile"), QStringLiteral("mermaid")).out;
    const QRegularExpression label(QStringLiteral("\"([^\"]*)\""));
    const QRegularExpression harmless(
        QStringLiteral("^([^\"#&<>\\\\`:;%@|{}\\[\\]]|#\\d+;|<br/>|</?b>)*$"));
    auto labels = label.globalMatch(mermaid);
    int count = 0;
    while (labels.hasNext()) {
        const QString text = labels.next().captured(1);
        EXPECT_TRUE(harmless.match(text).hasMatch()) << text.toStdString();
        ++count;
    }
    EXPECT_GT(count, 10);
}

TEST_F(GraphTest, for_mermaid_parts_a_backslash_from_what_would_make_it_break_the_line)
{
    addHostile();
    const QString mermaid = graph(QStringLiteral("hostile"), QStringLiteral("mermaid")).out;
    EXPECT_TRUE(mermaid.contains(QLatin1String("or a#92;#8288;nb#92;N<br/>")));
    EXPECT_FALSE(mermaid.contains(QLatin1String("#92;n")));
}

TEST_F(GraphTest, drawn_by_graphviz_shows_hostile_names_as_they_are)
{
    if (!hasGraphviz()) {
        GTEST_SKIP() << "Graphviz is not installed";
    }
    addHostile();
    const Result result = graph(QStringLiteral("hostile"), QStringLiteral("svg"));
    EXPECT_EQ(result.exitCode, 0);
    QStringList shown;
    QSet<QString> elements;
    QXmlStreamReader svg(result.out);
    while (!svg.atEnd()) {
        if (svg.readNext() == QXmlStreamReader::StartElement) {
            elements.insert(svg.name().toString());
            if (svg.name() == QLatin1String("text")) {
                shown.append(svg.readElementText());
            }
        }
    }
    EXPECT_FALSE(svg.hasError()) << svg.errorString().toStdString();
    EXPECT_FALSE(elements.contains(QStringLiteral("script")));
    for (const char* text :
         {"say \"hi\"", "a]|}b", "write of --> end", "or a\\nb\\N", "or &lt;x&gt; & %%{",
          "<script>alert(1)</script> = \\", "%1 %2 = `x`", "new\\u000aline = #quot;",
          "write of ~ ^\\w+\\\\$", "\\u202eevil", "Ä/ö == 日本", "class n1 url;\\"}) {
        EXPECT_TRUE(shown.contains(QString::fromUtf8(text))) << text;
    }
}

// --- SVG and PNG

TEST_F(GraphTest, drawn_by_graphviz_keeps_ids_and_classes)
{
    if (!hasGraphviz()) {
        GTEST_SKIP() << "Graphviz is not installed";
    }
    for (const QString& description : descriptions()) {
        const Result result = graph(description, QStringLiteral("svg"));
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.err, QString());
        EXPECT_TRUE(result.out.contains(QLatin1String("<g id=\"n1\" class=\"node switch\">")));
        EXPECT_TRUE(result.out.contains(QLatin1String("<g id=\"e1\" class=\"edge\">")));
        EXPECT_TRUE(result.out.contains(QLatin1String("<g id=\"w1\" class=\"node entry ")));
    }
}

TEST_F(GraphTest, goes_to_a_file_whose_ending_tells_the_form)
{
    const QMap<QString, QString> formats{{QStringLiteral("a.txt"), QStringLiteral("text")},
                                         {QStringLiteral("a.gv"), QStringLiteral("dot")},
                                         {QStringLiteral("a.dot"), QStringLiteral("dot")},
                                         {QStringLiteral("a.mmd"), QStringLiteral("mermaid")},
                                         {QStringLiteral("a.JSON"), QStringLiteral("json")}};
    for (auto format = formats.begin(); format != formats.end(); ++format) {
        const Result result =
            graph({displayUnits, QStringLiteral("-o"), workspace.path(format.key())});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.out, QString());
        EXPECT_EQ(QString::fromUtf8(workspace.read(format.key())),
                  graph(displayUnits, format.value()).out);
    }
    const Result unknown =
        graph({displayUnits, QStringLiteral("-o"), workspace.path(QStringLiteral("a.doc"))});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_TRUE(unknown.err.contains(QLatin1String("add --format")));
}

TEST_F(GraphTest, as_png_goes_to_a_file_and_not_to_a_terminal)
{
    if (!hasGraphviz()) {
        GTEST_SKIP() << "Graphviz is not installed";
    }
    const Result result =
        graph({displayUnits, QStringLiteral("-o"), workspace.path(QStringLiteral("a.png"))});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(workspace.read(QStringLiteral("a.png")).startsWith("\x89PNG\r\n"));

    std::ostringstream out;
    std::ostringstream err;
    const std::vector<std::string> line{
        "-C", workspace.path().toStdString(), "graph", "display-units", "--format", "png"};
    EXPECT_EQ(tools::run(line, {out, err, false, false, true}), tools::ExitCode::Failed);
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(err.str(), "error: a PNG is nothing for a terminal\n    name a file: -o FILE\n");
    EXPECT_EQ(tools::run(line, {out, err, false, false, false}), tools::ExitCode::Done);
    EXPECT_EQ(out.str(), workspace.read(QStringLiteral("a.png")).toStdString());
}

TEST_F(GraphTest, without_graphviz_is_an_error_with_a_way_out)
{
    const NoPrograms none;
    for (const char* format : {"svg", "png"}) {
        const Result result = graph(displayUnits, QLatin1String(format));
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.out, QString());
        EXPECT_EQ(result.err,
                  QStringLiteral("error: the program dot, which draws %1, is not installed\n"
                                 "    install Graphviz (the package graphviz), or use --format "
                                 "dot, mermaid or\n    json, which need no other program\n")
                      .arg(QLatin1String(format)));
    }
    EXPECT_EQ(graph(displayUnits, QStringLiteral("dot")).exitCode, 0);
}

TEST_F(GraphTest, leaves_a_file_alone_that_it_cannot_write)
{
    workspace.write(QStringLiteral("a.svg"), "before");
    {
        const NoPrograms none;
        const Result result =
            graph({displayUnits, QStringLiteral("-o"), workspace.path(QStringLiteral("a.svg"))});
        EXPECT_EQ(result.exitCode, 2);
    }
    EXPECT_EQ(workspace.read(QStringLiteral("a.svg")), QByteArray("before"));
    const Result result = graph(
        {displayUnits, QStringLiteral("-o"), workspace.path(QStringLiteral("nowhere/a.dot"))});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.err.contains(QLatin1String("cannot be written")));
}

TEST_F(GraphTest, to_something_that_is_no_file_is_written_there)
{
    const Result result = graph({displayUnits, QStringLiteral("--format"), QStringLiteral("dot"),
                                 QStringLiteral("-o"), QStringLiteral("/dev/null")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_FALSE(QFileInfo(QStringLiteral("/dev/null")).isFile());
}

TEST_F(GraphTest, as_a_page_goes_to_its_own_file)
{
    if (!hasGraphviz()) {
        GTEST_SKIP() << "Graphviz is not installed";
    }
    const QString file = workspace.path(QStringLiteral("a.html"));
    const Result alone = graph({displayUnits, QStringLiteral("--html"), file});
    EXPECT_EQ(alone.exitCode, 0);
    EXPECT_EQ(alone.out, QString());
    const QByteArray page = workspace.read(QStringLiteral("a.html"));
    EXPECT_TRUE(page.startsWith("<!DOCTYPE html>"));
    EXPECT_TRUE(page.contains("id=\"n4\""));

    const Result both =
        graph(displayUnits, QStringLiteral("text"), {QStringLiteral("--html"), file});
    EXPECT_EQ(both.out, graph({displayUnits}).out);
    EXPECT_EQ(workspace.read(QStringLiteral("a.html")), page);

    const NoPrograms none;
    const Result without = graph({displayUnits, QStringLiteral("--html"), file});
    EXPECT_EQ(without.exitCode, 2);
    EXPECT_EQ(workspace.read(QStringLiteral("a.html")), page);
}

TEST_F(GraphTest, does_not_write_a_page_over_what_else_it_writes)
{
    workspace.write(QStringLiteral("a.html"), "before");
    for (const char* other : {"a.html", "./a.html", "new.html"}) {
        const QString page =
            workspace.path(QString::fromLatin1(other).remove(QStringLiteral("./")));
        const Result result = graph(displayUnits, QStringLiteral("dot"),
                                    {QStringLiteral("--html"), page, QStringLiteral("-o"),
                                     workspace.path(QLatin1String(other))});
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.err,
                  QStringLiteral("error: --html and -o name the same file\n"
                                 "    name two files, or leave out -o for the page alone\n"));
    }
    EXPECT_EQ(workspace.read(QStringLiteral("a.html")), QByteArray("before"));
    EXPECT_FALSE(QFileInfo::exists(workspace.path(QStringLiteral("new.html"))));
}

TEST_F(GraphTest, is_not_asked_for_in_two_forms_at_once)
{
    const QString file = workspace.path(QStringLiteral("a.svg"));
    const Result format = graph({displayUnits, QStringLiteral("--json"), QStringLiteral("--format"),
                                 QStringLiteral("svg")});
    EXPECT_EQ(format.exitCode, 2);
    EXPECT_TRUE(format.err.startsWith(
        QLatin1String("error: --json contradicts --format svg\n    leave out one of them\n")));
    const Result ending =
        graph({displayUnits, QStringLiteral("--json"), QStringLiteral("-o"), file});
    EXPECT_EQ(ending.exitCode, 2);
    EXPECT_TRUE(ending.err.startsWith(QLatin1String("error: --json contradicts -o \"")));
    EXPECT_FALSE(QFileInfo::exists(file));

    const Result said = graph(displayUnits, QStringLiteral("json"),
                              {QStringLiteral("--json"), QStringLiteral("-o"), file});
    EXPECT_EQ(said.exitCode, 0);
    EXPECT_TRUE(workspace.read(QStringLiteral("a.svg")).startsWith('{'));
}

// --- which description

TEST_F(GraphTest, needs_no_name_in_a_workspace_with_one_description)
{
    const TestWorkspace one;
    const Result result = run(one, {QStringLiteral("graph")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, QStringLiteral("Units->Temperature\n"));
}

TEST_F(GraphTest, without_a_name_lists_the_descriptions)
{
    const Result result = graph(QStringList());
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, QString());
    expectGolden(QStringLiteral("graph-no-name"), result.err);
}

TEST_F(GraphTest, of_an_unknown_description_names_the_nearest)
{
    const Result result = graph({QStringLiteral("displayunits")});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, QString());
    expectGolden(QStringLiteral("graph-unknown"), result.err);
}

TEST_F(GraphTest, without_a_name_lists_the_first_of_many)
{
    for (int number = 0; number < 20; ++number) {
        workspace.write(QStringLiteral("dependency/a%1.json").arg(number, 2, 10, QLatin1Char('0')),
                        "{}");
    }
    const QString error = graph(QStringList()).err.simplified();
    EXPECT_TRUE(error.contains(QLatin1String("a09 and 16 more"))) << error.toStdString();
    EXPECT_FALSE(error.contains(QLatin1String("a10")));
}

// --- laid over it: a link

TEST_F(GraphTest, for_a_link_names_the_leaves_that_rows_set)
{
    const QStringList right{QStringLiteral("--link"), QStringLiteral("30")};
    const QJsonObject document =
        graph(QStringLiteral("recorder-card"), QStringLiteral("json"), right).json();
    EXPECT_EQ(document[QStringLiteral("link")].toObject()[QStringLiteral("place")].toString(),
              QStringLiteral("links.json:30:5"));
    const QJsonObject row = item(document, "nodes", QStringLiteral("name"),
                                 QStringLiteral("Card"))[QStringLiteral("commands")]
                                .toArray()[0]
                                .toObject()[QStringLiteral("rows")]
                                .toArray()[0]
                                .toObject();
    const QJsonArray targets = row[QStringLiteral("targets")].toArray();
    ASSERT_EQ(targets.size(), 1);
    EXPECT_EQ(targets[0].toObject()[QStringLiteral("url")].toString(),
              QStringLiteral("Racks/Right/Card1"));
    EXPECT_TRUE(targets[0].toObject()[QStringLiteral("exists")].toBool());
    EXPECT_EQ(targets[0].toObject()[QStringLiteral("unit")].toString(), QStringLiteral("°C"));
    EXPECT_TRUE(graph(QStringLiteral("recorder-card"), QStringLiteral("dot"), right)
                    .out.contains(QStringLiteral(">Racks/Right/Card1 ← ")));
}

TEST_F(GraphTest, for_a_link_marks_leaves_that_are_not_there)
{
    workspace.write(QStringLiteral("configuration/display.json"),
                    R"({"Fields": {"Cure": {"@value": 1, "@unitType": "°C"}}})");
    const QStringList link{QStringLiteral("--link"), QStringLiteral("controller:display")};
    const QString dot = graph(displayUnits, QStringLiteral("dot"), link).out;
    EXPECT_TRUE(dot.contains(QLatin1String("Fields/Pressure = mA (no such leaf)")));
    EXPECT_FALSE(dot.contains(QLatin1String("Zones/Cure/Signal (no such leaf)")));
}

TEST_F(GraphTest, for_a_link_names_the_columns_of_arrays)
{
    const QJsonObject document =
        graph(QStringLiteral("chamber-log"), QStringLiteral("json"),
              {QStringLiteral("--link"), QStringLiteral("controller:recorder")})
            .json();
    const QJsonArray rows = item(document, "nodes", QStringLiteral("name"),
                                 QStringLiteral("ChamberLog"))[QStringLiteral("commands")]
                                .toArray()[0]
                                .toObject()[QStringLiteral("rows")]
                                .toArray();
    const QJsonObject last = rows[2].toObject()[QStringLiteral("targets")].toArray()[0].toObject();
    EXPECT_EQ(last[QStringLiteral("url")].toString(), QStringLiteral("ChamberLog"));
    EXPECT_EQ(last[QStringLiteral("arrayColumn")].toInt(), 3);
    EXPECT_EQ(last[QStringLiteral("unit")].toString(), QStringLiteral("m³/h"));
}

TEST_F(GraphTest, for_a_link_has_the_leaves_that_patterns_match_among_the_writes)
{
    const QStringList link{QStringLiteral("--link"), QStringLiteral("controller:display")};
    const auto writes = [&](const QStringList& more) {
        QStringList urls;
        const QJsonObject document = graph(displayUnits, QStringLiteral("json"), more).json();
        for (const QJsonValue write : document[QStringLiteral("writes")].toArray()) {
            urls.append(write.toObject()[QStringLiteral("text")].toString());
        }
        return urls;
    };
    EXPECT_FALSE(writes({}).contains(QStringLiteral("Zones/Cure/Signal")));
    EXPECT_TRUE(writes(link).contains(QStringLiteral("Zones/Cure/Signal")));
    EXPECT_FALSE(writes(link).contains(QStringLiteral("Settings/Language")));
}

TEST_F(GraphTest, for_a_link_that_is_not_there_lists_those_that_are)
{
    const Result unknown = graph(displayUnits, QStringLiteral("dot"),
                                 {QStringLiteral("--link"), QStringLiteral("controller:oven")});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_EQ(unknown.out, QString());
    expectGolden(QStringLiteral("graph-link-unknown"), unknown.err);
    const Result several = graph(QStringLiteral("recorder-card"), QStringLiteral("dot"),
                                 {QStringLiteral("--link"), QStringLiteral("controller:recorder")});
    EXPECT_EQ(several.exitCode, 2);
    expectGolden(QStringLiteral("graph-link-several"), several.err);
}

TEST_F(GraphTest, for_one_of_several_links_on_one_line_needs_the_column_as_well)
{
    workspace.write(QStringLiteral("links.json"),
                    R"([{"source": "controller", "target": "recorder",
"dependency": "recorder-card", "parameters": ["Left", 1]}, {"source": "controller",
"target": "recorder", "dependency": "recorder-card", "parameters": ["Right", 1]}])");
    QByteArray links = workspace.read(QStringLiteral("links.json"));
    workspace.write(QStringLiteral("links.json"), links.replace('\n', ' '));
    const auto drawn = [&](const char* link) {
        return graph(QStringLiteral("recorder-card"), QStringLiteral("dot"),
                     {QStringLiteral("--link"), QLatin1String(link)});
    };
    const Result line = drawn("1");
    EXPECT_EQ(line.exitCode, 2);
    EXPECT_TRUE(
        line.err.contains(QLatin1String("name the line and the column, as in \"--link 1:2\"")))
        << line.err.toStdString();
    const int second = links.indexOf("}, {") + 4;
    const Result right = drawn(QStringLiteral("1:%1").arg(second).toLatin1().constData());
    EXPECT_EQ(right.exitCode, 0);
    EXPECT_TRUE(right.out.contains(QLatin1String("Racks/Right/Card1")));
}

TEST_F(GraphTest, for_a_link_that_is_not_there_lists_the_first_of_many)
{
    QByteArray links;
    for (int number = 0; number < 25; ++number) {
        links += links.isEmpty() ? "[" : ",";
        links += R"({"source": "controller", "target": "t)" + QByteArray::number(number) +
                 R"(", "dependency": "display-units"})";
    }
    workspace.write(QStringLiteral("links.json"), links + "]");
    const QString error = graph(displayUnits, QStringLiteral("dot"),
                                {QStringLiteral("--link"), QStringLiteral("controller:oven")})
                              .err;
    EXPECT_TRUE(error.simplified().endsWith(QLatin1String("t9 through display-units; 15 more")))
        << error.toStdString();
}

TEST_F(GraphTest, for_a_link_marks_columns_that_are_not_there)
{
    QByteArray description = workspace.read(QStringLiteral("dependency/chamber-log.json"));
    workspace.write(QStringLiteral("dependency/chamber-log.json"),
                    description.replace("ChamberLog[4-1]", "ChamberLog[7]"));
    const QStringList link{QStringLiteral("--link"), QStringLiteral("controller:recorder")};
    const Result dot = graph(QStringLiteral("chamber-log"), QStringLiteral("dot"), link);
    EXPECT_EQ(dot.exitCode, 0);
    EXPECT_TRUE(dot.out.contains(QLatin1String("(no such column)"))) << dot.out.toStdString();
    const QJsonObject target =
        item(graph(QStringLiteral("chamber-log"), QStringLiteral("json"), link).json(), "nodes",
             QStringLiteral("name"), QStringLiteral("ChamberLog"))[QStringLiteral("commands")]
            .toArray()[0]
            .toObject()[QStringLiteral("rows")]
            .toArray()[2]
            .toObject()[QStringLiteral("targets")]
            .toArray()[0]
            .toObject();
    EXPECT_EQ(target[QStringLiteral("arrayColumn")].toInt(), 7);
    EXPECT_FALSE(target[QStringLiteral("exists")].toBool());
}

TEST_F(GraphTest, for_a_link_without_its_target_is_an_error)
{
    workspace.remove(QStringLiteral("configuration/display.json"));
    const Result result = graph(displayUnits, QStringLiteral("dot"),
                                {QStringLiteral("--link"), QStringLiteral("controller:display")});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.err.contains(QLatin1String("configuration/display.json")));
}

// --- laid over it: a trace

TEST_F(GraphTest, with_a_trace_shows_what_ran)
{
    const QStringList trace{
        QStringLiteral("--trace"),
        explained(QStringLiteral("Settings/OperatingMode"), QStringLiteral("calibration"))};
    const QJsonObject told = graph(displayUnits, QStringLiteral("json"), trace)
                                 .json()[QStringLiteral("trace")]
                                 .toObject();
    EXPECT_EQ(told[QStringLiteral("url")].toString(), QStringLiteral("Settings/OperatingMode"));
    EXPECT_EQ(told[QStringLiteral("value")].toString(), QStringLiteral("calibration"));
    EXPECT_EQ(texts(told[QStringLiteral("nodes")]),
              (QStringList{QStringLiteral("n1"), QStringLiteral("n2"), QStringLiteral("n4")}));
    EXPECT_EQ(texts(told[QStringLiteral("edges")]),
              (QStringList{QStringLiteral("e1"), QStringLiteral("e3")}));
    const QJsonArray rows = told[QStringLiteral("rows")].toArray();
    ASSERT_EQ(rows.size(), 4);
    EXPECT_EQ(rows[3].toObject()[QStringLiteral("command")].toInt(), 1);
    EXPECT_EQ(rows[3].toObject()[QStringLiteral("row")].toInt(), 2);
    EXPECT_EQ(rows[3].toObject()[QStringLiteral("outcome")].toString(), QStringLiteral("changed"));
    EXPECT_EQ(rows[3].toObject()[QStringLiteral("target")].toString(),
              QStringLiteral("Fields/AirFlow"));

    expectGolden(QStringLiteral("graph-trace-dot"),
                 graph(displayUnits, QStringLiteral("dot"), trace).out);
    expectGolden(QStringLiteral("graph-trace-mermaid"),
                 graph(displayUnits, QStringLiteral("mermaid"), trace).out);
}

TEST_F(GraphTest, with_a_trace_and_a_link_shows_what_ran_for_that_link)
{
    const QStringList trace{
        QStringLiteral("--trace"),
        explained(QStringLiteral("Settings/TemperatureUnit"), QStringLiteral("°F"))};
    const auto targets = [&](const QStringList& more) {
        const QJsonObject document =
            graph(QStringLiteral("recorder-card"), QStringLiteral("json"), trace + more).json();
        QStringList urls;
        for (const QJsonValue row :
             document[QStringLiteral("trace")].toObject()[QStringLiteral("rows")].toArray()) {
            urls.append(row.toObject()[QStringLiteral("target")].toString());
        }
        return urls;
    };
    const QString left = QStringLiteral("Racks/Left/Card1");
    const QString right = QStringLiteral("Racks/Right/Card1");
    EXPECT_EQ(targets({}), QStringList{left});
    EXPECT_EQ(targets({QStringLiteral("--link"), QStringLiteral("30")}), QStringList{right});
}

TEST_F(GraphTest, with_a_trace_of_several_links_shows_the_first_and_says_so)
{
    const QStringList trace{
        QStringLiteral("--trace"),
        explained(QStringLiteral("Settings/TemperatureUnit"), QStringLiteral("°F"))};
    const Result first = graph(QStringLiteral("recorder-card"), QStringLiteral("json"), trace);
    EXPECT_EQ(first.err.simplified(),
              QStringLiteral("The trace tells of 2 links; this shows the first, controller → "
                             "recorder through recorder-card (Left, 1). --link shows another."));
    const QJsonObject link =
        first.json()[QStringLiteral("trace")].toObject()[QStringLiteral("link")].toObject();
    EXPECT_EQ(link[QStringLiteral("parameters")].toArray()[0].toString(), QStringLiteral("Left"));
    const Result chosen =
        graph(QStringLiteral("recorder-card"), QStringLiteral("json"),
              trace + QStringList{QStringLiteral("--link"), QStringLiteral("30")});
    EXPECT_EQ(chosen.err, QString());
}

TEST_F(GraphTest, with_a_trace_that_names_no_link_shows_all_that_ran_if_it_fits)
{
    const QString file =
        explained(QStringLiteral("Settings/OperatingMode"), QStringLiteral("calibration"));
    QByteArray begun;
    bool isOurs = false;
    for (const QByteArray& line : workspace.read(QStringLiteral("trace.ndjson")).split('\n')) {
        const QJsonObject event = QJsonDocument::fromJson(line).object();
        const bool isLink = event[QStringLiteral("event")].toString() == QLatin1String("link");
        if (isLink) {
            isOurs = event[QStringLiteral("dependency")].toString() == displayUnits;
        }
        if (begun.isEmpty() || (isOurs && !isLink)) {
            begun += line + '\n';
        }
    }
    workspace.write(QStringLiteral("trace.ndjson"), begun);
    const QStringList trace{QStringLiteral("--trace"), file};
    const Result fitting = graph(displayUnits, QStringLiteral("json"), trace);
    EXPECT_EQ(fitting.exitCode, 0) << fitting.err.toStdString();
    const QJsonObject told = fitting.json()[QStringLiteral("trace")].toObject();
    EXPECT_TRUE(told[QStringLiteral("link")].isNull());
    EXPECT_EQ(texts(told[QStringLiteral("edges")]),
              (QStringList{QStringLiteral("e1"), QStringLiteral("e3")}));
    const Result other = graph(QStringLiteral("air-total"), QStringLiteral("json"), trace);
    EXPECT_EQ(other.exitCode, 2);
    EXPECT_TRUE(other.err.contains(QLatin1String("the trace names no link")));
}

TEST_F(GraphTest, with_a_trace_of_several_writes_names_them)
{
    const QString first = QStringLiteral("Settings/OperatingMode");
    const QString file = explained(first, QStringLiteral("calibration"));
    QByteArrayList lines;
    for (const QByteArray& line : workspace.read(QStringLiteral("trace.ndjson")).split('\n')) {
        if (!line.contains("\"event\":\"link\"")) {
            lines.append(line);
        }
    }
    QByteArray trace = lines.join('\n');
    lines.removeFirst();
    trace += lines.join('\n').replace(first.toUtf8(), "Settings/FlowUnit");
    workspace.write(QStringLiteral("trace.ndjson"), trace);
    const Result result =
        graph(displayUnits, QStringLiteral("dot"), {QStringLiteral("--trace"), file});
    EXPECT_TRUE(result.err.startsWith(QLatin1String("The trace tells of writes to Settings/")))
        << result.err.toStdString();
}

TEST_F(GraphTest, with_a_trace_of_rows_that_have_other_targets_now_is_an_error)
{
    const QStringList trace{
        QStringLiteral("--trace"),
        explained(QStringLiteral("Settings/OperatingMode"), QStringLiteral("calibration"))};
    const QString file = QStringLiteral("dependency/display-units.json");
    const QByteArray before = workspace.read(file);
    QByteArray swapped = before;
    swapped.replace("Fields/Pressure\", \"mA", "Fields/AirFlow\", \"mA");
    ASSERT_NE(swapped, before);
    workspace.write(file, swapped);
    const Result result = graph(displayUnits, QStringLiteral("dot"), trace);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.err.contains(QLatin1String("it was changed since; explain the write")))
        << result.err.toStdString();
    EXPECT_EQ(result.out, QString());
}

TEST_F(GraphTest, with_a_trace_fits_behind_prefixes_patterns_and_columns)
{
    for (const char* description : {"air-total", "chamber-log", "process-units", "recorder-card",
                                    "zone-inputs", "display-units"}) {
        for (const char* url :
             {"Settings/TemperatureUnit", "Settings/FlowUnit", "Settings/PressureUnit",
              "Zones/Cure/Sensor", "Zones/Cure/Signal"}) {
            const QString file = explained(QLatin1String(url), QStringLiteral("°F"));
            const Result result = graph(QLatin1String(description), QStringLiteral("json"),
                                        {QStringLiteral("--trace"), file});
            EXPECT_FALSE(result.err.contains(QLatin1String("it was changed since")))
                << description << ' ' << url << ' ' << result.err.toStdString();
        }
    }
}

TEST_F(GraphTest, with_a_trace_that_does_not_fit_is_an_error)
{
    const QString trace =
        explained(QStringLiteral("Settings/OperatingMode"), QStringLiteral("calibration"));
    const auto errorOf = [&](const QString& description, const QString& file) {
        const Result result =
            graph(description, QStringLiteral("dot"), {QStringLiteral("--trace"), file});
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.out, QString());
        return result.err;
    };
    workspace.write(QStringLiteral("dependency/other.json"), "{}");
    EXPECT_TRUE(errorOf(QStringLiteral("other"), trace)
                    .contains(QLatin1String("the trace tells of no link through other")));
    EXPECT_TRUE(errorOf(displayUnits, workspace.path(QStringLiteral("nothing.ndjson")))
                    .contains(QLatin1String("cannot be read")));
    EXPECT_TRUE(errorOf(displayUnits, workspace.path(QStringLiteral("links.json")))
                    .contains(QLatin1String("links.json:1:1: ")));
    workspace.write(QStringLiteral("dependency/display-units.json"),
                    R"({"Written": {"Type": "SwitchNode"}})");
    EXPECT_TRUE(errorOf(displayUnits, trace).contains(QLatin1String("it was changed since")));
}

TEST_F(GraphTest, as_text_has_no_room_for_a_link_or_a_trace)
{
    for (const char* option : {"--link", "--trace"}) {
        const Result result =
            graph({displayUnits, QLatin1String(option), QStringLiteral("controller:display")});
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_TRUE(result.err.contains(QLatin1String("choose another form with --format")));
    }
}

TEST_F(GraphTest, changes_no_file)
{
    const QMap<QString, qint64> times = workspace.times();
    graph(displayUnits, QStringLiteral("json"),
          {QStringLiteral("--link"), QStringLiteral("controller:display")});
    EXPECT_EQ(workspace.times(), times);
}

} // namespace
