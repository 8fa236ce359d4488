#include "host/SystemInformationManagerRegistryDefinitions.h"

QString SystemInformationManagerRegistryDefinitions::getKeyLastModified()
{
    return QStringLiteral("lastModified");
}
