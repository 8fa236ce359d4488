#include "Printers.h"
#include "host/JsonDataIterator.h"
#include "host/JsonDataIteratorFilter.h"

#include <QJsonDocument>
#include <gtest/gtest.h>

namespace {

QJsonArray array(const char* text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text);
    EXPECT_TRUE(document.isArray()) << text;
    return document.array();
}

QByteArray textOf(const QJsonValue& result)
{
    EXPECT_TRUE(result.isArray());
    return QJsonDocument(result.toArray()).toJson(QJsonDocument::Compact);
}

/// The values under "name" of the objects that pass.
QByteArray names(const char* text, const QHash<QString, QVariant>& filter, bool flag = true)
{
    QJsonArray objects = array(text);
    JsonDataIteratorFilter visitor("name", filter, flag);
    JsonDataIterator iterator(visitor);
    iterator.iterate(objects);
    return textOf(iterator.getResult());
}

class Noter : public JsonDataIteratorObjectBase {
public:
    void visitObject(const QJsonObject& object) override { names.append(object.value("name")); }
    QJsonValue getResult() const override { return names; }

private:
    QJsonArray names;
};

struct Comparison {
    const char* title;
    QVariant wanted;
    const char* found;
    bool isEqual;
};

class FilterValue : public testing::TestWithParam<Comparison> {};

} // namespace

TEST(JsonIterator, shows_the_objects_of_an_array_and_of_arrays_in_it_in_order)
{
    Noter noter;
    JsonDataIterator iterator(noter);
    QJsonArray objects = array(R"([{"name": "C"}, 5, [{"name": "B"}, [[{"name": "A"}]]], null,
                                   {"name": "D", "inside": {"name": "E"}}])");
    iterator.iterate(objects);
    EXPECT_EQ(textOf(iterator.getResult()), QByteArray(R"(["C","B","A","D"])"));
}

TEST(JsonIterator, adds_up_what_several_arrays_give)
{
    Noter noter;
    JsonDataIterator iterator(noter);
    QJsonArray first = array(R"([{"name": "A"}])");
    QJsonArray second = array(R"([{"name": "B"}])");
    iterator.iterate(first);
    iterator.iterate(second);
    EXPECT_EQ(textOf(iterator.getResult()), QByteArray(R"(["A","B"])"));
}

TEST(JsonFilter, with_the_flag_counts_objects_inside_objects_behind_the_one_they_are_in)
{
    EXPECT_EQ(names(R"([{"on": true, "name": "A",
                         "map": {"on": true, "name": "B", "list": [{"on": true, "name": "C"}]},
                         "zone": [[{"on": true, "name": "D"}]]},
                        {"on": true, "name": "E"}])",
                    {{"on", true}}),
              QByteArray(R"(["A","B","C","D","E"])"));
}

TEST(JsonFilter, with_the_flag_looks_into_objects_that_do_not_pass)
{
    EXPECT_EQ(
        names(R"([{"on": false, "name": "A", "in": {"on": true, "name": "B"}}])", {{"on", true}}),
        QByteArray(R"(["B"])"));
}

TEST(JsonFilter, without_the_flag_never_looks_into_an_object)
{
    EXPECT_EQ(names(R"([{"on": true, "name": "A", "in": {"on": true, "name": "B"}},
                        {"in": [{"on": true, "name": "C"}]}])",
                    {{"on", true}}, false),
              QByteArray(R"(["A"])"));
}

TEST(JsonFilter, wants_every_pair_and_takes_all_when_there_is_none)
{
    const char* const text = R"([{"a": 1, "b": 2, "name": "AB"}, {"a": 1, "name": "A"}])";
    EXPECT_EQ(names(text, {{"a", 1}, {"b", 2}}), QByteArray(R"(["AB"])"));
    EXPECT_EQ(names(text, {}), QByteArray(R"(["AB","A"])"));
}

TEST(JsonFilter, collects_values_of_any_type_and_passes_over_what_has_none)
{
    EXPECT_EQ(names(R"([{"name": 5}, {}, {"name": null}, {"name": ["x"]}])", {}),
              QByteArray(R"([5,null,["x"]])"));
}

TEST(JsonFilter, gives_an_empty_array_before_anything_was_visited)
{
    EXPECT_EQ(textOf(JsonDataIteratorFilter("name", {}, true).getResult()), QByteArray("[]"));
}

TEST_P(FilterValue, compares_by_type_and_value)
{
    const QByteArray text = QByteArray(R"([{"key": )") + GetParam().found + R"(, "name": 1}])";
    EXPECT_EQ(names(text.constData(), {{"key", GetParam().wanted}}),
              QByteArray(GetParam().isEqual ? "[1]" : "[]"));
}

INSTANTIATE_TEST_SUITE_P(
    Pairs, FilterValue,
    testing::Values(Comparison{"true_is_true", true, "true", true},
                    Comparison{"true_is_not_false", true, "false", false},
                    Comparison{"true_is_not_one", true, "1", false},
                    Comparison{"true_is_not_the_text_true", true, R"("true")", false},
                    Comparison{"one_is_not_true", 1, "true", false},
                    Comparison{"one_is_one_with_a_fraction", 1, "1.0", true},
                    Comparison{"a_double_is_a_whole_number", 2.0, "2", true},
                    Comparison{"one_is_not_the_text_one", 1, R"("1")", false},
                    Comparison{"text_keeps_its_case", QString("a"), R"("A")", false},
                    Comparison{"text_is_text", QString("a"), R"("a")", true},
                    Comparison{"nothing_is_null", QVariant::fromValue(nullptr), "null", true},
                    Comparison{"nothing_is_not_an_empty_text", QVariant::fromValue(nullptr),
                               R"("")", false},
                    Comparison{"a_list_is_the_same_list", QVariantList{1, true}, "[1, true]", true},
                    Comparison{"a_list_is_no_other_list", QVariantList{1, true}, "[1, 1]", false}),
    [](const auto& row) { return std::string(row.param.title); });
