#include "filehost/DescriptionPlaces.h"

#include "TestWorkspace.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

using filehost::DescriptionPlaces;
using filehost::Problem;
using filehost::json::JsonText;

namespace {

DescriptionPlaces placesIn(const QByteArray& bytes)
{
    QList<Problem> problems;
    return DescriptionPlaces(JsonText::parse(bytes, "a.json", problems));
}

/// "line:column+length pointer text".
QString told(const DescriptionPlaces& places, const std::optional<DescriptionPlaces::Place>& place)
{
    if (!place) {
        return "nowhere";
    }
    const std::string_view bytes = places.text().slice(place->bytes);
    return QString("%1:%2+%3 %4 %5")
        .arg(place->line)
        .arg(place->column)
        .arg(place->length)
        .arg(place->pointer, QString::fromUtf8(bytes.data(), static_cast<int>(bytes.size())));
}

const char* const description = R"({
  "Units": {
    "Type": "SwitchNode",
    "Next": { "Speed": {
      "Type": { "@value": "CommandNode" },
      "Commands": {
        "Fixed": [["A", "m"], 7, ["B", "s"]],
        "Long": { "@comment": "x", "@value": [["C", null]] },
        "None": { "@value": null }
      }
    } }
  }
})";

} // namespace

TEST(DescriptionPlaces, tell_where_a_key_stands)
{
    const DescriptionPlaces places = placesIn(description);
    EXPECT_EQ(told(places, places.key({"Units"})), "2:3+7 /Units \"Units\"");
    EXPECT_EQ(told(places, places.key({"Units", "Next", "Speed"})),
              "4:15+7 /Units/Next/Speed \"Speed\"");
}

TEST(DescriptionPlaces, tell_where_a_value_stands_however_the_leaf_is_written)
{
    const DescriptionPlaces places = placesIn(description);
    EXPECT_EQ(told(places, places.value({"Units", "Type"})), "3:13+12 /Units/Type \"SwitchNode\"");
    EXPECT_EQ(told(places, places.value({"Units", "Next", "Speed", "Type"})),
              "5:27+13 /Units/Next/Speed/Type/@value \"CommandNode\"");
}

TEST(DescriptionPlaces, tell_where_rows_and_cells_stand_by_their_number_among_all_elements)
{
    const DescriptionPlaces places = placesIn(description);
    const QStringList commands{"Units", "Next", "Speed", "Commands"};
    const QString at = "/Units/Next/Speed/Commands";
    EXPECT_EQ(told(places, places.row(commands + QStringList{"Fixed"}, 2)),
              "7:34+10 " + at + "/Fixed/2 [\"B\", \"s\"]");
    EXPECT_EQ(told(places, places.row(commands + QStringList{"Fixed"}, 1)),
              "7:31+1 " + at + "/Fixed/1 7");
    EXPECT_EQ(told(places, places.cell(commands + QStringList{"Fixed"}, 2, 1)),
              "7:40+3 " + at + "/Fixed/2/1 \"s\"");
    EXPECT_EQ(told(places, places.cell(commands + QStringList{"Long"}, 0, 0)),
              "8:48+3 " + at + "/Long/@value/0/0 \"C\"");
}

TEST(DescriptionPlaces, find_nothing_where_nothing_stands)
{
    const DescriptionPlaces places = placesIn(description);
    const QStringList fixed{"Units", "Next", "Speed", "Commands", "Fixed"};
    EXPECT_FALSE(places.key({}));
    EXPECT_FALSE(places.key({"units"}));
    EXPECT_FALSE(places.key({"Units", "Type", "Below"}));
    EXPECT_FALSE(places.value({"Units"}));
    EXPECT_FALSE(places.value({"Units", "Next", "Speed", "Commands", "None"}));
    EXPECT_FALSE(places.row(fixed, 3));
    EXPECT_FALSE(places.row(fixed, -1));
    EXPECT_FALSE(places.row({"Units"}, 0));
    EXPECT_FALSE(places.cell(fixed, 1, 0));
    EXPECT_FALSE(places.cell(fixed, 0, 2));
}

TEST(DescriptionPlaces, count_characters_not_bytes)
{
    const DescriptionPlaces places = placesIn("{ \"Öfen\": \"°C 𝄞\", \"é\": \"x\" }");
    EXPECT_EQ(told(places, places.key({"Öfen"})), "1:3+6 /Öfen \"Öfen\"");
    EXPECT_EQ(told(places, places.value({"Öfen"})), "1:11+6 /Öfen \"°C 𝄞\"");
    EXPECT_EQ(told(places, places.key({"é"})), "1:19+3 /é \"é\"");
}

