#include "Engine.h"

#include "Commands/UnitManipulatorBase.h"
#include "DependencyResolverBaseClass.h"
#include "DependencyWalker.h"
#include "Host.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QVariant>

#include <algorithm>

namespace reference {
namespace {

using testhost::Host;

/// Records messages with the host, so that they stand among its calls.
class RecordedMessages {
public:
    RecordedMessages()
        : previous(qInstallMessageHandler(
              [](QtMsgType, const QMessageLogContext& context, const QString& text) {
                  Host::current().record(messageEvent(context.file, context.line, context.function,
                                                      context.category, text));
              }))
    {}
    ~RecordedMessages() { qInstallMessageHandler(previous); }
    RecordedMessages(const RecordedMessages&) = delete;
    RecordedMessages& operator=(const RecordedMessages&) = delete;

private:
    QtMessageHandler previous;
};

class Manipulator final : public UnitManipulatorBase {
public:
    explicit Manipulator(const QJsonArray& actions) : actions(actions) {}

    bool manipulateUnit(const BaseClassSharedPointer& leaf, const QString& unit,
                        bool& commandResult, bool& changed) override
    {
        Host::current().record(
            manipulatorEvent(testhost::where(leaf.data()), unit, commandResult, changed));
        const QJsonValue action = actions.isEmpty() ? QJsonValue() : actions.takeAt(0);
        if (action.isArray()) {
            commandResult = action.toArray().at(0).toBool();
            changed = action.toArray().at(1).toBool();
        }
        return true;
    }

private:
    QJsonArray actions;
};

QString text(const QJsonValue& tree)
{
    if (tree.isNull()) {
        return {};
    }
    return tree.isObject()
               ? QString::fromUtf8(QJsonDocument(tree.toObject()).toJson(QJsonDocument::Compact))
               : QStringLiteral("no tree");
}

void setStatuses(testhost::Node& node, const QJsonObject& tree)
{
    QList<int> statuses;
    for (const QJsonValue status : tree["@statuses"].toArray()) {
        statuses.append(status.toInt());
    }
    node.answerWritesWith(statuses);
    for (auto member = tree.begin(); member != tree.end(); ++member) {
        if (!member.key().startsWith('@')) {
            setStatuses(node.at(member.key()), member.value().toObject());
        }
    }
}

testhost::NodePointer tree(const QString& label, const QJsonValue& json)
{
    testhost::NodePointer root = testhost::tree(label, text(json));
    if (!root.isNull()) {
        setStatuses(*root, json.toObject());
    }
    return root;
}

/// What a run does with its trees and the host's services, without what it reads of a description.
QStringList eventsAmong(const QStringList& calls)
{
    static const QStringList beginnings{
        "message(",        "manipulateUnit(",        "setDataProperty(",
        "getDependency(",  "getChildData(target,",   "getParsedConfigurationProcessDescription(",
        "watches ",        "getDataProperty(target", "setParsedConfigurationProcessDescription(",
        "getColumnUnit",   "Array2dDataTypeWrapper", "setColumnUnitTypes(",
        "setArrayInfoWith"};
    QStringList events;
    for (const QString& call : calls) {
        const bool readsSource =
            call.startsWith("extractConfigValue(") && call.endsWith(", source)");
        if (readsSource || std::any_of(beginnings.begin(), beginnings.end(),
                                       [&](const auto& start) { return call.startsWith(start); })) {
            events.append(call);
        }
    }
    return events;
}

struct Run {
    Outcome outcome; // without the events
    QStringList calls;
};

Run run(const Scenario& scenario)
{
    Host host;
    const RecordedMessages messages;
    const testhost::NodePointer source = tree("source", scenario["source"]);
    const testhost::NodePointer target = tree("target", scenario["target"]);
    const QVariantList parameters = scenario["parameters"].toArray().toVariantList();
    const QStringList urls = QVariant(scenario["urls"].toArray().toVariantList()).toStringList();
    const bool isProcess = scenario["process"].toBool();
    QSharedPointer<UnitManipulatorBase> manipulator;
    if (scenario["manipulator"].isArray()) {
        manipulator.reset(new Manipulator(scenario["manipulator"].toArray()));
    }
    host.takingColumnUnits = !scenario["refusesColumns"].toBool();
    host.storing = !scenario["refusesStore"].toBool();
    host.descriptions["name"] = text(scenario["description"]);
    host.instances["/base/configurations/from"] = source;
    host.instances[isProcess ? "/base/processes/to" : "/base/configurations/to"] = target;
    const DependencyResolverBaseClass resolver("/base", "first", "second");
    host.takeCalls();

    Outcome outcome;
    outcome.changed = scenario["changed"].toBool();
    const QString front = scenario["front"].toString();
    if (front == "walker") {
        DependencyWalker walker;
        walker.initDependencyGraph(testhost::tree("description", text(scenario["description"])));
        host.record("watches " + walker.getDependencyUrlList().join('|'));
        QVariantList results;
        for (const QString& url : urls) {
            outcome.results.append(walker.traverseDependencyGraph(
                url, source, target, results, outcome.changed, parameters, manipulator));
        }
    } else if (front == "trees") {
        outcome.results.append(resolver.resolveDependency(source, target, "name", outcome.changed,
                                                          urls, parameters, manipulator));
    } else {
        outcome.results.append(resolver.resolveDependency(
            "from", "to", "name", outcome.changed, isProcess, urls, parameters, manipulator));
    }
    return {outcome, host.takeCalls()};
}

} // namespace

Outcome runEngine(const Scenario& scenario)
{
    Run done = run(scenario);
    done.outcome.events = eventsAmong(done.calls);
    return done.outcome;
}

QStringList hostCalls(const Scenario& scenario)
{
    return run(scenario).calls;
}

} // namespace reference
