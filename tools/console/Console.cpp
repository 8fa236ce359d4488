#include "tools/console/Console.h"

#include "tools/console/Json.h"
#include "tools/console/Names.h"
#include "tools/console/Style.h"
#include "tools/console/Text.h"

#include <algorithm>
#include <ostream>

namespace tools {

namespace {

constexpr int widthOfEcho = 2; // of the ^C that a terminal shows where the cursor is

void send(std::ostream& stream, const QString& text)
{
    stream << text.toStdString() << std::flush;
}

QString nameOf(filehost::Problem::Code code)
{
    using Code = filehost::Problem::Code;
    switch (code) {
    case Code::Syntax:
        return QStringLiteral("syntax");
    case Code::DuplicateKey:
        return QStringLiteral("duplicate-key");
    case Code::NumberRange:
        return QStringLiteral("number-range");
    case Code::Depth:
        return QStringLiteral("depth");
    case Code::Size:
        return QStringLiteral("size");
    case Code::Shape:
        return QStringLiteral("shape");
    case Code::Name:
        return QStringLiteral("name");
    case Code::Missing:
        return QStringLiteral("missing");
    case Code::Read:
        return QStringLiteral("read");
    case Code::Write:
        return QStringLiteral("write");
    case Code::Conflict:
        return QStringLiteral("conflict");
    case Code::Lock:
        return QStringLiteral("lock");
    case Code::NotATree:
        return QStringLiteral("not-a-tree");
    }
    return {};
}

QString nameOf(Severity severity)
{
    return severity == Severity::Error ? QStringLiteral("error") : QStringLiteral("warning");
}

void addProblems(JsonDocument& document, const QList<Diagnostic>& diagnostics)
{
    const auto add = [&document](const QString& key, bool isThere, const QVariant& value) {
        document.add(key, isThere ? value : QVariant());
    };
    document.addObjects(QStringLiteral("problems"), diagnostics, [&](const Diagnostic& found) {
        const filehost::Problem& problem = found.problem;
        document.add(QStringLiteral("severity"), nameOf(found.severity));
        document.add(QStringLiteral("code"), nameOf(problem.code));
        add(QStringLiteral("file"), !problem.file.isEmpty(), problem.file);
        add(QStringLiteral("line"), problem.line != 0, problem.line);
        add(QStringLiteral("column"), problem.column != 0, problem.column);
        document.add(QStringLiteral("message"), problem.message);
        add(QStringLiteral("advice"), !problem.advice.isEmpty(), problem.advice);
        if (found.link) {
            document.addObject(QStringLiteral("link"), [&] { addLink(document, *found.link); });
        } else {
            document.add(QStringLiteral("link"), {});
        }
    });
}

} // namespace

Console::Console(const Streams& streams, const GlobalOptions& options)
    : streams(streams), chosen(options)
{}

const GlobalOptions& Console::options() const
{
    return chosen;
}

bool Console::color() const
{
    return streams.outColor;
}

void Console::show(const QString& lines)
{
    if (!chosen.quiet && !chosen.json && !lines.isEmpty()) {
        clearStatus();
        send(streams.out, lines);
    }
}

void Console::print(const QString& text)
{
    if (!text.isEmpty()) {
        clearStatus();
        send(streams.out, text);
    }
}

void Console::printBytes(const QByteArray& bytes)
{
    clearStatus();
    streams.out.write(bytes.constData(), bytes.size());
}

void Console::chooseJson()
{
    chosen.json = true;
}

void Console::write(JsonDocument& document, ExitCode exitCode)
{
    clearStatus();
    send(streams.out, finished(document, exitCode));
}

QString Console::finished(JsonDocument& document, ExitCode exitCode) const
{
    addProblems(document, reported);
    return document.finish(exitCode);
}

void Console::stream(JsonDocument& document)
{
    const QString text = document.take();
    if (!text.isEmpty()) {
        stream(text);
    }
}

void Console::stream(const QString& lines)
{
    clearStatus();
    send(streams.out, lines);
}

void Console::note(const QString& line)
{
    if (!chosen.quiet) {
        say(line + QLatin1Char('\n'));
    }
}

void Console::report(const Diagnostic& diagnostic)
{
    isReported = true;
    if (chosen.json) {
        reported.append(diagnostic);
    }

    filehost::Problem problem = diagnostic.problem;
    problem.advice.clear();
    QString text = firstLine(diagnostic.severity, filehost::toText(problem));
    if (diagnostic.link) {
        text +=
            wrapped(QStringLiteral("in ") + placeOf(*diagnostic.link) + describe(*diagnostic.link),
                    lineWidth);
    }
    say(text + wrapped(printable(diagnostic.problem.advice), lineWidth));
}

void Console::report(const filehost::Problem& problem)
{
    report({Severity::Error, problem, std::nullopt});
}

void Console::report(const QList<filehost::Problem>& problems)
{
    for (const filehost::Problem& problem : problems) {
        report(problem);
    }
}

void Console::complain(const QString& message, const QString& advice)
{
    say(firstLine(Severity::Error, message) + wrapped(advice, lineWidth));
}

bool Console::hasReported() const
{
    return isReported;
}

// Blanks erase on every terminal, even one that knows no sequences for it.
void Console::showStatus(const QString& text)
{
    if (statusWidth() == 0) {
        return;
    }
    const QString line = elided(text, statusWidth());
    send(streams.err, QLatin1Char('\r') + padded(line, shownStatus));
    shownStatus = displayWidth(line);
}

void Console::clearStatus()
{
    if (shownStatus > 0) {
        const QLatin1Char start('\r');
        send(streams.err, start + QString(shownStatus + widthOfEcho, QLatin1Char(' ')) + start);
        shownStatus = 0;
    }
}

void Console::coverEcho()
{
    clearStatus();
    if (hasTerminal()) {
        send(streams.err, QStringLiteral("\r"));
    }
}

/// The last column stays free: some terminals break the line as soon as it is written to.
int Console::statusWidth() const
{
    const int width = std::min(streams.errWidth, lineWidth) - 1 - widthOfEcho;
    return chosen.quiet ? 0 : std::max(0, width);
}

bool Console::hasTerminal() const
{
    return streams.errWidth > 0;
}

bool Console::isOnTerminal() const
{
    return streams.outIsTerminal;
}

void Console::say(const QString& text)
{
    clearStatus();
    send(streams.err, text);
}

QString Console::firstLine(Severity severity, const QString& text) const
{
    const QString label =
        severity == Severity::Error
            ? styled(QStringLiteral("error:"), Style::Error, streams.errColor)
            : styled(QStringLiteral("warning:"), Style::Warning, streams.errColor);
    return label + QLatin1Char(' ') + printable(text) + QLatin1Char('\n');
}

} // namespace tools
