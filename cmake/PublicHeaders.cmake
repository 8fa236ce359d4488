# What a program that uses the libraries may include, and what is installed. Paths are those in an
# #include. A header that is not listed here stays inside.
set(UNITFLOW_ENGINE_HEADERS
    Commands/CommandBase.h
    Commands/CommandSetUnitByConfigurationParameter.h
    Commands/CommandSetUnitByConfigurationParameterArray.h
    Commands/CommandSetUnitByConfigurationParameterInstRegExp.h
    Commands/CommandSetUnitProperties.h
    Commands/CommandSetUnitPropertiesRegExp.h
    Commands/UnitManipulatorBase.h
    Conditions/ConditionBase.h
    Conditions/ConditionValueComparatorRegExp.h
    Conditions/ConditionValueComparators.h
    Conditions/ConditionWriteOnUrls.h
    Conditions/ConditionWriteOnUrlsRegExp.h
    DependencyResolverBaseClass.h
    DependencyWalker.h
    DependencyWalkerDefinitions.h
    DependencyWalkerFactory.h
    Export.h
    Factory.h
    Nodes/NodeBase.h
    Nodes/NodeCommand.h
    Nodes/NodeSwitch.h
    SourceDependencyManager.h
    TraversalObserver.h
    TypeDescription.h)

# What a host implements.
set(UNITFLOW_HOST_HEADERS
    host/Array2dDataTypeWrapper.h
    host/ArrayDataTypeWrapper.h
    host/ConfigurationAndProcessDataBase.h
    host/ConfigurationAndProcessDataDefinitions.h
    host/ConfigurationAndProcessDataParser.h
    host/ConfigurationAndProcessDataTools.h
    host/ConfigurationDataAndProcessDescriptionAccess.h
    host/ConfigurationManifestHandler.h
    host/ConfigurationModificationHandler.h
    host/HostExport.h
    host/JsonDataIterator.h
    host/JsonDataIteratorFilter.h
    host/JsonDataIteratorObjectBase.h
    host/ModifiedInstanceItem.h
    host/PropertyManagerConst.h
    host/SystemInformationManagerRegistryDefinitions.h)

set(UNITFLOW_HOSTKIT_HEADERS hostkit/Adapter.h hostkit/Check.h hostkit/Run.h)

set(UNITFLOW_TRACE_HEADERS trace/Event.h trace/EventObserver.h trace/NdjsonTraceWriter.h
                           trace/TraceReader.h)

set(UNITFLOW_FILEHOST_HEADERS
    filehost/Export.h
    filehost/FileDependencyResolver.h
    filehost/FileManifestHandler.h
    filehost/Limits.h
    filehost/Problem.h
    filehost/Session.h
    filehost/Workspace.h)
