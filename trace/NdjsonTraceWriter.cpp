#include "trace/NdjsonTraceWriter.h"

#include "trace/internal/EventNames.h"
#include "trace/internal/JsonLine.h"

#include <QFileDevice>

#include <algorithm>

namespace trace {

using internal::JsonLine;
using internal::Named;

namespace {

QLatin1String key(const char* name)
{
    return QLatin1String(name);
}

JsonLine lineOf(const char* event)
{
    return JsonLine().add(key("event"), QString(QLatin1String(event)));
}

template <class Enumeration>
QString nameOf(Enumeration value, const QList<Named<Enumeration>>& names)
{
    const auto found = std::find_if(names.begin(), names.end(),
                                    [value](const auto& named) { return named.value == value; });
    return found == names.end() ? QString() : QString(found->name);
}

/// The line of each event.
struct Spelling {
    QByteArray operator()(const Link& link) const
    {
        return lineOf("link")
            .add(key("source"), link.source)
            .add(key("target"), link.target)
            .add(key("dependency"), link.dependency)
            .add(key("process"), link.isProcess)
            .addValue(key("parameters"), link.parameters)
            .finish();
    }

    QByteArray operator()(const TraversalStarted& event) const
    {
        return lineOf("traversal-started").add(key("url"), event.url).finish();
    }

    QByteArray operator()(const NodeSelected& event) const
    {
        return lineOf("node-selected")
            .add(key("name"), event.node.name)
            .add(key("selection"), nameOf(event.node.selection, internal::selectionNames()))
            .add(key("watched"), event.node.watched)
            .finish();
    }

    QByteArray operator()(const NodeEntered& event) const
    {
        return lineOf("node-entered")
            .add(key("name"), event.node.name)
            .add(key("type"), event.node.type)
            .finish();
    }

    QByteArray operator()(const NodeLeft& event) const
    {
        return lineOf("node-left")
            .add(key("name"), event.node.name)
            .add(key("type"), event.node.type)
            .add(key("outcome"), event.outcome)
            .finish();
    }

    QByteArray operator()(const EdgeDecided& event) const
    {
        return lineOf("edge-decided")
            .add(key("index"), event.edge.index)
            .add(key("successor"), event.edge.successor)
            .add(key("decision"), nameOf(event.edge.decision, internal::edgeDecisionNames()))
            .finish();
    }

    QByteArray operator()(const ConditionStarted& event) const
    {
        return lineOf("condition-started")
            .add(key("index"), event.condition.index)
            .add(key("type"), event.condition.type)
            .finish();
    }

    QByteArray operator()(const ConditionRowChecked& event) const
    {
        const TraversalObserver::ConditionRow& row = event.row;
        JsonLine line = lineOf("condition-row");
        line.add(key("row"), row.row)
            .add(key("outcome"), nameOf(row.outcome, internal::conditionOutcomeNames()))
            .add(key("url"), row.url);
        if (!row.comparator.isEmpty()) {
            line.add(key("comparator"), row.comparator);
        }
        if (row.expected.isValid()) {
            line.addValue(key("expected"), row.expected);
        }
        if (row.actual.isValid()) {
            line.addValue(key("actual"), row.actual);
        }
        return line.finish();
    }

    QByteArray operator()(const ConditionFinished& event) const
    {
        return lineOf("condition-finished")
            .add(key("index"), event.condition.index)
            .add(key("type"), event.condition.type)
            .add(key("holds"), event.holds)
            .finish();
    }

    QByteArray operator()(const CommandStarted& event) const
    {
        return lineOf("command-started")
            .add(key("index"), event.command.index)
            .add(key("type"), event.command.type)
            .finish();
    }

    QByteArray operator()(const CommandRowExecuted& event) const
    {
        const TraversalObserver::CommandRow& row = event.row;
        JsonLine line = lineOf("command-row");
        line.add(key("row"), row.row)
            .add(key("outcome"), nameOf(row.outcome, internal::rowOutcomeNames()))
            .add(key("target"), row.targetUrl);
        if (row.unit.isValid()) {
            line.addValue(key("unit"), row.unit);
        }
        if (row.status != -1) {
            line.add(key("status"), row.status);
        }
        if (row.column != -1) {
            line.add(key("column"), row.column);
        }
        return line.finish();
    }

    QByteArray operator()(const CommandFinished& event) const
    {
        return lineOf("command-finished")
            .add(key("index"), event.command.index)
            .add(key("type"), event.command.type)
            .add(key("outcome"), event.outcome)
            .finish();
    }

    QByteArray operator()(const TraversalFinished& event) const
    {
        return lineOf("traversal-finished")
            .add(key("outcome"), event.outcome)
            .add(key("changed"), event.changed)
            .finish();
    }
};

bool isAboutToEndTheProcess(const Event& event)
{
    const auto* const executed = std::get_if<CommandRowExecuted>(&event);
    return executed != nullptr &&
           executed->row.outcome == TraversalObserver::RowOutcome::ColumnOutOfRange;
}

} // namespace

NdjsonTraceWriter::NdjsonTraceWriter(QIODevice& device) : device(device)
{
    write(JsonLine()
              .add(key("format"), QString(internal::formatName))
              .add(key("version"), internal::formatVersion)
              .finish());
}

void NdjsonTraceWriter::take(const Event& event)
{
    write(std::visit(Spelling(), event));
    if (isAboutToEndTheProcess(event)) {
        if (auto* const file = qobject_cast<QFileDevice*>(&device)) {
            complete = file->flush() && complete;
        }
    }
}

void NdjsonTraceWriter::write(const QByteArray& line)
{
    complete = device.write(line) == line.size() && complete;
}

} // namespace trace
