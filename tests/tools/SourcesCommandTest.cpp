#include "Fixture.h"

#include <gtest/gtest.h>

namespace {

const QStringList sources{QStringLiteral("sources")};
const QString manifest = QStringLiteral("configuration/manifest.json");

TEST(Sources, lists_the_flagged_instances_in_the_order_of_the_manifest_with_their_links)
{
    const TestWorkspace workspace;
    workspace.write(manifest, R"([
    {"instanceName": "recorder", "hasDependency": true},
    {"instanceName": "display", "hasDependency": "true"},
    {"group": [{"instanceName": "controller", "hasDependency": true}]}
])");
    const Result result = run(workspace, sources);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    EXPECT_EQ(result.out, QStringLiteral("sources\n"
                                         "  recorder    no links\n"
                                         "  controller  2 links\n"));
}

TEST(Sources, says_when_there_are_none)
{
    const TestWorkspace workspace;
    workspace.write(manifest, "[]");
    const Result result = run(workspace, sources);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, QStringLiteral("The manifest flags no instance as a source.\n"));
}

TEST(Sources, touches_no_file)
{
    const TestWorkspace workspace;
    const QMap<QString, qint64> times = workspace.times();
    run(workspace, sources);
    EXPECT_EQ(workspace.times(), times);
}

TEST(Sources, without_a_manifest_says_how_to_make_one)
{
    const TestWorkspace workspace;
    workspace.remove(manifest);
    const Result result = run(workspace, sources);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, QString());
    expectGolden(QStringLiteral("sources-no-manifest"), result.err);
}

TEST(Sources, of_a_manifest_that_is_no_json_names_file_line_and_column)
{
    const TestWorkspace workspace;
    workspace.write(manifest, "[\n    {\"instanceName\": controller}\n]\n");
    const Result result = run(workspace, sources);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, QString());
    expectGolden(QStringLiteral("sources-broken-manifest"), result.err);
}

TEST(Sources, of_a_manifest_that_is_no_list_names_the_place)
{
    const TestWorkspace workspace;
    workspace.write(manifest, "\n {}");
    const Result result = run(workspace, sources);
    EXPECT_EQ(result.exitCode, 2);
    expectGolden(QStringLiteral("sources-no-list"), result.err);
}

TEST(Sources, warns_of_a_name_that_is_no_text_and_lists_the_others)
{
    const TestWorkspace workspace;
    workspace.write(manifest, R"([{"instanceName": 5, "hasDependency": true},
                                  {"instanceName": "controller", "hasDependency": true}])");
    const Result result = run(workspace, sources);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, QStringLiteral("sources\n  controller  2 links\n"));
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("warning: configuration/manifest.json: item")))
        << result.err.toStdString();
}

TEST(Sources, with_links_that_cannot_be_read_still_lists_them_and_fails)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("links.json"), "[");
    const Result result = run(workspace, sources);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.out.contains(QStringLiteral("controller"))) << result.out.toStdString();
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: links.json:1:")))
        << result.err.toStdString();
}

} // namespace
