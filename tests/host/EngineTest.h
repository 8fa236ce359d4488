#ifndef UNITFLOW_TESTS_HOST_ENGINETEST_H
#define UNITFLOW_TESTS_HOST_ENGINETEST_H

#include "Host.h"
#include "MessageCapture.h"
#include "Printers.h"
#include "Tree.h"

#include <gtest/gtest.h>

namespace testhost {

/// What every test of the engine runs on: a blank host, and a message log that fails the test on
/// any message that the test did not take.
class EngineTest : public testing::Test {
protected:
    void TearDown() override
    {
        EXPECT_EQ(messages.take(), QList<Message>()) << "nobody expected these messages";
        EXPECT_EQ(host.actionsNotRun(), QStringList()) << "these calls never came";
    }

    MessageCapture messages;
    Host host;
};

} // namespace testhost

#endif
