#include "host/ConfigurationModificationHandler.h"

#include "filehost/Session.h"
#include "filehost/services/ModificationRegister.h"

ConfigurationModificationHandler* ConfigurationModificationHandler::getInstance()
{
    static ConfigurationModificationHandler handler;
    return &handler;
}

void ConfigurationModificationHandler::getModifiedInstances(
    QList<ModifiedInstanceItem>& items) const
{
    // A session's stores are none before its commit, and a manifest must not get those of earlier
    // sessions again: the files may have been changed by somebody else since.
    const filehost::Session* const session = filehost::Session::current();
    items = session != nullptr ? session->modifications()
                               : filehost::ModificationRegister::instance().itemsSince(0);
}
