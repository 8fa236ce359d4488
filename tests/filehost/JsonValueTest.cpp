#include "filehost/json/JsonValue.h"

#include "Printers.h"

#include <QDateTime>
#include <QStringList>
#include <QVariantHash>
#include <QVariantList>
#include <QVariantMap>
#include <gtest/gtest.h>

#include <limits>

using filehost::json::isSame;
using filehost::json::normalized;

namespace {

constexpr int deepEnough = 10;

int typeOf(const QVariant& value)
{
    const auto held = normalized(value, deepEnough);
    return held ? held->userType() : int{QMetaType::UnknownType};
}

bool canHold(const QVariant& value)
{
    return normalized(value, deepEnough).has_value();
}

} // namespace

TEST(NormalizedValue, is_what_reading_back_gives)
{
    EXPECT_EQ(typeOf(5), int{QMetaType::LongLong});
    EXPECT_EQ(typeOf(5U), int{QMetaType::LongLong});
    EXPECT_EQ(typeOf(qulonglong{5}), int{QMetaType::LongLong});
    EXPECT_EQ(typeOf(std::numeric_limits<qulonglong>::max()), int{QMetaType::ULongLong});
    EXPECT_EQ(typeOf(QVariant::fromValue(short{5})), int{QMetaType::LongLong});
    EXPECT_EQ(typeOf(1.5F), int{QMetaType::Double});
    EXPECT_EQ(typeOf(true), int{QMetaType::Bool});
    EXPECT_EQ(typeOf(QChar('x')), int{QMetaType::QString});
    EXPECT_EQ(typeOf(QString()), int{QMetaType::QString});
    EXPECT_EQ(typeOf(QStringList{"a"}), int{QMetaType::QVariantList});
    EXPECT_EQ(typeOf(QVariantHash{{"a", 1}}), int{QMetaType::QVariantMap});
}

TEST(NormalizedValue, normalizes_what_lists_and_maps_hold)
{
    const QVariantMap map{{"a", QVariantList{1, QStringList{"x"}}}};
    const QVariant held = *normalized(map, deepEnough);
    const QVariantList list = held.toMap()["a"].toList();
    EXPECT_EQ(list[0].userType(), int{QMetaType::LongLong});
    EXPECT_EQ(list[1].userType(), int{QMetaType::QVariantList});
}

TEST(NormalizedValue, is_nothing_for_what_json_cannot_hold)
{
    const QString halfOfAPair(QChar(0xD83D));
    EXPECT_FALSE(canHold(QVariant()));
    EXPECT_FALSE(canHold(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(canHold(std::numeric_limits<double>::infinity()));
    EXPECT_FALSE(canHold(-std::numeric_limits<float>::infinity()));
    EXPECT_FALSE(canHold(halfOfAPair));
    EXPECT_FALSE(canHold(QVariantMap{{halfOfAPair, 1}}));
    EXPECT_FALSE(canHold(QStringList{"fine", halfOfAPair}));
    EXPECT_FALSE(canHold(QByteArray("bytes")));
    EXPECT_FALSE(canHold(QDateTime::currentDateTime()));
    EXPECT_FALSE(canHold(QVariantList{1, QVariant()}));
    EXPECT_FALSE(canHold(QVariantMap{{"a", QVariantList{QByteArray()}}}));
}

TEST(NormalizedValue, is_nothing_for_lists_beyond_the_depth)
{
    const QVariantList flat{1};
    const QVariantList inner{QVariant(flat)};
    EXPECT_TRUE(normalized(inner, 2));
    EXPECT_FALSE(normalized(inner, 1));
    EXPECT_TRUE(normalized(1, 0));
    EXPECT_FALSE(normalized(flat, 0));
}

TEST(SameValues, are_of_the_same_type)
{
    EXPECT_FALSE(isSame(QVariant(5LL), QVariant(QString("5"))));
    EXPECT_FALSE(isSame(QVariant(5LL), QVariant(5.0)));
    EXPECT_FALSE(isSame(QVariant(true), QVariant(1LL)));
    EXPECT_FALSE(isSame(QVariant(), QVariant(QString())));
    EXPECT_FALSE(isSame(QVariantList{QVariant(5LL)}, QVariantList{QVariant(5.0)}));
    EXPECT_FALSE(isSame(QVariantMap{{"a", 5LL}}, QVariantMap{{"a", 5.0}}));
}

TEST(SameValues, are_equal_to_the_last_digit_and_letter)
{
    EXPECT_FALSE(isSame(QVariant(1.0), QVariant(1.0 + std::numeric_limits<double>::epsilon())));
    EXPECT_FALSE(isSame(QVariant("K"), QVariant("k")));
    EXPECT_FALSE(isSame(QVariantList{1LL}, QVariantList{1LL, 1LL}));
    EXPECT_FALSE(isSame(QVariantMap{{"a", 1LL}}, QVariantMap{{"b", 1LL}}));
    EXPECT_TRUE(isSame(QVariantMap{{"a", QVariantList{1LL, "x"}}},
                       QVariantMap{{"a", QVariantList{1LL, "x"}}}));
    EXPECT_TRUE(isSame(QVariant(), QVariant()));
}
