#ifndef UNITFLOW_TESTS_UNIT_NODEFIXTURE_H
#define UNITFLOW_TESTS_UNIT_NODEFIXTURE_H

#include "Nodes/NodeBase.h"
#include "Probe.h"

/// Runs single nodes on probes.
class NodeTest : public testhost::GraphTest {
protected:
    bool traverse(NodeBase& node, const QString& url = {})
    {
        return node.traverseNode(source, target, url, results, changed, parameters, manipulator);
    }

    testhost::NodePointer source = testhost::tree(QStringLiteral("source"), QStringLiteral("{}"));
    testhost::NodePointer target = testhost::tree(QStringLiteral("target"), QStringLiteral("{}"));
    QVariantList results;
    bool changed = false;
    QVariantList parameters;
    QSharedPointer<UnitManipulatorBase> manipulator;
};

/// Everything that a traversal hands down, by address.
struct Handed {
    const void* sourceRoot;
    const void* targetRoot;
    const void* url;
    const void* results;
    const void* changed;
    const void* parameters;
    const void* manipulator;

    friend bool operator==(const Handed& left, const Handed& right)
    {
        return left.sourceRoot == right.sourceRoot && left.targetRoot == right.targetRoot &&
               left.url == right.url && left.results == right.results &&
               left.changed == right.changed && left.parameters == right.parameters &&
               left.manipulator == right.manipulator;
    }
};

#endif
