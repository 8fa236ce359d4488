#include "Fixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

/// A folder to make workspaces in.
class Init : public testing::Test {
protected:
    Result init(const QString& directory, const QStringList& options = {}) const
    {
        return run(
            QStringList{QStringLiteral("-C"), folder.path(), QStringLiteral("init"), directory} +
            options);
    }

    void touch(const QString& file) const
    {
        QFile target(folder.filePath(file));
        ASSERT_TRUE(target.open(QIODevice::WriteOnly));
    }

    QTemporaryDir folder;
};

TEST_F(Init, says_what_it_wrote)
{
    const Result result = init(QStringLiteral("line"));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    expectGolden(QStringLiteral("init"), result.out);
}

TEST_F(Init, makes_folders_on_the_way)
{
    EXPECT_EQ(init(QStringLiteral("plant/hall/line")).exitCode, 0);
    EXPECT_TRUE(QFileInfo::exists(folder.filePath(QStringLiteral("plant/hall/line/links.json"))));
}

TEST_F(Init, takes_a_folder_that_is_empty)
{
    EXPECT_EQ(init(QStringLiteral(".")).exitCode, 0);
    EXPECT_TRUE(QFileInfo::exists(folder.filePath(QStringLiteral("README.md"))));
}

TEST_F(Init, leaves_a_folder_alone_that_holds_a_hidden_file)
{
    touch(QStringLiteral(".keep"));
    const Result result = init(QStringLiteral("."));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, QString());
    EXPECT_TRUE(result.err.contains(QStringLiteral("the folder is not empty")))
        << result.err.toStdString();
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 0);
}

TEST_F(Init, refuses_a_file_in_the_place_of_the_folder)
{
    touch(QStringLiteral("file"));
    const Result result = init(QStringLiteral("file"));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.err.contains(QStringLiteral("this is no folder")));
}

TEST_F(Init, says_why_a_file_cannot_be_written)
{
    touch(QStringLiteral("file"));
    const Result result = init(QStringLiteral("./file/../file/line"));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, QString());
    EXPECT_EQ(result.err,
              QStringLiteral("error: %1: its folder cannot be made\n"
                             "    check the folder, the permissions and the space on the disk\n")
                  .arg(folder.filePath(QStringLiteral("file/line/README.md"))));
}

TEST_F(Init, makes_a_workspace_in_which_every_link_resolves)
{
    init(QStringLiteral("."));
    const Result result = run(
        {QStringLiteral("-C"), folder.path(), QStringLiteral("resolve"), QStringLiteral("--all")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    EXPECT_EQ(result.out, QStringLiteral("Nothing changed.\n2 of 2 links resolved.\n"));
}

} // namespace
