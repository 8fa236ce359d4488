#ifndef UNITFLOW_TOOLS_EXPLAIN_TRACETEXT_H
#define UNITFLOW_TOOLS_EXPLAIN_TRACETEXT_H

#include "tools/explain/TraceTree.h"
#include "tools/workspace/DescriptionFile.h"

#include <QMap>
#include <QString>
#include <QStringList>

#include <functional>

namespace tools {

class Outline;

/// Says in an outline what a trace tells.
///
/// What changed something comes first, what does not run comes last, and of many rows with nothing
/// new the first ones stand for all. With everything asked for, it is the order of execution.
class TraceText {
public:
    enum class Extent { Decisive, Everything };

    /// The URLs of all leaves of the target, asked for when a row names none of them.
    using TargetUrls = std::function<QStringList()>;

    /// `targetUrls` may be empty, as when there is only a trace.
    TraceText(const DescriptionFile& file, Extent extent, Outline& outline, TargetUrls targetUrls);

    /// What ran for a written URL. `level` is that of the nodes in the outline.
    void add(const TraversalRun& traversal, int level);

private:
    /// Where in the graph, and how deep in the outline, something stands.
    struct Where {
        QStringList path;
        int level = 0;
    };

    void addNode(const NodeRun& node, const Where& where);
    void foldRepetition(std::size_t begin, const Where& where);
    void addCommand(const CommandRun& command, const Where& node);
    void addEdge(const EdgeRun& edge, const Where& node);
    void addFollowed(const EdgeRun& edge, const QString& name, const Where& where);
    void addCondition(const ConditionRun& condition, const Where& successor);
    void addOmitted(int count, int level);
    QString nearestTarget(const TraversalObserver::CommandRow& told) const;
    QString placeOr(const QString& place, const QString& type,
                    const DescriptionFile::Row& row) const;

    const DescriptionFile& file;
    const Extent extent;
    Outline& outline;
    const TargetUrls targetUrls;
    QString url;                         // the written one
    QMap<QStringList, QStringList> told; // of each node, by its path, when it ran last
};

} // namespace tools

#endif
