#include "TestWorkspace.h"

#include <QDateTime>
#include <QFile>
#include <QLockFile>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

using filehost::Problem;
using filehost::Session;
using Access = Session::Access;

namespace {

/// Another process with a session on the workspace. It tells when it has begun and ends its
/// session when it is told to.
class OtherProcess {
public:
    OtherProcess(const filehost::Workspace& workspace, bool dies)
    {
        EXPECT_EQ(pipe(toChild.data()), 0);
        EXPECT_EQ(pipe(fromChild.data()), 0);
        process = fork();
        if (process == 0) {
            hold(workspace, dies);
        }
        close(fromChild[1]);
        char byte = 0;
        EXPECT_EQ(::read(fromChild[0], &byte, 1), 1) << "the other process has no session";
    }

    ~OtherProcess()
    {
        finish();
        close(fromChild[0]);
        close(toChild[0]);
        close(toChild[1]);
    }

    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

    void finish()
    {
        if (process > 0) {
            EXPECT_EQ(::write(toChild[1], "x", 1), 1);
            EXPECT_EQ(waitpid(process, nullptr, 0), process);
            process = -1;
        }
    }

    pid_t id() const { return process; }

private:
    [[noreturn]] void hold(const filehost::Workspace& workspace, bool dies)
    {
        char byte = 0;
        {
            Session session(workspace, Access::Write);
            const bool isTold = session.begin({}) && ::write(fromChild[1], "x", 1) == 1 &&
                                ::read(toChild[0], &byte, 1) == 1;
            if (dies || !isTold) {
                _exit(1); // without letting go of the lock
            }
        }
        _exit(0);
    }

    std::array<int, 2> toChild{};
    std::array<int, 2> fromChild{};
    pid_t process = -1;
};

class WorkspaceLocks : public TestWorkspace {
protected:
    QString lockFile() const { return path(".unitflow.lock"); }

    void makeOlder(int seconds) const
    {
        QFile file(lockFile());
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-seconds),
                                     QFileDevice::FileModificationTime));
    }

    /// Whether a writer has to wait until `letGo` is called.
    bool mustWait(const std::function<void()>& letGo) const
    {
        bool hasWaited = false;
        Session session(workspace(), Access::Write);
        EXPECT_TRUE(session.begin([&](const QString& /*message*/) {
            hasWaited = true;
            letGo();
        }));
        return hasWaited;
    }
};

} // namespace

TEST_F(WorkspaceLocks, make_writers_wait_with_one_message_that_names_the_holder)
{
    OtherProcess other(workspace(), false);
    const QString process = QString::number(other.id());
    QStringList messages;
    Session session(workspace(), Access::Write);
    EXPECT_TRUE(session.begin([&](const QString& message) {
        messages.append(message);
        other.finish();
    }));
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages.first().contains("process " + process)) << messages.first().toStdString();
    EXPECT_TRUE(messages.first().contains("filehost-tests"));
    EXPECT_TRUE(messages.first().contains(".unitflow.lock"));
    EXPECT_TRUE(session.takeProblems().isEmpty());
}

TEST_F(WorkspaceLocks, of_a_dead_process_are_taken_over_without_waiting)
{
    OtherProcess(workspace(), true).finish();
    ASSERT_TRUE(QFile::exists(path(".unitflow.lock")));
    Session session(workspace(), Access::Write);
    EXPECT_TRUE(
        session.begin([](const QString& message) { ADD_FAILURE() << message.toStdString(); }));
}

TEST_F(WorkspaceLocks, are_not_stolen_however_old_they_are)
{
    constexpr int month = 30 * 24 * 3600;
    OtherProcess other(workspace(), false);
    makeOlder(month);
    EXPECT_TRUE(mustWait([&] { other.finish(); }));
}

TEST_F(WorkspaceLocks, that_name_nobody_are_taken_over_after_a_minute)
{
    for (const char* left : {"", "12", "no lock at all"}) {
        write(".unitflow.lock", left);
        makeOlder(61);
        EXPECT_FALSE(mustWait([] {})) << left;
    }
}

TEST_F(WorkspaceLocks, that_name_nobody_yet_are_left_alone)
{
    write(".unitflow.lock", "");
    EXPECT_TRUE(mustWait([&] { QFile::remove(lockFile()); }));
}

TEST_F(WorkspaceLocks, that_name_nobody_but_are_held_are_left_alone)
{
    write(".unitflow.lock", "");
    makeOlder(61);
    QFile held(lockFile());
    ASSERT_TRUE(held.open(QIODevice::ReadWrite));
    ASSERT_EQ(flock(held.handle(), LOCK_EX), 0);
    EXPECT_TRUE(mustWait([&] { held.remove(); }));
}

TEST_F(WorkspaceLocks, do_not_keep_readers_out)
{
    write("configuration/A.json", "{}");
    const OtherProcess other(workspace(), false);
    Session session(workspace(), Access::Read);
    EXPECT_TRUE(
        session.begin([](const QString& message) { ADD_FAILURE() << message.toStdString(); }));
    EXPECT_FALSE(session.load(configurationOf("A")).isNull());
}

TEST_F(WorkspaceLocks, are_gone_after_the_session)
{
    {
        Session session(workspace(), Access::Write);
        EXPECT_TRUE(session.begin({}));
        EXPECT_TRUE(QFile::exists(path(".unitflow.lock")));
    }
    EXPECT_FALSE(QFile::exists(path(".unitflow.lock")));
}

TEST_F(WorkspaceLocks, that_cannot_be_had_are_a_problem)
{
    const auto gone = workspace();
    QDir(root()).removeRecursively();
    Session session(gone, Access::Write);
    EXPECT_FALSE(session.begin({}));
    const QList<Problem> problems = session.takeProblems();
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.first().code, Problem::Code::Lock);
    EXPECT_EQ(Session::current(), nullptr);
}
