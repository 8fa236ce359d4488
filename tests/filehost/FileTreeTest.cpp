#include "filehost/tree/FileTree.h"

#include "Printers.h"
#include "TestTree.h"
#include "filehost/Limits.h"

#include <QDateTime>
#include <QStringList>
#include <gtest/gtest.h>

#include <limits>

namespace {

QVariant property(const BaseClassSharedPointer& root, const QString& url, const QString& key)
{
    const BaseClassSharedPointer leaf = root->getChildData(url);
    return leaf.isNull() ? QVariant("no leaf") : leaf->getDataProperty(key);
}

QStringList sortedKeys(const BaseClassSharedPointer& node)
{
    QStringList keys = node->getChildMap().keys();
    keys.sort();
    return keys;
}

/// Objects inside one another; the root is the first.
QByteArray nestedObjects(int levels)
{
    QByteArray text = "{}";
    for (int level = 1; level < levels; ++level) {
        text = "{\"a\":" + text + '}';
    }
    return text;
}

QString urlDown(int steps)
{
    return QStringList(QVector<QString>(steps, "a").toList()).join('/');
}

QVariant nestedList(int levels)
{
    QVariantList list;
    for (int level = 1; level < levels; ++level) {
        list = QVariantList{QVariant(list)};
    }
    return list;
}

} // namespace

TEST(FileTree, has_members_as_children_except_those_that_start_with_an_at_sign)
{
    const auto root = treeOn(R"({"@note": "n", "A": {"@value": 1, "B": {}}, "C": 2, "D": null})");
    EXPECT_EQ(sortedKeys(root), (QStringList{"A", "C", "D"}));
    EXPECT_EQ(sortedKeys(root->getChildData("A")), QStringList{"B"});
    EXPECT_EQ(root->getDataProperty("@note"), QVariant("n"));
    EXPECT_EQ(property(root, "A", "@value"), QVariant(1LL));
}

TEST(FileTree, has_no_property_whose_key_lacks_the_at_sign)
{
    const auto root = treeOn(R"({"A": 1, "value": 2})");
    EXPECT_FALSE(root->getDataProperty("A").isValid());
    EXPECT_FALSE(root->getDataProperty("value").isValid());
    EXPECT_FALSE(root->getDataProperty("").isValid());
}

TEST(FileTree, takes_a_scalar_or_an_array_for_a_leaf_with_just_a_value)
{
    const auto root = treeOn(R"({"A": "x", "B": [["u"]], "C": false})");
    EXPECT_EQ(property(root, "A", "@value"), QVariant("x"));
    EXPECT_EQ(property(root, "B", "@value"), json(R"([["u"]])"));
    EXPECT_EQ(property(root, "C", "@value"), QVariant(false));
    EXPECT_FALSE(property(root, "A", "@unitType").isValid());
    EXPECT_TRUE(root->getChildData("B")->getChildMap().isEmpty());
}

TEST(FileTree, takes_null_for_a_leaf_without_properties_and_for_no_property)
{
    const auto root = treeOn(R"({"A": null, "B": {"@value": null, "@unitType": "K"}})");
    EXPECT_TRUE(root->hasChildData("A"));
    EXPECT_FALSE(property(root, "A", "@value").isValid());
    EXPECT_FALSE(property(root, "B", "@value").isValid());
    EXPECT_EQ(property(root, "B", "@unitType"), QVariant("K"));
}

TEST(FileTree, finds_nodes_by_child_names_joined_by_slashes)
{
    const auto root = treeOn(R"({"A": {"B": {"C": 1}}})");
    EXPECT_EQ(property(root, "A/B/C", "@value"), QVariant(1LL));
    EXPECT_EQ(property(root->getChildData("A"), "B/C", "@value"), QVariant(1LL));
    for (const char* url :
         {"", "/", "A/", "/A", "A//B", "A/B/C/D", "B", "a", "A/@value", ".", ".."}) {
        EXPECT_TRUE(root->getChildData(url).isNull()) << url;
        EXPECT_FALSE(root->hasChildData(url)) << url;
    }
}

