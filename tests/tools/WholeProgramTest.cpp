#include "ProgramFixture.h"
#include "filehost/Session.h"
#include "filehost/Workspace.h"

#include <QProcess>
#include <gtest/gtest.h>

#include <unistd.h>

namespace {

QStringList setUnit(const QString& unit = QStringLiteral("°F"))
{
    return {QStringLiteral("set"), QStringLiteral("controller"),
            QStringLiteral("Settings/TemperatureUnit"), unit};
}

TEST(Program, keeps_data_and_diagnostics_apart)
{
    const TestWorkspace workspace;
    const Result done = runProgram(on(workspace, setUnit()));
    EXPECT_EQ(done.exitCode, 0);
    EXPECT_EQ(done.err, QString());
    expectGolden(QStringLiteral("set"), done.out);

    const Result failed =
        runProgram(on(workspace, {QStringLiteral("show"), QStringLiteral("dispaly")}));
    EXPECT_EQ(failed.exitCode, 2);
    EXPECT_EQ(failed.out, QString());
    expectGolden(QStringLiteral("show-unknown-instance"), failed.err);
}

TEST(Program, ends_with_1_when_something_did_not_resolve)
{
    const TestWorkspace workspace;
    workspace.remove(QStringLiteral("dependency/units.json"));
    EXPECT_EQ(runProgram(on(workspace, setUnit())).exitCode, 1);
}

TEST(Program, works_in_the_current_folder)
{
    const TestWorkspace workspace;
    const Result result =
        runShell(workspace.path(), QStringLiteral("unitflow show display Brightness"));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, QStringLiteral("display\n  Brightness  80  %\n"));
}

TEST(Program, reads_and_writes_utf8_in_any_locale)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("configuration/Öfen/Süd.json"), R"({"Größe": "m²"})");
    const Result result =
        runShell(workspace.path(), QStringLiteral("LC_ALL=C unitflow set Öfen/Süd Größe 'm³' && "
                                                  "LC_ALL=C unitflow show Öfen/Süd"));
    EXPECT_EQ(result.exitCode, 0) << testing::PrintToString(result);
    EXPECT_EQ(result.out, QStringLiteral("Öfen/Süd\n"
                                         "  Größe  value  m² → m³\n"
                                         "1 leaf changed in 1 instance.\n"
                                         "Nothing follows: no link starts at Öfen/Süd.\n"
                                         "Öfen/Süd\n"
                                         "  Größe  m³\n"));
    EXPECT_EQ(workspace.read(QStringLiteral("configuration/Öfen/Süd.json")),
              QByteArray(R"({"Größe": "m³"})"));
}

TEST(Program, ends_with_2_when_its_output_cannot_be_written)
{
    const TestWorkspace workspace;
    const Result result = runShell(workspace.path(), QStringLiteral("unitflow show > /dev/full"));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err, QStringLiteral("error: the output cannot be written\n"
                                         "    check the disk, or what it was written to\n"));
}

TEST(Program, keeps_what_could_be_written_when_a_file_cannot_be)
{
    const TestWorkspace workspace;
    // The display outgrows the limit below; the files of the others stay under it.
    const QString display = QStringLiteral("configuration/display.json");
    const QByteArray large = workspace.read(display) + QByteArray(64 * 1024, ' ');
    workspace.write(display, large);
    const Result result = runShell(
        workspace.path(), QStringLiteral("trap '' XFSZ; ulimit -f 16; unitflow set controller "
                                         "Settings/TemperatureUnit °F"));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, QStringLiteral("controller\n"
                                         "  Settings/TemperatureUnit  value  °C → °F\n"
                                         "baking (process)\n"
                                         "  Limits/Temperature        unit   °C → °F\n"
                                         "2 leaves changed in 2 instances.\n"));
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: configuration/display.json: ")))
        << result.err.toStdString();
    EXPECT_EQ(workspace.read(display), large);
    EXPECT_TRUE(workspace.read(QStringLiteral("process/baking.json")).contains("°F"));
}

