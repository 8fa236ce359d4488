#include "tools/resolve/Interruption.h"

#include <gtest/gtest.h>

#include <csignal>

namespace {

using tools::Interruption;
using Handler = void (*)(int);

void send(int signal)
{
    ASSERT_EQ(raise(signal), 0);
}

/// Gives the handler that was there before.
Handler setHandler(int signal, Handler handler)
{
    const Handler before = std::signal(signal, handler);
    EXPECT_NE(before, SIG_ERR);
    return before;
}

class InterruptionBy : public testing::TestWithParam<int> {
protected:
    InterruptionBy() { testing::GTEST_FLAG(death_test_style) = "threadsafe"; }
};

TEST_P(InterruptionBy, is_noted_and_ends_nothing)
{
    const Interruption interruption;
    EXPECT_EQ(interruption.signal(), 0);
    send(GetParam());
    EXPECT_EQ(interruption.signal(), GetParam());
}

TEST_P(InterruptionBy, a_second_signal_ends_the_process)
{
    const auto interruptTwice = [] {
        const Interruption interruption;
        send(GetParam());
        send(GetParam());
    };
    EXPECT_EXIT(interruptTwice(), testing::KilledBySignal(GetParam()), "");
}

TEST_P(InterruptionBy, the_other_signal_ends_the_process_as_well)
{
    const int other = GetParam() == SIGINT ? SIGTERM : SIGINT;
    const auto interruptTwice = [other] {
        const Interruption interruption;
        send(GetParam());
        send(other);
    };
    EXPECT_EXIT(interruptTwice(), testing::KilledBySignal(other), "");
}

TEST_P(InterruptionBy, a_signal_that_is_ignored_is_not_noted)
{
    const auto before = setHandler(GetParam(), SIG_IGN);
    {
        const Interruption interruption;
        send(GetParam());
        EXPECT_EQ(interruption.signal(), 0);
    }
    setHandler(GetParam(), before);
}

INSTANTIATE_TEST_SUITE_P(Signal, InterruptionBy, testing::Values(SIGINT, SIGTERM),
                         [](const testing::TestParamInfo<int>& test) {
                             return test.param == SIGINT ? "int" : "term";
                         });

TEST(Interruption, leaves_the_signals_as_they_were)
{
    static volatile std::sig_atomic_t received = 0;
    const auto before = setHandler(SIGINT, [](int signal) { received = signal; });
    {
        const Interruption interruption;
        send(SIGINT);
    }
    EXPECT_EQ(received, 0);
    send(SIGINT);
    EXPECT_EQ(received, SIGINT);
    setHandler(SIGINT, before);
}

TEST(Interruption, knows_nothing_of_an_earlier_one)
{
    {
        const Interruption interruption;
        send(SIGINT);
    }
    const Interruption next;
    EXPECT_EQ(next.signal(), 0);
}

TEST(Interruption, is_not_made_by_output_that_nobody_reads)
{
    const Interruption interruption;
    send(SIGPIPE);
    EXPECT_EQ(interruption.signal(), 0);
}

} // namespace
