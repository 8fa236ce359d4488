#include "filehost/json/JsonText.h"

#include "Printers.h"
#include "filehost/Limits.h"
#include "filehost/json/JsonValue.h"

#include <QVariantList>
#include <QVariantMap>
#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>
#include <vector>

using namespace std::string_literals;
using filehost::Problem;
using filehost::json::JsonText;
using Code = Problem::Code;

namespace {

std::shared_ptr<const JsonText> parse(const QByteArray& bytes)
{
    QList<Problem> problems;
    return JsonText::parse(bytes, "a.json", problems);
}

QList<Problem> problemsOf(const QByteArray& bytes)
{
    QList<Problem> problems;
    const bool isRead = JsonText::parse(bytes, "a.json", problems) != nullptr;
    EXPECT_EQ(isRead, problems.isEmpty());
    return problems;
}

QVariant valueOf(const QByteArray& bytes)
{
    const auto text = parse(bytes);
    return text ? text->value(JsonText::root) : QVariant("cannot be read");
}

QByteArray nested(int levels)
{
    return QByteArray(levels, '[') + QByteArray(levels, ']');
}

QByteArray bytes(const std::string& text)
{
    return QByteArray::fromStdString(text);
}

} // namespace

TEST(JsonText, reads_whole_numbers_with_all_64_bits)
{
    EXPECT_EQ(valueOf("9223372036854775807"), QVariant(std::numeric_limits<qlonglong>::max()));
    EXPECT_EQ(valueOf("-9223372036854775808"), QVariant(std::numeric_limits<qlonglong>::min()));
    EXPECT_EQ(valueOf("9007199254740993").toLongLong(), 9007199254740993);
    EXPECT_EQ(valueOf("7").userType(), int{QMetaType::LongLong});
    EXPECT_EQ(valueOf("-0").userType(), int{QMetaType::LongLong});
}

TEST(JsonText, reads_whole_numbers_beyond_the_signed_range_as_unsigned)
{
    EXPECT_EQ(valueOf("9223372036854775808").userType(), int{QMetaType::ULongLong});
    EXPECT_EQ(valueOf("18446744073709551615").toULongLong(),
              std::numeric_limits<qulonglong>::max());
}

TEST(JsonText, reads_numbers_with_a_point_or_an_exponent_as_doubles)
{
    for (const char* number :
         {"1.0", "1e3", "-2.5E-1", "0.1", "1e-400", "1.7976931348623157e308"}) {
        EXPECT_EQ(valueOf(number).userType(), int{QMetaType::Double}) << number;
    }
    EXPECT_EQ(valueOf("0.1").toDouble(), 0.1);
    EXPECT_EQ(valueOf("1e3").toDouble(), 1000.0);
    EXPECT_EQ(valueOf("5e-324").toDouble(), std::numeric_limits<double>::denorm_min());
}

TEST(JsonText, reads_strings_with_every_escape)
{
    EXPECT_EQ(valueOf(R"("\"\\\/\b\f\n\r\t\u00B0C")"),
              QVariant(QString::fromUtf8("\"\\/\b\f\n\r\t\u00B0C")));
    EXPECT_EQ(valueOf(R"("\uD83D\uDD25")"), QVariant(QString::fromUtf8("\U0001F525")));
}

TEST(JsonText, keeps_zero_characters_and_byte_order_marks_inside_strings)
{
    EXPECT_EQ(valueOf(R"("a\u0000b")").toString().size(), 3);
    EXPECT_EQ(valueOf("\"\xEF\xBB\xBF\xEF\xBB\xBFx\"").toString(), QString(2, QChar(0xFEFF)) + "x");
    EXPECT_EQ(valueOf(R"("\uFEFFx")").toString(), QChar(0xFEFF) + QString("x"));
}

TEST(JsonText, reads_containers_with_null_inside)
{
    const QVariantMap map = valueOf(R"({"a": [1, null], "b": {}, "c": true})").toMap();
    EXPECT_EQ(map["a"].toList()[1].userType(), int{QMetaType::Nullptr});
    EXPECT_EQ(map["b"].userType(), int{QMetaType::QVariantMap});
    EXPECT_EQ(map["c"], QVariant(true));
    EXPECT_EQ(map.size(), 3);
}

TEST(JsonText, accepts_a_leading_byte_order_mark_and_keeps_it)
{
    const auto text = parse("\xEF\xBB\xBF {\"a\": 1}");
    ASSERT_TRUE(text);
    EXPECT_EQ(text->bytes(), QByteArray("\xEF\xBB\xBF {\"a\": 1}"));
    EXPECT_EQ(text->member(JsonText::root, "a"), 1U);
    EXPECT_EQ(text->place(text->node(JsonText::root).value.begin).column, 2);
}

