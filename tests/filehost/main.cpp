#include "MessageLog.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace {

std::optional<testhost::MessageCapture>& capture()
{
    static std::optional<testhost::MessageCapture> current;
    return current;
}

/// Nothing goes to Qt's message log unnoticed, whatever the test is about.
class SilentLog : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { capture().emplace(); }

    void OnTestEnd(const testing::TestInfo&) override
    {
        EXPECT_EQ(takeMessages(), QList<testhost::Message>()) << "nobody expected these messages";
        capture().reset();
    }
};

} // namespace

QList<testhost::Message> takeMessages()
{
    return capture()->take();
}

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    // Behind the printer, which then prints these failures, too; the framework owns it from here.
    testing::UnitTest::GetInstance()->listeners().Append(std::make_unique<SilentLog>().release());
    return RUN_ALL_TESTS();
}