TEST(FileTree, finds_names_that_hold_a_slash_themselves)
{
    const auto root = treeOn(R"({"A/B": {"C": 1}, "A": {"B": {"D": 2}, "E": {"/": 3}}})");
    EXPECT_EQ(property(root, "A/B/C", "@value"), QVariant(1LL));
    EXPECT_EQ(property(root, "A/B/D", "@value"), QVariant(2LL));
    EXPECT_EQ(property(root, "A/E//", "@value"), QVariant(3LL));
    EXPECT_TRUE(root->getChildMap().contains("A/B"));
    EXPECT_TRUE(root->getChildData("A/B")->hasChildData("D")) << "the shortest names win";
}

TEST(FileTree, hands_out_the_same_node_for_the_same_url)
{
    const auto root = treeOn(R"({"A": {"B": 1}})");
    EXPECT_EQ(root->getChildData("A/B"), root->getChildMap()["A"]->getChildData("B"));
}

TEST(FileTree, hands_out_the_same_nodes_when_there_are_very_many)
{
    QByteArray text = "{";
    for (int number = 0; number < 1000; ++number) {
        text += '"' + QByteArray::number(number) + "\": {\"A/B\": 1, \"@value\": 2}, ";
    }
    const auto root = treeOn(text + R"("@value": 3})");
    for (int number = 0; number < 1000; ++number) {
        const QString name = QString::number(number);
        const auto leaf = root->getChildData(name + "/A/B");
        ASSERT_FALSE(leaf.isNull());
        ASSERT_EQ(root->getChildMap()[name]->getChildMap()["A/B"], leaf);
        ASSERT_EQ(root->getChildData(name + "/A/B"), leaf);
    }
    EXPECT_FALSE(root->hasChildData("1000"));
    EXPECT_FALSE(root->hasChildData("@value"));
    EXPECT_FALSE(root->hasChildData("1/@value"));
}

TEST(FileTree, keeps_a_leaf_alive_without_its_root)
{
    auto root = treeOn(R"({"A": {"B": 1}})");
    const auto leaf = root->getChildData("A/B");
    root.clear();
    EXPECT_EQ(leaf->getDataProperty("@value"), QVariant(1LL));
    EXPECT_EQ(leaf->setDataProperty("@unitType", "K"), 0);
}

TEST(FileTree, decodes_escaped_names)
{
    const auto root = treeOn(R"({"\u00b0": {"\u0040value": 1}})");
    EXPECT_EQ(property(root, QString::fromUtf8("\u00B0"), "@value"), QVariant(1LL));
}

TEST(FileTreeWrite, gives_0_when_the_property_really_changed)
{
    const auto leaf = treeOn(R"({"A": 5})")->getChildData("A");
    EXPECT_EQ(leaf->setDataProperty("@value", 6), 0);
    EXPECT_EQ(leaf->setDataProperty("@value", 6.0), 0) << "another type is another value";
    EXPECT_EQ(leaf->setDataProperty("@value", "6"), 0);
    EXPECT_EQ(leaf->setDataProperty("@unitType", ""), 0);
    EXPECT_EQ(leaf->setDataProperty("@anything", QVariantMap()), 0);
    EXPECT_EQ(leaf->getDataProperty("@value"), QVariant("6"));
    EXPECT_EQ(leaf->getDataProperty("@anything"), QVariant(QVariantMap()));
}

TEST(FileTreeWrite, gives_1_when_the_property_has_that_value_already)
{
    const auto leaf =
        treeOn(R"({"A": {"@value": 5, "@unitType": "K", "@x": ["a", 1.0]}})")->getChildData("A");
    EXPECT_EQ(leaf->setDataProperty("@value", 5), 1);
    EXPECT_EQ(leaf->setDataProperty("@value", qulonglong{5}), 1);
    EXPECT_EQ(leaf->setDataProperty("@unitType", "K"), 1);
    EXPECT_EQ(leaf->setDataProperty("@x", QVariantList{"a", 1.0F}), 1);
    EXPECT_EQ(leaf->setDataProperty("@y", QStringList{"b"}), 0);
    EXPECT_EQ(leaf->setDataProperty("@y", QVariantList{"b"}), 1) << "a list of texts is a list";
}

