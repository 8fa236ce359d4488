#include "tools/Access.h"

#include "tools/Console.h"
#include "tools/Leaves.h"
#include "tools/NearestNames.h"
#include "tools/Text.h"

#include <QDir>
#include <QFileInfo>
#include <QList>

namespace tools {

namespace {

using filehost::Instance;
using filehost::Kind;
using filehost::Problem;
using filehost::Workspace;

QString relativeTo(const Workspace& workspace, const QString& path)
{
    return QDir(workspace.directory()).relativeFilePath(path);
}

Problem missing(const QString& file, const QString& message, const QString& nearest)
{
    const QString everything = QStringLiteral("\"unitflow show\" lists what there is.");
    return {Problem::Code::Missing,
            file,
            0,
            0,
            message,
            nearest.isEmpty() ? everything : nearest + QLatin1Char(' ') + everything};
}

QString adviceForInstance(const Workspace& workspace, const Instance& instance)
{
    const bool isProcess = instance.kind == Kind::Process;
    const Kind otherKind = isProcess ? Kind::Configuration : Kind::Process;
    if (workspace.instanceNames(otherKind).contains(instance.name)) {
        return isProcess ? QStringLiteral("There is a configuration of this name; for that, leave "
                                          "--process out.")
                         : QStringLiteral("There is a process description of this name; for that, "
                                          "add --process.");
    }
    return nearestNamesSentence(instance.name, workspace.instanceNames(instance.kind));
}

} // namespace

std::optional<Workspace> openWorkspace(Console& console)
{
    QList<Problem> problems;
    std::optional<Workspace> workspace = Workspace::open(console.options().directory, problems);
    console.report(problems);
    return workspace;
}

bool beginSession(filehost::Session& session, Console& console)
{
    const bool begun =
        session.begin([&console](const QString& sentence) { console.note(sentence); });
    console.report(session.takeProblems());
    return begun;
}

bool requireInstance(const Workspace& workspace, const Instance& instance, Console& console)
{
    QList<Problem> problems;
    const QString path = workspace.instancePath(instance, problems);
    console.report(problems);
    if (path.isEmpty()) {
        return false;
    }
    if (QFileInfo::exists(path)) {
        return true;
    }

    console.report(missing(
        relativeTo(workspace, path),
        QStringLiteral("there is no %1 %2").arg(nameOf(instance.kind), quoted(instance.name)),
        adviceForInstance(workspace, instance)));
    return false;
}

bool requireDependency(const Workspace& workspace, const QString& name, Console& console)
{
    QList<Problem> problems;
    const QString path = workspace.dependencyPath(name, problems);
    console.report(problems);
    if (path.isEmpty()) {
        return false;
    }
    if (QFileInfo::exists(path)) {
        return true;
    }

    console.report(
        missing(relativeTo(workspace, path),
                QStringLiteral("there is no dependency description %1").arg(quoted(name)),
                nearestNamesSentence(name, workspace.dependencyNames())));
    return false;
}

Problem unknownUrl(const Workspace& workspace, const Instance& instance,
                   const BaseClassSharedPointer& root, const QString& url)
{
    const QString everything =
        QStringLiteral("\"unitflow show %1%2\" lists them all.")
            .arg(instance.name,
                 instance.kind == Kind::Process ? QStringLiteral(" --process") : QString());
    const QString nearest = nearestNamesSentence(url, urlsOf(leavesBelow(root, QString())));
    return {Problem::Code::Missing,
            fileOf(workspace, instance),
            0,
            0,
            QStringLiteral("there is no leaf %1").arg(quoted(url)),
            nearest.isEmpty() ? QStringLiteral("The tree has no leaves at all.")
                              : nearest + QLatin1Char(' ') + everything};
}

QString fileOf(const Workspace& workspace, const Instance& instance)
{
    QList<Problem> ignored;
    return relativeTo(workspace, workspace.instancePath(instance, ignored));
}

QString nameOf(Kind kind)
{
    return kind == Kind::Process ? QStringLiteral("process description")
                                 : QStringLiteral("configuration");
}

} // namespace tools
