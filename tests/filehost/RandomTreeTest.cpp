#include "Printers.h"
#include "TestTree.h"
#include "filehost/json/JsonValue.h"
#include "filehost/tree/ScalarChanges.h"
#include "filehost/tree/TreeDiff.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QPair>
#include <QStringList>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <set>
#include <vector>

// Writes at random places of random trees, against an answer that is slow and obvious: Qt's JSON
// documents of the text before and after must differ in what was written and in nothing else, and
// every byte outside the leaf that was written must stay.

using filehost::json::JsonText;

namespace {

using Path = QStringList; ///< child names from the root

class Generator {
public:
    explicit Generator(unsigned seed) : random(seed) {}

    int below(int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); }

    template <typename Choices>
    auto oneOf(const Choices& choices)
    {
        return choices[static_cast<std::size_t>(below(static_cast<int>(choices.size())))];
    }

    /// A tree with a formatting that changes from object to object.
    QByteArray tree()
    {
        lineEnd = oneOf(std::vector<QByteArray>{"\n", "\r\n"});
        return space() + object(0, Members::OfTree) + space();
    }

    QString propertyKey()
    {
        return oneOf(std::vector<QString>{"@value", "@unitType", "@type", "@note", "@\u00B0"});
    }

    /// What Qt's JSON can tell apart: no whole numbers beyond 53 bits, none that equal a decimal.
    QVariant value(int depth)
    {
        switch (below(depth > 0 ? 7 : 5)) {
        case 0:
            return qlonglong{below(2000) - 1000};
        case 1:
            return below(2000) / 8.0 + 0.0625;
        case 2:
            return below(2) == 0;
        case 3:
        case 4:
            return oneOf(texts());
        case 5: {
            QVariantList list;
            for (int size = below(4); size > 0; --size) {
                list.append(value(depth - 1));
            }
            return list;
        }
        default: {
            QVariantMap map;
            for (int size = below(4); size > 0; --size) {
                map.insert(oneOf(texts()), value(depth - 1));
            }
            return map;
        }
        }
    }

    /// Another value that shares parts with a present one, as most writes do.
    QVariant variation(const QVariant& present)
    {
        if (below(3) == 0) {
            return value(2);
        }
        if (present.userType() == QMetaType::QVariantList && !present.toList().isEmpty()) {
            QVariantList list = present.toList();
            QVariant& element = list[below(list.size())];
            element = variation(element);
            return list;
        }
        if (present.userType() == QMetaType::QVariantMap) {
            QVariantMap map = present.toMap();
            const QString key = oneOf(texts());
            map.insert(key, variation(map.value(key)));
            return map;
        }
        return value(2);
    }

private:
    enum class Members { OfTree, OfValue };

    /// None begins with U+FEFF, which Qt's reader drops.
    static std::vector<QString> texts()
    {
        return {"",
                "a",
                "K",
                "\u00B0C",
                "\"\\/",
                "\n\t",
                QString(QChar(0)),
                QString::fromUtf8("\U0001F525"),
                "x\uFEFF",
                "m/s"};
    }

    QByteArray space()
    {
        return oneOf(
            std::vector<QByteArray>{"", "", "", " ", "  ", "\t", lineEnd, lineEnd + "    "});
    }

    QByteArray string(const QString& text)
    {
        QByteArray written = "\"";
        for (const uint character : text.toUcs4()) {
            const bool mustEscape = character < 0x20 || character == '"' || character == '\\';
            if (character < 0x10000 && (mustEscape || below(5) == 0)) {
                written += "\\u" + QByteArray::number(character + 0x10000, 16).mid(1);
            } else {
                written += QString::fromUcs4(&character, 1).toUtf8();
            }
        }
        return written + '"';
    }

    QByteArray number()
    {
        const QByteArray whole = QByteArray::number(below(200) - 100);
        return oneOf(std::vector<QByteArray>{whole, whole + ".50", whole + ".25e0", whole + "E+1",
                                             "-0.0", "1e-7"});
    }

    QByteArray scalar()
    {
        switch (below(4)) {
        case 0:
            return string(oneOf(texts()));
        case 1:
            return oneOf(std::vector<QByteArray>{"true", "false", "null"});
        default:
            return number();
        }
    }

    QByteArray array(int depth)
    {
        QByteArray written = "[";
        for (int size = below(4); size > 0; --size) {
            written += space() + any(depth + 1, Members::OfValue) + space() + (size > 1 ? "," : "");
        }
        return written + (written.size() == 1 ? space() : QByteArray()) + ']';
    }

    QByteArray any(int depth, Members members)
    {
        switch (below(depth < 5 ? 6 : 3)) {
        case 3:
            return array(depth);
        case 4:
        case 5:
            return object(depth, members);
        default:
            return scalar();
        }
    }

