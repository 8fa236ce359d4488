#include "filehost/tree/ScalarChanges.h"

#include "filehost/tree/TreeFormat.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace filehost::tree {

namespace {

using Index = json::JsonText::Index;
using json::JsonText;
using json::Member;

bool isScalar(const QVariant& value)
{
    return value.userType() != QMetaType::QVariantList &&
           value.userType() != QMetaType::QVariantMap;
}

bool isScalar(const JsonText& text, Index index)
{
    return text.kind(index) != JsonText::Kind::Array && text.kind(index) != JsonText::Kind::Object;
}

/// Goes down to the nodes that were written to, in the order of the text.
class Descent {
public:
    Descent(const Instance& instance, const FileTree& tree)
        : instance(instance), text(tree.text()), next(tree.changes().begin()),
          end(tree.changes().end())
    {}

    /// False when something else was written than scalars over scalars. The recursion is bounded
    /// by the depth of the text.
    bool collect(Index node)
    {
        if (next != end && next->first == node) {
            if (!addProperties()) {
                return false;
            }
            ++next;
        }
        for (const Index child : text.children(node)) {
            if (next == end || next->first >= text.node(node).next) {
                return true;
            }
            if (next->first < text.node(child).next && !collectBelow(node, child)) {
                return false;
            }
        }
        return true;
    }

    QList<LeafChange> changes;

private:
    bool collectBelow(Index parent, Index child)
    {
        const int length = url.size();
        if (parent != JsonText::root) {
            url += QLatin1Char('/');
        }
        text.appendKey(child, url);
        const bool isTold = collect(child);
        url.truncate(length);
        return isTold;
    }

    bool addProperties()
    {
        written.clear();
        for (const Member& member : next->second) {
            const Index present = property(text, next->first, member.key);
            if (present == JsonText::none || !isScalar(text, present) || !isScalar(member.value)) {
                return false;
            }
            written.emplace_back(present, &member);
        }
        std::sort(written.begin(), written.end());
        const QString ownUrl(url.constData(), url.size()); // the other one is written on
        for (const auto& [present, member] : written) {
            changes.append(
                {instance, ownUrl, member->key, propertyValue(text, present), member->value});
        }
        return true;
    }

    const Instance& instance;
    const JsonText& text;
    FileTree::Changes::const_iterator next; ///< node to come to
    FileTree::Changes::const_iterator end;
    QString url;                                          ///< of the node at hand
    std::vector<std::pair<Index, const Member*>> written; ///< to it; kept for its memory
};

} // namespace

std::optional<QList<LeafChange>> scalarChanges(const Instance& instance, const FileTree& tree)
{
    Descent descent(instance, tree);
    if (!descent.collect(JsonText::root)) {
        return std::nullopt;
    }
    return std::move(descent.changes);
}

} // namespace filehost::tree
