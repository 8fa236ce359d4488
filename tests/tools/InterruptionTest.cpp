#include "tools/Interruption.h"

#include <gtest/gtest.h>

#include <csignal>

namespace {

using tools::Interruption;

class InterruptionBy : public testing::TestWithParam<int> {
protected:
    InterruptionBy() { testing::GTEST_FLAG(death_test_style) = "threadsafe"; }
};

TEST_P(InterruptionBy, is_noted_and_ends_nothing)
{
    const Interruption interruption;
    EXPECT_EQ(interruption.signal(), 0);
    raise(GetParam());
    EXPECT_EQ(interruption.signal(), GetParam());
}

TEST_P(InterruptionBy, a_second_signal_ends_the_process)
{
    const auto interruptTwice = [] {
        const Interruption interruption;
        raise(GetParam());
        raise(GetParam());
    };
    EXPECT_EXIT(interruptTwice(), testing::KilledBySignal(GetParam()), "");
}

TEST_P(InterruptionBy, the_other_signal_ends_the_process_as_well)
{
    const int other = GetParam() == SIGINT ? SIGTERM : SIGINT;
    const auto interruptTwice = [other] {
        const Interruption interruption;
        raise(GetParam());
        raise(other);
    };
    EXPECT_EXIT(interruptTwice(), testing::KilledBySignal(other), "");
}

TEST_P(InterruptionBy, a_signal_that_is_ignored_is_not_noted)
{
    const auto before = std::signal(GetParam(), SIG_IGN);
    {
        const Interruption interruption;
        raise(GetParam());
        EXPECT_EQ(interruption.signal(), 0);
    }
    std::signal(GetParam(), before);
}

INSTANTIATE_TEST_SUITE_P(Signal, InterruptionBy, testing::Values(SIGINT, SIGTERM),
                         [](const testing::TestParamInfo<int>& test) {
                             return test.param == SIGINT ? "int" : "term";
                         });

TEST(Interruption, leaves_the_signals_as_they_were)
{
    static volatile std::sig_atomic_t received = 0;
    const auto before = std::signal(SIGINT, [](int signal) { received = signal; });
    {
        const Interruption interruption;
        raise(SIGINT);
    }
    EXPECT_EQ(received, 0);
    raise(SIGINT);
    EXPECT_EQ(received, SIGINT);
    std::signal(SIGINT, before);
}

TEST(Interruption, knows_nothing_of_an_earlier_one)
{
    {
        const Interruption interruption;
        raise(SIGINT);
    }
    const Interruption next;
    EXPECT_EQ(next.signal(), 0);
}

TEST(Interruption, is_not_made_by_output_that_nobody_reads)
{
    const Interruption interruption;
    raise(SIGPIPE);
    EXPECT_EQ(interruption.signal(), 0);
}

} // namespace
