#include "internal/Children.h"

#include "DependencyWalkerDefinitions.h"
#include "host/ConfigurationAndProcessDataTools.h"

#include <algorithm>

namespace internal {

Children sortedChildren(const ConfigurationAndProcessDataBase& node)
{
    const QHash<QString, BaseClassSharedPointer>& children = node.getChildMap();
    Children sorted;
    sorted.reserve(children.size());
    for (auto child = children.cbegin(); child != children.cend(); ++child) {
        sorted.append({child.key(), child.value()});
    }
    std::sort(sorted.begin(), sorted.end(),
              [](const Child& left, const Child& right) { return left.first < right.first; });
    return sorted;
}

QVariant nodeType(const BaseClassSharedPointer& description)
{
    if (description.isNull()) {
        return {};
    }
    return ConfigurationAndProcessDataTools::extractConfigValue(
        DependencyWalkerDefinitions::getNodeTypeString(), description);
}

} // namespace internal
