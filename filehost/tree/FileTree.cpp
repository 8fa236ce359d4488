#include "filehost/tree/FileTree.h"

#include "filehost/Limits.h"
#include "filehost/json/JsonValue.h"
#include "filehost/tree/TreeFormat.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace filehost::tree {

using json::JsonEdits;
using json::JsonText;
using json::Member;

namespace {

/// Statuses of a write, as the engine understands them.
enum Status : int { Changed = 0, Unchanged = 1, Refused = 2 };

constexpr std::size_t usuallyAskedFor = 4;         // children of a node
constexpr JsonText::Index mostLookedThrough = 256; // values in a node

template <typename Members>
auto findKey(Members& members, const QString& key)
{
    return std::find_if(members.begin(), members.end(),
                        [&](const auto& member) { return member.key == key; });
}

void editObject(JsonEdits& edits, const JsonText& text, JsonText::Index object,
                const std::vector<FileTree::Written>& changes)
{
    std::vector<Member> added;
    for (const FileTree::Written& change : changes) {
        if (change.inText != JsonText::none) {
            edits.replace(change.inText, change.value);
        } else {
            added.push_back({change.key, change.value});
        }
    }
    if (!added.empty()) {
        const std::vector<Entry> properties = entries(text, object).properties;
        edits.insert(object, properties.empty() ? JsonText::none : properties.back().index, added);
    }
}

/// A short leaf stays short while its value is all it has.
void editShortLeaf(JsonEdits& edits, JsonText::Index leaf,
                   const std::vector<FileTree::Written>& changes)
{
    const QString valueKey = ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue();
    bool isShort = false;
    std::vector<Member> added;
    for (const FileTree::Written& change : changes) {
        if (change.key == valueKey) {
            edits.replace(leaf, change.value);
            isShort = changes.size() == 1 && change.value.userType() != QMetaType::QVariantMap;
        } else {
            added.push_back({change.key, change.value});
        }
    }
    if (!isShort) {
        edits.wrap(leaf, valueKey, added);
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

void FileTree::write(Index node, const Written& written)
{
    std::vector<Written>& atNode = writtenOver[node];
    const auto change = findKey(atNode, written.key);
    if (change == atNode.end()) {
        atNode.push_back(written);
    } else {
        change->value = written.value;
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
        singly.reserve(usuallyAskedFor);
        singly.push_back({found, node});
    }
    return node;
}

BaseClassSharedPointer FileTreeNode::getChildData(const QString& url)
{
    if (lastFound.isNull() || url != lastUrl) {
        lastFound = find(url);
        lastUrl = url;
    }
    return lastFound;
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
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-static-cast-downcast): children are of our kind
        const auto* const nextNode = static_cast<const FileTreeNode*>(next.data());
        BaseClassSharedPointer node =
            nextNode == nullptr ? BaseClassSharedPointer() : nextNode->find(url.mid(length + 1));
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

QVariant FileTreeNode::getDataProperty(const QString& key)
{
    const QVariant* const written = shared->written(index, key);
    if (written != nullptr) {
        return *written;
    }
    const Index inText = property(shared->text(), index, key);
    return inText == JsonText::none ? QVariant() : propertyValue(shared->text(), inText);
}

int FileTreeNode::setDataProperty(const QString& key, const QVariant& value)
{
    const std::optional<QVariant> held = json::normalized(value, limits::depth - level);
    if (!isPropertyKey(key) || !key.isValidUtf16() || !held ||
        held->userType() == QMetaType::Nullptr) {
        return Refused;
    }
    const QVariant* const written = shared->written(index, key);
    const Index inText = property(shared->text(), index, key);
    const bool isOriginal = inText != JsonText::none && shared->text().isValue(inText, *held);
    if (written != nullptr ? json::isSame(*held, *written) : isOriginal) {
        return Unchanged;
    }
    if (isOriginal) {
        shared->unwrite(index, key);
    } else {
        shared->write(index, {key, *held, inText});
    }
    return Changed;
}

} // namespace filehost::tree
