#include "tools/resolve/ResultWindow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <optional>
#include <random>
#include <thread>
#include <vector>

namespace {

using tools::LinkResult;
using tools::ResultWindow;
using namespace std::chrono_literals;

LinkResult resultOf(int link)
{
    LinkResult result;
    result.link = link;
    return result;
}

std::vector<int> linksOf(const ResultWindow::Batch& batch)
{
    std::vector<int> links;
    for (const LinkResult& result : batch.results) {
        links.push_back(result.link);
    }
    return links;
}

/// Reads to the end.
std::vector<int> takeAll(ResultWindow& window)
{
    std::vector<int> links;
    for (bool isLast = false; !isLast;) {
        const ResultWindow::Batch batch = window.take(10ms);
        const std::vector<int> some = linksOf(batch);
        links.insert(links.end(), some.begin(), some.end());
        isLast = batch.isLast;
    }
    return links;
}

TEST(ResultWindow, hands_out_each_unit_once)
{
    ResultWindow window(2, 10);
    EXPECT_EQ(window.nextUnit(), std::optional<int>(0));
    EXPECT_EQ(window.nextUnit(), std::optional<int>(1));
    EXPECT_EQ(window.nextUnit(), std::nullopt);
}

TEST(ResultWindow, gives_results_in_the_order_of_the_units)
{
    ResultWindow window(2, 10);
    window.enter();
    window.nextUnit();
    window.nextUnit();
    window.push(1, resultOf(10));
    EXPECT_EQ(linksOf(window.take(0ms)), std::vector<int>());
    window.push(0, resultOf(1));
    EXPECT_EQ(linksOf(window.take(0ms)), std::vector<int>{1});
    window.push(0, resultOf(2));
    window.endUnit(0);
    EXPECT_EQ(linksOf(window.take(0ms)), (std::vector<int>{2, 10}));
    window.endUnit(1);
    window.leave({});
    EXPECT_TRUE(window.take(0ms).isLast);
}

TEST(ResultWindow, counts_results_that_are_not_told_yet_as_done)
{
    ResultWindow window(2, 10);
    window.nextUnit();
    window.nextUnit();
    window.push(1, resultOf(10));
    EXPECT_EQ(window.take(0ms).done, 1);
}

TEST(ResultWindow, ends_when_all_jobs_have_left_also_before_the_last_unit)
{
    ResultWindow window(5, 10);
    window.enter();
    window.enter();
    window.nextUnit();
    window.push(0, resultOf(1));
    window.endUnit(0);
    window.leave({});
    EXPECT_FALSE(window.take(0ms).isLast);
    window.leave({7, 8});
    EXPECT_TRUE(window.take(0ms).isLast);
    EXPECT_EQ(window.undone(), (std::vector<int>{7, 8}));
}

TEST(ResultWindow, lets_a_job_wait_that_is_too_far_ahead)
{
    ResultWindow window(2, 3);
    window.enter();
    window.nextUnit();
    window.nextUnit();
    std::atomic<int> pushed{0};
    std::thread ahead([&] {
        for (int link = 0; link < 10; ++link) {
            window.push(1, resultOf(link));
            ++pushed;
        }
        window.endUnit(1);
        window.leave({});
    });
    while (pushed < 3) {
        std::this_thread::yield();
    }
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(pushed, 3);
    EXPECT_EQ(linksOf(window.take(0ms)), std::vector<int>());

    window.push(0, resultOf(100)); // there is room for the unit that the reader waits for
    window.endUnit(0);
    std::vector<int> expected{100};
    for (int link = 0; link < 10; ++link) {
        expected.push_back(link);
    }
    EXPECT_EQ(takeAll(window), expected);
    ahead.join();
}

TEST(ResultWindow, holds_no_more_than_its_limit_of_the_unit_at_the_front_either)
{
    ResultWindow window(1, 3);
    window.enter();
    window.nextUnit();
    std::atomic<int> pushed{0};
    std::thread job([&] {
        for (int link = 0; link < 10; ++link) {
            window.push(0, resultOf(link));
            ++pushed;
        }
        window.endUnit(0);
        window.leave({});
    });
    while (pushed < 3) {
        std::this_thread::yield();
    }
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(pushed, 3);
    EXPECT_EQ(takeAll(window).size(), 10U);
    job.join();
}

TEST(ResultWindow, tells_last_words_past_everything_else_and_waits_until_they_were_told)
{
    ResultWindow window(2, 3);
    window.enter();
    window.nextUnit();
    window.nextUnit();
    window.push(1, resultOf(1));
    std::atomic<bool> isTold{false};
    std::thread job([&] {
        window.pushLastWords(
            {tools::Severity::Error,
             {filehost::Problem::Code::Read, {}, 0, 0, QStringLiteral("the end"), {}},
             std::nullopt});
        isTold = true;
    });
    ResultWindow::Batch batch;
    while (!batch.lastWords) {
        batch = window.take(10ms);
    }
    EXPECT_EQ(batch.lastWords->problem.message, QStringLiteral("the end"));
    EXPECT_FALSE(isTold);
    window.confirmLastWords();
    job.join();
    EXPECT_TRUE(isTold);
}

TEST(ResultWindow, keeps_the_order_whatever_the_jobs_do)
{
    constexpr int units = 200;
    for (const int jobs : {1, 2, 5}) {
        ResultWindow window(units, 4);
        std::vector<std::thread> threads;
        threads.reserve(static_cast<std::size_t>(jobs));
        for (int job = 0; job < jobs; ++job) {
            window.enter();
        }
        for (int job = 0; job < jobs; ++job) {
            threads.emplace_back([&window, job] {
                std::mt19937 random(static_cast<unsigned>(job));
                while (const std::optional<int> unit = window.nextUnit()) {
                    const int results = *unit % 7; // some units have none
                    for (int number = 0; number < results; ++number) {
                        window.push(*unit, resultOf(10 * *unit + number));
                        if (random() % 16 == 0) {
                            std::this_thread::sleep_for(100us);
                        }
                    }
                    window.endUnit(*unit);
                }
                window.leave({});
            });
        }
        const std::vector<int> links = takeAll(window);
        EXPECT_TRUE(std::is_sorted(links.begin(), links.end())) << "with " << jobs << " jobs";
        int expected = 0;
        for (int unit = 0; unit < units; ++unit) {
            expected += unit % 7;
        }
        EXPECT_EQ(links.size(), static_cast<std::size_t>(expected));
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
}

} // namespace
