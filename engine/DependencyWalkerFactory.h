#ifndef UNITFLOW_DEPENDENCYWALKERFACTORY_H
#define UNITFLOW_DEPENDENCYWALKERFACTORY_H

#include "Export.h"
#include "Factory.h"
#include "host/ConfigurationAndProcessDataBase.h"

#include <QSharedPointer>
#include <QString>
#include <QStringList>

class CommandBase;
class ConditionBase;
class NodeBase;

// The engine owns the three registries. A host may register types of its own through them.
extern template class UNITFLOW_EXPORT
    VelmarFactories::Factory<NodeBase, const QString&, const BaseClassSharedPointer&>;
extern template class UNITFLOW_EXPORT
    VelmarFactories::Factory<CommandBase, const BaseClassSharedPointer&>;
extern template class UNITFLOW_EXPORT
    VelmarFactories::Factory<ConditionBase, const BaseClassSharedPointer&>;

/// Creates the objects of a graph by type name.
///
/// Every operation overwrites its out parameter, with null when the type is unknown. Objects are
/// created whatever their description holds; one that makes no sense yields an object that does
/// nothing.
class UNITFLOW_EXPORT DependencyWalkerFactory {
public:
    using NodeFactory =
        VelmarFactories::Factory<NodeBase, const QString&, const BaseClassSharedPointer&>;
    using CommandFactory = VelmarFactories::Factory<CommandBase, const BaseClassSharedPointer&>;
    using ConditionFactory = VelmarFactories::Factory<ConditionBase, const BaseClassSharedPointer&>;

    /// An unknown type is silent.
    static void generateNode(const QString& type, const QString& name,
                             const BaseClassSharedPointer& description,
                             QSharedPointer<NodeBase>& node);

    /// An unknown type writes the warning "Unknown command" with the type name.
    static void generateCommand(const QString& type, const BaseClassSharedPointer& description,
                                QSharedPointer<CommandBase>& command);

    /// An unknown type writes the warning "Unknown condition" with the type name.
    static void generateConditions(const QString& type, const BaseClassSharedPointer& description,
                                   QSharedPointer<ConditionBase>& condition);

    /// The type names of conditions, in the order in which the conditions of an edge are made.
    /// Kept by hand: a registered condition that is not listed here is never looked for.
    static const QStringList& getConditionTypeNames();
};

#endif