    QByteArray object(int depth, Members members)
    {
        const QByteArray between = oneOf(std::vector<QByteArray>{
            "", " ", lineEnd + QByteArray(2 * depth + 2, ' '), lineEnd + lineEnd + "\t"});
        const QByteArray colon =
            oneOf(std::vector<QByteArray>{":", ": ", " : ", ":\t", ":" + lineEnd});
        std::set<QString> used;
        QByteArray written = "{";
        for (int size = below(5); size > 0; --size) {
            const bool isProperty = members == Members::OfTree && below(2) == 0;
            const QString key = isProperty ? propertyKey() : oneOf(texts());
            if (!used.insert(key).second) {
                continue;
            }
            written += (used.size() > 1 ? "," : "") + between + string(key) + colon +
                       any(depth + 1, isProperty ? Members::OfValue : members) +
                       (below(8) == 0 ? space() : QByteArray());
        }
        return written + (below(2) == 0 ? between : QByteArray()) + '}';
    }

    std::mt19937 random;
    QByteArray lineEnd = "\n";
};

/// Every property of a tree by path and key.
using Flat = std::map<QPair<Path, QString>, QJsonValue>;

void flatten(const QJsonValue& node, const Path& path, Flat& flat)
{
    if (!node.isObject()) {
        if (!node.isNull()) {
            flat[{path, "@value"}] = node;
        }
        return;
    }
    const QJsonObject object = node.toObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (!member.key().startsWith('@')) {
            flatten(member.value(), path + Path{member.key()}, flat);
        } else if (!member.value().isNull()) {
            flat[{path, member.key()}] = member.value();
        }
    }
}

Flat flattened(const QByteArray& text)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << text.toStdString();
    Flat flat;
    flatten(document.object(), {}, flat);
    return flat;
}

/// The places of a tree's nodes in its text.
void collectNodes(const JsonText& text, JsonText::Index index, const Path& path,
                  std::map<Path, JsonText::Index>& nodes)
{
    nodes[path] = index;
    if (text.kind(index) != JsonText::Kind::Object) {
        return;
    }
    for (const JsonText::Index child : text.children(index)) {
        if (!text.key(child).startsWith('@')) {
            collectNodes(text, child, path + Path{text.key(child)}, nodes);
        }
    }
}

std::map<Path, JsonText::Index> nodesOf(const JsonText& text)
{
    std::map<Path, JsonText::Index> nodes;
    collectNodes(text, JsonText::root, {}, nodes);
    return nodes;
}

/// By names, not by a URL: names in these trees hold slashes.
BaseClassSharedPointer nodeAt(BaseClassSharedPointer node, const Path& path)
{
    for (const QString& name : path) {
        node = node->getChildMap().value(name);
    }
    return node;
}

bool isOrContains(const Path& outer, const Path& inner)
{
    return inner.mid(0, outer.size()) == outer;
}

/// The nodes that neither are nor contain the written one are spelled as they were, those below it
/// included; so are the bytes in front of and behind it.
void expectRestUntouched(const JsonText& before, const JsonText& after, const Path& written)
{
    const auto oldNodes = nodesOf(before);
    const auto newNodes = nodesOf(after);
    ASSERT_EQ(oldNodes.size(), newNodes.size());
    for (const auto& [path, index] : oldNodes) {
        if (!isOrContains(path, written)) {
            ASSERT_EQ(before.slice(before.node(index).value),
                      after.slice(after.node(newNodes.at(path)).value));
        }
    }
    const auto span = before.node(oldNodes.at(written)).value;
    const auto behind = before.bytes().mid(static_cast<int>(span.end));
    EXPECT_TRUE(after.bytes().startsWith(before.bytes().left(static_cast<int>(span.begin))));
    EXPECT_TRUE(after.bytes().endsWith(behind));
}

bool isSame(const filehost::LeafChange& left, const filehost::LeafChange& right)
{
    return left.instance == right.instance && left.url == right.url &&
           left.property == right.property && filehost::json::isSame(left.before, right.before) &&
           filehost::json::isSame(left.after, right.after);
}

bool isContainer(const QVariant& value)
{
    return value.userType() == QMetaType::QVariantList ||
           value.userType() == QMetaType::QVariantMap;
}

/// Whether a text has a property of a node, be it null, and no list or map as its value.
bool hasScalar(const JsonText& text, JsonText::Index node, const QString& key)
{
    if (text.kind(node) != JsonText::Kind::Object) {
        return key == "@value" && text.kind(node) != JsonText::Kind::Null &&
               !isContainer(text.value(node));
    }
    const JsonText::Index member = text.member(node, key);
    return member != JsonText::none && !isContainer(text.value(member));
}

constexpr unsigned documents = 4000;

} // namespace

