#include "tools/console/Progress.h"

#include "Fixture.h"
#include "tools/console/Console.h"
#include "tools/console/Text.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

namespace {

using tools::barText;
using tools::durationText;
using tools::lineText;
using tools::ProgressReport;
using namespace std::chrono_literals;

// --- texts

TEST(ProgressText, of_a_bar_has_how_much_how_fast_and_how_long)
{
    EXPECT_EQ(barText({5000, 10000, 10s}, 77),
              QStringLiteral("[############------------] 5000 of 10000, 500/s, 10 s left"));
}

TEST(ProgressText, of_a_bar_fits_any_width)
{
    for (int width = 1; width < 80; ++width) {
        EXPECT_LE(tools::displayWidth(barText({123456, 999999, 3723s}, width)), width);
    }
}

TEST(ProgressText, of_a_narrow_bar_has_no_bar)
{
    EXPECT_EQ(barText({50, 100, 10s}, 34), QStringLiteral("50 of 100, 5.0/s, 10 s left"));
}

TEST(ProgressText, of_the_beginning_knows_no_speed)
{
    EXPECT_EQ(barText({0, 100, 2s}, 40), QStringLiteral("[------------------------] 0 of 100"));
    EXPECT_EQ(lineText({0, 100, 0s}), QStringLiteral("0 of 100 links"));
}

TEST(ProgressText, of_a_line_has_the_same)
{
    EXPECT_EQ(lineText({3000, 10000, 10s}),
              QStringLiteral("3000 of 10000 links, 300/s, 24 s left"));
}

TEST(ProgressText, of_a_slow_run_has_a_fraction)
{
    EXPECT_EQ(lineText({3, 10, 2s}), QStringLiteral("3 of 10 links, 1.5/s, 5 s left"));
}

struct Duration {
    std::chrono::milliseconds duration;
    const char* text;
};

class DurationText : public testing::TestWithParam<Duration> {};

TEST_P(DurationText, is_short)
{
    EXPECT_EQ(durationText(GetParam().duration), QString::fromUtf8(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(Of, DurationText,
                         testing::Values(Duration{0ms, "0 s"}, Duration{850ms, "850 ms"},
                                         Duration{1999ms, "1 s"}, Duration{59s, "59 s"},
                                         Duration{60s, "1 min 0 s"}, Duration{200s, "3 min 20 s"},
                                         Duration{7500s, "2 h 5 min"}));

// --- when

/// A console whose standard error is a terminal of some width, 0 for none.
class Progresses : public testing::Test {
protected:
    void begin(int width, bool isQuiet = false)
    {
        tools::GlobalOptions options;
        options.quiet = isQuiet;
        console.emplace(tools::Streams{out, err, false, false, width > 0, width}, options);
        report.emplace(*console, 1000, start);
    }

    /// What is written at some time.
    std::string shownAt(std::chrono::milliseconds time, int done)
    {
        err.str({});
        report->update(done, start + time);
        return err.str();
    }

    const ProgressReport::Clock::time_point start{};
    std::ostringstream out;
    std::ostringstream err;
    std::optional<tools::Console> console;
    std::optional<ProgressReport> report;
};

TEST_F(Progresses, on_a_terminal_are_a_bar_after_the_first_second)
{
    begin(80);
    EXPECT_EQ(shownAt(999ms, 100), "");
    EXPECT_EQ(shownAt(1000ms, 100), "\r[##----------------------] 100 of 1000, 100/s, 9 s left");
}

TEST_F(Progresses, on_a_terminal_are_drawn_at_most_ten_times_a_second)
{
    begin(80);
    int drawn = 0;
    for (std::chrono::milliseconds time = 1000ms; time < 2000ms; time += 7ms) {
        drawn += shownAt(time, static_cast<int>(time.count() / 10)).empty() ? 0 : 1;
    }
    EXPECT_LE(drawn, 10);
    EXPECT_GE(drawn, 9);
}

TEST_F(Progresses, on_a_terminal_make_room_for_everything_else_and_vanish)
{
    begin(80);
    const std::string bar = shownAt(1000ms, 100);
    err.str({});
    console->note(QStringLiteral("a line"));
    EXPECT_EQ(err.str(), "\r" + std::string(bar.size() - 1 + 2, ' ') + "\ra line\n");
    shownAt(2000ms, 200);
    err.str({});
    console->clearStatus();
    EXPECT_EQ(err.str().find_first_not_of("\r "), std::string::npos);
    EXPECT_EQ(err.str().back(), '\r');
}

TEST_F(Progresses, on_a_terminal_leave_nothing_behind_a_shorter_bar)
{
    begin(80);
    const std::string longer = shownAt(1000ms, 3); // 3.0/s, 6 min left
    const std::string shorter = shownAt(1100ms, 500);
    EXPECT_EQ(shorter.size(), longer.size());
}

TEST_F(Progresses, elsewhere_are_a_line_for_each_tenth_but_not_too_many)
{
    begin(0);
    EXPECT_EQ(shownAt(1500ms, 150), "");
    EXPECT_EQ(shownAt(2000ms, 150), "150 of 1000 links, 75/s, 12 s left\n");
    EXPECT_EQ(shownAt(9000ms, 199), "");
    EXPECT_EQ(shownAt(9100ms, 200), "200 of 1000 links, 22/s, 37 s left\n");
    EXPECT_EQ(shownAt(9200ms, 500), "");
    EXPECT_EQ(shownAt(11200ms, 500), "500 of 1000 links, 45/s, 12 s left\n");
}

TEST_F(Progresses, do_not_say_that_all_is_done)
{
    begin(80);
    EXPECT_EQ(shownAt(5000ms, 1000), "");
    begin(0);
    EXPECT_EQ(shownAt(5000ms, 1000), "");
}

TEST_F(Progresses, are_not_shown_when_the_run_is_quiet)
{
    for (const int width : {80, 0}) {
        begin(width, true);
        EXPECT_EQ(shownAt(5000ms, 500), "");
    }
}

} // namespace
