#include "tools/console/Messages.h"

#include "Fixture.h"

#include <QtDebug>
#include <gtest/gtest.h>

#include <future>
#include <optional>
#include <thread>

namespace {

void ignore(const QString& /*lastWords*/) {}

TEST(Messages, are_taken_once_in_their_order)
{
    tools::Messages messages(ignore);
    qWarning("first");
    qWarning("second");
    EXPECT_EQ(messages.take(), (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
    EXPECT_TRUE(messages.take().isEmpty());
}

TEST(Messages, go_to_the_innermost_catcher)
{
    tools::Messages outer(ignore);
    {
        tools::Messages inner(ignore);
        qWarning("inside");
        EXPECT_EQ(inner.take(), QStringList{QStringLiteral("inside")});
    }
    qWarning("outside");
    EXPECT_EQ(outer.take(), QStringList{QStringLiteral("outside")});
}

TEST(Messages, go_back_to_the_handler_that_was_there_before)
{
    static QStringList seen;
    const QtMessageHandler handler = [](QtMsgType, const QMessageLogContext&, const QString& text) {
        seen.append(text);
    };
    const QtMessageHandler original = qInstallMessageHandler(handler);
    {
        const tools::Messages messages(ignore);
        qWarning("caught");
    }
    qWarning("let through");
    qInstallMessageHandler(original);
    EXPECT_EQ(seen, QStringList{QStringLiteral("let through")});
}

TEST(Messages, of_each_thread_go_to_its_own_catcher)
{
    tools::Messages here(ignore);
    QStringList caughtThere;
    std::thread([&] {
        tools::Messages there(ignore);
        qWarning("there");
        caughtThere = there.take();
    }).join();
    qWarning("here");
    EXPECT_EQ(caughtThere, QStringList{QStringLiteral("there")});
    EXPECT_EQ(here.take(), QStringList{QStringLiteral("here")});
}

TEST(Messages, are_caught_although_a_catcher_of_another_thread_ended_first)
{
    std::optional<tools::Messages> here(ignore);
    std::promise<void> hasBegun;
    std::promise<void> mayLog;
    QStringList caughtThere;
    std::thread other([&] {
        tools::Messages there(ignore);
        hasBegun.set_value();
        mayLog.get_future().wait();
        qWarning("there");
        caughtThere = there.take();
    });
    hasBegun.get_future().wait();
    here.reset();
    mayLog.set_value();
    other.join();
    EXPECT_EQ(caughtThere, QStringList{QStringLiteral("there")});
}

TEST(Messages, during_some_work_are_kept_apart_from_those_before_and_behind_it)
{
    tools::Messages messages(ignore);
    qWarning("before");
    EXPECT_EQ(tools::Messages::during([] { qWarning("during"); }),
              QStringList{QStringLiteral("during")});
    qWarning("behind");
    EXPECT_EQ(messages.take(), (QStringList{QStringLiteral("before"), QStringLiteral("behind")}));
}

} // namespace
