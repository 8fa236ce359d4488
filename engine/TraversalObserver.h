#ifndef UNITFLOW_TRAVERSALOBSERVER_H
#define UNITFLOW_TRAVERSALOBSERVER_H

#include "Export.h"

#include <QString>
#include <QVariant>

/// Watches what the engine does with a written URL, and why it does not do more.
///
/// A traversal is silent by design. An observer is told each step while it is made: the events of
/// one traversal come in the order of execution, nested like the calls that make them, on the
/// thread that traverses. It looks on: nothing that it does with an event changes the traversal,
/// and the engine asks the host for nothing more because of it. It must not throw.
///
/// Objects are named as descriptions name them: a node by its key, a command or a condition by its
/// type. A row is counted from 0 among those rows of its table that the type keeps (see
/// `TableDescription::keptRows`). Types that a host registered are told like the engine's own, but
/// for their rows; the name of such a type is empty.
///
/// Where a host calls the engine again from within a traversal, the events of the inner traversal
/// come between its own `traversalStarted` and `traversalFinished`.
class UNITFLOW_EXPORT TraversalObserver {
public:
    /// Why a top-level node runs.
    enum class Selection { Url, Pattern, Unconditional };

    struct SelectedNode {
        QString name;
        Selection selection;
        QString watched; ///< the URL, or the pattern without its prefix; empty if unconditional
    };

    struct Node {
        QString name;
        QString type;
    };

    /// What becomes of an edge.
    enum class EdgeDecision {
        FollowedAlways,      ///< a switch node's edge without conditions
        FollowedByCondition, ///< once for each condition that holds
        FollowedAsOnly,      ///< a command node's only edge; its conditions are not asked
        NoConditionHolds,
        OneOfSeveral, ///< a command node follows none of several edges
        LeadsNowhere, ///< no node could be made of what it leads to
    };

    struct Edge {
        int index;         ///< among the edges of its node, in ascending order of their names
        QString successor; ///< its name; empty when the edge leads nowhere
        EdgeDecision decision;
    };

    struct Condition {
        int index;    ///< among the conditions of its edge
        QString type; ///< empty for one that could not be made, which holds
    };

    enum class ConditionOutcome {
        Holds,
        Differs,           ///< the comparison fails, or another URL was written
        NoValue,           ///< the source has no value there
        UnknownComparator, ///< neither "==" nor "!="
        NoMatch,           ///< the pattern finds nothing in the written URL
        InvalidPattern,
    };

    struct ConditionRow {
        int row;
        ConditionOutcome outcome;
        QString url; ///< of the source; the written one where the row holds a pattern
        /// Of a comparison that was made: the comparator, the constant and the value of the source.
        QString comparator;
        QVariant expected;
        QVariant actual;
    };

    struct Command {
        int index;    ///< among the commands of its node that could be made
        QString type; ///< empty for one of the host
    };

    /// What becomes of a command's row.
    enum class RowOutcome {
        Changed,        ///< written, status 0
        Unchanged,      ///< accepted without a change, status 1
        Refused,        ///< any other status
        NoTarget,       ///< there is no leaf at the target URL
        NoTargetUrl,    ///< the groups of the pattern leave an empty target URL
        NoUnit,         ///< the unit is empty
        NoParameterUrl, ///< the URL of the source parameter is empty
        NoValue,        ///< the source has no value there, or none that could be a unit
        NoMatch,        ///< the pattern finds nothing in the written URL
        InvalidPattern,
        PatternWithoutGroup,
        MalformedTarget, ///< no array URL with a column in brackets
        InvalidColumn,   ///< the column is no number, sum or difference, or negative
        NotAnArray,
        NoColumns,        ///< the array does not tell what columns it has
        ColumnOutOfRange, ///< an assertion is about to end the process
        ColumnsRefused,   ///< the array does not take its columns with the new unit
    };

    struct CommandRow {
        int row;
        RowOutcome outcome;
        QString targetUrl; ///< below the target root, with everything filled in; empty if unknown
        QVariant unit;     ///< to be written; invalid when it did not come to that
        int status = -1;   ///< the host's, when it was asked to write
        int column = -1;   ///< of an array
    };

    virtual ~TraversalObserver();

    /// At the beginning of each traversal, once.
    virtual void traversalStarted(const QString& url);
    /// Before a top-level node runs; once for each URL and each pattern that selects it.
    virtual void nodeSelected(const SelectedNode& node);
    /// Before a node runs, a top-level one or a successor, and after it. Without a source a node
    /// does nothing in between.
    virtual void nodeEntered(const Node& node);
    virtual void nodeLeft(const Node& node, bool outcome);
    /// When it is decided whether an edge is followed: before its successor is entered, after the
    /// condition that decides was asked, all of them if none holds. Once for each edge; for one
    /// with several conditions that hold once for each of these.
    virtual void edgeDecided(const Edge& edge);
    /// Around each condition that a switch node asks.
    virtual void conditionStarted(const Condition& condition);
    virtual void conditionFinished(const Condition& condition, bool holds);
    /// Once for each row that the condition looks at. One on written URLs stops at the first that
    /// holds.
    virtual void conditionRowChecked(const ConditionRow& row);
    /// Around each command.
    virtual void commandStarted(const Command& command);
    virtual void commandFinished(const Command& command, bool outcome);
    /// Once for each row, when its outcome is known, but before a manipulator is called. Not
    /// without both roots: then a command does nothing.
    virtual void commandRowExecuted(const CommandRow& row);
    /// At the end of each traversal, once.
    virtual void traversalFinished(bool outcome, bool changed);
};

/// Lets an observer watch this thread as long as it lives. An observation within another replaces
/// it meanwhile. Begins and ends on one thread, and not in the middle of a traversal.
///
/// Without any observation in the process, a traversal pays for it with one read of memory at each
/// node, command and condition.
class UNITFLOW_EXPORT TraversalObservation {
public:
    /// The observer outlives the observation.
    explicit TraversalObservation(TraversalObserver& observer);
    ~TraversalObservation();
    TraversalObservation(const TraversalObservation&) = delete;
    TraversalObservation& operator=(const TraversalObservation&) = delete;

private:
    TraversalObserver* const outer;
};

#endif