TEST(FileTreeWrite, gives_2_and_changes_nothing_when_the_file_cannot_hold_it)
{
    const auto root = treeOn(R"({"A": 5})");
    const auto leaf = root->getChildData("A");
    const QString halfOfAPair(QChar(0xDD25));
    EXPECT_EQ(leaf->setDataProperty("value", 6), 2);
    EXPECT_EQ(leaf->setDataProperty("", 6), 2);
    EXPECT_EQ(leaf->setDataProperty("@" + halfOfAPair, 6), 2);
    EXPECT_EQ(leaf->setDataProperty("@value", QVariant()), 2);
    EXPECT_EQ(leaf->setDataProperty("@value", QVariant::fromValue(nullptr)), 2);
    EXPECT_EQ(leaf->setDataProperty("@value", std::numeric_limits<double>::quiet_NaN()), 2);
    EXPECT_EQ(leaf->setDataProperty("@value", halfOfAPair), 2);
    EXPECT_EQ(leaf->setDataProperty("@value", QDateTime::currentDateTime()), 2);
    EXPECT_EQ(textOf(root), QByteArray(R"({"A": 5})"));
}

TEST(FileTreeWrite, gives_2_for_lists_that_would_be_too_deep_in_the_file)
{
    const int levels = 1000;
    const auto root = treeOn(nestedObjects(levels));
    const auto node = root->getChildData(urlDown(levels - 1));
    const int room = filehost::limits::depth - levels;
    EXPECT_EQ(node->setDataProperty("@value", nestedList(room + 1)), 2);
    EXPECT_EQ(node->setDataProperty("@value", nestedList(room)), 0);
    readText(textOf(root)); // which must be readable
}

TEST(FileTreeWrite, leaves_the_bytes_alone_when_the_first_value_comes_back)
{
    const QByteArray text = R"({"A": {"@value": 1.50}, "B": [1e0, "\u004b"]})";
    const auto root = treeOn(text);
    EXPECT_EQ(root->getChildData("A")->setDataProperty("@value", 2.5), 0);
    EXPECT_EQ(root->getChildData("B")->setDataProperty("@value", QVariantList{1.0, "x"}), 0);
    EXPECT_NE(textOf(root), text);
    EXPECT_EQ(root->getChildData("A")->setDataProperty("@value", 1.5), 0);
    EXPECT_EQ(root->getChildData("B")->setDataProperty("@value", QVariantList{1.0, "K"}), 0);
    EXPECT_EQ(textOf(root), text);
}

TEST(FileTreeWrite, is_seen_by_every_handle_of_the_node_and_by_no_other_tree)
{
    const auto text = readText(R"({"A": {"B": 1}})");
    const auto root = filehost::tree::FileTreeNode::makeRoot(text, {});
    const auto other = filehost::tree::FileTreeNode::makeRoot(text, {});
    root->getChildMap()["A"]->getChildData("B")->setDataProperty("@value", 2);
    EXPECT_EQ(property(root, "A/B", "@value"), QVariant(2LL));
    EXPECT_EQ(property(other, "A/B", "@value"), QVariant(1LL));
}

struct Write {
    const char* title;
    const char* before;
    const char* url; ///< empty for the root
    const char* key;
    const char* value;
    const char* after;
};

void PrintTo(const Write& row, std::ostream* out)
{
    *out << row.title;
}

class WritingATree : public testing::TestWithParam<Write> {};

TEST_P(WritingATree, changes_the_bytes_of_the_leaf_alone)
{
    const QString url = GetParam().url;
    const auto root = treeOn(GetParam().before);
    const auto node = url.isEmpty() ? root : root->getChildData(url);
    ASSERT_FALSE(node.isNull());
    EXPECT_EQ(node->setDataProperty(GetParam().key, json(GetParam().value)), 0);
    EXPECT_EQ(textOf(root), QByteArray(GetParam().after));
}

