#ifndef UNITFLOW_TOOLS_WORKSPACE_LISTING_H
#define UNITFLOW_TOOLS_WORKSPACE_LISTING_H

#include "filehost/Workspace.h"

#include <QList>
#include <QString>

namespace tools {

class JsonDocument;

/// What a workspace has, and in how many links each part of it stands.
struct Listing {
    struct InstanceEntry {
        filehost::Instance instance;
        int sourceOf = 0;
        int targetOf = 0;
    };
    struct DependencyEntry {
        QString name;
        int usedBy = 0;
    };

    QList<InstanceEntry> instances;
    QList<DependencyEntry> dependencies;
    QList<filehost::Link> links;
};

/// Adds the problems of links.json. Opens no other file.
Listing listingOf(const filehost::Workspace& workspace, QList<filehost::Problem>& problems);

QString listingText(const Listing& listing, bool color);

/// Adds the members "instances", "dependencies" and "links".
void addListing(JsonDocument& document, const Listing& listing);

} // namespace tools

#endif
