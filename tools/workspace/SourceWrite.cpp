#include "tools/workspace/SourceWrite.h"

#include "filehost/FileDependencyResolver.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "tools/console/Text.h"
#include "tools/console/Value.h"
#include "tools/workspace/Access.h"
#include "tools/workspace/Leaves.h"

#include <algorithm>
#include <iterator>

namespace tools {

namespace {

using filehost::Kind;
using filehost::Link;
using filehost::Problem;
using filehost::Session;

Problem valueRefused(const QString& file, const SourceWrite& write)
{
    return {Problem::Code::Write,
            file,
            0,
            0,
            QStringLiteral("%1 cannot have the value %2")
                .arg(quoted(write.url), elided(valueText(write.value), 40)),
            QStringLiteral("write a value with fewer lists and objects inside one another")};
}

} // namespace

bool storeWrite(Session& session, const SourceWrite& write, Console& console)
{
    const filehost::Workspace& workspace = session.workspace();
    const QString file = fileOf(workspace, write.instance);
    const BaseClassSharedPointer root = loadInstance(session, write.instance, console);
    if (!root) {
        return false;
    }

    const BaseClassSharedPointer leaf = root->getChildData(write.url);
    if (!leaf) {
        console.report(unknownUrl(workspace, write.instance, root, write.url));
        return false;
    }
    if (!isLeaf(leaf)) {
        console.report(notALeaf(workspace, write.instance, leaf, write.url));
        return false;
    }
    if (!write.value.isValid()) {
        return true;
    }

    const int status = leaf->setDataProperty(
        ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue(), write.value);
    if (status != 0 && status != 1) {
        console.report(valueRefused(file, write));
        return false;
    }

    const bool stored = session.store(
        write.instance, root, filehost::FileDependencyResolver::origin(), workspace.directory());
    console.report(session.takeProblems());
    return stored;
}

QList<Link> linksOf(const SourceWrite& write, const QList<Link>& links)
{
    QList<Link> found;
    if (write.instance.kind == Kind::Configuration) {
        std::copy_if(links.begin(), links.end(), std::back_inserter(found),
                     [&](const Link& link) { return link.source == write.instance.name; });
    }
    return found;
}

QString nothingFollows(const SourceWrite& write, const QList<LinkRun>& runs, bool isAnyNodeRun)
{
    if (write.instance.kind == Kind::Process) {
        return QStringLiteral("Nothing follows: links start at configurations only.\n");
    }
    if (runs.isEmpty()) {
        return QStringLiteral("Nothing follows: no link starts at %1.\n")
            .arg(printable(write.instance.name));
    }
    if (withOutcome(runs, Outcome::Unresolved).size() == runs.size()) {
        return (isAnyNodeRun
                    ? QStringLiteral("Nothing follows: links of %1 answer a write to %2, but none "
                                     "of their commands succeeds.\n")
                    : QStringLiteral("Nothing follows: no link of %1 answers a write to %2.\n"))
            .arg(printable(write.instance.name), printable(write.url));
    }
    return {};
}

} // namespace tools
