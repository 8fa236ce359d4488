#ifndef UNITFLOW_TOOLS_CONSOLE_H
#define UNITFLOW_TOOLS_CONSOLE_H

#include "filehost/Problem.h"
#include "filehost/Workspace.h"
#include "tools/Streams.h"

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
    /// Data for programs: adds what was reported as the last member and closes the document.
    void write(JsonDocument& document);
    /// What happens meanwhile, one line. Nothing with --quiet.
    void note(const QString& line);

    /// Written at once, whatever the options, and kept for the document.
    void report(const Diagnostic& diagnostic);
    void report(const filehost::Problem& problem);
    void report(const QList<filehost::Problem>& problems);
    /// An error that is no problem in a file, or that the document tells in a member of its own.
    void complain(const QString& message, const QString& advice);
    /// Everything reported so far.
    const QList<Diagnostic>& diagnostics() const;

private:
    QString firstLine(Severity severity, const QString& text) const;

    Streams streams;
    GlobalOptions chosen;
    QList<Diagnostic> reported;
};

} // namespace tools

#endif
