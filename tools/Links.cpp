#include "tools/Links.h"

#include "tools/Access.h"
#include "tools/Changes.h"
#include "tools/Json.h"
#include "tools/Messages.h"
#include "tools/Text.h"
#include "tools/Value.h"

#include <algorithm>
#include <iterator>

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

} // namespace

LinkRunner::LinkRunner(const filehost::Workspace& workspace, filehost::Session& session,
                       Console& console)
    : workspace(workspace), resolver(workspace), session(session), console(console)
{}

LinkRun LinkRunner::run(const filehost::Link& link, const QStringList& urls)
{
    Messages messages([&](const QString& lastWords) {
        Problem problem = inDescription(link, lastWords);
        problem.advice = QStringLiteral("the program ends here and writes nothing; look for rows "
                                        "with too few cells in the description");
        report(link, Severity::Error, problem);
    });

    LinkRun run{link, urls};
    const bool resolved = resolver.resolveLink(link, urls, run.changed);

    const QList<Problem> problems = session.takeProblems();
    for (const Problem& problem : problems) {
        report(link, Severity::Error, problem);
    }
    for (const QString& message : messages.take()) {
        if (!isRepetition(message, !problems.isEmpty())) {
            report(link, Severity::Warning, inDescription(link, message));
        }
    }

    if (problems.isEmpty()) {
        run.outcome = resolved ? Outcome::Resolved : Outcome::Unresolved;
    }
    return run;
}

void LinkRunner::report(const filehost::Link& link, Severity severity, const Problem& problem)
{
    console.report({severity, problem, link});
}

Problem LinkRunner::inDescription(const filehost::Link& link, const QString& message) const
{
    return {Problem::Code::Shape, fileOf(workspace, link.dependency), 0, 0, message, {}};
}

QString describe(const filehost::Link& link)
{
    const filehost::Kind kind =
        link.isProcess ? filehost::Kind::Process : filehost::Kind::Configuration;
    QStringList parameters;
    for (const QVariant& parameter : link.parameters) {
        parameters.append(valueText(parameter));
    }
    const QString text =
        QStringLiteral("%1 → %2 through %3")
            .arg(printable(link.source), titleOf({kind, link.target}), printable(link.dependency));
    return parameters.isEmpty()
               ? text
               : text + QStringLiteral(" (%1)").arg(parameters.join(QStringLiteral(", ")));
}

QString placeOf(const filehost::Link& link)
{
    return link.line == 0 ? QString()
                          : QStringLiteral("links.json:%1:%2: ").arg(link.line).arg(link.column);
}

QList<LinkRun> withOutcome(const QList<LinkRun>& runs, Outcome outcome)
{
    QList<LinkRun> found;
    std::copy_if(runs.begin(), runs.end(), std::back_inserter(found),
                 [outcome](const LinkRun& run) { return run.outcome == outcome; });
    return found;
}

void addLink(JsonDocument& document, const filehost::Link& link)
{
    document.add(QStringLiteral("source"), link.source);
    document.add(QStringLiteral("target"), link.target);
    document.add(QStringLiteral("dependency"), link.dependency);
    document.add(QStringLiteral("process"), link.isProcess);
    document.add(QStringLiteral("parameters"), link.parameters);
}

void addRuns(JsonDocument& document, const QList<LinkRun>& runs)
{
    document.addObjects(QStringLiteral("links"), runs, [&document](const LinkRun& run) {
        addLink(document, run.link);
        document.add(QStringLiteral("urls"), run.urls);
        document.add(QStringLiteral("outcome"), nameOf(run.outcome));
        document.add(QStringLiteral("changed"), run.changed);
    });
}

} // namespace tools
