#ifndef UNITFLOW_TOOLS_WHY_REACH_H
#define UNITFLOW_TOOLS_WHY_REACH_H

#include "TraversalObserver.h"
#include "filehost/Session.h"
#include "filehost/Workspace.h"
#include "tools/workspace/Links.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>

namespace tools {

/// A row of a command, as it is run for a link.
struct CommandRowId {
    int link = -1;     ///< among all links
    QStringList nodes; ///< from the top-level node down
    QString command;   ///< its type
    int row = -1;      ///< among those that the command keeps
};

bool operator==(const CommandRowId& left, const CommandRowId& right);
bool operator<(const CommandRowId& left, const CommandRowId& right);

/// What a row may do to a leaf.
///
/// It can reach the leaf if the engine, asked to run the link for some URL, runs the row and finds
/// the leaf as its target. The URLs are those of the leaves of the source, which can be written,
/// and those that the engine runs for the link without a write. A comparison counts as one that
/// holds, as long as the source has the leaf and the comparator is known: values may become any.
/// That is why a unit can also come from a leaf that has no value yet.
struct ReachingRow {
    CommandRowId id;
    QString targetUrl;
    int column;                            ///< of an array; -1 for a whole leaf
    TraversalObserver::RowOutcome outcome; ///< the most that the row came to
    QVariantList units;      ///< what it set, each once, with the present values of the source;
                             ///< none from a leaf without one
    QStringList urls;        ///< for which it set something, or came that far
    bool everyWrite = false; ///< whether the leaves of the source are all among them
};

/// The row that set the unit of the leaf, or of a column, when all was resolved.
struct Decision {
    CommandRowId row;
    int column = -1; ///< of an array; -1 for the whole leaf
    QVariant unit;
};

/// All that is known about who sets the unit of a leaf.
struct Reach {
    QList<ReachingRow> rows;   ///< those that can set it, by link, then by node
    QList<ReachingRow> others; ///< those that have another target, or never come to set it
    QList<Decision> decisions; ///< by column
    QList<LinkRun> runs;       ///< of the links that lead to the leaf's instance
    QVariant unit;             ///< when all is resolved; invalid for none
    QVariant arrayInformation; ///< the same for the columns of an array
    bool isComplete = true;    ///< false when a link could not be followed; that is reported
};

/// Whether something of the unit or of the columns was set by a row that came to this.
bool isSet(TraversalObserver::RowOutcome outcome);

/// Runs the engine on trees of its own: nothing is stored in `session` but what resolving all links
/// stores there, and nothing is written. Costs one run of each link to the instance for each leaf
/// of its source.
Reach reachOf(filehost::Session& session, const QList<filehost::Link>& links,
              const filehost::Instance& instance, const QString& url, Console& console);

} // namespace tools

#endif
