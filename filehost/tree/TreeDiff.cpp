#include "filehost/tree/TreeDiff.h"

#include "filehost/json/JsonValue.h"
#include "filehost/tree/FileTree.h"
#include "filehost/tree/TreeFormat.h"

#include <QHash>

#include <algorithm>

namespace filehost::tree {

namespace {

using Index = json::JsonText::Index;
using json::JsonText;

/// A node in one of the two texts, or its absence there.
struct Side {
    const JsonText* text;
    Index index;

    bool isAbsent() const { return text == nullptr || index == JsonText::none; }
    std::string_view spelling() const { return text->slice(text->node(index).value); }
    Side at(Index other) const { return {text, other}; }
    NodeEntries entries() const { return isAbsent() ? NodeEntries() : tree::entries(*text, index); }
    QVariant property() const { return isAbsent() ? QVariant() : propertyValue(*text, index); }
};

struct Pair {
    QString name;
    Index before;
    Index after;
};

/// The entries of both sides by name, in the order of `after`.
std::vector<Pair> paired(const std::vector<Entry>& before, const std::vector<Entry>& after)
{
    QHash<QString, Index> old;
    for (const Entry& entry : before) {
        old.insert(entry.name, entry.index);
    }
    std::vector<Pair> pairs;
    for (const Entry& entry : after) {
        const auto same = old.find(entry.name);
        const bool isNew = same == old.end();
        pairs.push_back({entry.name, isNew ? JsonText::none : *same, entry.index});
        if (!isNew) {
            old.erase(same);
        }
    }
    for (const Entry& entry : before) {
        if (old.contains(entry.name)) {
            pairs.push_back({entry.name, entry.index, JsonText::none});
        }
    }
    return pairs;
}

/// What of two nodes belongs together.
struct Pairs {
    std::vector<Pair> properties;
    std::vector<Pair> children;
};

Pairs pairedEntries(Side before, Side after)
{
    const NodeEntries old = before.entries();
    const NodeEntries present = after.entries();
    return {paired(old.properties, present.properties), paired(old.children, present.children)};
}

/// Whether two objects have members of the same spelling in the same order, as nearly all nodes
/// have that were only written to. Then they need not be looked up by their names.
bool haveSameKeys(Side before, Side after)
{
    if (before.isAbsent() || after.isAbsent() ||
        before.text->kind(before.index) != JsonText::Kind::Object ||
        after.text->kind(after.index) != JsonText::Kind::Object) {
        return false;
    }
    const JsonText::Children old = before.text->children(before.index);
    const JsonText::Children present = after.text->children(after.index);
    return std::equal(old.begin(), old.end(), present.begin(), present.end(),
                      [&](Index left, Index right) {
                          return before.text->slice(before.text->node(left).key) ==
                                 after.text->slice(after.text->node(right).key);
                      });
}

/// The members of such objects whose values are not spelled alike.
Pairs differingMembers(Side before, Side after)
{
    Pairs pairs;
    auto old = before.text->children(before.index).begin();
    for (const Index present : after.text->children(after.index)) {
        if (before.at(*old).spelling() != after.at(present).spelling()) {
            const QString key = after.text->key(present);
            (isPropertyKey(key) ? pairs.properties : pairs.children)
                .push_back({key, *old, present});
        }
        ++old;
    }
    return pairs;
}

/// Whether the same names lead to nodes on both sides, whatever properties those have.
bool haveSameNodes(Side before, Side after)
{
    if (before.spelling() == after.spelling()) {
        return true;
    }
    const std::vector<Pair> children = paired(before.entries().children, after.entries().children);
    return std::all_of(children.begin(), children.end(), [&](const Pair& pair) {
        return pair.before != JsonText::none && pair.after != JsonText::none &&
               haveSameNodes(before.at(pair.before), after.at(pair.after));
    });
}

class Comparison {
public:
    Comparison(Instance instance, QList<LeafChange>& changes)
        : instance(std::move(instance)), changes(changes)
    {}

    void compareRoots(Side before, Side after) { compare(before, after, QString(), QString()); }

private:
    /// The URLs of what is below begin with `prefix`. An empty name is one, so an empty URL is not
    /// always the root's. The recursion is bounded by the depth of the texts.
    void compare(Side before, Side after, const QString& url, const QString& prefix)
    {
        if (!before.isAbsent() && !after.isAbsent() && before.spelling() == after.spelling()) {
            return;
        }
        const Pairs pairs = haveSameKeys(before, after) ? differingMembers(before, after)
                                                        : pairedEntries(before, after);
        for (const Pair& pair : pairs.properties) {
            const QVariant oldValue = before.at(pair.before).property();
            const QVariant newValue = after.at(pair.after).property();
            if (!json::isSame(oldValue, newValue)) {
                changes.append({instance, url, pair.name, oldValue, newValue});
            }
        }
        for (const Pair& pair : pairs.children) {
            const QString child = prefix + pair.name;
            compare(before.at(pair.before), after.at(pair.after), child, child + QLatin1Char('/'));
        }
    }

    Instance instance;
    QList<LeafChange>& changes;
};

} // namespace

void addChanges(const Instance& instance, const JsonText* before, const JsonText& after,
                QList<LeafChange>& changes)
{
    Comparison(instance, changes).compareRoots({before, JsonText::root}, {&after, JsonText::root});
}

namespace {

QList<LeafChange> changesBetween(const JsonText& before, const JsonText& after)
{
    QList<LeafChange> changes;
    addChanges({}, &before, after, changes);
    return changes;
}

} // namespace

std::shared_ptr<const JsonText> closestTo(const std::shared_ptr<const JsonText>& inFile,
                                          const std::shared_ptr<const JsonText>& text)
{
    if (!haveSameNodes({inFile.get(), JsonText::root}, {text.get(), JsonText::root})) {
        return text;
    }
    const BaseClassSharedPointer root = FileTreeNode::makeRoot(inFile, {});
    const QList<LeafChange> changes = changesBetween(*inFile, *text);
    for (const LeafChange& change : changes) {
        const BaseClassSharedPointer node =
            change.url.isEmpty() ? root : root->getChildData(change.url);
        if (!node.isNull()) {
            node->setDataProperty(change.property, change.after);
        }
    }
    const QByteArray bytes = FileTreeNode::treeOf(root)->render();
    if (bytes == inFile->bytes()) {
        return changes.isEmpty() ? inFile : text;
    }
    QList<Problem> problems;
    std::shared_ptr<const JsonText> closest = JsonText::parse(bytes, text->file(), problems);
    // What could not be carried over shows as a difference: properties that went, URLs that lead
    // elsewhere because of a slash in a name.
    return closest && changesBetween(*closest, *text).isEmpty() ? closest : text;
}

} // namespace filehost::tree
