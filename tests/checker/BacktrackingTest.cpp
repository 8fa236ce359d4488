#include "checker/Backtracking.h"

#include "ExampleWorkspace.h"

#include <gtest/gtest.h>

using checker::findSlowText;
using checker::temptingTexts;

namespace {

class SlowPattern : public testing::TestWithParam<const char*> {};
class QuickPattern : public testing::TestWithParam<const char*> {};

} // namespace

TEST_P(SlowPattern, is_found_by_a_text_of_a_few_dozen_characters)
{
    const auto text = findSlowText(GetParam());
    ASSERT_TRUE(text) << temptingTexts(GetParam()).join('\n').toStdString();
    EXPECT_LE(text->size(), 256);
}

INSTANTIATE_TEST_SUITE_P(Of, SlowPattern,
                         testing::Values("^(a+)+$", "^([a-z]+)*$", "^(a|a)*$", "^(a|aa)+$",
                                         "^([^/]+/?)+$", "^Zones/(\\w+\\d*)+/Mode$",
                                         "^(?:(?:x+)y?)*$", "^(?<zone>(.*)*)!$", "^(\\w|\\d)+$",
                                         "^([[:alpha:]_]+/?)+$", "^(.*){12}x$", "^((ab)+)+$",
                                         "^(a?a?)*$"));

TEST_P(QuickPattern, is_not_accused)
{
    EXPECT_FALSE(findSlowText(GetParam())) << findSlowText(GetParam())->toStdString();
}

INSTANTIATE_TEST_SUITE_P(Of, QuickPattern,
                         testing::Values("", "^Zones/[^/]+/Signal$",
                                         "^Zones/(?<zone>[^/]+)/(?<leaf>[^/]+)$", ".*", ".*Unit.*",
                                         "^([a-z]+/)*[a-z]+$", "^(?>a+)+$", "^(a++)+$", "a{1,3}b*",
                                         "^(?<a>[^/]*)/(?<b>[^/]*)/(?<c>[^/]*)/(?<d>[^/]*)$",
                                         "(?=.*Mode)(?!.*Test)^Zones/.+$", "[]a]+[^]]+",
                                         "\\Q(a+)+\\E", "((((((((((a+))))))))))", "x*y*z*", "(",
                                         "[a"));

TEST(TemptingTexts, are_none_for_patterns_that_repeat_at_most_two_characters)
{
    EXPECT_TRUE(temptingTexts("^Settings/.*Unit.*$").isEmpty());
    EXPECT_FALSE(temptingTexts("^.*Settings/.*Unit.*$").isEmpty());
    EXPECT_FALSE(temptingTexts("^(a+)+$").isEmpty());
}
