#include "tools/workspace/Access.h"

#include "tools/console/Console.h"
#include "tools/console/Text.h"
#include "tools/workspace/Leaves.h"

#include <QDir>
#include <QList>

#include <algorithm>

namespace tools {

namespace {

using filehost::Instance;
using filehost::Kind;
using filehost::Problem;
using filehost::Session;
using filehost::Workspace;

QString relativeTo(const Workspace& workspace, const QString& path)
{
    return QDir(workspace.directory()).relativeFilePath(path);
}

/// What to do about an instance that is missing, but there as the other kind; else empty.
QString adviceOnKind(const Workspace& workspace, const Instance& instance, KindChoice choice)
{
    const bool isProcess = instance.kind == Kind::Process;
    const Kind otherKind = isProcess ? Kind::Configuration : Kind::Process;
    if (!workspace.instanceNames(otherKind).contains(instance.name)) {
        return {};
    }
    if (choice == KindChoice::ConfigurationOnly) {
        return QStringLiteral("there is a process description of this name, but a process "
                              "description cannot be a source; name a configuration");
    }
    return isProcess ? QStringLiteral("there is a configuration of this name: leave out --process")
                     : QStringLiteral("there is a process description of this name: add --process");
}

/// A word as it is typed into a shell.
QString typed(const QString& word)
{
    const bool isPlain = std::all_of(word.begin(), word.end(), [](QChar character) {
        return character.isLetterOrNumber() || QStringLiteral("._-/").contains(character);
    });
    QString inQuotes = word;
    inQuotes.replace(QLatin1Char('\''), QLatin1String(R"('\'')"));
    return isPlain ? word : QLatin1Char('\'') + inQuotes + QLatin1Char('\'');
}

} // namespace

std::optional<Workspace> openWorkspace(Console& console)
{
    QList<Problem> problems;
    std::optional<Workspace> workspace = Workspace::open(console.options().directory, problems);
    console.report(problems);
    return workspace;
}

bool beginSession(Session& session, Console& console)
{
    const bool begun =
        session.begin([&console](const QString& sentence) { console.note(sentence); });
    console.report(session.takeProblems());
    return begun;
}

BaseClassSharedPointer loadInstance(Session& session, const Instance& instance, Console& console,
                                    KindChoice choice)
{
    BaseClassSharedPointer root = session.load(instance);
    QList<Problem> problems = session.takeProblems();
    for (Problem& problem : problems) {
        const QString advice = problem.code == Problem::Code::Missing
                                   ? adviceOnKind(session.workspace(), instance, choice)
                                   : QString();
        if (!advice.isEmpty()) {
            problem.advice = advice;
        }
    }
    console.report(problems);
    return root;
}

Problem unknownUrl(const Workspace& workspace, const Instance& instance,
                   const BaseClassSharedPointer& root, const QString& url)
{
    const QString nearest = nearestNamesText(url, urlsOf(leavesBelow(root, QString())));
    const QString option =
        instance.kind == Kind::Process ? QStringLiteral(" --process") : QString();
    return {Problem::Code::Missing,
            fileOf(workspace, instance),
            0,
            0,
            QStringLiteral("there is no leaf %1").arg(quoted(url)),
            nearest.isEmpty() ? QStringLiteral("the tree has no leaves at all")
                              : QStringLiteral("%1; \"unitflow show %2%3\" lists them all")
                                    .arg(nearest, typed(instance.name), option)};
}

Problem notALeaf(const Workspace& workspace, const Instance& instance,
                 const BaseClassSharedPointer& node, const QString& url)
{
    return {Problem::Code::Shape,
            fileOf(workspace, instance),
            0,
            0,
            QStringLiteral("%1 is no leaf: it has no value, only children").arg(quoted(url)),
            nearestNamesText(url, urlsOf(leavesBelow(node, url)))};
}

QString fileOf(const Workspace& workspace, const Instance& instance)
{
    QList<Problem> ignored;
    return relativeTo(workspace, workspace.instancePath(instance, ignored));
}

QString fileOf(const Workspace& workspace, const QString& dependency)
{
    QList<Problem> ignored;
    return relativeTo(workspace, workspace.dependencyPath(dependency, ignored));
}

} // namespace tools
