#include "filehost/Workspace.h"

#include "TestWorkspace.h"

#include <QTextCodec>
#include <gtest/gtest.h>

#include <unistd.h>

using filehost::Kind;
using filehost::Link;
using filehost::Problem;
using filehost::toText;
using filehost::Workspace;
using Code = Problem::Code;

namespace {

class WorkspaceFolder : public TestWorkspace {
protected:
    QList<Problem> problems;
};

class Links : public TestWorkspace {
protected:
    QList<Link> readLinks(const QByteArray& text)
    {
        write("links.json", text);
        problems.clear();
        return workspace().links(problems);
    }

    QList<Problem> problems;
};

} // namespace

TEST_F(WorkspaceFolder, is_known_by_any_of_its_three_folders)
{
    for (const char* folder : {"configuration", "process", "dependency"}) {
        QTemporaryDir directory;
        QDir(directory.path()).mkdir(folder);
        EXPECT_TRUE(Workspace::open(directory.path(), problems)) << folder;
    }
    EXPECT_TRUE(problems.isEmpty());
}

TEST_F(WorkspaceFolder, that_is_none_is_refused_with_the_way_to_make_one)
{
    const QTemporaryDir empty;
    EXPECT_FALSE(Workspace::open(empty.path(), problems));
    EXPECT_FALSE(Workspace::open(empty.filePath("missing"), problems));
    ASSERT_EQ(problems.size(), 2);
    for (const Problem& problem : problems) {
        EXPECT_EQ(problem.code, Code::Missing);
        EXPECT_TRUE(problem.advice.contains("unitflow init DIR"));
    }
}

TEST_F(WorkspaceFolder, is_absolute_whatever_it_was_opened_by)
{
    const QString before = QDir::currentPath();
    QDir::setCurrent(root());
    const auto opened = Workspace::open("configuration/..", problems);
    QDir::setCurrent(before);
    ASSERT_TRUE(opened);
    EXPECT_EQ(QFileInfo(opened->directory()).canonicalFilePath(),
              QFileInfo(root()).canonicalFilePath());
    EXPECT_TRUE(QDir::isAbsolutePath(opened->directory()));
}

TEST_F(WorkspaceFolder, lists_its_instances_in_order_without_the_manifest)
{
    for (const char* name : {"b", "Line 2/a", "a", "manifest", "Line 2/manifest"}) {
        write(QString("configuration/%1.json").arg(name), "{}");
    }
    write("configuration/notes.txt", "");
    write("process/manifest.json", "{}");
    EXPECT_EQ(workspace().instanceNames(Kind::Configuration),
              (QStringList{"Line 2/a", "Line 2/manifest", "a", "b"}));
    EXPECT_EQ(workspace().instanceNames(Kind::Process), QStringList{"manifest"});
    EXPECT_TRUE(workspace().dependencyNames().isEmpty());
}

TEST_F(WorkspaceFolder, says_where_files_are_that_need_not_exist)
{
    EXPECT_EQ(workspace().instancePath(configurationOf("Line 2/a"), problems),
              path("configuration/Line 2/a.json"));
    EXPECT_EQ(workspace().instancePath(processOf("a.b"), problems), path("process/a.b.json"));
    EXPECT_EQ(workspace().dependencyPath("manifest", problems), path("dependency/manifest.json"));
    EXPECT_TRUE(problems.isEmpty());
}

TEST_F(WorkspaceFolder, refuses_names_that_are_not_confined_and_quotes_them)
{
    const QStringList names{"",
                            "/etc/passwd",
                            "..",
                            "../a",
                            "a/../../b",
                            "a/..",
                            ".",
                            "./a",
                            "a//b",
                            "a/",
                            "/",
                            "a/./b",
                            QString("a") + QChar(0),
                            QChar(0xD83D)};
    for (const QString& name : names) {
        for (const Kind kind : {Kind::Configuration, Kind::Process}) {
            problems.clear();
            EXPECT_EQ(workspace().instancePath({kind, name}, problems), QString());
            ASSERT_EQ(problems.size(), 1) << name.toStdString();
            EXPECT_EQ(problems.first().code, Code::Name);
            EXPECT_TRUE(problems.first().message.contains('"' + name + '"'));
            EXPECT_FALSE(problems.first().advice.isEmpty());
        }
        problems.clear();
        EXPECT_EQ(workspace().dependencyPath(name, problems), QString());
        EXPECT_EQ(problems.size(), 1);
    }
}

