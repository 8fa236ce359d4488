#include "GeneratedWorkspace.h"
#include "ProgramFixture.h"

#include <QFile>
#include <QJsonArray>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <functional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

// `resolve --all` as a process: signals, memory, and who reads what it writes.

namespace {

using namespace std::chrono_literals;

QStringList resolveAll(const QStringList& options = {})
{
    return QStringList{QStringLiteral("resolve"), QStringLiteral("--all"), QStringLiteral("--jobs"),
                       QStringLiteral("2")} +
           options;
}

bool waitFor(const std::function<bool()>& condition)
{
    for (int round = 0; round < 60'000; ++round) {
        if (condition()) {
            return true;
        }
        std::this_thread::sleep_for(1ms);
    }
    return false;
}

QString followerFile(int number)
{
    return QStringLiteral("configuration/follower%1.json").arg(number);
}

/// A run that cannot come to its end by itself: what it shows is more than a pipe holds, and
/// nobody reads it before the test does.
class StalledRun : public testing::Test {
protected:
    static constexpr int instances = 700;
    static constexpr int leaves = 40;

    StalledRun()
    {
        writeLargeWorkspace(workspace, {instances, leaves, 0});
        before = workspace.files();
    }

    /// Starts it and waits until it has written the first instance.
    void start(const QStringList& arguments = resolveAll())
    {
        process.start(program, on(workspace, arguments));
        ASSERT_TRUE(process.waitForStarted());
        ASSERT_TRUE(waitFor([&] { return isWritten(0); }));
    }

    void interrupt(int signal) const { kill(static_cast<pid_t>(process.processId()), signal); }

    /// Whether the process catches SIGINT: from the time when it begins to work, until it has
    /// taken notice of a signal.
    bool catchesSignals() const
    {
        QFile status(QStringLiteral("/proc/%1/status").arg(process.processId()));
        EXPECT_TRUE(status.open(QIODevice::ReadOnly));
        const QRegularExpression caught(QStringLiteral("SigCgt:\\s*([0-9a-f]+)"));
        const QString mask = caught.match(QString::fromUtf8(status.readAll())).captured(1);
        return (mask.toULongLong(nullptr, 16) & (1ULL << (SIGINT - 1))) != 0;
    }

    bool isWritten(int number) const
    {
        const QString file = followerFile(number);
        return workspace.read(file) != before.value(file);
    }

    int writtenInstances() const
    {
        int written = 0;
        for (int number = 0; number < instances; ++number) {
            written += isWritten(number) ? 1 : 0;
        }
        return written;
    }

    /// How many of the files are as a whole run leaves them; the others are as they were.
    int expectWholeFiles() const
    {
        int written = 0;
        for (int number = 0; number < instances; ++number) {
            const QByteArray old = before.value(followerFile(number));
            const QByteArray present = workspace.read(followerFile(number));
            written += present == old ? 0 : 1;
            EXPECT_TRUE(present == old || present == QByteArray(old).replace("old", "new"))
                << "follower" << number;
        }
        return written;
    }

