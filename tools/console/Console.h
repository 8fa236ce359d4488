#ifndef UNITFLOW_TOOLS_CONSOLE_CONSOLE_H
#define UNITFLOW_TOOLS_CONSOLE_CONSOLE_H

#include "filehost/Problem.h"
#include "filehost/Workspace.h"
#include "tools/console/ExitCode.h"
#include "tools/console/Streams.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace tools {

class JsonDocument;

/// What the options before and after every subcommand say.
struct GlobalOptions {
    QString directory = QStringLiteral(".");
    bool json = false;
    bool quiet = false;
};

enum class Severity { Error, Warning };

/// Something that the user must know, and the link during which it was met, if any.
struct Diagnostic {
    Severity severity = Severity::Error;
    filehost::Problem problem;
    std::optional<filehost::Link> link;
};

/// All that a subcommand says goes through here: data to one stream, diagnostics to the other.
class Console {
public:
    Console(const Streams& streams, const GlobalOptions& options);

    const GlobalOptions& options() const;
    /// Whether what `show` gets may be colored.
    bool color() const;

    /// Data for people, in whole lines. Nothing with --quiet or --json.
    void show(const QString& lines);
    /// Data that is written whatever the options.
    void print(const QString& text);
    /// The same for data that may be no text.
    void printBytes(const QByteArray& bytes);
    /// Makes it as if --json was given.
    void chooseJson();
    /// Data for programs: adds what was reported and the exit code and closes the document.
    void write(JsonDocument& document, ExitCode exitCode);
    /// The same, but leaves it to the caller where the document goes.
    QString finished(JsonDocument& document, ExitCode exitCode) const;
    /// Writes what a document has so far.
    void stream(JsonDocument& document);
    /// Data for programs that is no document, in whole lines.
    void stream(const QString& lines);
    /// What happens meanwhile, one line. Nothing with --quiet.
    void note(const QString& line);

    /// Written at once, whatever the options, and kept for the document.
    void report(const Diagnostic& diagnostic);
    void report(const filehost::Problem& problem);
    void report(const QList<filehost::Problem>& problems);
    /// An error that is no problem in a file, or that the document tells in a member of its own.
    void complain(const QString& message, const QString& advice);
    bool hasReported() const;

    /// A last line on the terminal that standard error is, below everything else, until it is
    /// replaced or cleared. It has at most `statusWidth` columns, and none of them is there when
    /// standard error is no terminal or with --quiet.
    void showStatus(const QString& text);
    void clearStatus();
    /// Lets what comes next cover the ^C that the terminal may have shown.
    void coverEcho();
    int statusWidth() const;
    /// Whether standard error is a terminal.
    bool hasTerminal() const;
    /// Whether people see at once what `show` gets.
    bool isOnTerminal() const;

private:
    void say(const QString& text);
    QString firstLine(Severity severity, const QString& text) const;

    Streams streams;
    GlobalOptions chosen;
    bool isReported = false;
    QList<Diagnostic> reported; ///< only for a document: there may be very many
    int shownStatus = 0;        ///< columns
};

} // namespace tools

#endif