TEST_F(WorkspaceFolder, refuses_names_that_the_locale_would_turn_into_others)
{
    QTextCodec* const before = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
    const QString known = workspace().instancePath(configurationOf("Gr\u00F6\u00DFe"), problems);
    const QString unknown = workspace().instancePath(configurationOf("\u0394T"), problems);
    QTextCodec::setCodecForLocale(before);
    EXPECT_FALSE(known.isEmpty());
    EXPECT_TRUE(unknown.isEmpty());
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.first().code, Code::Name);
}

TEST_F(WorkspaceFolder, refuses_the_manifest_as_a_configuration)
{
    EXPECT_EQ(workspace().instancePath(configurationOf("manifest"), problems), QString());
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.first().code, Code::Name);
}

TEST_F(WorkspaceFolder, takes_dots_in_names_for_what_they_are)
{
    for (const char* name : {"...", "a..b", ".a", "a.", "..a/b"}) {
        EXPECT_FALSE(workspace().instancePath(configurationOf(name), problems).isEmpty()) << name;
    }
}

TEST_F(WorkspaceFolder, refuses_symbolic_links_that_lead_out)
{
    write("../outside.json", "{}");
    QDir(outside()).mkdir("other");
    ASSERT_TRUE(QFile::link(path("../outside.json"), path("configuration/file.json")));
    ASSERT_TRUE(QFile::link(path("../other"), path("configuration/folder")));
    ASSERT_TRUE(QFile::link(path("../not there.json"), path("configuration/dangling.json")));
    ASSERT_TRUE(QFile::link(path("loop.json"), path("configuration/loop.json")));
    ASSERT_TRUE(QFile::link(path("configuration/loop.json"), path("loop.json")));
    for (const char* name : {"file", "folder/new", "folder/sub/new", "dangling", "loop"}) {
        problems.clear();
        EXPECT_EQ(workspace().instancePath(configurationOf(name), problems), QString()) << name;
        ASSERT_EQ(problems.size(), 1) << name;
        EXPECT_EQ(problems.first().code, Code::Name);
        EXPECT_TRUE(problems.first().message.contains('"' + QString(name) + '"'));
    }
}

TEST_F(WorkspaceFolder, tells_a_symbolic_link_that_leads_nowhere_from_one_that_leads_out)
{
    write("../outside.json", "{}");
    ASSERT_TRUE(QFile::link(path("../outside.json"), path("configuration/file.json")));
    ASSERT_TRUE(QFile::link(path("process/none.json"), path("configuration/dangling.json")));
    workspace().instancePath(configurationOf("file"), problems);
    workspace().instancePath(configurationOf("dangling"), problems);
    ASSERT_EQ(problems.size(), 2);
    EXPECT_TRUE(problems[0].message.contains("leads out of " + root()));
    EXPECT_TRUE(problems[1].message.endsWith("leads nowhere")) << problems[1].message.toStdString();
}

TEST_F(WorkspaceFolder, lists_no_names_that_lead_out)
{
    write("../outside.json", "{}");
    write("configuration/inside.json", "{}");
    write("../elsewhere/a.json", "{}");
    ASSERT_TRUE(QFile::link(path("../outside.json"), path("configuration/file.json")));
    ASSERT_TRUE(QFile::link(path("configuration/inside.json"), path("configuration/alias.json")));
    ASSERT_TRUE(QDir(root()).rmdir("process"));
    ASSERT_TRUE(QFile::link(path("../elsewhere"), path("process")));
    EXPECT_EQ(workspace().instanceNames(Kind::Configuration), QStringList({"alias", "inside"}));
    EXPECT_EQ(workspace().instanceNames(Kind::Process), QStringList());
}

TEST_F(WorkspaceFolder, follows_symbolic_links_that_stay_inside)
{
    write("process/a.json", "{}");
    ASSERT_TRUE(QFile::link(path("process/a.json"), path("configuration/a.json")));
    ASSERT_TRUE(QFile::link(path("process"), path("configuration/p")));
    EXPECT_FALSE(workspace().instancePath(configurationOf("a"), problems).isEmpty());
    EXPECT_FALSE(workspace().instancePath(configurationOf("p/new"), problems).isEmpty());
    EXPECT_TRUE(problems.isEmpty());
}

TEST_F(WorkspaceFolder, may_itself_be_reached_by_a_symbolic_link)
{
    const QString alias = outside() + "/alias";
    ASSERT_TRUE(QFile::link(root(), alias));
    const auto opened = Workspace::open(alias, problems);
    ASSERT_TRUE(opened);
    EXPECT_FALSE(opened->instancePath(configurationOf("a"), problems).isEmpty());
    EXPECT_TRUE(problems.isEmpty());
}