TEST(DescriptionPlaces, count_lines_that_end_as_on_windows_and_pass_over_a_byte_order_mark)
{
    const DescriptionPlaces places =
        placesIn("\xEF\xBB\xBF{\r\n \"A\": {\r\n  \"B\": [\r\n1]\r\n}}\r\n");
    EXPECT_EQ(told(places, places.key({"A", "B"})), "3:3+3 /A/B \"B\"");
    const auto list = places.value({"A", "B"});
    ASSERT_TRUE(list);
    EXPECT_EQ(list->column, 8);
    EXPECT_EQ(list->length, 1) << "what stands on the first line";
    EXPECT_EQ(told(places, places.row({"A", "B"}, 0)), "4:1+1 /A/B/0 1");
    const DescriptionPlaces oneLine = placesIn("\xEF\xBB\xBF{\"A\":1}");
    EXPECT_EQ(told(oneLine, oneLine.key({"A"})), "1:2+3 /A \"A\"");
}

TEST(DescriptionPlaces, find_escaped_keys_and_escape_them_in_pointers)
{
    const DescriptionPlaces places = placesIn(R"({"a\/b~\u0041": {"": 1}})");
    EXPECT_EQ(told(places, places.value({"a/b~A", ""})), "1:22+1 /a~1b~0A/ 1");
}

TEST(DescriptionPlaces, find_characters_of_a_string_as_it_is_spelled)
{
    const DescriptionPlaces places = placesIn(R"({"P": "a\\d°\u00B0𝄞\ud834\udd1e("})");
    const JsonText::Index pattern = places.find({"P"});
    ASSERT_EQ(places.text().value(pattern).toString().size(), 10);
    const auto characters = [&](int first, int count) {
        return told(places, places.charactersAt(pattern, first, count));
    };
    EXPECT_EQ(characters(0, 1), "1:8+1 /P a");
    EXPECT_EQ(characters(1, 1), "1:9+2 /P \\\\");
    EXPECT_EQ(characters(2, 3), "1:11+8 /P d°\\u00B0");
    EXPECT_EQ(characters(5, 2), "1:19+1 /P 𝄞");
    EXPECT_EQ(characters(7, 2), "1:20+12 /P \\ud834\\udd1e");
    EXPECT_EQ(characters(9, 1), "1:32+1 /P (");
    EXPECT_EQ(characters(10, 1), "1:33+0 /P ");
}

TEST(DescriptionPlaces, lead_from_every_value_to_its_pointer_and_back)
{
    std::mt19937 random(7);
    std::function<QByteArray(int)> make = [&](int depth) -> QByteArray {
        const int kind = depth == 0 ? 2 : static_cast<int>(random() % 3);
        const int count = static_cast<int>(random() % 4);
        QByteArray text;
        for (int i = 0; i < count && kind < 2; ++i) {
            text += i > 0 ? "," : "";
            text += kind == 0 ? "\"k/~" + QByteArray::number(i) + "\":" : "\n";
            text += make(depth - 1);
        }
        return kind == 0 ? "{" + text + "}" : kind == 1 ? "[" + text + "]" : QByteArray("0");
    };
    for (int round = 0; round < 200; ++round) {
        const DescriptionPlaces places = placesIn("{\"root\":" + make(5) + "}");
        const JsonText& text = places.text();
        for (JsonText::Index at = 0; at < text.node(JsonText::root).next; ++at) {
            JsonText::Index found = JsonText::root;
            for (QString token : places.valueAt(at).pointer.split('/').mid(1)) {
                token.replace("~1", "/").replace("~0", "~");
                found = text.kind(found) == JsonText::Kind::Array
                            ? places.element(found, token.toInt())
                            : text.member(found, token);
            }
            ASSERT_EQ(found, at);
        }
    }
}

class DescriptionPlacesOfFiles : public TestWorkspace {};

TEST_F(DescriptionPlacesOfFiles, are_read_from_the_workspace)
{
    write("dependency/sub/units.json", "{\n\"A\": 1}");
    QList<Problem> problems;
    const auto places = DescriptionPlaces::read(workspace(), "sub/units", problems);
    ASSERT_TRUE(places);
    EXPECT_EQ(places->text().file(), "dependency/sub/units.json");
    EXPECT_EQ(told(*places, places->value({"A"})), "2:6+1 /A 1");
    EXPECT_TRUE(problems.isEmpty());
}

TEST_F(DescriptionPlacesOfFiles, come_with_problems_when_there_is_no_such_description)
{
    QList<Problem> problems;
    EXPECT_FALSE(DescriptionPlaces::read(workspace(), "missing", problems));
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.first().code, Problem::Code::Missing);
    EXPECT_FALSE(DescriptionPlaces::read(workspace(), "../outside", problems));
    EXPECT_EQ(problems.last().code, Problem::Code::Name);
}