TEST(Program, waits_for_the_lock_and_says_for_whom)
{
    const TestWorkspace workspace;
    QList<filehost::Problem> problems;
    const auto opened = filehost::Workspace::open(workspace.path(), problems);
    ASSERT_TRUE(opened);

    QProcess process;
    {
        filehost::Session holder(*opened, filehost::Session::Access::Write);
        ASSERT_TRUE(holder.begin({}));
        process.start(program, on(workspace, setUnit()));
        process.setReadChannel(QProcess::StandardError);
        while (!process.canReadLine() && process.waitForReadyRead()) {
        }
        const QString line = QString::fromUtf8(process.readLine());
        EXPECT_TRUE(line.startsWith(
            QStringLiteral("waiting for the workspace, which is locked by process %1 ")
                .arg(getpid())))
            << line.toStdString();
        EXPECT_EQ(process.state(), QProcess::Running);
        EXPECT_TRUE(workspace.read(QStringLiteral("configuration/controller.json")).contains("°C"));
    }
    const Result result = resultOf(process);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    expectGolden(QStringLiteral("set"), result.out);
}

TEST(Program, that_is_quiet_waits_in_silence)
{
    const TestWorkspace workspace;
    QList<filehost::Problem> problems;
    const auto opened = filehost::Workspace::open(workspace.path(), problems);
    ASSERT_TRUE(opened);

    QProcess process;
    {
        filehost::Session holder(*opened, filehost::Session::Access::Write);
        ASSERT_TRUE(holder.begin({}));
        process.start(program, on(workspace, setUnit() + QStringList{QStringLiteral("--quiet")}));
        // Long enough for the other test's message to come.
        EXPECT_FALSE(process.waitForFinished(1000));
    }
    const Result result = resultOf(process);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, QString());
    EXPECT_EQ(result.err, QString());
    EXPECT_TRUE(workspace.read(QStringLiteral("configuration/display.json")).contains("°F"));
}

TEST(Program, dry_run_and_show_wait_for_no_lock)
{
    const TestWorkspace workspace;
    QList<filehost::Problem> problems;
    const auto opened = filehost::Workspace::open(workspace.path(), problems);
    ASSERT_TRUE(opened);
    filehost::Session holder(*opened, filehost::Session::Access::Write);
    ASSERT_TRUE(holder.begin({}));
    EXPECT_EQ(
        runProgram(on(workspace, setUnit() + QStringList{QStringLiteral("--dry-run")})).exitCode,
        0);
    EXPECT_EQ(
        runProgram(on(workspace, {QStringLiteral("show"), QStringLiteral("display")})).exitCode, 0);
}

TEST(Program, that_the_engine_ends_says_by_which_link)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("dependency/units.json"),
                    R"({"N": {"Type": "CommandNode",
                              "Commands": {"CommandSetUnitProperties": [["Leaf"]]}}})");
    const QMap<QString, QByteArray> files = workspace.files();
    const Result result = runShell(
        workspace.path(), QStringLiteral("ulimit -c 0; unitflow resolve controller display units "
                                         "--parameter Oven1/ --dry-run"));
    EXPECT_NE(result.exitCode, 0);
    EXPECT_NE(result.exitCode, 1);
    EXPECT_NE(result.exitCode, 2);
    EXPECT_TRUE(result.err.startsWith(
        QStringLiteral("error: dependency/units.json: a row ends the program")))
        << result.err.toStdString();
    EXPECT_TRUE(result.err.contains(
        QStringLiteral("\n    in controller → display through units (Oven1/)\n")))
        << result.err.toStdString();
    EXPECT_EQ(workspace.files(), files);
}

TEST(Program, that_a_missing_column_ends_names_it_as_a_possible_cause)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("dependency/units.json"),
                    QByteArray(columnDescription).replace("Log[2-1]", "Log[2]"));
    const Result result =
        runShell(workspace.path(),
                 QStringLiteral("ulimit -c 0; unitflow resolve controller recorder units"));
    EXPECT_TRUE(result.err.startsWith(
        QStringLiteral("error: dependency/units.json: a row ends the program")))
        << result.err.toStdString();
    EXPECT_TRUE(result.err.contains(QStringLiteral(
        "\n    it has too few cells, or names a column that the array does not have;\n"
        "    \"unitflow check\" tells which row it is; the engine says: ASSERT failure")))
        << result.err.toStdString();
}

