#include "tools/console/Table.h"

#include "Fixture.h"

#include <gtest/gtest.h>

namespace {

TEST(Table, aligns_columns_over_all_headings)
{
    tools::Table table;
    table.addHeading(QStringLiteral("a heading wider than any cell"));
    table.addRow({QStringLiteral("°C"), QStringLiteral("x")});
    table.addHeading(QStringLiteral("b"));
    table.addRow({QStringLiteral("m³/h"), QStringLiteral("y")});
    EXPECT_EQ(table.toText(false), QStringLiteral("a heading wider than any cell\n"
                                                  "  °C    x\n"
                                                  "b\n"
                                                  "  m³/h  y\n"));
}

TEST(Table, aligns_cells_of_wide_characters)
{
    tools::Table table;
    table.addRow({QStringLiteral("温度"), QStringLiteral("x")});
    table.addRow({QStringLiteral("speed"), QStringLiteral("y")});
    EXPECT_EQ(table.toText(false), QStringLiteral("  温度   x\n"
                                                  "  speed  y\n"));
}

TEST(Table, leaves_no_trailing_blanks)
{
    tools::Table table;
    table.addRow({QStringLiteral("a"), QStringLiteral("long"), QString()});
    table.addRow({QStringLiteral("b"), QString(), QString()});
    EXPECT_EQ(table.toText(false), QStringLiteral("  a  long\n  b\n"));
}

TEST(Table, lets_a_very_wide_cell_push_only_its_own_line)
{
    const QString wide(60, QLatin1Char('w'));
    tools::Table table;
    table.addRow({wide, QStringLiteral("1")});
    table.addRow({QStringLiteral("a"), QStringLiteral("2")});
    EXPECT_EQ(table.toText(false), QStringLiteral("  %1  1\n  a  2\n").arg(wide));
}

TEST(Table, colors_headings_only_and_only_when_asked)
{
    tools::Table table;
    table.addHeading(QStringLiteral("h"));
    table.addRow({QStringLiteral("r")});
    EXPECT_EQ(table.toText(true), QStringLiteral("\x1b[1mh\x1b[0m\n  r\n"));
}

} // namespace
