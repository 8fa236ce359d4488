#include "checker/ColumnTarget.h"

#include "Commands/CommandSetUnitByConfigurationParameterArray.h"
#include "ExampleWorkspace.h"

#include <gtest/gtest.h>

#include <random>

using checker::readColumnTarget;

namespace {

/// What the engine warns of is of no interest here.
class QuietEngine : public testing::Test {
protected:
    QuietEngine()
        : previous(
              qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {}))
    {}
    ~QuietEngine() override { qInstallMessageHandler(previous); }

    CommandSetUnitByConfigurationParameterArray engine{BaseClassSharedPointer()};

private:
    QtMessageHandler previous;
};

} // namespace

TEST_F(QuietEngine, takes_random_column_targets_as_the_checker_does)
{
    const QStringList pieces{"T", "[", "]",          "+", "-", " ",  "1",
                             "2", "0", "2147483647", "x", "/", "][", "[1]"};
    std::mt19937 random(11);
    int valid = 0;
    for (int round = 0; round < 50000; ++round) {
        QString target = round % 2 == 0 ? "T[" : "";
        for (auto count = random() % 6; count > 0; --count) {
            target += pieces.at(static_cast<int>(random() % static_cast<unsigned>(pieces.size())));
        }
        target += round % 2 == 0 ? "]" : "";
        QString url;
        int column = -1;
        const bool isTaken = engine.getArrayUrlAndColumnIndex(target, url, column);
        const checker::ColumnTarget read = readColumnTarget(target);
        ASSERT_EQ(read.complaint.isEmpty(), isTaken) << target.toStdString();
        ASSERT_EQ(read.arrayUrl, url) << target.toStdString();
        if (isTaken) {
            ASSERT_EQ(read.column, column) << target.toStdString();
            ++valid;
        }
    }
    EXPECT_GT(valid, 1000);
}

TEST(ColumnTarget, says_what_is_wrong)
{
    EXPECT_TRUE(readColumnTarget("Log").complaint.contains("brackets"));
    EXPECT_TRUE(readColumnTarget("Log[]").complaint.contains("brackets"));
    EXPECT_TRUE(readColumnTarget("Log[1-2]").complaint.contains("-1 is below zero"));
    EXPECT_TRUE(readColumnTarget("Log[2147483647+1]").complaint.contains("beyond"));
    EXPECT_TRUE(readColumnTarget("Log[one]").complaint.contains("\"one\""));
    EXPECT_TRUE(readColumnTarget("Log[1+1+1]").complaint.contains("two numbers"));
}