TEST(Program, that_explains_a_missing_column_tells_the_way_there_before_it_ends)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("dependency/units.json"),
                    QByteArray(columnDescription).replace("Log[2-1]", "Log[2]"));
    workspace.write(QStringLiteral("links.json"),
                    R"([{"source": "controller", "target": "recorder", "dependency": "units"}])");
    const QString line =
        QStringLiteral("ulimit -c 0; unitflow explain controller Settings/TemperatureUnit");
    const Result text = runShell(workspace.path(), line);
    EXPECT_NE(text.exitCode, 0);
    expectGolden(QStringLiteral("explain-missing-column"), text.out);
    const Result trace = runShell(workspace.path(), line + QStringLiteral(" --json"));
    EXPECT_TRUE(trace.out.endsWith(
        QStringLiteral("{\"event\":\"command-row\",\"row\":0,\"outcome\":\"column-out-of-range\","
                       "\"target\":\"Log\",\"unit\":\"°C\",\"column\":2}\n")))
        << trace.out.toStdString();
}

TEST(Program, that_looks_for_who_sets_a_unit_ends_at_a_missing_column_and_says_who_names_the_row)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("dependency/units.json"),
                    QByteArray(columnDescription).replace("Log[2-1]", "Log[2]"));
    workspace.write(QStringLiteral("links.json"),
                    R"([{"source": "controller", "target": "recorder", "dependency": "units"}])");
    const Result why =
        runShell(workspace.path(), QStringLiteral("ulimit -c 0; unitflow why recorder Log"));
    EXPECT_NE(why.exitCode, 0);
    EXPECT_TRUE(why.err.contains(QStringLiteral(
        "\n    it has too few cells, or names a column that the array does not have;\n"
        "    \"unitflow check\" tells which row it is; the engine says: ASSERT failure")))
        << why.err.toStdString();
    const Result check = runShell(workspace.path(), QStringLiteral("unitflow check"));
    EXPECT_TRUE(check.out.contains(QStringLiteral("[column-out-of-range]")))
        << check.out.toStdString();
}

TEST(Terminal, gets_color)
{
    const TestWorkspace workspace;
    const QStringList show{QStringLiteral("show"), QStringLiteral("display"),
                           QStringLiteral("Brightness")};
    EXPECT_EQ(runOnTerminal({}, on(workspace, show)),
              "\x1b[1mdisplay\x1b[0m\r\n  Brightness  80  %\r\n");
}

TEST(Terminal, gets_no_color_when_the_environment_refuses_it)
{
    const TestWorkspace workspace;
    const QStringList show{QStringLiteral("show"), QStringLiteral("display"),
                           QStringLiteral("Brightness")};
    EXPECT_EQ(runOnTerminal({QStringLiteral("NO_COLOR=1")}, on(workspace, show)),
              "display\r\n  Brightness  80  %\r\n");
}

// --- the starter's README

struct Transcript {
    QString command;
    QString output;
};

/// The commands of a document and what it says that they write.
QList<Transcript> transcriptsIn(const QString& markdown)
{
    QList<Transcript> transcripts;
    bool isInside = false;
    for (const QString& line : markdown.split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("```"))) {
            isInside = line == QLatin1String("```console");
        } else if (isInside && line.startsWith(QLatin1String("$ "))) {
            transcripts.append({line.mid(2), {}});
        } else if (isInside && !transcripts.isEmpty()) {
            transcripts.last().output += line + QLatin1Char('\n');
        }
    }
    return transcripts;
}

TEST(Starter, readme_shows_commands_that_work_and_what_they_write)
{
    const TestWorkspace somewhere;
    const QString folder = somewhere.path(QStringLiteral("line"));
    ASSERT_EQ(runProgram({QStringLiteral("init"), folder}).exitCode, 0);

    const QString readme = QString::fromUtf8(somewhere.read(QStringLiteral("line/README.md")));
    const QList<Transcript> transcripts = transcriptsIn(readme);
    ASSERT_GE(transcripts.size(), 5);
    for (const Transcript& transcript : transcripts) {
        const Result result = runShell(folder, transcript.command);
        EXPECT_EQ(result.exitCode, 0) << transcript.command.toStdString();
        EXPECT_EQ(result.err, QString());
        EXPECT_EQ(result.out, transcript.output) << transcript.command.toStdString();
    }
}

} // namespace
