#include "ProgramFixture.h"

#include <QProcessEnvironment>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

const QString program = QStringLiteral(UNITFLOW_PROGRAM);

QStringList on(const TestWorkspace& workspace, const QStringList& arguments)
{
    return QStringList{QStringLiteral("-C"), workspace.path()} + arguments;
}

Result resultOf(QProcess& process)
{
    constexpr int patience = 120'000; // sanitizers are slow
    EXPECT_TRUE(process.waitForFinished(patience)) << process.errorString().toStdString();
    const bool crashed = process.exitStatus() == QProcess::CrashExit;
    return {crashed ? -1 : process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

Result runProgram(const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    return resultOf(process);
}

Result runShell(const QString& folder, const QString& line)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString bin = program.section(QLatin1Char('/'), 0, -2);
    environment.insert(QStringLiteral("PATH"),
                       bin + QLatin1Char(':') + environment.value(QStringLiteral("PATH")));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(folder);
    process.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), line});
    return resultOf(process);
}

Terminal::Terminal(const QStringList& environment, const QStringList& arguments)
{
    const QStringList words =
        QStringList{QStringLiteral("env"), QStringLiteral("-u"), QStringLiteral("NO_COLOR"),
                    QStringLiteral("TERM=xterm")} +
        environment + QStringList{program} + arguments;
    std::vector<QByteArray> texts(static_cast<std::size_t>(words.size()));
    std::transform(words.begin(), words.end(), texts.begin(),
                   [](const QString& word) { return word.toUtf8(); });
    std::vector<char*> pointers(texts.size() + 1, nullptr);
    std::transform(texts.begin(), texts.end(), pointers.begin(),
                   [](QByteArray& text) { return text.data(); });

    const winsize size{25, 80, 0, 0};
    child = forkpty(&terminal, nullptr, nullptr, &size);
    if (child == 0) {
        execvp(pointers.front(), pointers.data());
        _exit(127);
    }
    EXPECT_GT(child, 0);
}

Terminal::~Terminal()
{
    close(terminal);
    waitpid(child, nullptr, 0);
}

std::string Terminal::readAll() const
{
    std::string written;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = read(terminal, buffer.data(), buffer.size())) > 0;) {
        written.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return written;
}

std::string runOnTerminal(const QStringList& environment, const QStringList& arguments)
{
    return Terminal(environment, arguments).readAll();
}
