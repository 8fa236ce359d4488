#include "tools/console/Value.h"

#include "Fixture.h"

#include <QVariantList>
#include <QVariantMap>
#include <gtest/gtest.h>

#include <limits>
#include <ostream>

namespace {

using filehost::Problem;

struct Given {
    const char* title;
    QString text;
    QVariant value;
};

void PrintTo(const Given& row, std::ostream* stream)
{
    *stream << row.title;
}

class Value : public testing::TestWithParam<Given> {};

TEST_P(Value, is_read_as_its_literal_or_as_text)
{
    QList<Problem> problems;
    const QVariant value = tools::parseValue(GetParam().text, problems);
    EXPECT_TRUE(problems.isEmpty());
    EXPECT_EQ(value.type(), GetParam().value.type()) << value.typeName();
    EXPECT_EQ(value, GetParam().value);
}

TEST_P(Value, is_shown_as_something_that_is_read_back_the_same)
{
    const QString shown = tools::valueText(GetParam().value);
    QList<Problem> problems;
    const QVariant value = tools::parseValue(shown, problems);
    EXPECT_EQ(value.type(), GetParam().value.type()) << shown.toStdString();
    EXPECT_EQ(value, GetParam().value) << shown.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Given, Value,
    testing::Values(
        Given{"whole_number", QStringLiteral("5"), 5LL},
        Given{"negative_number", QStringLiteral("-5"), -5LL},
        Given{"largest_64_bits", QStringLiteral("18446744073709551615"),
              std::numeric_limits<qulonglong>::max()},
        Given{"smallest_64_bits", QStringLiteral("-9223372036854775808"),
              std::numeric_limits<qlonglong>::min()},
        Given{"fraction", QStringLiteral("1.25"), 1.25},
        Given{"whole_number_with_a_fraction", QStringLiteral("2.0"), 2.0},
        Given{"exponent", QStringLiteral("1e3"), 1000.0},
        Given{"true_literal", QStringLiteral("true"), true},
        Given{"quoted_text", QStringLiteral("\"5\""), QStringLiteral("5")},
        Given{"quoted_null", QStringLiteral("\"null\""), QStringLiteral("null")},
        Given{"plain_text", QStringLiteral("°F"), QStringLiteral("°F")},
        Given{"empty_text", QString(), QStringLiteral("")},
        Given{"leading_zero", QStringLiteral("0815"), QStringLiteral("0815")},
        Given{"literal_in_another_case", QStringLiteral("True"), QStringLiteral("True")},
        Given{"text_in_single_quotes", QStringLiteral("'a'"), QStringLiteral("'a'")},
        Given{"two_literals", QStringLiteral("1, 2"), QStringLiteral("1, 2")},
        Given{"text_that_begins_like_a_list", QStringLiteral("[1, 2"), QStringLiteral("[1, 2")},
        Given{"word_for_nothing", QStringLiteral("(none)"), QStringLiteral("(none)")},
        Given{"line_feed", QStringLiteral("a\nb"), QStringLiteral("a\nb")},
        Given{"blanks_around", QStringLiteral(" a "), QStringLiteral(" a ")},
        Given{"list", QStringLiteral("[[1, \"a\"]]"),
              QVariantList{QVariant(QVariantList{1LL, QStringLiteral("a")})}},
        Given{"object", QStringLiteral("{\"a\": 1}"), QVariantMap{{QStringLiteral("a"), 1LL}}}),
    [](const testing::TestParamInfo<Given>& test) { return test.param.title; });

struct Refusal {
    const char* title;
    QString text;
    Problem::Code code;
};

void PrintTo(const Refusal& row, std::ostream* stream)
{
    *stream << row.title;
}

class RefusedValue : public testing::TestWithParam<Refusal> {};

TEST_P(RefusedValue, is_invalid_and_says_why)
{
    QList<Problem> problems;
    EXPECT_FALSE(tools::parseValue(GetParam().text, problems).isValid());
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.first().code, GetParam().code);
    EXPECT_EQ(problems.first().file, QStringLiteral("VALUE"));
    EXPECT_FALSE(problems.first().advice.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Given, RefusedValue,
    testing::Values(
        Refusal{"null", QStringLiteral("null"), Problem::Code::Shape},
        Refusal{"number_beyond_64_bits", QStringLiteral("18446744073709551616"),
                Problem::Code::NumberRange},
        Refusal{"number_beyond_doubles", QStringLiteral("1e999"), Problem::Code::NumberRange},
        Refusal{"key_twice", QStringLiteral(R"({"a": 1, "a": 2})"), Problem::Code::DuplicateKey}),
    [](const testing::TestParamInfo<Refusal>& test) { return test.param.title; });

/// What the advice of a problem has the shell hand over.
QString quotedForShell(const QString& advice)
{
    return advice.section(QLatin1Char('\''), 1, 1);
}

TEST(RefusedValue, that_may_be_meant_as_text_says_how_to_type_that)
{
    for (const QString& literal : {QStringLiteral("null"), QStringLiteral("18446744073709551616"),
                                   QStringLiteral("-1e999")}) {
        QList<Problem> problems;
        tools::parseValue(literal, problems);
        ASSERT_EQ(problems.size(), 1);
        QList<Problem> none;
        EXPECT_EQ(tools::parseValue(quotedForShell(problems.first().advice), none), literal)
            << problems.first().advice.toStdString();
    }
}

TEST(ValueText, shows_an_absent_value_in_words)
{
    EXPECT_EQ(tools::valueText({}), QStringLiteral("(none)"));
}

TEST(ValueText, spells_characters_out_that_would_command_a_terminal)
{
    for (const int unit : {0x001B, 0x007F, 0x009B, 0x202E}) {
        const QString text = QStringLiteral("a%1b").arg(QChar(unit));
        const QString shown = tools::valueText(text);
        EXPECT_FALSE(shown.contains(QChar(unit))) << shown.toStdString();
        QList<Problem> none;
        EXPECT_EQ(tools::parseValue(shown, none), text);
    }
}

TEST(ShortValueText, describes_a_long_list_by_its_size)
{
    QVariantList numbers;
    QVariantList rows;
    for (int number = 0; number < 20; ++number) {
        numbers.append(number);
        rows.append(QVariant(QVariantList{number, number}));
    }
    EXPECT_EQ(tools::shortValueText(numbers), QStringLiteral("20 values"));
    EXPECT_EQ(tools::shortValueText(rows), QStringLiteral("20 rows of 2 columns"));
}

TEST(ShortValueText, cuts_long_text)
{
    const QString text(50, QLatin1Char('a'));
    EXPECT_EQ(tools::shortValueText(text), text.left(35) + QStringLiteral("…"));
}

} // namespace
