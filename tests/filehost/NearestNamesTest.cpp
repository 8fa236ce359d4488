#include "filehost/NearestNames.h"

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

class MeantName : public testing::TestWithParam<Misspelling> {};

TEST_P(MeantName, comes_first)
{
    const QStringList names = filehost::nearestNames(GetParam().given, leaves);
    ASSERT_FALSE(names.isEmpty());
    EXPECT_EQ(names.first(), GetParam().meant);
}

INSTANTIATE_TEST_SUITE_P(
    ForA, MeantName,
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
        filehost::nearestNames(QStringLiteral("a"), {QStringLiteral("b"), QStringLiteral("c"),
                                                     QStringLiteral("d"), QStringLiteral("e")});
    EXPECT_EQ(names, (QStringList{QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")}));
}

TEST(NearestNames, leave_out_what_is_far_behind_the_first)
{
    const QStringList names = filehost::nearestNames(
        QStringLiteral("Mode"), {QStringLiteral("Mode1"), QStringLiteral("Something/Else")});
    EXPECT_EQ(names, QStringList{QStringLiteral("Mode1")});
}

TEST(NearestName, is_found_among_names_that_are_not_alike)
{
    EXPECT_EQ(filehost::nearestName(QStringLiteral("Settings/Moed"), leaves),
              QStringLiteral("Settings/Mode"));
}

TEST(NearestName, is_empty_when_none_is_alike)
{
    EXPECT_EQ(filehost::nearestName(QStringLiteral("Oven"), leaves), QString());
    EXPECT_EQ(filehost::nearestName(QStringLiteral("Oven"), {}), QString());
}

} // namespace
