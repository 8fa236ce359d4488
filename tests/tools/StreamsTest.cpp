#include "tools/console/Streams.h"

#include <gtest/gtest.h>

namespace {

TEST(Color, is_for_terminals_only)
{
    EXPECT_TRUE(tools::wantsColor(true, nullptr, "xterm"));
    EXPECT_FALSE(tools::wantsColor(false, nullptr, "xterm"));
}

TEST(Color, is_refused_by_any_no_color_but_an_empty_one)
{
    EXPECT_FALSE(tools::wantsColor(true, "1", "xterm"));
    EXPECT_FALSE(tools::wantsColor(true, "0", "xterm"));
    EXPECT_TRUE(tools::wantsColor(true, "", "xterm"));
}

TEST(Color, needs_a_terminal_that_can_show_it)
{
    EXPECT_FALSE(tools::wantsColor(true, nullptr, "dumb"));
    EXPECT_FALSE(tools::wantsColor(true, nullptr, nullptr));
}

} // namespace
