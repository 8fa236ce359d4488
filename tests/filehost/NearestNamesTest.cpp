#include "tools/NearestNames.h"

#include "Fixture.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

const QStringList leaves{QStringLiteral("Settings/FlowUnit"), QStringLiteral("Settings/Mode"),
                         QStringLiteral("Settings/PressureUnit"),
                         QStringLiteral("Settings/TemperatureUnit"),
                         QStringLiteral("Zones/Cure/Signal")};

struct Misspelling {
    const char* title;
    QString given;
    QString meant;
};

void PrintTo(const Misspelling& row, std::ostream* stream)
{
    *stream << row.title;
}

class NearestName : public testing::TestWithParam<Misspelling> {};

TEST_P(NearestName, comes_first)
{
    const QStringList names = tools::nearestNames(GetParam().given, leaves);
    ASSERT_FALSE(names.isEmpty());
    EXPECT_EQ(names.first(), GetParam().meant);
}

INSTANTIATE_TEST_SUITE_P(
    ForA, NearestName,
    testing::Values(Misspelling{"wrong_letter", QStringLiteral("Settings/Node"),
                                QStringLiteral("Settings/Mode")},
                    Misspelling{"pair_of_swapped_letters", QStringLiteral("Settings/Moed"),
                                QStringLiteral("Settings/Mode")},
                    Misspelling{"letter_left_out", QStringLiteral("Settings/PresureUnit"),
                                QStringLiteral("Settings/PressureUnit")},
                    Misspelling{"letter_too_much", QStringLiteral("Settings/Modee"),
                                QStringLiteral("Settings/Mode")},
                    Misspelling{"name_in_another_case", QStringLiteral("settings/flowunit"),
                                QStringLiteral("Settings/FlowUnit")},
                    Misspelling{"abbreviation", QStringLiteral("Settings/TempUnit"),
                                QStringLiteral("Settings/TemperatureUnit")},
                    Misspelling{"path_without_its_front", QStringLiteral("Cure/Signal"),
                                QStringLiteral("Zones/Cure/Signal")},
                    Misspelling{"misspelled_last_part_alone", QStringLiteral("Mdoe"),
                                QStringLiteral("Settings/Mode")}),
    [](const testing::TestParamInfo<Misspelling>& test) { return test.param.title; });

TEST(NearestNames, are_three_at_most)
{
    const QStringList names =
        tools::nearestNames(QStringLiteral("a"), {QStringLiteral("b"), QStringLiteral("c"),
                                                  QStringLiteral("d"), QStringLiteral("e")});
    EXPECT_EQ(names, (QStringList{QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")}));
}

TEST(NearestNames, leave_out_what_is_far_behind_the_first)
{
    const QStringList names = tools::nearestNames(
        QStringLiteral("Mode"), {QStringLiteral("Mode1"), QStringLiteral("Something/Else")});
    EXPECT_EQ(names, QStringList{QStringLiteral("Mode1")});
}

TEST(NearestNamesText, is_empty_without_candidates)
{
    EXPECT_EQ(tools::nearestNamesText(QStringLiteral("a"), {}), QString());
}

TEST(NearestNamesText, quotes_each_name)
{
    EXPECT_EQ(
        tools::nearestNamesText(QStringLiteral("a"), {QStringLiteral("b"), QStringLiteral("c")}),
        QStringLiteral("the nearest are \"b\" and \"c\""));
    EXPECT_EQ(tools::nearestNamesText(QStringLiteral("a"), {QStringLiteral("b")}),
              QStringLiteral("the nearest is \"b\""));
}

} // namespace
