#ifndef UNITFLOW_TESTS_TOOLS_PROGRAMFIXTURE_H
#define UNITFLOW_TESTS_TOOLS_PROGRAMFIXTURE_H

#include "Fixture.h"

#include <QProcess>
#include <QString>
#include <QStringList>

#include <string>
#include <sys/types.h>

/// The program as a process of its own: its file.
extern const QString program;

/// Arguments for work on a workspace.
QStringList on(const TestWorkspace& workspace, const QStringList& arguments);

/// Waits for the end. The exit code is -1 after a signal.
Result resultOf(QProcess& process);

Result runProgram(const QStringList& arguments);

/// Runs a line of shell in which "unitflow" is the program, in a folder.
Result runShell(const QString& folder, const QString& line);

/// The program on a terminal of 80 columns. `environment` is a list of settings for the program
/// `env`.
class Terminal {
public:
    Terminal(const QStringList& environment, const QStringList& arguments);
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    /// What was written from now on until the program ended.
    std::string readAll() const;

private:
    pid_t child;
    int terminal = -1;
};

/// What the program writes to a terminal.
std::string runOnTerminal(const QStringList& environment, const QStringList& arguments);

#endif
