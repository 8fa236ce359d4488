#include "tools/workspace/Listing.h"

#include "tools/console/Json.h"
#include "tools/console/Names.h"
#include "tools/console/Table.h"
#include "tools/console/Text.h"
#include "tools/workspace/Links.h"

#include <QStringList>

#include <algorithm>

namespace tools {

namespace {

using filehost::Kind;
using filehost::Link;
using filehost::Workspace;

template <typename Predicate>
int count(const QList<Link>& links, const Predicate& isWanted)
{
    return static_cast<int>(std::count_if(links.begin(), links.end(), isWanted));
}

QList<Listing::InstanceEntry> instancesOf(const Workspace& workspace, Kind kind,
                                          const QList<Link>& links)
{
    const bool isProcess = kind == Kind::Process;
    QList<Listing::InstanceEntry> instances;
    for (const QString& name : workspace.instanceNames(kind)) {
        const int sourceOf =
            count(links, [&](const Link& link) { return !isProcess && link.source == name; });
        const int targetOf = count(links, [&](const Link& link) {
            return link.isProcess == isProcess && link.target == name;
        });
        instances.append({{kind, name}, sourceOf, targetOf});
    }
    return instances;
}

QString linksText(const QString& role, int links)
{
    return links == 0 ? QString()
                      : role + counted(links, QStringLiteral("link"), QStringLiteral("links"));
}

QString rolesText(const Listing::InstanceEntry& entry)
{
    QStringList roles{linksText(QStringLiteral("source of "), entry.sourceOf),
                      linksText(QStringLiteral("target of "), entry.targetOf)};
    roles.removeAll(QString());
    return roles.join(QStringLiteral(", "));
}

void addInstances(Table& table, const Listing& listing, Kind kind, const QString& heading)
{
    bool isFirst = true;
    for (const Listing::InstanceEntry& entry : listing.instances) {
        if (entry.instance.kind != kind) {
            continue;
        }
        if (isFirst) {
            table.addHeading(heading);
        }
        isFirst = false;
        table.addRow({printable(entry.instance.name), rolesText(entry)});
    }
}

QString linkList(const Listing& listing, bool color)
{
    Table table;
    table.addHeading(QStringLiteral("links"));
    for (const Link& link : listing.links) {
        table.addRow({describe(link)});
    }
    return listing.links.isEmpty() ? QStringLiteral("no links\n") : table.toText(color);
}

} // namespace

Listing listingOf(const Workspace& workspace, QList<filehost::Problem>& problems)
{
    Listing listing;
    workspace.checkFolders(problems);
    listing.links = workspace.links(problems);
    listing.instances = instancesOf(workspace, Kind::Configuration, listing.links) +
                        instancesOf(workspace, Kind::Process, listing.links);
    for (const QString& name : workspace.dependencyNames()) {
        const int usedBy =
            count(listing.links, [&](const Link& link) { return link.dependency == name; });
        listing.dependencies.append({name, usedBy});
    }
    return listing;
}

QString listingText(const Listing& listing, bool color)
{
    Table table;
    addInstances(table, listing, Kind::Configuration, QStringLiteral("configurations"));
    addInstances(table, listing, Kind::Process, QStringLiteral("process descriptions"));
    if (!listing.dependencies.isEmpty()) {
        table.addHeading(QStringLiteral("dependency descriptions"));
    }
    for (const Listing::DependencyEntry& entry : listing.dependencies) {
        table.addRow({printable(entry.name), linksText(QStringLiteral("used by "), entry.usedBy)});
    }
    return table.toText(color) + linkList(listing, color);
}

void addListing(JsonDocument& document, const Listing& listing)
{
    document.addObjects(QStringLiteral("instances"), listing.instances,
                        [&document](const Listing::InstanceEntry& entry) {
                            document.add(QStringLiteral("name"), entry.instance.name);
                            document.add(QStringLiteral("process"),
                                         entry.instance.kind == Kind::Process);
                            document.add(QStringLiteral("sourceOf"), entry.sourceOf);
                            document.add(QStringLiteral("targetOf"), entry.targetOf);
                        });
    document.addObjects(QStringLiteral("dependencies"), listing.dependencies,
                        [&document](const Listing::DependencyEntry& entry) {
                            document.add(QStringLiteral("name"), entry.name);
                            document.add(QStringLiteral("usedBy"), entry.usedBy);
                        });
    document.addObjects(QStringLiteral("links"), listing.links,
                        [&document](const Link& link) { addLink(document, link); });
}

} // namespace tools
