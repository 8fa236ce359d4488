#include "Fixture.h"

#include <QDir>
#include <gtest/gtest.h>

#include <ostream>

namespace {

QStringList show(const QStringList& arguments = {})
{
    return QStringList{QStringLiteral("show")} + arguments;
}

struct Shown {
    const char* title;
    QStringList arguments;
};

void PrintTo(const Shown& row, std::ostream* stream)
{
    *stream << row.title;
}

class Show : public testing::TestWithParam<Shown> {};

TEST_P(Show, writes_aligned_columns)
{
    const TestWorkspace workspace;
    const QMap<QString, qint64> times = workspace.times();
    const Result result = run(workspace, show(GetParam().arguments));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    expectGolden(QStringLiteral("show-") + QLatin1String(GetParam().title), result.out);
    EXPECT_EQ(workspace.times(), times);
}

INSTANTIATE_TEST_SUITE_P(
    Of, Show,
    testing::Values(Shown{"workspace", {}}, Shown{"instance", {QStringLiteral("controller")}},
                    Shown{"instance_with_an_array", {QStringLiteral("recorder")}},
                    Shown{"process", {QStringLiteral("baking"), QStringLiteral("--process")}},
                    Shown{"subtree", {QStringLiteral("display"), QStringLiteral("Oven1")}},
                    Shown{"leaf", {QStringLiteral("display"), QStringLiteral("Oven1/Temperature")}},
                    Shown{"array_leaf", {QStringLiteral("recorder"), QStringLiteral("Log")}}),
    [](const testing::TestParamInfo<Shown>& test) { return test.param.title; });

struct Unknown {
    const char* title;
    QStringList arguments;
};

void PrintTo(const Unknown& row, std::ostream* stream)
{
    *stream << row.title;
}

class ShowUnknown : public testing::TestWithParam<Unknown> {};

TEST_P(ShowUnknown, names_what_is_near)
{
    const TestWorkspace workspace;
    const Result result = run(workspace, show(GetParam().arguments));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, QString());
    expectGolden(QStringLiteral("show-unknown-") + QLatin1String(GetParam().title), result.err);
}

INSTANTIATE_TEST_SUITE_P(
    As, ShowUnknown,
    testing::Values(
        Unknown{"instance", {QStringLiteral("dispaly")}},
        Unknown{"url", {QStringLiteral("display"), QStringLiteral("Oven1/temperature")}},
        Unknown{"url_of_a_process",
                {QStringLiteral("baking"), QStringLiteral("Limit"), QStringLiteral("--process")}},
        Unknown{"kind", {QStringLiteral("baking")}}),
    [](const testing::TestParamInfo<Unknown>& test) { return test.param.title; });

TEST(ShowInstance, shows_values_as_they_would_be_set)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("configuration/display.json"),
                    R"({"Null": null, "Empty": "", "Text5": "5", "Number": 5, "True": "true",
                        "Lines": "a\nb", "Object": {"@value": {"a": 1}}, "Node": {}})");
    const Result result = run(workspace, show({QStringLiteral("display")}));
    EXPECT_EQ(result.exitCode, 0);
    expectGolden(QStringLiteral("show-odd-values"), result.out);
}

TEST(ShowInstance, shows_a_node_with_children_when_it_has_a_value_or_a_unit_of_its_own)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("configuration/display.json"),
                    R"({"A": {"@value": 1, "B": 2}, "C": {"@unitType": "K", "D": 3}})");
    const Result result = run(workspace, show({QStringLiteral("display")}));
    EXPECT_EQ(result.out, QStringLiteral("display\n"
                                         "  A    1\n"
                                         "  A/B  2\n"
                                         "  C    (none)  K\n"
                                         "  C/D  3\n"));
}

TEST(ShowInstance, names_leaves_below_an_empty_name_as_they_are_found)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("configuration/display.json"), R"({"": {"x": 1}})");
    const Result whole = run(workspace, show({QStringLiteral("display")}));
    EXPECT_EQ(whole.out, QStringLiteral("display\n  /x  1\n"));
    const Result leaf = run(workspace, show({QStringLiteral("display"), QStringLiteral("/x")}));
    EXPECT_EQ(leaf.out, whole.out);
}

TEST(ShowInstance, quotes_a_name_with_a_blank_in_the_command_that_it_advises)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("configuration/It's line 1/Oven.json"), R"({"a": 1})");
    const Result result =
        run(workspace, show({QStringLiteral("It's line 1/Oven"), QStringLiteral("b")}));
    EXPECT_TRUE(
        result.err.contains(QStringLiteral(R"("unitflow show 'It'\''s line 1/Oven'" lists)")))
        << result.err.toStdString();
}

TEST(ShowInstance, never_lets_a_name_command_the_terminal)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("configuration/display.json"), R"({"a\u001b[31m": 1})");
    const Result result = run(workspace, show({QStringLiteral("display")}));
    EXPECT_EQ(result.out, QStringLiteral("display\n  a\\u001b[31m  1\n"));
}

TEST(ShowInstance, whose_file_is_broken_names_all_places)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("configuration/display.json"),
                    "{\n  \"a\": 1,\n  \"a\": 2,\n  \"b\": 18446744073709551616\n}");
    const Result result = run(workspace, show({QStringLiteral("display")}));
    EXPECT_EQ(result.exitCode, 2);
    expectGolden(QStringLiteral("show-broken-file"), result.err);
}

TEST(ShowWorkspace, lists_what_there_is_although_the_links_are_broken)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("links.json"), "[");
    const Result result = run(workspace, show());
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: links.json:1:2: ")))
        << result.err.toStdString();
    EXPECT_TRUE(result.out.contains(QStringLiteral("controller")));
}

TEST(ShowWorkspace, lists_what_there_is_beside_a_folder_that_cannot_be_read)
{
    const TestWorkspace workspace;
    workspace.remove(QStringLiteral("dependency/units.json"));
    ASSERT_TRUE(QDir(workspace.path()).rmdir(QStringLiteral("dependency")));
    workspace.write(QStringLiteral("dependency"), "");
    const Result result = run(workspace, show());
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err,
              QStringLiteral("error: dependency: this folder cannot be read: Not a directory\n"
                             "    put a folder in its place\n"));
    EXPECT_TRUE(result.out.contains(QStringLiteral("controller")));
}

TEST(ShowWorkspace, says_when_there_are_no_links)
{
    const TestWorkspace workspace;
    workspace.remove(QStringLiteral("links.json"));
    const Result result = run(workspace, show());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.out.endsWith(QStringLiteral("no links\n")));
}

TEST(ShowWorkspace, in_a_folder_that_is_none_says_how_to_make_one)
{
    const TestWorkspace workspace;
    const Result result = run(
        {QStringLiteral("-C"), workspace.path(QStringLiteral("process")), QStringLiteral("show")});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.err.contains(QStringLiteral("unitflow init DIR")))
        << result.err.toStdString();
}

} // namespace