namespace {

struct Unreadable {
    const char* title;
    void (*make)(const QString& path);
    const char* reason;
};

void PrintTo(const Unreadable& row, std::ostream* stream)
{
    *stream << row.title;
}

/// A workspace in which something that is none takes the place of a folder. What lacks a permission
/// is left out: nothing does for root, as whom tests may run.
class UnreadableFolders : public TestWorkspace, public testing::WithParamInterface<Unreadable> {
protected:
    void replace(const char* folder) const
    {
        ASSERT_TRUE(QDir(root()).rmdir(folder));
        GetParam().make(path(folder));
    }

    void expectUnreadable(const QStringList& folders)
    {
        ASSERT_EQ(problems.size(), folders.size());
        for (int i = 0; i < folders.size(); ++i) {
            EXPECT_EQ(problems[i].code, Code::Read);
            EXPECT_EQ(problems[i].file, folders[i]);
            EXPECT_EQ(problems[i].message,
                      QString("this folder cannot be read: %1").arg(GetParam().reason));
            EXPECT_FALSE(problems[i].advice.isEmpty());
        }
        problems.clear();
    }

    QList<Problem> problems;
};

} // namespace

TEST_P(UnreadableFolders, are_told_from_missing_ones)
{
    EXPECT_TRUE(workspace().checkFolders(problems));
    replace("process");
    ASSERT_TRUE(QDir(root()).rmdir("configuration"));
    EXPECT_FALSE(workspace().checkFolders(problems));
    expectUnreadable({"process"});
}

TEST_P(UnreadableFolders, make_no_workspace)
{
    for (const char* folder : {"configuration", "process", "dependency"}) {
        replace(folder);
    }
    EXPECT_FALSE(Workspace::open(root(), problems));
    expectUnreadable({"configuration", "process", "dependency"});
}

TEST_P(UnreadableFolders, cannot_be_a_workspace)
{
    const QString place = outside() + "/elsewhere";
    GetParam().make(place);
    EXPECT_FALSE(Workspace::open(place, problems));
    expectUnreadable({place});
}

TEST_P(UnreadableFolders, are_named_in_place_of_what_is_looked_for_there)
{
    replace("process");
    replace("dependency");
    filehost::Session session(workspace(), filehost::Session::Access::Read);
    ASSERT_TRUE(session.begin({}));
    EXPECT_EQ(session.description("d"), QString());
    EXPECT_TRUE(session.load(processOf("Line 1/A")).isNull());
    problems = session.takeProblems();
    expectUnreadable({"dependency", "process"});
}

TEST_P(UnreadableFolders, of_configurations_hide_the_manifest)
{
    replace("configuration");
    EXPECT_FALSE(workspace().checkManifest(problems));
    expectUnreadable({"configuration"});
}

INSTANTIATE_TEST_SUITE_P(
    Of, UnreadableFolders,
    testing::Values(Unreadable{"a_file",
                               [](const QString& path) {
                                   QFile file(path);
                                   EXPECT_TRUE(file.open(QIODevice::WriteOnly));
                               },
                               "Not a directory"},
                    Unreadable{"a_link_to_itself",
                               [](const QString& path) { EXPECT_TRUE(QFile::link(path, path)); },
                               "Too many levels of symbolic links"},
                    Unreadable{"a_link_to_nowhere",
                               [](const QString& path) {
                                   EXPECT_TRUE(QFile::link(path + " elsewhere", path));
                               },
                               "it is a symbolic link that leads nowhere"}),
    [](const testing::TestParamInfo<Unreadable>& test) { return test.param.title; });

TEST_F(WorkspaceFolder, names_a_subfolder_that_cannot_be_read_in_place_of_what_is_below)
{
    ASSERT_TRUE(QFile::link(path("configuration/loop"), path("configuration/loop")));
    EXPECT_EQ(workspace().instancePath(configurationOf("loop/sub/A"), problems), QString());
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.first().code, Code::Read);
    EXPECT_EQ(problems.first().file, QString("configuration/loop"));
}

TEST_F(Links, are_none_without_a_file)
{
    EXPECT_TRUE(workspace().links(problems).isEmpty());
    EXPECT_TRUE(problems.isEmpty());
}