TEST(RandomTree, differs_after_a_write_in_the_written_leaf_alone)
{
    int written = 0;
    for (unsigned seed = 0; seed < documents; ++seed) {
        Generator generator(seed);
        const QByteArray before = generator.tree();
        SCOPED_TRACE("seed " + std::to_string(seed) + ": " + before.toStdString());
        const auto text = readText(before);
        ASSERT_TRUE(text);
        std::vector<Path> paths;
        for (const auto& node : nodesOf(*text)) {
            paths.push_back(node.first);
        }
        const Path path = generator.oneOf(paths);
        const QString key = generator.propertyKey();

        const auto root = treeOn(before);
        const auto node = nodeAt(root, path);
        const QVariant first = node->getDataProperty(key);
        const QVariant value = generator.variation(first);
        const int status = node->setDataProperty(key, value);
        const QByteArray after = textOf(root);

        Flat expected = flattened(before);
        expected[{path, key}] = QJsonValue::fromVariant(value);
        EXPECT_EQ(status, filehost::json::isSame(first, value) ? 1 : 0);
        EXPECT_EQ(status == 1, after == before);
        EXPECT_TRUE(flattened(after) == expected) << after.toStdString();
        EXPECT_TRUE(
            filehost::json::isSame(nodeAt(treeOn(after), path)->getDataProperty(key), value));
        expectRestUntouched(*text, *readText(after), path);
        if (first.isValid()) {
            node->setDataProperty(key, first);
            EXPECT_EQ(textOf(root), before);
        }
        if (testing::Test::HasFailure()) {
            return;
        }
        written += status == 0 ? 1 : 0;
    }
    EXPECT_GT(written, static_cast<int>(documents) / 2);
}

TEST(RandomTree, holds_all_of_many_writes)
{
    for (unsigned seed = 0; seed < documents; ++seed) {
        Generator generator(seed + documents);
        const QByteArray before = generator.tree();
        SCOPED_TRACE("seed " + std::to_string(seed) + ": " + before.toStdString());
        const auto root = treeOn(before);
        Flat expected = flattened(before);
        for (const auto& [path, index] : nodesOf(*readText(before))) {
            for (int writes = generator.below(3); writes > 0; --writes) {
                const QString key = generator.propertyKey();
                const auto node = nodeAt(root, path);
                const QVariant value = generator.variation(node->getDataProperty(key));
                ASSERT_NE(node->setDataProperty(key, value), 2);
                expected[{path, key}] = QJsonValue::fromVariant(value);
            }
        }
        const QByteArray after = textOf(root);
        ASSERT_TRUE(flattened(after) == expected) << after.toStdString();
    }
}

TEST(RandomTree, tells_scalar_changes_as_a_comparison_of_both_texts_does)
{
    int told = 0;
    for (unsigned seed = 0; seed < documents; ++seed) {
        Generator generator(seed + 2 * documents);
        const QByteArray before = generator.tree();
        SCOPED_TRACE("seed " + std::to_string(seed) + ": " + before.toStdString());
        const auto text = readText(before);
        const auto root = treeOn(before);
        const bool isMixed = generator.below(3) == 0;
        bool areScalars = true;
        for (const auto& [path, index] : nodesOf(*text)) {
            const auto node = nodeAt(root, path);
            const QString key = generator.propertyKey();
            if (!isMixed && !hasScalar(*text, index, key)) {
                continue;
            }
            const QVariant first = node->getDataProperty(key);
            node->setDataProperty(key, generator.value(0));
            node->setDataProperty(key, generator.value(isMixed ? 2 : 0));
            const QVariant last = node->getDataProperty(key);
            areScalars = areScalars && (filehost::json::isSame(first, last) ||
                                        (hasScalar(*text, index, key) && !isContainer(last)));
        }

        const filehost::Instance instance{filehost::Kind::Process, "Oven"};
        const auto changes =
            filehost::tree::scalarChanges(instance, *filehost::tree::FileTreeNode::treeOf(root));
        ASSERT_EQ(changes.has_value(), areScalars);
        if (!changes) {
            continue;
        }
        const auto after = readText(textOf(root));
        QList<filehost::LeafChange> expected;
        filehost::tree::addChanges(instance, text.get(), *after, expected);
        ASSERT_TRUE(
            std::equal(changes->begin(), changes->end(), expected.begin(), expected.end(), isSame))
            << after->bytes().toStdString();
        ASSERT_EQ(nodesOf(*text), nodesOf(*after));
        told += expected.isEmpty() ? 0 : 1;
    }
    EXPECT_GT(told, static_cast<int>(documents) / 8);
}

TEST(RandomTree, reads_back_every_double_that_it_wrote)
{
    std::mt19937_64 random(7); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in every run
    const auto root = treeOn(R"({"X": 0})");
    const auto leaf = root->getChildData("X");
    for (int round = 0; round < 20000; ++round) {
        const quint64 bits = random();
        double number = 0;
        static_assert(sizeof(number) == sizeof(bits));
        std::memcpy(&number, &bits, sizeof(number));
        if (leaf->setDataProperty("@value", number) == 2) {
            EXPECT_FALSE(qIsFinite(number));
            continue;
        }
        const QVariant back = treeOn(textOf(root))->getChildData("X")->getDataProperty("@value");
        ASSERT_EQ(back.userType(), int{QMetaType::Double});
        ASSERT_EQ(back.toDouble(), number);
    }
}
