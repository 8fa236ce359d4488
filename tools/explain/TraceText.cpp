#include "tools/explain/TraceText.h"

#include "filehost/NearestNames.h"
#include "tools/console/Outline.h"
#include "tools/console/Text.h"
#include "tools/explain/TraceWords.h"

#include <algorithm>
#include <utility>

namespace tools {

namespace {

using ConditionOutcome = TraversalObserver::ConditionOutcome;
using Decision = TraversalObserver::EdgeDecision;
using Kind = TypeDescription::Kind;
using RowOutcome = TraversalObserver::RowOutcome;

/// How many rows are shown of those that are all alike. One that is left out saves no line.
class RowLimit {
public:
    RowLimit(TraceText::Extent extent, int count)
        : count(count),
          limit(extent == TraceText::Extent::Everything || count <= few + 1 ? count : few)
    {}

    bool takes() { return taken++ < limit; }
    int omitted() const { return count - limit; }

private:
    static constexpr int few = 3;

    int count;
    int limit;
    int taken = 0;
};

template <class Row, class Predicate>
int countOf(const QList<Row>& rows, Predicate isCounted)
{
    return static_cast<int>(std::count_if(rows.begin(), rows.end(), isCounted));
}

bool isKept(const TraversalObserver::CommandRow& row)
{
    return row.outcome == RowOutcome::Unchanged;
}

bool isSkipped(const TraversalObserver::CommandRow& row)
{
    return row.outcome != RowOutcome::Unchanged && row.outcome != RowOutcome::Changed &&
           row.outcome != RowOutcome::ColumnOutOfRange;
}

/// Those that `isFirst` says so of, then the others.
template <class Item, class Predicate>
std::vector<const Item*> arranged(const std::vector<Item>& items, bool isArranged,
                                  Predicate isFirst)
{
    std::vector<const Item*> order;
    order.reserve(items.size());
    for (const Item& item : items) {
        order.push_back(&item);
    }
    if (isArranged) {
        std::stable_partition(order.begin(), order.end(),
                              [&](const Item* item) { return isFirst(*item); });
    }
    return order;
}

bool isFollowed(const EdgeRun& edge)
{
    return !edge.follows.empty();
}

/// What stands for an edge of which the process, or the trace, ended before it was told.
const TraversalObserver::Edge unknownEdge{-1, {}, Decision::NoConditionHolds};

/// An edge whose successor is not known.
QString nameOf(const TraversalObserver::Edge& edge)
{
    return edge.index < 0 ? QStringLiteral("an edge")
                          : QStringLiteral("edge %1").arg(edge.index + 1);
}

/// What became of an edge behind which nothing is told.
QString fateOf(const EdgeRun& edge)
{
    if (!edge.edge) {
        return QStringLiteral("not decided");
    }
    switch (edge.edge->decision) {
    case Decision::FollowedAlways:
    case Decision::FollowedByCondition:
    case Decision::FollowedAsOnly:
        return QStringLiteral("reached");
    case Decision::NoConditionHolds:
    case Decision::OneOfSeveral:
    case Decision::LeadsNowhere:
        break;
    }
    return QStringLiteral("not reached");
}

/// Why an edge is followed or not, where that is no matter of conditions.
QString reasonOf(Decision decision)
{
    switch (decision) {
    case Decision::FollowedAlways:
        return QStringLiteral(": no condition stands before it");
    case Decision::FollowedAsOnly:
        return QStringLiteral(": it is the only one behind a command node");
    case Decision::OneOfSeveral:
        return QStringLiteral(": a command node follows none of several edges");
    case Decision::LeadsNowhere:
        return QStringLiteral(": no node can be made of it");
    case Decision::FollowedByCondition:
    case Decision::NoConditionHolds:
        break;
    }
    return {};
}

} // namespace

TraceText::TraceText(const DescriptionFile& file, Extent extent, Outline& outline,
                     TargetUrls targetUrls)
    : file(file), extent(extent), outline(outline), targetUrls(std::move(targetUrls))
{}

void TraceText::add(const TraversalRun& traversal, int level)
{
    url = traversal.url;
    told.clear();
    const auto order =
        arranged(traversal.nodes, extent == Extent::Decisive,
                 [](const std::unique_ptr<NodeRun>& node) { return changesAnything(*node); });
    for (const std::unique_ptr<NodeRun>* node : order) {
        const NodeRun& run = **node;
        const QStringList path{run.node.name};
        outline.addLine(level, run.selected ? wordsFor(*run.selected) : printable(run.node.name),
                        file.placeOf(path));
        addNode(run, {path, level + 1});
    }
}

void TraceText::addNode(const NodeRun& node, const Where& where)
{
    const std::size_t begin = outline.size();
    for (const CommandRun& command : node.commands) {
        addCommand(command, where);
    }
    for (const EdgeRun* edge : arranged(node.edges, extent == Extent::Decisive, isFollowed)) {
        addEdge(*edge, where);
    }
    if (node.commands.empty() && node.edges.empty()) {
        outline.addLine(where.level, QStringLiteral("does nothing: it has no command and no edge"));
    }
    if (extent == Extent::Decisive) {
        foldRepetition(begin, where);
    }
}

/// A node may run several times, and most often does the same each time.
void TraceText::foldRepetition(std::size_t begin, const Where& where)
{
    const QStringList texts = outline.textsFrom(begin);
    QStringList& before = told[where.path];
    if (texts.size() > 1 && texts == before) {
        outline.removeFrom(begin);
        outline.addLine(where.level, QStringLiteral("does the same again"));
    }
    before = texts;
}

void TraceText::addCommand(const CommandRun& command, const Where& node)
{
    const QString& type = command.command.type;
    if (type.isEmpty()) {
        outline.addLine(node.level, QStringLiteral("runs a command that the engine does not know"));
        return;
    }
    const QStringList table = DescriptionFile::commandPath(node.path, type);
    Where where = node;
    if (extent == Extent::Everything) {
        outline.addLine(where.level++, QStringLiteral("runs ") + printable(type),
                        file.placeOf(table));
    }
    RowLimit kept(extent, countOf(command.rows, isKept));
    RowLimit skipped(extent, countOf(command.rows, isSkipped));
    for (const TraversalObserver::CommandRow& told : command.rows) {
        if ((isKept(told) && !kept.takes()) || (isSkipped(told) && !skipped.takes())) {
            continue;
        }
        const DescriptionFile::Row row = file.row(table, Kind::Command, told.row);
        outline.addLine(where.level, wordsFor(told, type, row, url) + nearestTarget(told),
                        placeOr(row.place, type, row));
    }
    addOmitted(kept.omitted() + skipped.omitted(), where.level);
    const QList<DescriptionFile::Row> dropped = file.droppedRows(table, Kind::Command);
    for (const DescriptionFile::Row& row : dropped) {
        outline.addLine(where.level, wordsForDropped(row, Kind::Command, type), row.place);
    }
    if (command.rows.isEmpty() && dropped.isEmpty()) {
        outline.addLine(where.level,
                        QStringLiteral("does nothing: %1 has no row").arg(printable(type)),
                        file.placeOf(table));
    }
}

void TraceText::addEdge(const EdgeRun& edge, const Where& node)
{
    const TraversalObserver::Edge told = edge.edge.value_or(unknownEdge);
    const QStringList path = file.successorPath(node.path, told.successor, told.index);
    const Where where{path, node.level};
    const QString name = path.isEmpty() ? nameOf(told) : printable(path.last());
    if (isFollowed(edge)) {
        addFollowed(edge, name, where);
        return;
    }
    outline.addLine(where.level,
                    QStringLiteral("%1 is %2%3").arg(name, fateOf(edge), reasonOf(told.decision)),
                    file.placeOf(path));
    for (const ConditionRun& condition : edge.conditions) {
        addCondition(condition, {path, where.level + 1});
    }
}

/// The conditions that hold stand before what they led to.
void TraceText::addFollowed(const EdgeRun& edge, const QString& name, const Where& where)
{
    const Where below{where.path, where.level + 1};
    std::size_t asked = 0;
    for (const std::unique_ptr<NodeRun>& run : edge.follows) {
        outline.addLine(where.level,
                        QStringLiteral("%1 is reached%2")
                            .arg(name, reasonOf(edge.edge.value_or(unknownEdge).decision)),
                        file.placeOf(where.path));
        bool isOpen = false;
        for (; asked < edge.conditions.size() && !isOpen; ++asked) {
            isOpen = edge.conditions[asked].holds;
            if (isOpen || extent == Extent::Everything) {
                addCondition(edge.conditions[asked], below);
            }
        }
        addNode(*run, below);
    }
    for (; asked < edge.conditions.size() && extent == Extent::Everything; ++asked) {
        addCondition(edge.conditions[asked], below);
    }
}

void TraceText::addCondition(const ConditionRun& condition, const Where& successor)
{
    const QString& type = condition.condition.type;
    const QString result = condition.holds ? QStringLiteral("holds") : QStringLiteral("fails");
    if (type.isEmpty()) {
        outline.addLine(successor.level,
                        result + QStringLiteral(": a condition that the engine does not know"));
        return;
    }
    const QStringList table = DescriptionFile::conditionPath(successor.path, type);
    Where where = successor;
    if (extent == Extent::Everything) {
        outline.addLine(where.level++, QStringLiteral("%1 %2").arg(printable(type), result),
                        file.placeOf(table));
    }
    const auto isDecisive = [&](const TraversalObserver::ConditionRow& told) {
        return (told.outcome == ConditionOutcome::Holds) == condition.holds;
    };
    RowLimit limit(extent, countOf(condition.rows, isDecisive));
    for (const TraversalObserver::ConditionRow& told : condition.rows) {
        if (extent == Extent::Decisive && (!isDecisive(told) || !limit.takes())) {
            continue;
        }
        const DescriptionFile::Row row = file.row(table, Kind::Condition, told.row);
        outline.addLine(where.level, wordsFor(told, type, row), placeOr(row.place, type, row));
    }
    addOmitted(limit.omitted(), where.level);
    const QList<DescriptionFile::Row> dropped = condition.holds && extent == Extent::Decisive
                                                    ? QList<DescriptionFile::Row>()
                                                    : file.droppedRows(table, Kind::Condition);
    for (const DescriptionFile::Row& row : dropped) {
        outline.addLine(where.level, wordsForDropped(row, Kind::Condition, type), row.place);
    }
    if (condition.rows.isEmpty() && dropped.isEmpty()) {
        outline.addLine(where.level, QStringLiteral("fails: %1 has no row").arg(printable(type)),
                        file.placeOf(table));
    }
}

void TraceText::addOmitted(int count, int level)
{
    if (count > 0) {
        outline.addLine(level, QStringLiteral("... and %1 more rows; --all shows them").arg(count));
    }
}

/// Words to follow those for a row whose target is not there.
QString TraceText::nearestTarget(const TraversalObserver::CommandRow& told) const
{
    if (told.outcome != TraversalObserver::RowOutcome::NoTarget || !targetUrls) {
        return {};
    }
    const QString nearest = filehost::nearestName(told.targetUrl, targetUrls());
    return nearest.isEmpty() ? QString()
                             : QStringLiteral("; the nearest is %1").arg(printable(nearest));
}

/// A row without a place is named by its table and number.
QString TraceText::placeOr(const QString& place, const QString& type,
                           const DescriptionFile::Row& row) const
{
    return place.isEmpty()
               ? QStringLiteral("%1, row %2").arg(printable(type), QString::number(row.number))
               : place;
}

} // namespace tools
