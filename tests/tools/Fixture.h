#ifndef UNITFLOW_TESTS_TOOLS_FIXTURE_H
#define UNITFLOW_TESTS_TOOLS_FIXTURE_H

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <iosfwd>

/// A workspace in a folder of its own, which ends with it. It begins with an oven: a controller
/// that drives a display, a recorder and a process description.
class TestWorkspace {
public:
    TestWorkspace();

    QString path(const QString& file = {}) const;
    void write(const QString& file, const QByteArray& text) const;
    void remove(const QString& file) const;
    QByteArray read(const QString& file) const;

    /// Every file by its name, relative to the workspace.
    QMap<QString, QByteArray> files() const;
    /// When each file and folder was last changed, in nanoseconds.
    QMap<QString, qint64> times() const;

private:
    QTemporaryDir folder;
};

/// A description by which the second column of the recorder's log follows the temperature unit.
extern const char* const columnDescription;

/// What a run of the program left behind.
struct Result {
    int exitCode;
    QString out;
    QString err;

    QJsonObject json() const;
};

void PrintTo(const Result& result, std::ostream* stream);

/// Runs the program inside this process, on a workspace.
Result run(const TestWorkspace& workspace, const QStringList& arguments);

/// The same without any workspace.
Result run(const QStringList& arguments);

/// Compares a whole output with the file tests/tools/golden/<name>.txt. To approve new outputs, run
/// the tests with UNITFLOW_APPROVE=1 in the environment and look at what git shows.
void expectGolden(const QString& name, const QString& output);

// GoogleTest would print strings as lists of characters.
void PrintTo(const QString& text, std::ostream* stream);

#endif
