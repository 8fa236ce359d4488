#include "trace/TraceReader.h"

#include "trace/internal/EventNames.h"

#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>
#include <functional>
#include <limits>

namespace trace {

using internal::Named;

namespace {

QString quoted(const QString& text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

/// The members of one line. What is missing or of another kind is noted, the first of it; the
/// value is then a blank one.
class Members {
public:
    explicit Members(const QJsonObject& object) : object(object) {}

    const QString& error() const { return firstError; }

    QString text(const char* name)
    {
        const QJsonValue value = member(name);
        if (!value.isString()) {
            complain(name, QStringLiteral("text"));
        }
        return value.toString();
    }

    QString optionalText(const char* name) { return has(name) ? text(name) : QString(); }

    bool flag(const char* name)
    {
        const QJsonValue value = member(name);
        if (!value.isBool()) {
            complain(name, QStringLiteral("true or false"));
        }
        return value.toBool();
    }

    int number(const char* name)
    {
        const QJsonValue value = member(name);
        if (!value.isDouble() || value.toDouble() != value.toInt()) {
            complain(name, QStringLiteral("a whole number"));
        }
        return value.toInt();
    }

    int optionalNumber(const char* name) { return has(name) ? number(name) : -1; }

    /// A number that counts from 0, and after which there is another one.
    int index(const char* name)
    {
        const int value = number(name);
        if (value < 0 || value == std::numeric_limits<int>::max()) {
            complain(name, QStringLiteral("a whole number that counts from 0"));
        }
        return value;
    }

    int optionalIndex(const char* name) { return has(name) ? index(name) : -1; }

    QVariantList list(const char* name)
    {
        const QJsonValue value = member(name);
        if (!value.isArray()) {
            complain(name, QStringLiteral("a list"));
        }
        return value.toVariant().toList();
    }

    /// Invalid when it is not there.
    QVariant optionalValue(const char* name)
    {
        return has(name) ? member(name).toVariant() : QVariant();
    }

    template <class Enumeration>
    Enumeration oneOf(const char* name, const QList<Named<Enumeration>>& names)
    {
        const QString value = text(name);
        const auto found = std::find_if(names.begin(), names.end(), [&value](const auto& named) {
            return value == named.name;
        });
        if (found != names.end()) {
            return found->value;
        }
        QStringList known;
        for (const auto& named : names) {
            known.append(quoted(named.name));
        }
        complain(name, known.join(QStringLiteral(", ")));
        return names.first().value;
    }

private:
    QJsonValue member(const char* name) const { return object.value(QLatin1String(name)); }
    bool has(const char* name) const { return object.contains(QLatin1String(name)); }

    void complain(const char* name, const QString& expected)
    {
        if (firstError.isEmpty()) {
            firstError =
                (has(name) ? QStringLiteral("the member \"%1\" is not what it has to be: %2")
                           : QStringLiteral("the member \"%1\" is missing: %2"))
                    .arg(QLatin1String(name), expected);
        }
    }

    const QJsonObject& object;
    QString firstError;
};

TraversalObserver::Node node(Members& members)
{
    return {members.text("name"), members.text("type")};
}

TraversalObserver::Condition condition(Members& members)
{
    return {members.index("index"), members.text("type")};
}

TraversalObserver::Command command(Members& members)
{
    return {members.index("index"), members.text("type")};
}

Event linkEvent(Members& members)
{
    return Link{members.text("source"), members.text("target"), members.text("dependency"),
                members.flag("process"), members.list("parameters")};
}

Event selectedEvent(Members& members)
{
    return NodeSelected{{members.text("name"),
                         members.oneOf("selection", internal::selectionNames()),
                         members.text("watched")}};
}

Event edgeEvent(Members& members)
{
    return EdgeDecided{{members.index("index"), members.text("successor"),
                        members.oneOf("decision", internal::edgeDecisionNames())}};
}

Event conditionRowEvent(Members& members)
{
    return ConditionRowChecked{
        {members.index("row"), members.oneOf("outcome", internal::conditionOutcomeNames()),
         members.text("url"), members.optionalText("comparator"), members.optionalValue("expected"),
         members.optionalValue("actual")}};
}

Event commandRowEvent(Members& members)
{
    return CommandRowExecuted{{members.index("row"),
                               members.oneOf("outcome", internal::rowOutcomeNames()),
                               members.text("target"), members.optionalValue("unit"),
                               members.optionalNumber("status"), members.optionalIndex("column")}};
}

using Reading = std::function<Event(Members&)>;

const QHash<QString, Reading>& readings()
{
    static const QHash<QString, Reading> all{
        {QStringLiteral("link"), linkEvent},
        {QStringLiteral("traversal-started"),
         [](Members& members) -> Event { return TraversalStarted{members.text("url")}; }},
        {QStringLiteral("node-selected"), selectedEvent},
        {QStringLiteral("node-entered"),
         [](Members& members) -> Event { return NodeEntered{node(members)}; }},
        {QStringLiteral("node-left"),
         [](Members& members) -> Event {
             return NodeLeft{node(members), members.flag("outcome")};
         }},
        {QStringLiteral("edge-decided"), edgeEvent},
        {QStringLiteral("condition-started"),
         [](Members& members) -> Event { return ConditionStarted{condition(members)}; }},
        {QStringLiteral("condition-row"), conditionRowEvent},
        {QStringLiteral("condition-finished"),
         [](Members& members) -> Event {
             return ConditionFinished{condition(members), members.flag("holds")};
         }},
        {QStringLiteral("command-started"),
         [](Members& members) -> Event { return CommandStarted{command(members)}; }},
        {QStringLiteral("command-row"), commandRowEvent},
        {QStringLiteral("command-finished"),
         [](Members& members) -> Event {
             return CommandFinished{command(members), members.flag("outcome")};
         }},
        {QStringLiteral("traversal-finished"),
         [](Members& members) -> Event {
             return TraversalFinished{members.flag("outcome"), members.flag("changed")};
         }},
    };
    return all;
}

/// Reads one line; what is wrong with it is added to `trace`.
void readLine(const QByteArray& text, int line, Trace& trace)
{
    const auto complain = [&](const QString& message) { trace.errors.append({line, message}); };
    QJsonParseError parseError{};
    const QJsonObject object = QJsonDocument::fromJson(text, &parseError).object();
    if (object.isEmpty()) {
        complain(parseError.error == QJsonParseError::NoError
                     ? QStringLiteral("no JSON object with members")
                     : parseError.errorString());
        return;
    }

    Members members(object);
    const QString name = members.text("event");
    const auto reading = readings().constFind(name);
    if (members.error().isEmpty() && reading == readings().constEnd()) {
        complain(QStringLiteral("there is no event %1").arg(quoted(name)));
        return;
    }
    if (reading != readings().constEnd()) {
        const Event event = (*reading)(members);
        if (members.error().isEmpty()) {
            trace.events.append(event);
            return;
        }
    }
    complain(members.error());
}

bool isFirstLine(const QByteArray& text)
{
    const QJsonObject object = QJsonDocument::fromJson(text).object();
    return object.value(QLatin1String("format")) == QString(internal::formatName) &&
           object.value(QLatin1String("version")) == internal::formatVersion;
}

/// How many nodes are entered and not left after the event.
int depthAfter(const Event& event, int before)
{
    if (std::holds_alternative<NodeEntered>(event)) {
        return before + 1;
    }
    if (std::holds_alternative<NodeLeft>(event)) {
        return std::max(before - 1, 0);
    }
    return std::holds_alternative<Link>(event) ? 0 : before;
}

} // namespace

Trace readTrace(const QByteArray& text)
{
    Trace trace;
    QList<QByteArray> lines = text.split('\n');
    if (lines.last().isEmpty()) {
        lines.removeLast();
    }
    if (lines.isEmpty() || !isFirstLine(lines.first())) {
        trace.errors.append(
            {1, QStringLiteral("the first line has to be {\"format\":\"%1\",\"version\":%2}")
                    .arg(internal::formatName)
                    .arg(internal::formatVersion)});
        return trace;
    }
    int depth = 0;
    for (int line = 1; line < lines.size(); ++line) {
        const int count = trace.events.size();
        readLine(lines.at(line), line + 1, trace);
        if (trace.events.size() > count) {
            depth = depthAfter(trace.events.last(), depth);
        }
        if (depth > mostNodes) {
            trace.events.removeLast();
            trace.errors.append({line + 1, QStringLiteral("more than %1 nodes are within one "
                                                          "another; the rest is not read")
                                               .arg(mostNodes)});
            break;
        }
    }
    return trace;
}

} // namespace trace