    TestWorkspace workspace;
    QMap<QString, QByteArray> before;
    QProcess process;
};

class InterruptedRun : public StalledRun, public testing::WithParamInterface<int> {};

TEST_P(InterruptedRun, finishes_the_files_at_hand_and_goes_on_when_it_is_run_again)
{
    start();
    interrupt(GetParam());
    const Result result = resultOf(process);
    EXPECT_EQ(result.exitCode, 128 + GetParam());

    const int written = expectWholeFiles();
    EXPECT_GT(written, 0);
    EXPECT_LT(written, instances);
    EXPECT_EQ(result.err,
              QStringLiteral("error: interrupted with %1 links left of 700\n"
                             "    what was done is kept; run the same command again to go on\n")
                  .arg(instances - written));
    const QString noun = written == 1 ? QStringLiteral("instance") : QStringLiteral("instances");
    EXPECT_TRUE(
        result.out.endsWith(QStringLiteral("%1 leaves changed in %2 %3.\n"
                                           "%2 of 700 links resolved, %4 left; %5 files written.\n")
                                .arg(leaves * written)
                                .arg(written)
                                .arg(noun)
                                .arg(instances - written)
                                .arg(written + 1)))
        << result.out.right(200).toStdString();
    EXPECT_EQ(workspace.read(QStringLiteral("configuration/manifest.json"))
                  .count("\"instanceName\": \"follower"),
              written);

    const Result next = runProgram(on(workspace, resolveAll()));
    EXPECT_EQ(next.exitCode, 0);
    EXPECT_EQ(expectWholeFiles(), instances);
    EXPECT_EQ(workspace.read(QStringLiteral("configuration/manifest.json"))
                  .count("\"instanceName\": \"follower"),
              instances);
    EXPECT_FALSE(QFile::exists(workspace.path(QStringLiteral(".unitflow.lock"))));
    EXPECT_EQ(workspace.files().size(), before.size() + 1) << "the manifest was not there before";
}

INSTANTIATE_TEST_SUITE_P(By, InterruptedRun, testing::Values(SIGINT, SIGTERM),
                         [](const testing::TestParamInfo<int>& test) {
                             return test.param == SIGINT ? "int" : "term";
                         });

TEST_F(StalledRun, leaves_whole_files_when_a_second_signal_ends_it)
{
#if defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizer holds signals back while their thread waits for a reader";
#endif
    start();
    // More than a pipe holds is to be shown of these, so the run does not end after the first
    // signal.
    constexpr int enough = 100;
    ASSERT_TRUE(waitFor([&] { return isWritten(enough); }));
    interrupt(SIGINT);
    ASSERT_TRUE(waitFor([&] { return !catchesSignals(); }));
    interrupt(SIGINT);
    const Result result = resultOf(process);
    EXPECT_EQ(result.exitCode, -1);
    EXPECT_LT(expectWholeFiles(), instances);

    EXPECT_EQ(runProgram(on(workspace, resolveAll())).exitCode, 0);
    EXPECT_EQ(expectWholeFiles(), instances);
}

TEST_F(StalledRun, writes_a_whole_document_when_it_is_interrupted)
{
    start(resolveAll({QStringLiteral("--json")}));
    interrupt(SIGINT);
    const Result result = resultOf(process);
    const int written = expectWholeFiles();
    const QJsonObject document = result.json();
    EXPECT_EQ(document[QStringLiteral("exitCode")], QJsonValue(130));
    EXPECT_EQ(document[QStringLiteral("links")].toArray().size(), written);
    EXPECT_EQ(document[QStringLiteral("changes")].toArray().size(), leaves * written);
    EXPECT_EQ(document[QStringLiteral("summary")].toObject()[QStringLiteral("left")],
              QJsonValue(instances - written));
}

TEST_F(StalledRun, of_a_dry_run_can_be_interrupted_as_well)
{
    process.start(program, on(workspace, resolveAll({QStringLiteral("--dry-run")})));
    ASSERT_TRUE(process.waitForStarted());
    ASSERT_TRUE(waitFor([&] { return catchesSignals(); }));
    interrupt(SIGINT);
    const Result result = resultOf(process);
    EXPECT_EQ(result.exitCode, 130);
    EXPECT_TRUE(result.err.endsWith(QStringLiteral("    nothing was written\n")));
    EXPECT_EQ(workspace.files(), before);
}

TEST_F(StalledRun, does_not_write_an_instance_that_a_link_still_needs_when_it_is_interrupted)
{
    linkAllTogether(workspace);
    const QByteArray leader = workspace.read(QStringLiteral("configuration/leader.json"));
    start();
    interrupt(SIGINT);
    const Result result = resultOf(process);
    EXPECT_EQ(result.exitCode, 130);
    const int written = expectWholeFiles();
    EXPECT_LT(written, instances);
    EXPECT_EQ(workspace.read(QStringLiteral("configuration/leader.json")), leader);
    EXPECT_TRUE(result.err.startsWith(
        QStringLiteral("error: interrupted with %1 links left of 701\n").arg(701 - written)))
        << result.err.toStdString();

    EXPECT_EQ(runProgram(on(workspace, resolveAll())).exitCode, 0);
    EXPECT_EQ(expectWholeFiles(), instances);
    EXPECT_EQ(workspace.read(QStringLiteral("configuration/leader.json")),
              QByteArray(leader).replace("old", "new"));
}

TEST_F(StalledRun, waits_for_its_reader_instead_of_running_ahead)
{
    start();
    int written = 0;
    while (written != writtenInstances()) {
        written = writtenInstances();
        std::this_thread::sleep_for(500ms);
    }
    EXPECT_LT(written, instances);
    EXPECT_EQ(resultOf(process).exitCode, 0);
    EXPECT_EQ(expectWholeFiles(), instances);
}

TEST(BulkProgram, works_to_its_end_although_nobody_reads_what_it_shows)
{
    const TestWorkspace workspace;
    writeLargeWorkspace(workspace, {300, 20, 0});
    const Result result =
        runShell(workspace.path(), QStringLiteral("(unitflow resolve --all; echo $? > code) | "
                                                  "head -n 1"));
    EXPECT_EQ(result.out, QStringLiteral("follower0\n"));
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: the output cannot be written\n")))
        << result.err.toStdString();
    EXPECT_EQ(workspace.read(QStringLiteral("code")), QByteArray("2\n"));
    EXPECT_TRUE(workspace.read(followerFile(299)).contains("new"));
    EXPECT_TRUE(
        workspace.read(QStringLiteral("configuration/manifest.json")).contains("\"follower299\""));
}

TEST(BulkProgram, keeps_the_others_when_an_instance_cannot_be_written)
{
    const TestWorkspace workspace;
    writeLargeWorkspace(workspace, {20, 1, 0});
    // This one outgrows the limit below.
    const QByteArray large = workspace.read(followerFile(7)) + QByteArray(64 * 1024, ' ');
    workspace.write(followerFile(7), large);
    const Result result =
        runShell(workspace.path(),
                 QStringLiteral("trap '' XFSZ; ulimit -f 16; unitflow resolve --all --jobs 3"));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: configuration/follower7.json: ")))
        << result.err.toStdString();
    EXPECT_EQ(result.err.count(QStringLiteral("error: ")), 1);
    EXPECT_TRUE(result.out.endsWith(QStringLiteral("19 leaves changed in 19 instances.\n"
                                                   "20 of 20 links resolved; 20 files written.\n")))
        << result.out.toStdString();
    EXPECT_EQ(workspace.read(followerFile(7)), large);
    EXPECT_TRUE(workspace.read(followerFile(19)).contains("new"));
    EXPECT_FALSE(
        workspace.read(QStringLiteral("configuration/manifest.json")).contains("\"follower7\""));
}

TEST(BulkProgram, that_the_engine_ends_says_by_which_link)
{
    const TestWorkspace workspace;
    writeLargeWorkspace(workspace, {50, 1, 0});
    workspace.write(QStringLiteral("dependency/short.json"),
                    R"({"N": {"Type": "CommandNode",
                              "Commands": {"CommandSetUnitProperties": [["Leaf"]]}}})");
    workspace.write(QStringLiteral("links.json"),
                    workspace.read(QStringLiteral("links.json"))
                        .replace(R"("follower30", "dependency": "follow")",
                                 R"("follower30", "dependency": "short")"));
    const Result result =
        runShell(workspace.path(), QStringLiteral("ulimit -c 0; unitflow resolve --all --jobs 3"));
    EXPECT_NE(result.exitCode, 0);
    EXPECT_NE(result.exitCode, 1);
    EXPECT_NE(result.exitCode, 2);
    EXPECT_TRUE(result.err.startsWith(
        QStringLiteral("error: dependency/short.json: a row ends the program")))
        << result.err.toStdString();
    EXPECT_TRUE(result.err.contains(QStringLiteral("leader → follower30 through short\n")))
        << result.err.toStdString();
}

