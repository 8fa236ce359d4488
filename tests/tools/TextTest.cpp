#include "tools/console/Text.h"

#include "Fixture.h"

#include <gtest/gtest.h>

namespace {

TEST(DisplayWidth, counts_a_character_beyond_the_basic_plane_once)
{
    EXPECT_EQ(tools::displayWidth(QString::fromUtf8("𝛼°C")), 3);
}

TEST(DisplayWidth, counts_no_combining_mark)
{
    EXPECT_EQ(tools::displayWidth(QString::fromUtf8("e\u0301\u20DD")), 1);
}

TEST(DisplayWidth, counts_a_wide_character_twice)
{
    EXPECT_EQ(tools::displayWidth(QString::fromUtf8("温度")), 4);
    EXPECT_EQ(tools::displayWidth(QString::fromUtf8("ｋＷ")), 4);
    EXPECT_EQ(tools::displayWidth(QString::fromUtf8("온도 °C")), 7);
    EXPECT_EQ(tools::displayWidth(QString::fromUtf8("𠮷🔥")), 4);
}

TEST(DisplayWidth, tells_wide_characters_from_their_neighbors)
{
    struct Row {
        uint codePoint;
        int width;
    };
    // The ends of the first range, of one in the middle and of the last one.
    for (const Row& row : {Row{0x10FF, 1}, Row{0x1100, 2}, Row{0x115F, 2}, Row{0xABF9, 1},
                           Row{0xAC00, 2}, Row{0xD7A3, 2}, Row{0xD7A4, 1}, Row{0x1FAFF, 1},
                           Row{0x20000, 2}, Row{0x3FFFD, 2}, Row{0x3FFFE, 1}, Row{0x10FFFF, 1}}) {
        EXPECT_EQ(tools::displayWidth(QString::fromUcs4(&row.codePoint, 1)), row.width)
            << std::hex << row.codePoint;
    }
}

TEST(DisplayWidth, counts_nothing_that_has_no_column_of_its_own)
{
    EXPECT_EQ(tools::displayWidth(QString::fromUtf8("a\u200Bb\u2060")), 2);
    // A mark that lies among wide characters, and a syllable letter by letter.
    EXPECT_EQ(tools::displayWidth(QString::fromUtf8("か\u3099")), 2);
    EXPECT_EQ(tools::displayWidth(QString::fromUtf8("\u1112\u1161\u11AB")), 2);
}

TEST(Elided, counts_a_wide_character_twice)
{
    EXPECT_EQ(tools::elided(QString::fromUtf8("温度計"), 6), QString::fromUtf8("温度計"));
    EXPECT_EQ(tools::elided(QString::fromUtf8("温度計器"), 6), QString::fromUtf8("温度…"));
    EXPECT_EQ(tools::elided(QString::fromUtf8("温度計器"), 7), QString::fromUtf8("温度計…"));
}

TEST(Padded, fills_up_to_columns_and_not_to_bytes)
{
    EXPECT_EQ(tools::padded(QStringLiteral("m³/h"), 6), QStringLiteral("m³/h  "));
    EXPECT_EQ(tools::padded(QStringLiteral("wide"), 2), QStringLiteral("wide"));
}

TEST(Elided, keeps_what_fits_and_shows_that_something_is_missing)
{
    EXPECT_EQ(tools::elided(QStringLiteral("abcdef"), 6), QStringLiteral("abcdef"));
    EXPECT_EQ(tools::elided(QStringLiteral("abcdefg"), 6), QStringLiteral("abcde…"));
}

TEST(Elided, keeps_a_combining_mark_with_its_letter)
{
    EXPECT_EQ(tools::elided(QString::fromUtf8("abe\u0301xyz"), 4), QString::fromUtf8("abe\u0301…"));
}

TEST(Printable, spells_control_characters_out)
{
    EXPECT_EQ(tools::printable(QStringLiteral("a\nb\x1b[31m")),
              QStringLiteral("a\\u000ab\\u001b[31m"));
}

TEST(Printable, spells_characters_out_that_turn_the_direction_of_writing)
{
    for (const int unit : {0x061C, 0x200E, 0x200F, 0x202A, 0x202B, 0x202C, 0x202D, 0x202E, 0x2066,
                           0x2067, 0x2068, 0x2069}) {
        EXPECT_EQ(tools::printable(QStringLiteral("a%1b").arg(QChar(unit))),
                  QStringLiteral("a\\u%1b").arg(unit, 4, 16, QLatin1Char('0')));
    }
}

TEST(Printable, spells_characters_out_that_hide_or_begin_a_line)
{
    EXPECT_EQ(tools::printable(QString::fromUtf8("a\u200Bb\u2060c\uFEFFd\u2028e\u2029")),
              QStringLiteral("a\\u200bb\\u2060c\\ufeffd\\u2028e\\u2029"));
    EXPECT_EQ(tools::printable(QString::fromUtf8("a\U000E0041")),
              QStringLiteral("a\\udb40\\udc41"));
}

TEST(Printable, leaves_letters_marks_and_symbols_as_they_are)
{
    const QString text = QString::fromUtf8("Größe e\u0301 温度 درجة ΔT 𝛼 → 🌡");
    EXPECT_EQ(tools::printable(text), text);
    EXPECT_EQ(tools::printable(text + QLatin1Char('\n')), text + QStringLiteral("\\u000a"));
}

TEST(Wrapped, breaks_at_blanks_and_indents_each_line)
{
    EXPECT_EQ(tools::wrapped(QStringLiteral("one two three four"), 13),
              QStringLiteral("    one two\n    three\n    four\n"));
}

TEST(Wrapped, gives_a_word_wider_than_a_line_a_line_of_its_own)
{
    EXPECT_EQ(tools::wrapped(QStringLiteral("a/very/long/path to it"), 12),
              QStringLiteral("    a/very/long/path\n    to it\n"));
}

TEST(Wrapped, makes_no_line_of_nothing)
{
    EXPECT_EQ(tools::wrapped({}, 80), QString());
}

TEST(Counted, uses_the_singular_for_one_only)
{
    const QString one = QStringLiteral("leaf");
    const QString many = QStringLiteral("leaves");
    EXPECT_EQ(tools::counted(0, one, many), QStringLiteral("0 leaves"));
    EXPECT_EQ(tools::counted(1, one, many), QStringLiteral("1 leaf"));
    EXPECT_EQ(tools::counted(2, one, many), QStringLiteral("2 leaves"));
}

TEST(Enumerated, puts_an_and_before_the_last)
{
    const QString a = QStringLiteral("a");
    EXPECT_EQ(tools::enumerated({}), QString());
    EXPECT_EQ(tools::enumerated({a}), QStringLiteral("a"));
    EXPECT_EQ(tools::enumerated({a, a}), QStringLiteral("a and a"));
    EXPECT_EQ(tools::enumerated({a, a, a}), QStringLiteral("a, a and a"));
}

TEST(NearestNamesText, is_empty_without_candidates)
{
    EXPECT_EQ(tools::nearestNamesText(QStringLiteral("a"), {}), QString());
}

TEST(NearestNamesText, quotes_each_name)
{
    EXPECT_EQ(
        tools::nearestNamesText(QStringLiteral("a"), {QStringLiteral("b"), QStringLiteral("c")}),
        QStringLiteral("the nearest are \"b\" and \"c\""));
    EXPECT_EQ(tools::nearestNamesText(QStringLiteral("a"), {QStringLiteral("b")}),
              QStringLiteral("the nearest is \"b\""));
}

} // namespace
