#include "filehost/json/JsonEdits.h"

#include "Printers.h"
#include "TestTree.h"

#include <gtest/gtest.h>

using filehost::json::JsonEdits;
using filehost::json::JsonText;

namespace {

/// The text after its root was made equal to a value.
QByteArray replaced(const QByteArray& bytes, const QByteArray& value)
{
    const auto text = readText(bytes);
    JsonEdits edits(*text);
    edits.replace(JsonText::root, json(value));
    return edits.apply();
}

struct Replacement {
    const char* title;
    const char* before;
    const char* value;
    const char* after;
};

void PrintTo(const Replacement& row, std::ostream* out)
{
    *out << row.title;
}

class Replacing : public testing::TestWithParam<Replacement> {};

} // namespace

TEST_P(Replacing, touches_only_what_differs)
{
    EXPECT_EQ(replaced(GetParam().before, GetParam().value), QByteArray(GetParam().after));
}

INSTANTIATE_TEST_SUITE_P(
    Values, Replacing,
    testing::Values(
        Replacement{"an_equal_number_keeps_its_spelling", "1.500", "1.5", "1.500"},
        Replacement{"an_equal_string_keeps_its_escapes", R"("\u004b\/")", R"("K/")",
                    R"("\u004b\/")"},
        Replacement{"a_number_of_another_type_is_written", "5", "5.0", "5.0"},
        Replacement{"minus_zero_equals_zero", "-0.0", "0.0", "-0.0"},
        Replacement{"a_large_double_keeps_an_exponent", "1", "1e300", "1e300"},
        Replacement{"a_round_double_keeps_a_point", "1", "100000.0", "100000.0"},
        Replacement{"an_unsigned_number_is_written_in_full", "1", "18446744073709551615",
                    "18446744073709551615"},
        Replacement{"other_letters_than_ascii_are_written_as_they_are", R"("")",
                    R"("\u00b0C \ud83d\udd25")", "\"\u00B0C \U0001F525\""},
        Replacement{"control_characters_are_escaped", R"("")", R"("\u0000\n\u001f\u007f\"\\/")",
                    "\"\\u0000\\n\\u001F\x7F\\\"\\\\/\""},
        Replacement{"blanks_around_the_value_stay", " 1\n", "2", " 2\n"},
        Replacement{"one_element_of_a_list", "[1,  2,\n3 ]", "[1, 7, 3]", "[1,  7,\n3 ]"},
        Replacement{"an_element_in_a_list_in_a_list", "[[1.0],[ 2 ] ]", "[[1.0], [3]]",
                    "[[1.0],[ 3 ] ]"},
        Replacement{"a_list_of_another_length", "[1,\n2]", "[1, 2, 3]", "[1, 2, 3]"},
        Replacement{"a_list_that_becomes_empty", "[1, 2]", "[]", "[]"},
        Replacement{"one_member_of_a_map", R"({"b": 1,  "a" :2})", R"({"a": 3, "b": 1})",
                    R"({"b": 1,  "a" :3})"},
        Replacement{"a_member_is_added_behind_the_last_one", R"({"b": 1})", R"({"a": 2, "b": 1})",
                    R"({"b": 1, "a": 2})"},
        Replacement{"two_members_are_added_in_order", R"({"b":1})", R"({"a": 2, "b": 1, "c": 3})",
                    R"({"b":1,"a":2,"c":3})"},
        Replacement{"a_member_is_added_on_a_line_of_its_own", "{\n  \"b\": 1\n}",
                    R"({"a": 2, "b": 1})", "{\n  \"b\": 1,\n  \"a\": 2\n}"},
        Replacement{"a_member_is_added_in_a_map_in_a_list", R"([{"n": "A"}, {"n": "B"}])",
                    R"([{"n": "A"}, {"n": "B", "u": "K"}])",
                    R"([{"n": "A"}, {"n": "B", "u": "K"}])"},
        Replacement{"a_map_that_loses_a_member", R"({"a": 1,"b": 2})", R"({"b": 2})",
                    R"({"b": 2})"},
        Replacement{"an_empty_map_gains_a_member", "[{ }]", R"([{"a": 1}])", "[{\"a\": 1 }]"},
        Replacement{"new_lists_and_maps_are_spaced_like_the_text", R"({"a":1})",
                    R"({"a": [1, {"b": 2, "c": 3}]})", R"({"a":[1,{"b":2,"c":3}]})"},
        Replacement{"a_list_in_place_of_a_scalar", R"({"a" : 1})", R"({"a": [1, null]})",
                    R"({"a" : [1, null]})"},
        Replacement{"a_scalar_in_place_of_a_map", R"({"a": {"b": 1}})", R"({"a": "x"})",
                    R"({"a": "x"})"},
        Replacement{"null_in_place_of_a_value", R"([1, 2])", R"([1, null])", R"([1, null])"},
        Replacement{"a_colon_on_a_line_of_its_own_is_no_model", "{\"a\"\n:\n{}}",
                    R"({"a": {"b": 1}})", "{\"a\"\n:\n{\"b\": 1}}"}),
    [](const auto& row) { return std::string(row.param.title); });

