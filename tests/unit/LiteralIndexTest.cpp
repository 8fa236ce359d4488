#include "patterns/LiteralIndex.h"

#include "Printers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using patterns::LiteralIndex;

namespace {

/// What an index is made of.
struct Numbered {
    patterns::Literals literals;
    std::vector<LiteralIndex::Item> items;

    void add(const QStringList& texts)
    {
        const std::size_t first = literals.size();
        for (const QString& text : texts) {
            literals.append(text.begin(), text.end());
            literals.endText();
        }
        items.push_back({int(items.size()), first, literals.size()});
    }
};

/// Holds each list of literals under its place.
LiteralIndex indexOf(const QList<QStringList>& literals)
{
    Numbered numbered;
    for (const QStringList& ofOne : literals) {
        numbered.add(ofOne);
    }
    return {numbered.literals, numbered.items};
}

bool canHold(const QStringList& literals)
{
    Numbered numbered;
    numbered.add({"something else"});
    numbered.add(literals);
    return LiteralIndex::canHold(numbered.literals, numbered.items.back());
}

QList<int> find(const LiteralIndex& index, const QString& text)
{
    QList<int> found;
    for (const int number : index.find(text)) {
        found.append(number);
    }
    return found;
}

QList<int> find(const QList<QStringList>& literals, const QString& text)
{
    return find(indexOf(literals), text);
}

bool standAll(const QStringList& literals, const QString& text)
{
    return std::all_of(literals.begin(), literals.end(),
                       [&text](const QString& literal) { return text.contains(literal); });
}

TEST(LiteralIndex, finds_the_numbers_whose_literals_stand_in_the_text)
{
    const QList<QStringList> literals{
        {"/Heater1/"}, {"/Heater2/"}, {"Plant", "/Value"}, {"/Value"}};

    EXPECT_EQ(find(literals, "Line/Heater1/Unit"), QList<int>{0});
    EXPECT_EQ(find(literals, "Line/Heater2/Unit"), QList<int>{1});
    EXPECT_EQ(find(literals, "Plant/Heater2/Value"), (QList<int>{1, 2, 3}));
    EXPECT_EQ(find(literals, "Line/Heater3/Unit"), QList<int>());
    EXPECT_EQ(find(literals, ""), QList<int>());
    EXPECT_EQ(find(literals, "/Val"), QList<int>());
}

TEST(LiteralIndex, finds_nothing_when_it_holds_nothing)
{
    EXPECT_EQ(find(LiteralIndex(), "text"), QList<int>());
    EXPECT_EQ(find(QList<QStringList>(), "text"), QList<int>());
}

TEST(LiteralIndex, finds_literals_of_every_length_at_every_place)
{
    const QString alphabet = "abcdefghijklmnopqrstuvwxyz";
    for (int length = 3; length <= alphabet.size(); ++length) {
        const QString literal = alphabet.left(length);
        const LiteralIndex index = indexOf({{literal}, {"0123456789"}});
        for (int before = 0; before < 10; ++before) {
            SCOPED_TRACE(testing::Message() << length << " units after " << before);
            EXPECT_EQ(find(index, QString(before, '-') + literal), QList<int>{0});
            EXPECT_EQ(find(index, QString(before, '-') + literal + '-'), QList<int>{0});
            EXPECT_EQ(find(index, QString(before, '-') + literal.chopped(1)), QList<int>());
            EXPECT_EQ(find(index, QString(before, '-') + literal.mid(1)), QList<int>());
        }
    }
}

TEST(LiteralIndex, can_hold_what_has_two_pairs_of_units_in_a_row)
{
    EXPECT_FALSE(canHold({}));
    EXPECT_FALSE(canHold({"", "a", "ab"}));
    EXPECT_TRUE(canHold({"abc"}));
    EXPECT_TRUE(canHold({"a", "abcdefghij", ""}));
}

TEST(LiteralIndex, needs_only_one_literal_that_is_long_enough)
{
    const QList<QStringList> literals{{"a", "xyz", ""}, {"ab", "uvwxyz"}};

    EXPECT_EQ(find(literals, "-xyz-a"), QList<int>{0});
    EXPECT_EQ(find(literals, "-uvwxyz-ab-a"), (QList<int>{0, 1}));
}

TEST(LiteralIndex, looks_at_few_of_many)
{
    QList<QStringList> literals;
    for (int i = 0; i < 2000; ++i) {
        literals.append({"/Sensor" + QString::number(i) + "/Value"});
    }
    const LiteralIndex index = indexOf(literals);
    for (const int i : {0, 7, 42, 1234, 1999}) {
        EXPECT_EQ(find(index, QString("Plant/Sensor%1/Value").arg(i)), QList<int>{i});
    }
    EXPECT_EQ(find(index, "Plant/Sensor2000/Value"), QList<int>());
}

TEST(LiteralIndex, finds_all_that_share_a_literal_in_ascending_order)
{
    QList<QStringList> literals;
    QList<int> all;
    for (int i = 0; i < 500; ++i) {
        literals.append({"/Common/Value"});
        all.append(i);
    }
    const LiteralIndex index = indexOf(literals);
    EXPECT_EQ(find(index, "Plant/Common/Value"), all);
    EXPECT_EQ(find(index, "Plants/Common/Value"), all);
    EXPECT_EQ(find(index, "Plant/Common/Val"), QList<int>());
}

TEST(LiteralIndex, finds_a_number_once_however_often_its_literal_stands_in_the_text)
{
    const LiteralIndex index = indexOf({{"aaaa"}, {"abab"}, {"aaaaaaaaaa"}});

    EXPECT_EQ(find(index, QString(10000, 'a')), (QList<int>{0, 2}));
    EXPECT_EQ(find(index, QString("ab").repeated(10000)), QList<int>{1});
}

TEST(LiteralIndex, tells_units_apart_by_all_their_bits)
{
    const QString nul(QChar(0));
    const QList<QStringList> literals{{"ab" + nul},
                                      {"ab" + nul + nul},
                                      {"ab" + nul + nul + nul},
                                      {"ab" + nul.repeated(6)},
                                      {QString("ab") + QChar('c' + 0x100)}};

    EXPECT_EQ(find(literals, "ab"), QList<int>());
    EXPECT_EQ(find(literals, "abc"), QList<int>());
    EXPECT_EQ(find(literals, "-ab" + nul), QList<int>{0});
    EXPECT_EQ(find(literals, "ab" + nul.repeated(3)), (QList<int>{0, 1, 2}));
    EXPECT_EQ(find(literals, "ab" + nul.repeated(7)), (QList<int>{0, 1, 2, 3}));
    EXPECT_EQ(find(literals, QString("ab") + QChar('c' + 0x100)), QList<int>{4});
}

TEST(LiteralIndex, takes_a_literal_of_any_length)
{
    const QString literal = QString("0123456789abcdef").repeated(10000);
    const LiteralIndex index = indexOf({{literal}, {"fedcba"}});

    EXPECT_EQ(find(index, '-' + literal), QList<int>{0});
    EXPECT_EQ(find(index, literal + "fedcba"), (QList<int>{0, 1}));
}

TEST(LiteralIndex, leaves_out_no_number_whatever_the_literals)
{
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same texts in every run
    const auto randomText = [&random](int longest) {
        QString text;
        for (auto size = random() % unsigned(longest + 1); size > 0; --size) {
            text.append(QChar(ushort('a' + random() % 3)));
        }
        return text;
    };
    int found = 0;
    for (int round = 0; round < 200; ++round) {
        QList<QStringList> literals;
        while (literals.size() < 40) {
            const QStringList ofOne{randomText(9), randomText(4)};
            if (canHold(ofOne)) {
                literals.append(ofOne);
            }
        }
        const LiteralIndex index = indexOf(literals);
        for (int i = 0; i < 20; ++i) {
            const QString text = randomText(60);
            const QList<int> numbers = find(index, text);
            EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
            EXPECT_TRUE(std::adjacent_find(numbers.begin(), numbers.end()) == numbers.end());
            for (int number = 0; number < literals.size(); ++number) {
                if (standAll(literals.at(number), text)) {
                    ++found;
                    EXPECT_TRUE(numbers.contains(number))
                        << qPrintable(literals.at(number).join(',')) << " in " << qPrintable(text);
                }
            }
        }
    }
    EXPECT_GT(found, 10000);
}

} // namespace