TEST(JsonText, knows_where_every_value_and_key_stands)
{
    const auto text = parse("{ \"a\" : [1.50,\r\n\t\"\xC2\xB0\", {}] , \"b\":null }");
    ASSERT_TRUE(text);
    const auto spelling = [&](JsonText::Index index) {
        return std::string(text->slice(text->node(index).value));
    };
    EXPECT_EQ(text->slice(text->node(1).key), "\"a\"");
    EXPECT_EQ(spelling(2), "1.50");
    EXPECT_EQ(spelling(3), "\"\xC2\xB0\"");
    EXPECT_EQ(spelling(4), "{}");
    EXPECT_EQ(spelling(1), "[1.50,\r\n\t\"\xC2\xB0\", {}]");
    EXPECT_EQ(spelling(5), "null");
    EXPECT_EQ(text->slice(text->node(5).key), "\"b\"");
}

TEST(JsonText, counts_columns_in_characters)
{
    const auto text = parse("[\n \"\xC2\xB0\xF0\x9F\x94\xA5\", 7]");
    ASSERT_TRUE(text);
    const auto place = text->place(text->node(2).value.begin);
    EXPECT_EQ(place.line, 2);
    EXPECT_EQ(place.column, 8);
}

TEST(JsonText, counts_lines_in_long_texts_like_a_plain_count)
{
    std::string source = "[";
    for (int i = 0; i < 1000; ++i) {
        source += i % 3 == 0 ? "\n\n1," : "2,\n";
    }
    source += "3]";
    const auto text = parse(bytes(source));
    ASSERT_TRUE(text);
    for (quint32 offset = 0; offset < source.size(); offset += 7) {
        const auto end = source.begin() + static_cast<std::ptrdiff_t>(offset);
        const auto lines = std::count(source.begin(), end, '\n');
        EXPECT_EQ(text->place(offset).line, lines + 1) << offset;
    }
}

struct BadText {
    const char* title;
    std::string text;
    Code code;
    int line;
    int column;
    const char* quoted; ///< a piece of the message
};

void PrintTo(const BadText& row, std::ostream* out)
{
    *out << row.title;
}

class BadJson : public testing::TestWithParam<BadText> {};

TEST_P(BadJson, gives_a_problem_with_its_place_and_a_way_out)
{
    const QList<Problem> problems = problemsOf(bytes(GetParam().text));
    ASSERT_EQ(problems.size(), 1);
    const Problem& problem = problems.first();
    EXPECT_EQ(problem.code, GetParam().code) << problem.message.toStdString();
    EXPECT_EQ(problem.file, QString("a.json"));
    EXPECT_EQ(problem.line, GetParam().line) << problem.message.toStdString();
    EXPECT_EQ(problem.column, GetParam().column) << problem.message.toStdString();
    EXPECT_TRUE(problem.message.contains(GetParam().quoted)) << problem.message.toStdString();
    EXPECT_FALSE(problem.advice.isEmpty());
}

