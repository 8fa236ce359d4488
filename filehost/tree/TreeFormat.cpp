#include "filehost/tree/TreeFormat.h"

#include "host/ConfigurationAndProcessDataDefinitions.h"

#include <cstddef>
#include <iterator>
#include <utility>

namespace filehost::tree {

using json::JsonText;

NodeEntries entries(const JsonText& text, JsonText::Index node)
{
    NodeEntries found;
    if (text.kind(node) == JsonText::Kind::Object) {
        const auto members = text.children(node);
        const auto count = static_cast<std::size_t>(std::distance(members.begin(), members.end()));
        for (const JsonText::Index member : members) {
            QString key = text.key(member);
            std::vector<Entry>& entries = isPropertyKey(key) ? found.properties : found.children;
            if (entries.empty()) {
                entries.reserve(count); // nodes have either kind of members, as a rule
            }
            entries.push_back({std::move(key), member});
        }
    } else if (text.kind(node) != JsonText::Kind::Null) {
        found.properties.push_back(
            {ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue(), node});
    }
    return found;
}

JsonText::Index property(const JsonText& text, JsonText::Index node, const QString& key)
{
    switch (text.kind(node)) {
    case JsonText::Kind::Object:
        return isPropertyKey(key) ? text.member(node, key) : JsonText::none;
    case JsonText::Kind::Null:
        return JsonText::none;
    default:
        return key == ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue()
                   ? node
                   : JsonText::none;
    }
}

bool isPropertyKey(QStringView key)
{
    return key.startsWith(QLatin1Char('@'));
}

QVariant propertyValue(const JsonText& text, JsonText::Index property)
{
    return text.kind(property) == JsonText::Kind::Null ? QVariant() : text.value(property);
}

} // namespace filehost::tree
