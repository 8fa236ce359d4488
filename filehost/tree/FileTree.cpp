#include "filehost/tree/FileTree.h"

#include "filehost/Limits.h"
#include "filehost/json/JsonValue.h"
#include "filehost/tree/TreeFormat.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"

#include <algorithm>
#include <utility>

namespace filehost::tree {

using json::JsonEdits;
using json::JsonText;
using json::Member;

namespace {

/// Statuses of a write, as the engine understands them.
enum Status : int { Changed = 0, Unchanged = 1, Refused = 2 };

constexpr JsonText::Index mostLookedThrough = 256; // values in a node

template <typename Members>
auto findKey(Members& members, const QString& key)
{
    return std::find_if(members.begin(), members.end(),
                        [&](const Member& member) { return member.key == key; });
}

void editObject(JsonEdits& edits, const JsonText& text, JsonText::Index object,
                const std::vector<Member>& changes)
{
    std::vector<Member> added;
    for (const Member& change : changes) {
        const JsonText::Index present = property(text, object, change.key);
        if (present != JsonText::none) {
            edits.replace(present, change.value);
        } else {
            added.push_back(change);
        }
    }
    if (!added.empty()) {
        const std::vector<Entry> properties = entries(text, object).properties;
        edits.insert(object, properties.empty() ? JsonText::none : properties.back().index, added);
    }
}

/// A short leaf stays short while its value is all it has.
void editShortLeaf(JsonEdits& edits, JsonText::Index leaf, std::vector<Member> changes)
{
    const QString valueKey = ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue();
    bool isShort = changes.size() == 1;
    const auto value = findKey(changes, valueKey);
    if (value != changes.end()) {
        edits.replace(leaf, value->value);
        isShort = isShort && value->value.userType() != QMetaType::QVariantMap;
        changes.erase(value);
    } else {
        isShort = false;
    }
    if (!isShort) {
        edits.wrap(leaf, valueKey, changes);
    }
}

} // namespace

FileTree::FileTree(std::shared_ptr<const JsonText> text, QString path)
    : original(std::move(text)), filePath(std::move(path))
{
    if (!filePath.isEmpty()) {
        fileText = original;
    }
}

void FileTree::setInFile(std::shared_ptr<const JsonText> text)
{
    fileText = std::move(text);
}

const QVariant* FileTree::written(Index node, const QString& key) const
{
    const auto atNode = writtenOver.find(node);
    if (atNode == writtenOver.end()) {
        return nullptr;
    }
    const auto change = findKey(atNode->second, key);
    return change == atNode->second.end() ? nullptr : &change->value;
}

void FileTree::write(Index node, const QString& key, const QVariant& value)
{
    std::vector<Member>& atNode = writtenOver[node];
    const auto change = findKey(atNode, key);
    if (change == atNode.end()) {
        atNode.push_back({key, value});
    } else {
        change->value = value;
    }
}

void FileTree::unwrite(Index node, const QString& key)
{
    const auto atNode = writtenOver.find(node);
    if (atNode == writtenOver.end()) {
        return;
    }
    const auto change = findKey(atNode->second, key);
    if (change != atNode->second.end()) {
        atNode->second.erase(change);
    }
    if (atNode->second.empty()) {
        writtenOver.erase(atNode);
    }
}

QByteArray FileTree::render() const
{
    JsonEdits edits(*original);
    for (const auto& [node, atNode] : writtenOver) {
        if (original->kind(node) == JsonText::Kind::Object) {
            editObject(edits, *original, node, atNode);
        } else {
            editShortLeaf(edits, node, atNode);
        }
    }
    return edits.apply();
}

Problem notATree(const QString& name)
{
    return {Problem::Code::NotATree,
            {},
            0,
            0,
            QStringLiteral("what was to be stored as \"%1\" is no tree of this host").arg(name),
            QStringLiteral("store the root of a tree that was loaded or parsed here")};
}

BaseClassSharedPointer FileTreeNode::makeRoot(std::shared_ptr<const JsonText> text,
                                              const QString& path)
{
    return QSharedPointer<FileTreeNode>::create(std::make_shared<FileTree>(std::move(text), path),
                                                JsonText::root, 1);
}

FileTree* FileTreeNode::treeOf(const BaseClassSharedPointer& root)
{
    const auto* node = dynamic_cast<const FileTreeNode*>(root.data());
    return node != nullptr && node->index == JsonText::root ? node->shared.get() : nullptr;
}

FileTreeNode::FileTreeNode(std::shared_ptr<FileTree> tree, Index index, int level)
    : shared(std::move(tree)), index(index), level(level)
{}

const QHash<QString, BaseClassSharedPointer>& FileTreeNode::children() const
{
    if (!childNodes) {
        childNodes.emplace();
        for (const Entry& child : entries(shared->text(), index).children) {
            const BaseClassSharedPointer node = handedOut(child.index);
            childNodes->insert(child.name, node.isNull() ? makeChild(child.index) : node);
        }
        singly = {};
    }
    return *childNodes;
}

BaseClassSharedPointer FileTreeNode::handedOut(Index child) const
{
    const auto known = std::find_if(singly.begin(), singly.end(),
                                    [child](const Child& other) { return other.index == child; });
    return known == singly.end() ? BaseClassSharedPointer() : known->node;
}

BaseClassSharedPointer FileTreeNode::makeChild(Index child) const
{
    return QSharedPointer<FileTreeNode>::create(shared, child, level + 1);
}

/// Most nodes hold little, of which little is asked for: then it costs less to look through their
/// keys than to make all children.
BaseClassSharedPointer FileTreeNode::child(QStringView name) const
{
    const JsonText& text = shared->text();
    if (childNodes || text.node(index).next - index > mostLookedThrough) {
        return children().value(name.toString());
    }
    if (text.kind(index) != JsonText::Kind::Object || isPropertyKey(name)) {
        return {};
    }
    const Index found = text.find(index, name);
    if (found == JsonText::none) {
        return {};
    }
    BaseClassSharedPointer node = handedOut(found);
    if (node.isNull()) {
        node = makeChild(found);
        singly.push_back({found, node});
    }
    return node;
}

BaseClassSharedPointer FileTreeNode::getChildData(const QString& url)
{
    return find(url);
}

BaseClassSharedPointer FileTreeNode::find(QStringView url) const
{
    if (url.isEmpty()) {
        return {};
    }
    const QLatin1Char slash('/');
    for (const QChar* at = std::find(url.begin(), url.end(), slash); at != url.end();
         at = std::find(at + 1, url.end(), slash)) {
        const auto length = at - url.begin();
        const BaseClassSharedPointer next = child(url.left(length));
        BaseClassSharedPointer node =
            next.isNull() ? next
                          : static_cast<const FileTreeNode&>(*next).find(url.mid(length + 1));
        if (!node.isNull()) {
            return node;
        }
    }
    return child(url);
}

bool FileTreeNode::hasChildData(const QString& url)
{
    return !find(url).isNull();
}

QVariant FileTreeNode::originalProperty(const QString& key) const
{
    const Index found = property(shared->text(), index, key);
    return found == JsonText::none ? QVariant() : propertyValue(shared->text(), found);
}

bool FileTreeNode::isInText(const QString& key, const QVariant& value) const
{
    const Index found = property(shared->text(), index, key);
    return found != JsonText::none && shared->text().isValue(found, value);
}

QVariant FileTreeNode::getDataProperty(const QString& key)
{
    const QVariant* const written = shared->written(index, key);
    return written != nullptr ? *written : originalProperty(key);
}

int FileTreeNode::setDataProperty(const QString& key, const QVariant& value)
{
    const std::optional<QVariant> held = json::normalized(value, limits::depth - level);
    if (!isPropertyKey(key) || !key.isValidUtf16() || !held ||
        held->userType() == QMetaType::Nullptr) {
        return Refused;
    }
    const QVariant* const written = shared->written(index, key);
    const bool isOriginal = isInText(key, *held);
    if (written != nullptr ? json::isSame(*held, *written) : isOriginal) {
        return Unchanged;
    }
    if (isOriginal) {
        shared->unwrite(index, key);
    } else {
        shared->write(index, key, *held);
    }
    return Changed;
}

} // namespace filehost::tree
