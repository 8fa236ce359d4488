#include "Fixture.h"
#include "tools/Program.h"
#include "tools/console/Text.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

#include <ostream>
#include <sstream>

namespace {

struct Help {
    const char* title;
    QStringList arguments;
};

void PrintTo(const Help& row, std::ostream* stream)
{
    *stream << row.title;
}

class HelpText : public testing::TestWithParam<Help> {};

TEST_P(HelpText, is_data_with_examples_within_80_columns)
{
    const Result result = run(GetParam().arguments + QStringList{QStringLiteral("--help")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    EXPECT_TRUE(result.out.contains(QStringLiteral("Examples:\n  unitflow ")));
    for (const QString& line : result.out.split(QLatin1Char('\n'))) {
        EXPECT_LE(tools::displayWidth(line), 80) << line.toStdString();
    }
    expectGolden(QStringLiteral("help-") + QLatin1String(GetParam().title), result.out);
}

INSTANTIATE_TEST_SUITE_P(Of, HelpText,
                         testing::Values(Help{"program", {}}, Help{"set", {QStringLiteral("set")}},
                                         Help{"explain", {QStringLiteral("explain")}},
                                         Help{"resolve", {QStringLiteral("resolve")}},
                                         Help{"show", {QStringLiteral("show")}},
                                         Help{"sources", {QStringLiteral("sources")}},
                                         Help{"why", {QStringLiteral("why")}},
                                         Help{"types", {QStringLiteral("types")}},
                                         Help{"schema", {QStringLiteral("schema")}},
                                         Help{"check", {QStringLiteral("check")}},
                                         Help{"graph", {QStringLiteral("graph")}},
                                         Help{"init", {QStringLiteral("init")}}),
                         [](const testing::TestParamInfo<Help>& test) { return test.param.title; });

TEST(Version, is_one_line_of_data)
{
    const Result result = run({QStringLiteral("--version")});
    EXPECT_EQ(result.exitCode, 0);
    const QRegularExpression line(QStringLiteral("^unitflow \\d+\\.\\d+\\.\\d+\n$"));
    EXPECT_TRUE(line.match(result.out).hasMatch()) << result.out.toStdString();
}

TEST(GlobalOptions, stand_before_or_behind_the_command)
{
    const TestWorkspace workspace;
    const QStringList globals{QStringLiteral("-C"), workspace.path(), QStringLiteral("--json")};
    const QStringList show{QStringLiteral("show"), QStringLiteral("display")};
    const Result before = run(globals + show);
    const Result behind = run(show + globals);
    EXPECT_EQ(before.exitCode, 0);
    EXPECT_EQ(behind.exitCode, 0);
    EXPECT_EQ(before.out, behind.out);
    EXPECT_TRUE(before.out.startsWith(QLatin1Char('{')));
}

struct Wrong {
    const char* title;
    QStringList arguments;
};

void PrintTo(const Wrong& row, std::ostream* stream)
{
    *stream << row.title;
}

class WrongUsage : public testing::TestWithParam<Wrong> {};

TEST_P(WrongUsage, is_an_error_that_says_where_to_read_on)
{
    const TestWorkspace workspace;
    const QMap<QString, QByteArray> files = workspace.files();
    const Result result = run(workspace, GetParam().arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, QString());
    expectGolden(QStringLiteral("usage-") + QLatin1String(GetParam().title), result.err);
    EXPECT_EQ(workspace.files(), files);
}

INSTANTIATE_TEST_SUITE_P(
    With, WrongUsage,
    testing::Values(
        Wrong{"no_command", {}},
        Wrong{"unknown_command", {QStringLiteral("sett"), QStringLiteral("a")}},
        Wrong{"unknown_option",
              {QStringLiteral("set"), QStringLiteral("--dryrun"), QStringLiteral("a"),
               QStringLiteral("b"), QStringLiteral("c")}},
        Wrong{"unknown_option_before_the_command",
              {QStringLiteral("--jsn"), QStringLiteral("show")}},
        Wrong{"unknown_option_without_a_command", {QStringLiteral("--jsn")}},
        Wrong{"value_like_an_option",
              {QStringLiteral("set"), QStringLiteral("a"), QStringLiteral("b"),
               QStringLiteral("-low")}},
        Wrong{"word_unlike_all_others", {QStringLiteral("frobnicate")}},
        Wrong{"option_behind_two_dashes",
              {QStringLiteral("set"), QStringLiteral("a"), QStringLiteral("b"),
               QStringLiteral("--"), QStringLiteral("-x"), QStringLiteral("--dry-run")}},
        Wrong{"value_missing", {QStringLiteral("set"), QStringLiteral("a"), QStringLiteral("b")}},
        Wrong{"value_too_much",
              {QStringLiteral("set"), QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"),
               QStringLiteral("d")}},
        Wrong{"folder_missing", {QStringLiteral("show"), QStringLiteral("-C")}}),
    [](const testing::TestParamInfo<Wrong>& test) { return test.param.title; });

TEST(WrongUsage, of_bytes_that_are_no_utf8_is_an_error)
{
    std::ostringstream out;
    std::ostringstream err;
    const tools::ExitCode exitCode = tools::run({"set", "controller", "Settings/Mode",
                                                 "\xB0"
                                                 "F"},
                                                {out, err, false, false});
    EXPECT_EQ(exitCode, tools::ExitCode::Failed);
    EXPECT_EQ(err.str(), "error: the command line is not UTF-8\n"
                         "    set the terminal, or the script, to UTF-8\n");
}

TEST(Color, is_in_headings_and_in_the_labels_of_errors_only)
{
    const TestWorkspace workspace;
    std::ostringstream out;
    std::ostringstream err;
    const std::string folder = workspace.path().toStdString();
    tools::run({"-C", folder, "show", "display", "Brightness"}, {out, err, true, true});
    tools::run({"-C", folder, "show", "display", "Bright"}, {out, err, true, true});
    EXPECT_EQ(out.str(), "\x1b[1mdisplay\x1b[0m\n  Brightness  80  %\n");
    EXPECT_EQ(err.str().find("\x1b[1;31merror:\x1b[0m configuration/display.json: "), 0U);
}

} // namespace