TEST_F(Links, come_in_file_order_with_their_places)
{
    const QList<Link> links = readLinks(R"([
    {"source": "A", "target": "B/C", "dependency": "d"},
    {"parameters": ["x", 1, null], "process": true, "source": "A", "target": "manifest",
     "dependency": "e"}, {"source": "B", "target": "A", "dependency": "d", "process": false}
])");
    EXPECT_TRUE(problems.isEmpty());
    ASSERT_EQ(links.size(), 3);
    EXPECT_EQ(links[0].source, QString("A"));
    EXPECT_EQ(links[0].target, QString("B/C"));
    EXPECT_EQ(links[0].dependency, QString("d"));
    EXPECT_FALSE(links[0].isProcess);
    EXPECT_TRUE(links[0].parameters.isEmpty());
    EXPECT_TRUE(links[1].isProcess);
    EXPECT_EQ(links[1].parameters.size(), 3);
    EXPECT_EQ(links[1].line, 3);
    EXPECT_EQ(links[1].column, 5);
    EXPECT_EQ(links[2].line, 4);
    EXPECT_EQ(links[2].column, 26);
}

TEST_F(Links, without_a_problem_are_returned_beside_the_problems_of_the_others)
{
    const QList<Link> links = readLinks(R"([
    {"source": "A", "target": "B"},
    {"source": 1, "target": "B", "dependency": "d"},
    {"source": "A", "target": "B", "dependency": "d", "process": "yes"},
    {"source": "A", "target": "B", "dependency": "d", "parameters": {"x": 1}},
    {"source": "A", "target": "B", "dependency": "d", "parameter": []},
    {"source": "../A", "target": "manifest", "dependency": ""},
    [],
    {"source": "A", "target": "B", "dependency": "d"}
])");
    ASSERT_EQ(links.size(), 1);
    EXPECT_EQ(links[0].line, 9);
    struct Expected {
        Code code;
        int line;
        int column;
        const char* quoted;
    };
    const std::vector<Expected> expected{{Code::Shape, 2, 5, "\"dependency\""},
                                         {Code::Shape, 3, 16, "\"source\""},
                                         {Code::Shape, 4, 66, "\"process\""},
                                         {Code::Shape, 5, 69, "\"parameters\""},
                                         {Code::Shape, 6, 55, "\"parameter\""},
                                         {Code::Name, 7, 16, "\"../A\""},
                                         {Code::Name, 7, 34, "\"manifest\""},
                                         {Code::Name, 7, 60, "\"\""},
                                         {Code::Shape, 8, 5, "link"}};
    ASSERT_EQ(problems.size(), static_cast<int>(expected.size()));
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const Problem& problem = problems[static_cast<int>(i)];
        EXPECT_EQ(problem.code, expected[i].code);
        EXPECT_EQ(problem.file, QString("links.json"));
        EXPECT_EQ(problem.line, expected[i].line) << problem.message.toStdString();
        EXPECT_EQ(problem.column, expected[i].column) << problem.message.toStdString();
        EXPECT_TRUE(problem.message.contains(expected[i].quoted)) << problem.message.toStdString();
        EXPECT_FALSE(problem.advice.isEmpty());
    }
}

TEST_F(Links, must_be_a_list)
{
    EXPECT_TRUE(readLinks(R"( {"source": "A", "target": "B", "dependency": "d"})").isEmpty());
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.first().code, Code::Shape);
    EXPECT_EQ(problems.first().column, 2);
}

TEST_F(Links, that_are_no_json_name_the_place)
{
    EXPECT_TRUE(readLinks("[\n  {\"source\": A}\n]").isEmpty());
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(toText(problems.first()).section('\n', 0, 0),
              QString("links.json:2:14: expected a value, found \"A\""));
}

TEST_F(Links, are_not_read_from_outside)
{
    write("../links.json", "[]");
    ASSERT_TRUE(QFile::link(path("../links.json"), path("links.json")));
    workspace().links(problems);
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.first().code, Code::Name);
}

TEST(ProblemText, gives_the_place_then_the_message_then_the_way_out)
{
    const Problem full{Code::Shape, "a.json", 3, 7, "wrong", "do this"};
    EXPECT_EQ(toText(full), QString("a.json:3:7: wrong\n    do this"));
    EXPECT_EQ(toText({Code::Missing, "a.json", 0, 0, "wrong", ""}), QString("a.json: wrong"));
    EXPECT_EQ(toText({Code::Syntax, "", 3, 7, "wrong", ""}), QString("3:7: wrong"));
    EXPECT_EQ(toText({Code::Name, "", 0, 0, "wrong", ""}), QString("wrong"));
}

TEST(Instances, are_ordered_by_kind_and_then_by_name)
{
    EXPECT_TRUE(configurationOf("b") < processOf("a"));
    EXPECT_TRUE(configurationOf("a") < configurationOf("b"));
    EXPECT_FALSE(configurationOf("a") < configurationOf("a"));
    EXPECT_TRUE(configurationOf("a") == configurationOf("a"));
    EXPECT_FALSE(configurationOf("a") == processOf("a"));
}