INSTANTIATE_TEST_SUITE_P(
    Trees, WritingATree,
    testing::Values(
        Write{"the_value_of_a_short_leaf", R"({"X": 5, "Y": 6})", "X", "@value", "7",
              R"({"X": 7, "Y": 6})"},
        Write{"a_list_in_a_short_leaf", R"({"X": 5})", "X", "@value", "[1, 2]", R"({"X": [1, 2]})"},
        Write{"a_cell_of_a_short_table", "{\"X\": [\n  [1, 2],\n  [3, 4]\n]}", "X", "@value",
              "[[1, 2], [3, 5]]", "{\"X\": [\n  [1, 2],\n  [3, 5]\n]}"},
        Write{"a_map_in_a_short_leaf", R"({"X": 5})", "X", "@value", R"({"a": 1})",
              R"({"X": {"@value": {"a": 1}}})"},
        Write{"a_unit_on_a_short_leaf", R"({"X": 5.00})", "X", "@unitType", "\"K\"",
              R"({"X": {"@value": 5.00, "@unitType": "K"}})"},
        Write{"a_unit_on_a_short_leaf_of_a_dense_text", R"({"X":5,"Y":6})", "X", "@unitType",
              "\"K\"", R"({"X":{"@value":5,"@unitType":"K"},"Y":6})"},
        Write{"a_unit_on_a_short_leaf_with_a_blank_before_the_colon", R"({"X" : 5})", "X",
              "@unitType", "\"K\"", R"({"X" : {"@value" : 5, "@unitType" : "K"}})"},
        Write{"a_unit_on_a_short_table", "{\n  \"X\": [\n    [1]\n  ]\n}", "X", "@unitType",
              "\"K\"", "{\n  \"X\": {\"@value\": [\n    [1]\n  ], \"@unitType\": \"K\"}\n}"},
        Write{"the_value_of_a_null_leaf", R"({"X": null})", "X", "@value", "7", R"({"X": 7})"},
        Write{"a_unit_on_a_null_leaf", R"({"X": null})", "X", "@unitType", "\"K\"",
              R"({"X": {"@value": null, "@unitType": "K"}})"},
        Write{"a_property_that_is_there", R"({"X": {"@unitType":"C",  "@value": 5}})", "X",
              "@unitType", "\"K\"", R"({"X": {"@unitType":"K",  "@value": 5}})"},
        Write{"a_property_that_is_null", R"({"X": {"@unitType": null}})", "X", "@unitType", "\"K\"",
              R"({"X": {"@unitType": "K"}})"},
        Write{"a_new_property_on_one_line", R"({"X": {"@value": 5}})", "X", "@unitType", "\"K\"",
              R"({"X": {"@value": 5, "@unitType": "K"}})"},
        Write{"a_new_property_on_one_line_with_inner_blanks", R"({"X": { "@value": 5 }})", "X",
              "@unitType", "\"K\"", R"({"X": { "@value": 5, "@unitType": "K" }})"},
        Write{"a_new_property_in_a_dense_object", R"({"X":{"@value":5}})", "X", "@unitType",
              "\"K\"", R"({"X":{"@value":5,"@unitType":"K"}})"},
        Write{"a_new_property_spaced_like_its_neighbors", R"({"X": {"@value": 5,  "@type": "a"}})",
              "X", "@unitType", "\"K\"",
              R"({"X": {"@value": 5,  "@type": "a",  "@unitType": "K"}})"},
        Write{"a_new_property_on_its_own_line",
              "{\n    \"X\": {\n        \"@value\": 5\n    }\n}\n", "X", "@unitType", "\"K\"",
              "{\n    \"X\": {\n        \"@value\": 5,\n        \"@unitType\": \"K\"\n    }\n}\n"},
        Write{"a_new_property_on_its_own_line_with_tabs",
              "{\n\t\"X\": {\n\t\t\"@value\": 5\n\t}\n}", "X", "@unitType", "\"K\"",
              "{\n\t\"X\": {\n\t\t\"@value\": 5,\n\t\t\"@unitType\": \"K\"\n\t}\n}"},
        Write{"a_new_property_between_carriage_returns",
              "{\r\n  \"X\": {\r\n    \"@value\": 5\r\n  }\r\n}\r\n", "X", "@unitType", "\"K\"",
              "{\r\n  \"X\": {\r\n    \"@value\": 5,\r\n    \"@unitType\": \"K\"\r\n  }\r\n}\r\n"},
        Write{"a_new_property_does_not_repeat_blank_lines",
              "{\"X\": {\n\n  \"@value\": 5,\n\n  \"@type\": \"a\"\n}}", "X", "@unitType", "\"K\"",
              "{\"X\": {\n\n  \"@value\": 5,\n\n  \"@type\": \"a\",\n  \"@unitType\": \"K\"\n}}"},
        Write{"a_new_property_where_commas_lead_the_lines",
              "{\"X\": {\n    \"@value\": 5\n  , \"@type\": \"a\"\n}}", "X", "@unitType", "\"K\"",
              "{\"X\": {\n    \"@value\": 5\n  , \"@type\": \"a\",\n    \"@unitType\": \"K\"\n}}"},
        Write{"a_new_property_behind_the_last_property", R"({"X": {"Y": 1, "@value": 5, "Z": 2}})",
              "X", "@unitType", "\"K\"",
              R"({"X": {"Y": 1, "@value": 5, "@unitType": "K", "Z": 2}})"},
        Write{"a_first_property_in_front_of_the_children", R"({"X": {"Y": 1}})", "X", "@unitType",
              "\"K\"", R"({"X": {"@unitType": "K", "Y": 1}})"},
        Write{"a_first_property_in_front_of_children_on_lines", "{\"X\": {\n  \"Y\": 1\n}}", "X",
              "@unitType", "\"K\"", "{\"X\": {\n  \"@unitType\": \"K\",\n  \"Y\": 1\n}}"},
        Write{"a_first_property_in_an_empty_object", R"({"X": {}})", "X", "@value", "5",
              R"({"X": {"@value": 5}})"},
        Write{"a_property_of_the_root", R"({"X": 1})", "", "@unitType", "\"K\"",
              R"({"@unitType": "K", "X": 1})"},
        Write{"a_property_of_an_empty_root", "{}\n", "", "@note", "\"n\"", "{\"@note\": \"n\"}\n"},
        Write{
            "the_unit_of_one_column",
            R"({"X": {"@arrayInformation": [{"name": "t","unitType": "s"}, {"name": "T"}]}})", "X",
            "@arrayInformation",
            R"([{"name": "t", "unitType": "s"}, {"name": "T", "unitType": "K"}])",
            R"({"X": {"@arrayInformation": [{"name": "t","unitType": "s"}, {"name": "T", "unitType": "K"}]}})"},
        Write{"a_byte_order_mark_stays", "\xEF\xBB\xBF{\"X\": 5}", "X", "@value", "6",
              "\xEF\xBB\xBF{\"X\": 6}"}),
    [](const auto& row) { return std::string(row.param.title); });

