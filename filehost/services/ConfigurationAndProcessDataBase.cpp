#include "host/ConfigurationAndProcessDataBase.h"

#include "filehost/tree/FileTree.h"

const QHash<QString, BaseClassSharedPointer>& ConfigurationAndProcessDataBase::getChildMap() const
{
    static const QHash<QString, BaseClassSharedPointer> noChildren;
    const auto* node = dynamic_cast<const filehost::tree::FileTreeNode*>(this);
    return node == nullptr ? noChildren : node->children();
}
