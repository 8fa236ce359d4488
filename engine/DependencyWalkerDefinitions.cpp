#include "DependencyWalkerDefinitions.h"

DependencyWalkerDefinitions::DependencyWalkerDefinitions() = default;
DependencyWalkerDefinitions::~DependencyWalkerDefinitions() = default;

const QString& DependencyWalkerDefinitions::getNodeTypeString()
{
    static const QString keyword = QStringLiteral("Type");
    return keyword;
}

const QString& DependencyWalkerDefinitions::getNextNodeKeyword()
{
    static const QString keyword = QStringLiteral("Next");
    return keyword;
}

const QString& DependencyWalkerDefinitions::getCommandKeyword()
{
    static const QString keyword = QStringLiteral("Commands");
    return keyword;
}

const QString& DependencyWalkerDefinitions::getPrefixRegularExpression()
{
    static const QString prefix = QStringLiteral("RE:");
    return prefix;
}