TEST(JsonText, says_of_a_comment_that_there_are_none)
{
    for (const char* text :
         {"// a\n{}", "{ // a\n}", "{\"a\": /* b */ 1}", "[1 // a\n]", "{} /* a */"}) {
        const QList<Problem> problems = problemsOf(text);
        ASSERT_EQ(problems.size(), 1) << text;
        EXPECT_TRUE(problems.first().advice.startsWith("JSON has no comments"))
            << problems.first().advice.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Texts, BadJson,
    testing::Values(
        BadText{"empty", "", Code::Syntax, 1, 1, "the end of the text"},
        BadText{"only_blanks", " \n ", Code::Syntax, 2, 2, "the end of the text"},
        BadText{"only_a_byte_order_mark", "\xEF\xBB\xBF", Code::Syntax, 1, 1, "end of the text"},
        BadText{"no_value", "}", Code::Syntax, 1, 1, "\"}\""},
        BadText{"a_word", "{\"a\": yes}", Code::Syntax, 1, 7, "\"yes\""},
        BadText{"half_a_word", "[tru]", Code::Syntax, 1, 2, "\"tru\""},
        BadText{"a_word_that_begins_like_null", "{\"a\": nothing}", Code::Syntax, 1, 7,
                "\"nothing\""},
        BadText{"a_minus_without_digits", "[1, -x]", Code::Syntax, 1, 5, "\"-x\""},
        BadText{"a_second_comma", "[1,,2]", Code::Syntax, 1, 4, "\",\""},
        BadText{"two_values", "{} {}", Code::Syntax, 1, 4, "\"{\""},
        BadText{"a_zero_byte_at_the_end", "{}\0"s, Code::Syntax, 1, 3, "zero byte"},
        BadText{"a_zero_byte_between_values", "[1,\0 2]"s, Code::Syntax, 1, 4, "zero byte"},
        BadText{"a_zero_byte_in_a_string", "[\"a\0b\"]"s, Code::Syntax, 1, 4, "zero byte"},
        BadText{"a_comma_before_a_brace", "{\"a\": 1,\n}", Code::Syntax, 2, 1, "\"}\""},
        BadText{"a_comma_before_a_bracket", "[1, ]", Code::Syntax, 1, 5, "\"]\""},
        BadText{"a_missing_comma", "{\"a\": 1\n \"b\": 2}", Code::Syntax, 2, 2, "\"b\""},
        BadText{"a_missing_comma_in_an_array", "[1 2]", Code::Syntax, 1, 4, "\"2\""},
        BadText{"a_missing_colon", "{\"a\" 1}", Code::Syntax, 1, 6, "\"1\""},
        BadText{"a_key_without_quotes", "{a: 1}", Code::Syntax, 1, 2, "\"a\""},
        BadText{"single_quotes", "{'a': 1}", Code::Syntax, 1, 2, "\"'a'\""},
        BadText{"an_open_object", "{\"a\": 1", Code::Syntax, 1, 8, "the end of the text"},
        BadText{"an_open_array", "[[1]", Code::Syntax, 1, 5, "the end of the text"},
        BadText{"an_open_string", "[\"abc", Code::Syntax, 1, 6, "the end of the text"},
        BadText{"a_wrong_bracket", "[1}", Code::Syntax, 1, 3, "\"}\""},
        BadText{"a_line_break_in_a_string", "[\"a\nb\"]", Code::Syntax, 1, 4, "string"},
        BadText{"a_tab_in_a_string", "[\"a\tb\"]", Code::Syntax, 1, 4, "string"},
        BadText{"an_unknown_escape", R"(["\x"])", Code::Syntax, 1, 3, "\\x"},
        BadText{"a_short_unicode_escape", R"(["\u00G0"])", Code::Syntax, 1, 3, "\\u00G0"},
        BadText{"a_lone_high_surrogate", R"(["\uD83Dx"])", Code::Syntax, 1, 3, "\\uD83D"},
        BadText{"a_lone_low_surrogate", R"(["a\uDD25"])", Code::Syntax, 1, 2, "\\uDD25"},
        BadText{"a_lone_low_surrogate_in_a_key", R"({"\uDC00": 1})", Code::Syntax, 1, 2, "\\uDC00"},
        BadText{"two_high_surrogates", R"(["\uD83D\uD83D"])", Code::Syntax, 1, 3, "surrogate"},
        BadText{"a_stray_continuation_byte", "[\"a\x80\"]", Code::Syntax, 1, 4, "UTF-8"},
        BadText{"a_cut_off_character", "[\"\xC2\"]", Code::Syntax, 1, 3, "UTF-8"},
        BadText{"an_overlong_character", "[\"\xC0\x80\"]", Code::Syntax, 1, 3, "UTF-8"},
        BadText{"a_surrogate_as_bytes", "[\"\xED\xA0\x80\"]", Code::Syntax, 1, 3, "UTF-8"},
        BadText{"a_character_beyond_unicode", "[\"\xF4\x90\x80\x80\"]", Code::Syntax, 1, 3,
                "UTF-8"},
        BadText{"latin_1", "{\"\xB0\": 1}", Code::Syntax, 1, 3, "UTF-8"},
        BadText{"utf_16", "\xFF\xFE{\0}\0"s, Code::Syntax, 1, 1, "value"},
        BadText{"a_comment", "{} // note", Code::Syntax, 1, 4, "\"//\""},
        BadText{"a_leading_zero", "[01]", Code::Syntax, 1, 3, "\"1\""},
        BadText{"a_plus", "[+1]", Code::Syntax, 1, 2, "\"+1\""},
        BadText{"a_point_without_digits", "[1.]", Code::Syntax, 1, 4, "\"]\""},
        BadText{"a_point_first", "[.5]", Code::Syntax, 1, 2, "\".5\""},
        BadText{"an_exponent_without_digits", "[1e]", Code::Syntax, 1, 4, "\"]\""},
        BadText{"a_minus_alone", "[-]", Code::Syntax, 1, 2, "\"-\""},
        BadText{"not_a_number", "[NaN]", Code::Syntax, 1, 2, "\"NaN\""},
        BadText{"infinity", "[-Infinity]", Code::Syntax, 1, 2, "\"-Infinity\""},
        BadText{"a_whole_number_of_65_bits", "[18446744073709551616]", Code::NumberRange, 1, 2,
                "18446744073709551616"},
        BadText{"a_whole_number_below_all", "[-9223372036854775809]", Code::NumberRange, 1, 2,
                "-9223372036854775809"},
        BadText{"a_huge_exponent", "[1,\n 1e309]", Code::NumberRange, 2, 2, "1e309"},
        BadText{"a_number_just_beyond_doubles", "[1.8e308]", Code::NumberRange, 1, 2, "1.8e308"},
        BadText{"a_number_of_400_digits", "[" + std::string(400, '9') + "]", Code::NumberRange, 1,
                2, "999"},
        BadText{"the_same_key_twice", "{\"a\": 1,\n \"a\": 2}", Code::DuplicateKey, 2, 2,
                "\"a\" twice, first at 1:2"},
        BadText{"the_same_key_spelled_in_two_ways", R"({"a": 1, "\u0061": 2})", Code::DuplicateKey,
                1, 10, "first at 1:2"}),
    [](const auto& row) { return std::string(row.param.title); });

TEST(JsonText, reports_all_problems_that_leave_the_rest_readable_in_the_order_of_the_text)
{
    const QList<Problem> problems =
        problemsOf(R"({"a": {"b": 1, "b": 99999999999999999999}, "c": -99999999999999999999, !})");
    ASSERT_EQ(problems.size(), 4);
    EXPECT_EQ(problems[0].code, Code::DuplicateKey);
    EXPECT_EQ(problems[0].column, 16);
    EXPECT_EQ(problems[1].code, Code::NumberRange);
    EXPECT_EQ(problems[1].column, 21);
    EXPECT_EQ(problems[2].code, Code::NumberRange);
    EXPECT_EQ(problems[2].column, 49);
    EXPECT_EQ(problems[3].code, Code::Syntax);
    EXPECT_EQ(problems[3].column, 72);
}

TEST(JsonText, reports_a_key_that_is_there_three_times_twice)
{
    EXPECT_EQ(problemsOf(R"({"a": 1, "b": 2, "a": 3, "a": 4})").size(), 2);
}

TEST(JsonText, takes_the_same_key_in_different_objects_for_no_problem)
{
    EXPECT_TRUE(problemsOf(R"({"a": {"a": {"a": 1}}, "b": [{"a": 1}, {"a": 1}]})").isEmpty());
}

TEST(JsonText, lists_so_many_problems_and_counts_the_others)
{
    constexpr int listed = filehost::limits::problemCount;
    QByteArray numbers;
    for (int i = 0; i < listed; ++i) {
        numbers += "99999999999999999999,";
    }
    EXPECT_EQ(problemsOf("[" + numbers + "1]").size(), listed);

    // In the last row, one of the two ends the reading.
    struct Row {
        QByteArray rest;
        const char* message;
    };
    for (const Row& row :
         {Row{R"({"a": 1, "a": 2}])", "1 more problem is not listed"},
          Row{numbers + R"("\uDC00"])", "101 more problems are not listed"},
          Row{"99999999999999999999, nothing]", "2 more problems are not listed"}}) {
        const QList<Problem> problems = problemsOf("[" + numbers + row.rest);
        ASSERT_EQ(problems.size(), listed + 1);
        EXPECT_EQ(problems[listed - 1].code, Code::NumberRange);
        EXPECT_EQ(problems.last().code, Code::Size);
        EXPECT_EQ(problems.last().line, 0);
        EXPECT_EQ(problems.last().message, QString(row.message));
        EXPECT_FALSE(problems.last().advice.isEmpty());
    }
}

TEST(JsonText, quotes_long_offending_text_in_part)
{
    const QList<Problem> problems = problemsOf("[" + QByteArray(5000, 'x') + "]");
    ASSERT_EQ(problems.size(), 1);
    EXPECT_LT(problems.first().message.size(), 100);
    EXPECT_TRUE(problems.first().message.contains("xxx..."));
}

TEST(JsonText, reads_as_many_levels_as_the_limit_allows_and_no_more)
{
    EXPECT_TRUE(parse(nested(filehost::limits::depth)));
    const QList<Problem> problems = problemsOf(nested(filehost::limits::depth + 1));
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.first().code, Code::Depth);
    EXPECT_EQ(problems.first().column, filehost::limits::depth + 1);
}

