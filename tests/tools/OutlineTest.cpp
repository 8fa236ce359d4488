#include "tools/console/Outline.h"

#include "Fixture.h"

#include <gtest/gtest.h>

using tools::Outline;

namespace {

TEST(Outline, indents_by_level_and_aligns_places)
{
    Outline outline;
    outline.addHeading("Heading", "links.json:1:2");
    outline.addLine(1, "one", "dependency/units.json:10:20");
    outline.addLine(2, "two", "d.json:1:1");
    outline.addLine(2, "no place");
    EXPECT_EQ(outline.toText(false),
              "Heading                                              links.json:1:2\n"
              "  one                                                dependency/units.json:10:20\n"
              "    two                                              d.json:1:1\n"
              "    no place\n");
}

TEST(Outline, separates_headings_by_a_blank_line)
{
    Outline outline;
    outline.addHeading("A", {});
    outline.addHeading("B", {});
    EXPECT_EQ(outline.toText(false), "A\n\nB\n");
    EXPECT_EQ(outline.toText(true), "\x1b[1mA\x1b[0m\n\n\x1b[1mB\x1b[0m\n");
}

TEST(Outline, gives_a_place_a_line_of_its_own_when_the_text_leaves_no_room)
{
    Outline outline;
    outline.addLine(1, QString(49, 'x'), QString(27, 'p'));
    outline.addLine(1, QString(50, 'x'), QString(27, 'p'));
    EXPECT_EQ(outline.toText(false), "  " + QString(49, 'x') + "  " + QString(27, 'p') + "\n  " +
                                         QString(50, 'x') + '\n' + QString(53, ' ') +
                                         QString(27, 'p') + '\n');
}

TEST(Outline, breaks_texts_beyond_80_columns_at_blanks)
{
    Outline outline;
    outline.addLine(1, QString(40, 'x') + ' ' + QString(37, 'y'));
    outline.addLine(1, QString(40, 'x') + ' ' + QString(38, 'y'), "a:1");
    outline.addLine(1, QString(90, 'z'));
    EXPECT_EQ(outline.toText(false), "  " + QString(40, 'x') + ' ' + QString(37, 'y') + "\n  " +
                                         QString(40, 'x') + "\n      " + QString(38, 'y') +
                                         QString(33, ' ') + "a:1\n  " + QString(90, 'z') + '\n');
}

TEST(Outline, counts_wide_characters_as_two_columns)
{
    Outline outline;
    outline.addLine(1, "温度", "a:1");
    EXPECT_EQ(outline.toText(false), "  温度" + QString(71, ' ') + "a:1\n");
}

TEST(Outline, can_take_lines_back)
{
    Outline outline;
    outline.addLine(1, "a");
    outline.addLine(1, "b");
    outline.addLine(2, "c");
    EXPECT_EQ(outline.textsFrom(1), (QStringList{"b", "c"}));
    outline.removeFrom(1);
    EXPECT_EQ(outline.size(), 1U);
    EXPECT_EQ(outline.toText(false), "  a\n");
}

} // namespace
