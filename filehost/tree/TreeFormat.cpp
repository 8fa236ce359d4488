#include "filehost/tree/TreeFormat.h"

#include "host/ConfigurationAndProcessDataDefinitions.h"

namespace filehost::tree {

using json::JsonText;

NodeEntries entries(const JsonText& text, JsonText::Index node)
{
    NodeEntries found;
    if (text.kind(node) == JsonText::Kind::Object) {
        for (const JsonText::Index member : text.children(node)) {
            const QString key = text.key(member);
            (isPropertyKey(key) ? found.properties : found.children).push_back({key, member});
        }
    } else if (text.kind(node) != JsonText::Kind::Null) {
        found.properties.push_back(
            {ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue(), node});
    }
    return found;
}

bool isPropertyKey(const QString& key)
{
    return key.startsWith(QLatin1Char('@'));
}

QVariant propertyValue(const JsonText& text, JsonText::Index property)
{
    return text.kind(property) == JsonText::Kind::Null ? QVariant() : text.value(property);
}

} // namespace filehost::tree