TEST(JsonText, decodes_values_as_deep_as_the_limit_allows)
{
    QVariant value = valueOf(nested(filehost::limits::depth));
    int levels = 0;
    while (value.userType() == QMetaType::QVariantList) {
        ++levels;
        value = value.toList().value(0);
    }
    EXPECT_EQ(levels, filehost::limits::depth);
}

TEST(JsonText, answers_a_million_open_brackets_with_a_problem)
{
    const QList<Problem> problems = problemsOf(QByteArray(1000000, '['));
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.first().code, Code::Depth);
}

TEST(JsonText, refuses_more_bytes_than_the_limit)
{
    const QList<Problem> problems = problemsOf(QByteArray(filehost::limits::fileSize + 1, ' '));
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.first().code, Code::Size);
    EXPECT_EQ(problems.first().line, 0);
}

TEST(JsonText, refuses_more_values_than_the_limit)
{
    const QByteArray element("null,");
    const int elements = filehost::limits::valueCount; // and the array is one more value
    const QList<Problem> problems = problemsOf('[' + element.repeated(elements) + "null]");
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.first().code, Code::Size);
    EXPECT_EQ(problems.first().column, 2 + element.size() * (elements - 1));
}

TEST(JsonText, compares_strings_as_if_they_were_decoded)
{
    const std::vector<QByteArray> pieces{"a",
                                         "b",
                                         "\\u0061",
                                         "@",
                                         "\\u0040",
                                         "\\\\",
                                         "\\n",
                                         "\xC2\xB0",
                                         "\\u00b0",
                                         "\xC3\x82",
                                         "\xEF\xBB\xBF",
                                         "\\uFEFF",
                                         "\\u0000",
                                         "\xF0\x9F\x94\xA5",
                                         "\\ud83d\\udd25",
                                         "/",
                                         "\\/"};
    std::mt19937 random(20240608); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in every run
    const auto randomString = [&] {
        QByteArray spelled;
        for (auto length = random() % 4; length > 0; --length) {
            spelled += pieces[random() % pieces.size()];
        }
        return '"' + spelled + '"';
    };

    int equal = 0;
    for (int round = 0; round < 20000; ++round) {
        const QByteArray spelled = randomString();
        const auto text = parse('{' + spelled + ": " + spelled + '}');
        ASSERT_TRUE(text);
        const JsonText::Index member = 1;
        const QString key = text->key(member);
        const QString other = valueOf(randomString()).toString();
        for (const QString& string : {key, other, key + 'a', key.chopped(key.isEmpty() ? 0 : 1)}) {
            const bool isSame = key == string;
            SCOPED_TRACE(spelled.toStdString() + " and " + string.toStdString());
            ASSERT_EQ(text->isUnder(member, string), isSame);
            ASSERT_EQ(text->find(JsonText::root, string) == member, isSame);
            ASSERT_EQ(text->isValue(member, string), isSame);
            equal += isSame && string == other ? 1 : 0;
        }
        QString url = "x/";
        text->appendKey(member, url);
        ASSERT_EQ(url, "x/" + key);
    }
    EXPECT_GT(equal, 100);
}