// --- memory

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

/// The most memory that a run of the program took, in KiB.
long peakMemory(const TestWorkspace& workspace, const QStringList& arguments)
{
    std::vector<QByteArray> texts{program.toUtf8()};
    for (const QString& argument : on(workspace, arguments)) {
        texts.push_back(argument.toUtf8());
    }
    std::vector<char*> pointers(texts.size() + 1, nullptr);
    std::transform(texts.begin(), texts.end(), pointers.begin(),
                   [](QByteArray& text) { return text.data(); });
    const pid_t child = fork();
    if (child == 0) {
        execv(pointers.front(), pointers.data());
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    EXPECT_EQ(wait4(child, &status, 0, &usage), child);
    EXPECT_EQ(status, 0);
    return usage.ru_maxrss; // NOLINT(cppcoreguidelines-pro-type-union-access): of the system
}

class BulkMemory : public testing::TestWithParam<QStringList> {};

TEST_P(BulkMemory, does_not_grow_with_the_number_of_instances)
{
    constexpr int padding = 100 * 1024;
    const TestWorkspace few;
    writeLargeWorkspace(few, {40, 1, padding});
    const TestWorkspace many;
    writeLargeWorkspace(many, {400, 1, padding});
    // To keep but the text of each instance would take 35 MiB more.
    constexpr long allowed = 8L * 1024;
    EXPECT_LT(peakMemory(many, GetParam()), peakMemory(few, GetParam()) + allowed);
}

INSTANTIATE_TEST_SUITE_P(Of, BulkMemory,
                         testing::Values(resolveAll({QStringLiteral("--quiet")}),
                                         resolveAll({QStringLiteral("--quiet"),
                                                     QStringLiteral("--dry-run")})));

TEST(BulkMemoryOfOneUnit, does_not_grow_with_the_number_of_instances_either)
{
    const auto write = [](const TestWorkspace& workspace, int instances) {
        writeLargeWorkspace(workspace, {instances, 1, 100 * 1024});
        linkAllTogether(workspace);
    };
    const TestWorkspace few;
    write(few, 40);
    const TestWorkspace many;
    write(many, 400);
    constexpr long allowed = 8L * 1024;
    const QStringList arguments = resolveAll({QStringLiteral("--quiet")});
    EXPECT_LT(peakMemory(many, arguments), peakMemory(few, arguments) + allowed);
}

#endif

// --- the bar

/// What stands on a terminal in the end: "\r" goes back to the start of the line.
QStringList screenOf(const std::string& written)
{
    QStringList lines{{}};
    int column = 0;
    for (const QChar character : QString::fromStdString(written)) {
        if (character == QLatin1Char('\r')) {
            column = 0;
        } else if (character == QLatin1Char('\n')) {
            lines.append(QString());
            column = 0;
        } else {
            lines.last() = lines.last().leftJustified(column).replace(column, 1, character);
            ++column;
        }
    }
    for (QString& line : lines) {
        while (line.endsWith(QLatin1Char(' '))) {
            line.chop(1);
        }
    }
    return lines;
}

TEST(BulkTerminal, has_a_bar_while_it_lasts_and_no_trace_of_it_in_the_end)
{
    const TestWorkspace workspace;
    writeLargeWorkspace(workspace, {700, 40, 0});
    Terminal terminal({QStringLiteral("NO_COLOR=1")}, on(workspace, resolveAll()));
    // Meanwhile the run waits for somebody to read.
    ASSERT_TRUE(waitFor([&] { return workspace.read(followerFile(0)).contains("new"); }));
    std::this_thread::sleep_for(1500ms);
    const std::string written = terminal.readAll();
    EXPECT_NE(written.find("\r[#"), std::string::npos);
    EXPECT_NE(written.find(" of 700, "), std::string::npos);

    const QStringList screen = screenOf(written);
    EXPECT_EQ(screen.filter(QStringLiteral("of 700, ")), QStringList());
    EXPECT_EQ(screen.filter(QStringLiteral("follower")).size(), 700);
    ASSERT_GE(screen.size(), 3);
    EXPECT_EQ(screen[screen.size() - 3], QStringLiteral("28000 leaves changed in 700 instances."));
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^700 of 700 links resolved; 701 files written "
                                                  "in \\d+ s\\.$"))
                    .match(screen[screen.size() - 2])
                    .hasMatch())
        << screen[screen.size() - 2].toStdString();
}

TEST(BulkTerminal, stays_without_a_bar_when_the_run_is_short)
{
    const TestWorkspace workspace;
    writeLargeWorkspace(workspace, {3, 1, 0});
    EXPECT_EQ(runOnTerminal({QStringLiteral("NO_COLOR=1")}, on(workspace, resolveAll())),
              "follower0\r\n  Leaf0  unit  old → new\r\n"
              "follower1\r\n  Leaf0  unit  old → new\r\n"
              "follower2\r\n  Leaf0  unit  old → new\r\n"
              "3 leaves changed in 3 instances.\r\n"
              "3 of 3 links resolved; 4 files written.\r\n");
}

} // namespace
