#ifndef UNITFLOW_DEPENDENCYWALKER_H
#define UNITFLOW_DEPENDENCYWALKER_H

#include "Export.h"
#include "host/ConfigurationAndProcessDataBase.h"

#include <QList>
#include <QMultiHash>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <memory>

class NodeBase;
class UnitManipulatorBase;

namespace patterns {
class PatternIndex;
}

/// Builds a dependency graph from its description and runs it for a written URL.
///
/// The top-level nodes are indexed by what their whole subgraph watches: plain URLs, patterns
/// (a watched URL that starts with "RE:"), or nothing at all, which makes a node unconditional.
/// The walker is silent: bad input shows as a smaller graph or as a false result.
///
/// What a write costs follows from the nodes that it runs, not from the size of the graph: URLs are
/// hashed, and of the patterns only those are tried that may match.
///
/// A walker is used by one thread at a time. Copies are cheap and share the nodes, which are never
/// changed after they are built; they may be used by different threads as far as the host's own
/// classes allow it. A build that stops early (null description, text that does not parse, file
/// that does not open) leaves the graph as it was.
class UNITFLOW_EXPORT DependencyWalker {
public:
    DependencyWalker();
    DependencyWalker(const DependencyWalker& other);
    DependencyWalker& operator=(const DependencyWalker& other);
    virtual ~DependencyWalker();

    /// Whether any URL or pattern is watched. Unconditional nodes do not count, though a traversal
    /// runs them.
    bool isValid() const;
    /// The same as `isValid()`.
    operator bool() const; // NOLINT(google-explicit-constructor): hosts assign a walker to a bool

    /// Forgets the watched URLs and patterns. Unconditional nodes stay and still run; only a new
    /// build clears them.
    void reset();

    /// Replaces the graph by the one that `description` holds: one top-level node for each child
    /// with a known type, in ascending order of the names. Always true; a null description changes
    /// nothing. Costs one pass over the description.
    bool initDependencyGraph(const BaseClassSharedPointer& description);

    /// Parses `json` with the host's parser and builds the graph. False when the host makes no tree
    /// of it.
    bool initDependencyGraphByJsonString(const QString& json);

    /// Reads a UTF-8 file up to its first zero byte and builds the graph from that text. False when
    /// it cannot be opened or the host makes no tree of it.
    bool initDependencyGraphByJsonFile(const QString& path);

    /// A copy of the index: every watched URL, and every watched pattern without its prefix, to the
    /// top-level nodes that watch it.
    QMultiHash<QString, QSharedPointer<NodeBase>> getNodeMap() const;

    /// The watched plain URLs, each once, in the order in which they were first met in building.
    QStringList getDependencyUrlList() const;

    /// Replaces `matches` by the nodes whose pattern finds a match anywhere in `url`, in build
    /// order; a node under two such patterns is found twice. Invalid patterns find nothing. Costs a
    /// match for each pattern that may match, and next to nothing for a URL asked about of late.
    void filterRegExpMatches(const QString& url, QList<QSharedPointer<NodeBase>>& matches) const;

    /// Runs every top-level node that `url` concerns: those that watch it (the last one built
    /// first), then those whose pattern matches it, then the unconditional ones. All of them run,
    /// whatever the others return; a node found in two of these ways runs twice.
    ///
    /// `url` is the URL that was written below `sourceRoot`, or empty. Conditions read
    /// `sourceRoot`, commands write below `targetRoot`. `results` is passed through. `changed` is
    /// set to true when a leaf changed and never set to false. `parameters` and `manipulator`
    /// (which may be null) are for the commands. Returns whether any command succeeded.
    bool traverseDependencyGraph(const QString& url, const BaseClassSharedPointer& sourceRoot,
                                 const BaseClassSharedPointer& targetRoot, QVariantList& results,
                                 bool& changed, QVariantList parameters,
                                 const QSharedPointer<UnitManipulatorBase>& manipulator);

    /// The same for a caller who does not ask whether anything changed.
    bool traverseDependencyGraph(const QString& url, const BaseClassSharedPointer& sourceRoot,
                                 const BaseClassSharedPointer& targetRoot, QVariantList& results,
                                 QVariantList parameters,
                                 const QSharedPointer<UnitManipulatorBase>& manipulator);

private:
    void addWatchedUrl(const QString& url, const QSharedPointer<NodeBase>& node);

    QMultiHash<QString, QSharedPointer<NodeBase>> urlNodeMap;
    QMultiHash<QString, QSharedPointer<NodeBase>> regExpNodeMap; // without the prefix
    QList<QSharedPointer<NodeBase>> unconditionalNodes;          // in build order

    QStringList urlsInBuildOrder;                         // the keys of urlNodeMap, distinct
    std::unique_ptr<patterns::PatternIndex> patternIndex; // finds in regExpNodeMap; never null
};

#endif