TEST(JsonText, compares_values_of_other_kinds_by_kind_and_value)
{
    const auto text = parse(R"([5, 5.0, "5", true, null, [5], {"a": 5}])");
    const QVariantList values = text->value(JsonText::root).toList();
    int at = 0;
    for (const JsonText::Index index : text->children(JsonText::root)) {
        for (const QVariant& value : values) {
            EXPECT_EQ(text->isValue(index, value), filehost::json::isSame(values[at], value));
        }
        ++at;
    }
    EXPECT_TRUE(text->isValue(1, 5LL));
    EXPECT_FALSE(text->isValue(1, 5.0));
    EXPECT_FALSE(text->isValue(1, "5"));
}

TEST(JsonText, survives_any_change_of_single_bytes)
{
    const std::string good = R"({"S": {"@value": -1.5e3, "@unitType": "\u00B0C"}, )"
                             "\"\xC2\xB0\": [[\"a\", true], null, 18446744073709551615]}";
    ASSERT_TRUE(parse(bytes(good)));
    std::mt19937 random(20240607); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in every run
    int readable = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string mutated = good;
        for (auto changes = random() % 3; changes < 3; ++changes) {
            const auto at = random() % mutated.size();
            switch (random() % 3) {
            case 0:
                mutated[at] = static_cast<char>(random() % 256);
                break;
            case 1:
                mutated.erase(at, 1);
                break;
            default:
                mutated.insert(at, 1, "{}[],:\"\\0-eu\x80\xED"[random() % 15]);
            }
        }
        const auto text = parse(bytes(mutated));
        if (text) {
            ++readable;
            text->value(JsonText::root);
        }
    }
    EXPECT_GT(readable, 100); // the changes are no mere noise
}
