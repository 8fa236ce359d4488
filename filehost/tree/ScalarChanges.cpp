#include "filehost/tree/ScalarChanges.h"

#include "filehost/tree/TreeFormat.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace filehost::tree {

namespace {

using Index = json::JsonText::Index;
using json::JsonText;

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
        for (const FileTree::Written& property : next->second) {
            if (property.inText == JsonText::none || !isScalar(text, property.inText) ||
                !isScalar(property.value)) {
                return false;
            }
            written.push_back(&property);
        }
        std::sort(written.begin(), written.end(),
                  [](const FileTree::Written* left, const FileTree::Written* right) {
                      return left->inText < right->inText;
                  });
        const QString ownUrl(url.constData(), url.size()); // the other one is written on
        for (const FileTree::Written* property : written) {
            changes.append({instance, ownUrl, property->key, propertyValue(text, property->inText),
                            property->value});
        }
        return true;
    }

    const Instance& instance;
    const JsonText& text;
    FileTree::Changes::const_iterator next; ///< node to come to
    FileTree::Changes::const_iterator end;
    QString url;                                   ///< of the node at hand
    std::vector<const FileTree::Written*> written; ///< to it; kept for its memory
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
