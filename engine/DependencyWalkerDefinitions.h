#ifndef UNITFLOW_DEPENDENCYWALKERDEFINITIONS_H
#define UNITFLOW_DEPENDENCYWALKERDEFINITIONS_H

#include "Export.h"

#include <QString>

/// The keywords of a graph description. They are compared exactly, case included.
///
/// The returned references stay valid until the library is unloaded; the getters may be called
/// from any thread.
class UNITFLOW_EXPORT DependencyWalkerDefinitions {
public:
    DependencyWalkerDefinitions();
    virtual ~DependencyWalkerDefinitions();

    /// "Type": the leaf that holds a node's type name.
    static const QString& getNodeTypeString();
    /// "Next": the child that holds a node's successors.
    static const QString& getNextNodeKeyword();
    /// "Commands": the child that holds a command node's commands.
    static const QString& getCommandKeyword();
    /// "RE:": the prefix that marks a watched URL as a regular expression.
    static const QString& getPrefixRegularExpression();
};

#endif