TEST(FileTreeWrite, adds_several_properties_in_the_order_in_which_they_were_written)
{
    const auto root = treeOn(R"({"X": 5, "Y": {"@value": 1}, "Z": {}})");
    for (const char* url : {"Z", "Y", "X"}) {
        root->getChildData(url)->setDataProperty("@unitType", "K");
        root->getChildData(url)->setDataProperty("@type", "t");
        root->getChildData(url)->setDataProperty("@value", 7);
    }
    EXPECT_EQ(textOf(root), QByteArray(R"({"X": {"@value": 7, "@unitType": "K", "@type": "t"}, )"
                                       R"("Y": {"@value": 7, "@unitType": "K", "@type": "t"}, )"
                                       R"("Z": {"@unitType": "K", "@type": "t", "@value": 7}})"));
}

TEST(FileTreeWrite, changes_a_node_and_its_children_together)
{
    const auto root = treeOn(R"({"X": {"Y": {"Z": 1}}})");
    root->getChildData("X/Y/Z")->setDataProperty("@unitType", "a");
    root->getChildData("X")->setDataProperty("@unitType", "b");
    root->getChildData("X/Y")->setDataProperty("@unitType", "c");
    EXPECT_EQ(textOf(root), QByteArray(R"({"X": {"@unitType": "b", "Y": {"@unitType": "c", )"
                                       R"("Z": {"@value": 1, "@unitType": "a"}}}})"));
}
