#include "host/ConfigurationModificationHandler.h"

#include "filehost/services/ModificationRegister.h"

ConfigurationModificationHandler* ConfigurationModificationHandler::getInstance()
{
    static ConfigurationModificationHandler handler;
    return &handler;
}

void ConfigurationModificationHandler::getModifiedInstances(
    QList<ModifiedInstanceItem>& items) const
{
    items = filehost::ModificationRegister::instance().items();
}
