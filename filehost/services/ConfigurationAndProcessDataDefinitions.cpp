#include "host/ConfigurationAndProcessDataDefinitions.h"

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue()
{
    return QStringLiteral("@value");
}

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyUnitType()
{
    return QStringLiteral("@unitType");
}

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyType()
{
    return QStringLiteral("@type");
}

QString ConfigurationAndProcessDataDefinitions::getKeyDataTypeArray()
{
    return QStringLiteral("array");
}

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyArrayInformation()
{
    return QStringLiteral("@arrayInformation");
}

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyHasDependency()
{
    return QStringLiteral("hasDependency");
}
