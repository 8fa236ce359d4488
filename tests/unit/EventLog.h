#ifndef UNITFLOW_TESTS_UNIT_EVENTLOG_H
#define UNITFLOW_TESTS_UNIT_EVENTLOG_H

#include "TraversalObserver.h"
#include "Tree.h"

#include <QStringList>

/// An observer that writes down each event as a line, with everything that it was told.
class EventLog final : public TraversalObserver {
public:
    QStringList take()
    {
        QStringList taken;
        taken.swap(lines);
        return taken;
    }

    /// The same, only those that start with one of `beginnings`.
    QStringList take(const QStringList& beginnings)
    {
        QStringList taken;
        for (const QString& line : take()) {
            for (const QString& beginning : beginnings) {
                if (line.startsWith(beginning)) {
                    taken.append(line);
                }
            }
        }
        return taken;
    }

    /// Writes a line of another kind among the events.
    void add(const QString& line) { lines.append(line); }

    static QString name(Selection selection)
    {
        static const QStringList names{"by URL", "by pattern", "unconditional"};
        return names.at(int(selection));
    }

    static QString name(EdgeDecision decision)
    {
        static const QStringList names{"followed always",  "followed by condition",
                                       "followed as only", "no condition holds",
                                       "one of several",   "leads nowhere"};
        return names.at(int(decision));
    }

    static QString name(ConditionOutcome outcome)
    {
        static const QStringList names{
            "holds", "differs", "no value", "unknown comparator", "no match", "invalid pattern"};
        return names.at(int(outcome));
    }

    static QString name(RowOutcome outcome)
    {
        static const QStringList names{
            "changed",      "unchanged",        "refused",        "no target",    "no target URL",
            "no unit",      "no parameter",     "no value",       "no match",     "invalid pattern",
            "no group",     "malformed target", "invalid column", "not an array", "no columns",
            "out of range", "columns refused"};
        return names.at(int(outcome));
    }

    void traversalStarted(const QString& url) override { add("start " + url); }

    void nodeSelected(const SelectedNode& node) override
    {
        add(QStringLiteral("selected %1 %2 %3")
                .arg(node.name, name(node.selection), node.watched)
                .trimmed());
    }

    void nodeEntered(const Node& node) override { add("enter " + node.name + " " + node.type); }

    void nodeLeft(const Node& node, bool outcome) override
    {
        add("leave " + node.name + " " + node.type + " " + text(outcome));
    }

    void edgeDecided(const Edge& edge) override
    {
        add(QStringLiteral("edge %1 '%2' %3")
                .arg(QString::number(edge.index), edge.successor, name(edge.decision)));
    }

    void conditionStarted(const Condition& condition) override
    {
        add("ask " + QString::number(condition.index) + " " + condition.type);
    }

    void conditionFinished(const Condition& condition, bool holds) override
    {
        add("asked " + QString::number(condition.index) + " " + condition.type + " " + text(holds));
    }

    void conditionRowChecked(const ConditionRow& row) override
    {
        QString line = QStringLiteral("row %1 %2: %3")
                           .arg(QString::number(row.row), name(row.outcome), row.url);
        if (!row.comparator.isNull()) {
            line += QStringLiteral(" %1 %2 %3")
                        .arg(testhost::describe(row.actual), row.comparator,
                             testhost::describe(row.expected));
        }
        add(line);
    }

    void commandStarted(const Command& command) override
    {
        add("run " + QString::number(command.index) + " " + command.type);
    }

    void commandFinished(const Command& command, bool outcome) override
    {
        add("ran " + QString::number(command.index) + " " + command.type + " " + text(outcome));
    }

    void commandRowExecuted(const CommandRow& row) override
    {
        QString line = QStringLiteral("row %1 %2: %3")
                           .arg(QString::number(row.row), name(row.outcome), row.targetUrl);
        if (row.column != -1) {
            line += QStringLiteral(" column %1").arg(row.column);
        }
        if (row.unit.isValid()) {
            line += " " + testhost::describe(row.unit);
        }
        if (row.status != -1) {
            line += QStringLiteral(" status %1").arg(row.status);
        }
        add(line);
    }

    void traversalFinished(bool outcome, bool changed) override
    {
        add("end " + text(outcome) + " " + text(changed));
    }

private:
    static QString text(bool value)
    {
        return value ? QStringLiteral("true") : QStringLiteral("false");
    }

    QStringList lines;
};

#endif
