// Prints everything whose order the engine settles, for a test that compares what several processes
// print. The first line is what must differ for the comparison to mean anything: the order in which
// this process's hashes hold the same children.

#include "DependencyWalker.h"
#include "Host.h"
#include "MessageCapture.h"
#include "Nodes/NodeBase.h"
#include "Nodes/NodeSwitch.h"

#include <QTextStream>

#include <cstdio>

namespace {

QString watchingNode(int number)
{
    return QString(R"("Node%1": {"Type": "SwitchNode", "Next": {
        "Plain": {"Type": "CommandNode", "ConditionWriteOnUrls": [["url%1"], ["shared"], ["s%2"]],
                  "Commands": {"CommandSetUnitProperties": [["leaf%1", "K"]], "Unknown%1": 0,
                               "CommandSetUnitByConfigurationParameter": [["unit", "", "leaf%1"]],
                               "Another%1": 0}},
        "Pattern": {"Type": "CommandNode",
                    "ConditionWriteOnUrlsRegExp": [["red$"], ["^shared%2"], ["%2"]],
                    "Commands": {"CommandSetUnitProperties": [["leaf%2", "m"]]}},
        "Below": {"Type": "SwitchNode", "Next": {"X": {"Type": "CommandNode"},
                  "Y": {"Type": "CommandNode"}, "Z": {"Type": "CommandNode"}}}}})")
        .arg(number)
        .arg(number % 3);
}

QString alwaysNode(int number)
{
    return QString(R"("Always%1": {"Type": "CommandNode",
        "Commands": {"CommandSetUnitProperties": [["leaf%1", "s"]]}})")
        .arg(number);
}

QString description()
{
    QStringList nodes;
    for (int number = 0; number < 20; ++number) {
        nodes << watchingNode(number) << alwaysNode(number);
    }
    return '{' + nodes.join(',') + '}';
}

testhost::NodePointer targetTree()
{
    auto target = testhost::NodePointer::create("target");
    for (int number = 0; number < 20; ++number) {
        target->addChild(QStringLiteral("leaf%1").arg(number));
    }
    return target;
}

} // namespace

int main()
{
    testhost::MessageCapture messages;
    testhost::Host host;
    QTextStream out(stdout);

    const testhost::NodePointer graph = testhost::tree("d", description());
    out << "hash order: " << QStringList(graph->getChildMap().keys()).join(' ') << '\n';
    messages.take(); // a fixed hash seed makes Qt speak up

    DependencyWalker walker;
    walker.initDependencyGraph(graph);
    out << "urls: " << walker.getDependencyUrlList().join(' ') << '\n';

    QList<QSharedPointer<NodeBase>> matches;
    walker.filterRegExpMatches("shared1", matches);
    for (const QSharedPointer<NodeBase>& node : matches) {
        out << "match: " << node->getNodeName() << " watching "
            << node->getConditionUrls().join(' ') << '\n';
    }

    QString path;
    QStringList lines;
    NodeSwitch("Top", testhost::tree("d", R"({"Next": )" + description() + '}'))
        .printSuccessors(path, lines);
    out << lines.join('\n') << '\n';

    const testhost::NodePointer source = testhost::tree("source", R"({"unit": "bar"})");
    const testhost::NodePointer target = targetTree();
    QVariantList results;
    for (const QString& url : {QString("shared"), QString("shared1"), QString()}) {
        walker.traverseDependencyGraph(url, source, target, results, {}, {});
    }

    out << host.takeCalls().join('\n') << '\n';
    for (const testhost::Message& message : messages.take()) {
        out << message.text << '\n';
    }
    return 0;
}
