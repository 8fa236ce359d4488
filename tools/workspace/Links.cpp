#include "tools/workspace/Links.h"

#include "filehost/FileDependencyResolver.h"
#include "tools/console/Json.h"
#include "tools/console/Messages.h"
#include "tools/console/Names.h"
#include "tools/console/Text.h"
#include "tools/console/Value.h"
#include "tools/workspace/Access.h"
#include "tools/workspace/Changes.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

namespace tools {

namespace {

using filehost::Problem;

/// Whether a message of the engine only repeats what the outcome and the problems of a run say.
bool isRepetition(const QString& message, bool hasProblems)
{
    if (message.startsWith(QLatin1String("Unable to resolve dependency between"))) {
        return true;
    }
    return hasProblems && message == QLatin1String("Source or target root invalid");
}

QString nameOf(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Resolved:
        return QStringLiteral("resolved");
    case Outcome::Unresolved:
        return QStringLiteral("unresolved");
    case Outcome::Failed:
        return QStringLiteral("failed");
    }
    return {};
}

/// The URLs for which a run did not resolve, as far as the engine tells.
QString whereUnresolved(const LinkRun& run)
{
    if (run.urls.isEmpty()) {
        return QStringLiteral("one or more of the URLs that the description watches");
    }
    QStringList urls;
    for (const QString& url : run.urls) {
        urls.append(quoted(url));
    }
    return urls.size() == 1 ? urls.first()
                            : QStringLiteral("one or more of %1").arg(enumerated(urls));
}

} // namespace

LinkRunner::LinkRunner(filehost::Session& session, Console& console)
    : session(session), report([&console](const Diagnostic& found) { console.report(found); }),
      lastWords(report)
{
    const auto resolver =
        std::make_shared<const filehost::FileDependencyResolver>(session.workspace());
    resolve = [resolver](const filehost::Link& link, const QStringList& urls, bool& changed) {
        return resolver->resolveLink(link, urls, changed);
    };
}

LinkRunner::LinkRunner(filehost::Session& session, Resolve resolve, Report report, Report lastWords)
    : session(session), resolve(std::move(resolve)), report(std::move(report)),
      lastWords(std::move(lastWords))
{}

LinkRun LinkRunner::run(const filehost::Link& link, const QStringList& urls)
{
    Messages messages([&](const QString& message) {
        lastWords({Severity::Error, endOfProgram(session.workspace(), link, message), link});
    });

    LinkRun run{link, urls};
    const bool resolved = resolve(link, urls, run.changed);

    const QList<Problem> problems = session.takeProblems();
    for (const Problem& problem : problems) {
        report({Severity::Error, problem, link});
    }
    for (const QString& message : messages.take()) {
        if (!isRepetition(message, !problems.isEmpty())) {
            report({Severity::Warning, inDescription(link, message), link});
        }
    }

    if (problems.isEmpty()) {
        run.outcome = resolved ? Outcome::Resolved : Outcome::Unresolved;
    }
    return run;
}

Problem LinkRunner::inDescription(const filehost::Link& link, const QString& message) const
{
    const QString file = fileOf(session.workspace(), link.dependency);
    return {Problem::Code::Shape, file, 0, 0, message, {}};
}

Problem endOfProgram(const filehost::Workspace& workspace, const filehost::Link& link,
                     const QString& message)
{
    return {Problem::Code::Shape,
            fileOf(workspace, link.dependency),
            0,
            0,
            QStringLiteral("a row ends the program here; nothing more is written"),
            QStringLiteral("it has too few cells, or names a column that the array does not have; "
                           "\"unitflow check\" tells which row it is; the engine says: ") +
                message.simplified()};
}

void complainAboutUnresolved(const LinkRun& run, Console& console)
{
    console.complain(placeOf(run.link) + describe(run.link) + QStringLiteral(" did not resolve"),
                     QStringLiteral("for %1 no command succeeded, so %2 was left as it was")
                         .arg(whereUnresolved(run), printable(run.link.target)));
}

QList<LinkRun> withOutcome(const QList<LinkRun>& runs, Outcome outcome)
{
    QList<LinkRun> found;
    std::copy_if(runs.begin(), runs.end(), std::back_inserter(found),
                 [outcome](const LinkRun& run) { return run.outcome == outcome; });
    return found;
}

void addRuns(JsonDocument& document, const QList<LinkRun>& runs)
{
    document.addObjects(QStringLiteral("links"), runs,
                        [&](const LinkRun& run) { addRun(document, run); });
}

void addRun(JsonDocument& document, const LinkRun& run)
{
    addLink(document, run.link);
    document.add(QStringLiteral("urls"), run.urls);
    document.add(QStringLiteral("outcome"), nameOf(run.outcome));
    document.add(QStringLiteral("changed"), run.changed);
}

} // namespace tools
