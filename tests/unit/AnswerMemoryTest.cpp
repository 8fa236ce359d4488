#include "patterns/AnswerMemory.h"

#include "Printers.h"

#include <gtest/gtest.h>

namespace {

/// Answers a URL with its own text, and counts how often it had to.
class AnswerMemory : public testing::Test {
protected:
    QString ask(const QString& url)
    {
        return memory.get(url, [&] {
            ++works;
            return "answer for " + url;
        });
    }

    static constexpr int capacity = int(patterns::AnswerMemory<QString>::capacity);

    patterns::AnswerMemory<QString> memory;
    int works = 0;
};

TEST_F(AnswerMemory, works_once_for_a_url)
{
    EXPECT_EQ(ask("a"), "answer for a");
    EXPECT_EQ(ask("b"), "answer for b");
    EXPECT_EQ(ask("a"), "answer for a");
    EXPECT_EQ(ask("b"), "answer for b");
    EXPECT_EQ(works, 2);
}

TEST_F(AnswerMemory, does_not_remember_the_empty_url)
{
    EXPECT_EQ(ask(""), "answer for ");
    EXPECT_EQ(ask(QString()), "answer for ");
    EXPECT_EQ(works, 2);
}

TEST_F(AnswerMemory, tells_urls_apart_by_every_unit)
{
    const QString url = "Plant/Line7/Station42/Value";
    for (int size = 1; size <= url.size(); ++size) {
        for (int unit = 0; unit < size; ++unit) {
            QString other = url.left(size);
            other[unit] = QChar(other.at(unit).unicode() + 0x0100);
            EXPECT_EQ(ask(other), "answer for " + other);
        }
        EXPECT_EQ(ask(url.left(size)), "answer for " + url.left(size));
    }
    EXPECT_EQ(ask(QString(3, QChar(0))), "answer for " + QString(3, QChar(0)));
    EXPECT_EQ(ask(QString(2, QChar(0))), "answer for " + QString(2, QChar(0)));
}

TEST_F(AnswerMemory, answers_rightly_for_more_urls_than_it_remembers)
{
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 4 * capacity; ++i) {
            const QString url = QString::number(i);
            EXPECT_EQ(ask(url), "answer for " + url);
            EXPECT_EQ(ask(url), "answer for " + url);
        }
    }
    EXPECT_LE(works, 3 * 4 * capacity) << "twice in a row is once";
}

TEST_F(AnswerMemory, remembers_most_of_as_many_urls_as_a_quarter_of_its_capacity)
{
    const int count = capacity / 4;
    for (int round = 0; round < 10; ++round) {
        for (int i = 0; i < count; ++i) {
            ask(QString("Plant/Line%1/Value").arg(i));
        }
    }
    EXPECT_LT(works, count + count / 4);
}

} // namespace