TEST(JsonEdits, without_any_edit_give_the_text_back)
{
    const auto text = readText("\xEF\xBB\xBF[ 1.0 ]\r\n");
    EXPECT_EQ(JsonEdits(*text).apply(), text->bytes());
}

TEST(JsonEdits, add_at_one_place_in_the_order_of_the_calls)
{
    const auto text = readText(R"({"a": 1})");
    JsonEdits edits(*text);
    for (const char* key : {"b", "c", "d"}) {
        edits.insert(JsonText::root, text->member(JsonText::root, "a"), {{key, json("0")}});
    }
    EXPECT_EQ(edits.apply(), QByteArray(R"({"a": 1, "b": 0, "c": 0, "d": 0})"));
}

TEST(JsonEdits, take_effect_together_whatever_their_order)
{
    const auto text = readText(R"({"a": 1, "b": 2, "c": 3})");
    JsonEdits edits(*text);
    edits.replace(text->member(JsonText::root, "c"), json("[3]"));
    edits.insert(JsonText::root, text->member(JsonText::root, "c"), {{"d", json("4")}});
    edits.wrap(text->member(JsonText::root, "b"), "value", {{"e", json("5")}});
    edits.replace(text->member(JsonText::root, "b"), json("22"));
    edits.insert(JsonText::root, JsonText::none, {{"x", json("0")}, {"y", json("0")}});
    EXPECT_EQ(
        edits.apply(),
        QByteArray(R"({"x": 0, "y": 0, "a": 1, "b": {"value": 22, "e": 5}, "c": [3], "d": 4})"));
}

namespace {

struct Appending {
    const char* title;
    const char* before;
    const char* after;
};

class AppendedObjects : public testing::TestWithParam<Appending> {};

} // namespace

TEST_P(AppendedObjects, look_like_the_element_before_them)
{
    const auto text = readText(GetParam().before);
    JsonEdits edits(*text);
    edits.append(JsonText::root, {{{"n", json(R"("B")")}, {"t", json("2")}}, {{"n", json("3")}}});
    EXPECT_EQ(edits.apply(), QByteArray(GetParam().after));
}

INSTANTIATE_TEST_SUITE_P(
    Arrays, AppendedObjects,
    testing::Values(
        Appending{"on_lines_of_their_own",
                  "[\r\n  {\r\n    \"n\": \"A\",\r\n    \"t\": 1\r\n  }\r\n]\r\n",
                  "[\r\n  {\r\n    \"n\": \"A\",\r\n    \"t\": 1\r\n  },\r\n"
                  "  {\r\n    \"n\": \"B\",\r\n    \"t\": 2\r\n  },\r\n"
                  "  {\r\n    \"n\": 3\r\n  }\r\n]\r\n"},
        Appending{"an_object_to_a_line", "[\n\t{ \"n\" : \"A\", \"t\" : 1 }\n]",
                  "[\n\t{ \"n\" : \"A\", \"t\" : 1 },\n\t{ \"n\" : \"B\", \"t\" : 2 },\n"
                  "\t{ \"n\" : 3 }\n]"},
        Appending{"all_on_one_line", R"([{"n":"A","t":1}])",
                  R"([{"n":"A","t":1},{"n":"B","t":2},{"n":3}])"},
        Appending{"members_on_lines_in_an_array_on_one", "[{\n  \"n\": 1,\n  \"t\": 2\n}]",
                  "[{\n  \"n\": 1,\n  \"t\": 2\n}, {\n  \"n\": \"B\",\n  \"t\": 2\n}, "
                  "{\n  \"n\": 3\n}]"},
        Appending{"without_a_blank_line_again", "[\n {\"n\": 1},\n\n {\"n\": 2}\n\n]",
                  "[\n {\"n\": 1},\n\n {\"n\": 2},\n {\"n\": \"B\", \"t\": 2},\n {\"n\": 3}\n\n]"},
        Appending{"in_an_empty_array", "[]", R"([{"n": "B", "t": 2}, {"n": 3}])"},
        Appending{"behind_an_element_that_is_none", "[1, {}]",
                  R"([1, {}, {"n": "B", "t": 2}, {"n": 3}])"}),
    [](const auto& row) { return std::string(row.param.title); });
