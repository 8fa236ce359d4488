#include "tools/Messages.h"

#include "Fixture.h"

#include <QtDebug>
#include <gtest/gtest.h>

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

} // namespace
