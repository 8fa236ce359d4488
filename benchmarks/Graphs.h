#ifndef UNITFLOW_BENCHMARKS_GRAPHS_H
#define UNITFLOW_BENCHMARKS_GRAPHS_H

#include "host/ConfigurationAndProcessDataBase.h"

#include <QString>

/// What the measured graphs are made of. Every top-level node is a switch with one guarded command,
/// which sets the unit of one leaf.
namespace graphs {

constexpr int leafCount = 1000;

/// A leaf that a command writes, three names deep.
QString leafUrl(int number);

/// The unit that the node of this number writes. Neighbors write different units to one leaf.
QString unit(int node);
int leafOf(int node);

/// A written URL of 41 characters in zone `zone`, below 100,000, that ends in 19 letters: those of
/// `serial`, below 26^6, last.
QString zoneUrl(int zone, int serial);

/// The pattern of zone `zone`, as the guide to descriptions writes them: finds a match in every URL
/// of it and in no other.
QString zonePattern(int zone);

/// A URL of 41 characters for the patterns below.
QString sharedUrl(int serial);

/// A pattern that has its text in common with those of all other lengths, and finds no match in
/// `sharedUrl` unless the length is 27.
QString sharedPattern(int length);

enum class Watching {
    Urls,            ///< each node watches `zoneUrl` of its number
    Patterns,        ///< each node watches `zonePattern` of its number
    SharingPatterns, ///< the same, but the first thousand watch `sharedPattern`
};
constexpr int sharingCount = 1000;

/// The text of a description with so many nodes.
QString description(int nodeCount, Watching watching);

/// The text of a description of one command that sets the unit of every leaf, for each write.
QString rowsDescription(const QString& unit);

/// The tree that the host makes of a description's text.
BaseClassSharedPointer parsed(const QString& text);

} // namespace graphs

#endif
