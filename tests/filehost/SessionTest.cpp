#include "filehost/Session.h"

#include "TestTree.h"
#include "TestWorkspace.h"
#include "filehost/Limits.h"
#include "host/ConfigurationModificationHandler.h"

#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include <optional>
#include <sys/stat.h>
#include <thread>

using filehost::LeafChange;
using filehost::Problem;
using filehost::Session;
using Access = Session::Access;
using Code = Problem::Code;

namespace {

const QByteArray oven = R"({"Temperature": {"@value": 20.50, "@unitType": "C"}, "Mode": "bake"})";

QList<ModifiedInstanceItem> modifications()
{
    QList<ModifiedInstanceItem> items;
    ConfigurationModificationHandler::getInstance()->getModifiedInstances(items);
    return items;
}

class Sessions : public TestWorkspace {
protected:
    void begin(Access access = Access::Write)
    {
        session.emplace(workspace(), access);
        ASSERT_TRUE(session->begin({}));
    }

    /// Loads, writes one property and stores.
    bool change(const filehost::Instance& instance, const QString& url, const QString& key,
                const QVariant& value)
    {
        const auto root = session->load(instance);
        if (root.isNull() || root->getChildData(url).isNull()) {
            ADD_FAILURE() << "nothing to change";
            return false;
        }
        root->getChildData(url)->setDataProperty(key, value);
        return session->store(instance, root, "first", "second");
    }

    QVariant unit(const filehost::Instance& instance, const QString& url)
    {
        return session->load(instance)->getChildData(url)->getDataProperty("@unitType");
    }

    Problem onlyProblem()
    {
        const QList<Problem> problems = session->takeProblems();
        EXPECT_EQ(problems.size(), 1);
        return problems.value(0, {Code::Read, "no problem", 0, 0, {}, {}});
    }

    std::optional<Session> session;
};

struct Change {
    const char* name;
    const char* url;
    const char* property;
    QVariant before;
    QVariant after;
};

void expectChanges(const QList<LeafChange>& changes, const std::vector<Change>& expected)
{
    ASSERT_EQ(changes.size(), static_cast<int>(expected.size()));
    for (int i = 0; i < changes.size(); ++i) {
        const Change& change = expected[static_cast<std::size_t>(i)];
        EXPECT_EQ(changes[i].instance.name, QString(change.name));
        EXPECT_EQ(changes[i].url, QString(change.url));
        EXPECT_EQ(changes[i].property, QString(change.property));
        EXPECT_EQ(changes[i].before, change.before);
        EXPECT_EQ(changes[i].after, change.after);
    }
}

} // namespace

TEST_F(Sessions, are_found_by_their_thread_from_begin_to_end)
{
    EXPECT_EQ(Session::current(), nullptr);
    begin();
    EXPECT_EQ(Session::current(), &*session);
    Session* elsewhere = &*session;
    std::thread([&] { elsewhere = Session::current(); }).join();
    EXPECT_EQ(elsewhere, nullptr);
    session.reset();
    EXPECT_EQ(Session::current(), nullptr);
}

TEST_F(Sessions, are_one_at_a_time_in_a_thread)
{
    begin();
    Session second(workspace(), Access::Write);
    EXPECT_FALSE(second.begin({}));
    ASSERT_EQ(second.takeProblems().size(), 1);
    EXPECT_EQ(Session::current(), &*session);
}

TEST_F(Sessions, hand_out_a_fresh_tree_each_time)
{
    write("configuration/Oven.json", oven);
    begin();
    const auto tree = session->load(configurationOf("Oven"));
    tree->getChildData("Mode")->setDataProperty("@value", "cool");
    const auto other = session->load(configurationOf("Oven"));
    EXPECT_EQ(other->getChildData("Mode")->getDataProperty("@value"), QVariant("bake"));
}

TEST_F(Sessions, hand_out_what_was_stored_before)
{
    write("configuration/Oven.json", oven);
    begin();
    EXPECT_TRUE(change(configurationOf("Oven"), "Temperature", "@unitType", "K"));
    EXPECT_EQ(unit(configurationOf("Oven"), "Temperature"), QVariant("K"));
}

TEST_F(Sessions, read_each_file_once)
{
    write("configuration/Oven.json", oven);
    write("dependency/d.json", R"({"first": 1})");
    begin();
    EXPECT_FALSE(session->load(configurationOf("Oven")).isNull());
    const QString description = session->description("d");
    write("configuration/Oven.json", R"({})");
    write("dependency/d.json", R"({"second": 1})");
    EXPECT_TRUE(session->load(configurationOf("Oven"))->hasChildData("Mode"));
    EXPECT_EQ(session->description("d"), description);
}

TEST_F(Sessions, write_only_the_changed_bytes_of_only_the_changed_files)
{
    write("configuration/Oven.json", oven);
    write("configuration/Other.json", oven);
    const auto before = age();
    begin();
    EXPECT_TRUE(change(configurationOf("Oven"), "Temperature", "@unitType", "K"));
    EXPECT_TRUE(change(configurationOf("Other"), "Temperature", "@unitType", "C"));
    EXPECT_TRUE(session->commit());
    session.reset();
    EXPECT_EQ(read("configuration/Oven.json"), QByteArray(oven).replace("\"C\"", "\"K\""));
    EXPECT_EQ(state()["configuration/Other.json"], before["configuration/Other.json"]);
}

TEST_F(Sessions, leave_nothing_without_a_commit)
{
    write("configuration/Oven.json", oven);
    const auto before = age();
    begin();
    EXPECT_TRUE(change(configurationOf("Oven"), "Temperature", "@unitType", "K"));
    session.reset();
    const auto after = state();
    EXPECT_EQ(after.keys(), before.keys()); // in particular, no lock file
    EXPECT_EQ(after["configuration/Oven.json"], before["configuration/Oven.json"]);
}

TEST_F(Sessions, that_only_read_touch_nothing_at_all)
{
    write("configuration/Oven.json", oven);
    write("dependency/d.json", "{}");
    const auto before = age();
    begin(Access::Read);
    EXPECT_EQ(session->description("d"), QString("{}"));
    EXPECT_TRUE(change(configurationOf("Oven"), "Temperature", "@unitType", "K"));
    EXPECT_EQ(session->changes().size(), 1);
    EXPECT_EQ(state(), before);
    EXPECT_FALSE(session->commit());
    EXPECT_EQ(onlyProblem().code, Code::Write);
    session.reset();
    EXPECT_EQ(state(), before);
}

TEST_F(Sessions, need_to_begin_before_they_commit)
{
    Session session(workspace(), Access::Write);
    EXPECT_FALSE(session.commit());
    EXPECT_EQ(session.takeProblems().size(), 1);
}

TEST_F(Sessions, replace_a_file_instead_of_writing_into_it)
{
    write("configuration/Oven.json", oven);
    QFile reader(path("configuration/Oven.json"));
    ASSERT_TRUE(reader.open(QIODevice::ReadOnly));
    begin();
    change(configurationOf("Oven"), "Temperature", "@unitType", "K");
    EXPECT_TRUE(session->commit());
    EXPECT_EQ(reader.readAll(), oven) << "who reads meanwhile sees the old file, whole";
}

TEST_F(Sessions, keep_the_permissions_of_a_file)
{
    write("configuration/Oven.json", oven);
    const QByteArray file = path("configuration/Oven.json").toLocal8Bit();
    ASSERT_EQ(chmod(file.constData(), 0640), 0);
    begin();
    change(configurationOf("Oven"), "Temperature", "@unitType", "K");
    EXPECT_TRUE(session->commit());
    struct stat status = {};
    ASSERT_EQ(stat(file.constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(Sessions, write_what_a_symbolic_link_inside_leads_to_and_keep_the_link)
{
    write("process/real.json", oven);
    ASSERT_TRUE(QFile::link(path("process/real.json"), path("configuration/Oven.json")));
    begin();
    change(configurationOf("Oven"), "Temperature", "@unitType", "K");
    EXPECT_EQ(unit(processOf("real"), "Temperature"), QVariant("K")) << "it is one file";
    EXPECT_TRUE(session->commit());
    EXPECT_TRUE(QFileInfo(path("configuration/Oven.json")).isSymLink());
    EXPECT_TRUE(read("process/real.json").contains("\"K\""));
}

TEST_F(Sessions, tell_what_changed_in_the_order_of_instances_and_files)
{
    write("process/A.json", R"({"Y": 1})");
    write("configuration/B.json",
          R"({"Z": {"W": 1}, "Y": {"@unitType": "a", "@value": 1}, "X": 1})");
    write("configuration/C.json", R"({"X": 1})");
    begin();
    change(processOf("A"), "Y", "@value", 2);
    change(configurationOf("C"), "X", "@unitType", "s");
    change(configurationOf("B"), "X", "@value", "x");
    change(configurationOf("B"), "Y", "@value", 3);
    change(configurationOf("B"), "Y", "@unitType", "b");
    change(configurationOf("B"), "Z/W", "@unitType", "c");
    change(configurationOf("B"), "Z", "@note", "n");
    expectChanges(session->changes(), {{"B", "Z", "@note", {}, "n"},
                                       {"B", "Z/W", "@unitType", {}, "c"},
                                       {"B", "Y", "@unitType", "a", "b"},
                                       {"B", "Y", "@value", 1LL, 3LL},
                                       {"B", "X", "@value", 1LL, "x"},
                                       {"C", "X", "@unitType", {}, "s"},
                                       {"A", "Y", "@value", 1LL, 2LL}});
}

TEST_F(Sessions, tell_what_changed_below_an_empty_name_by_a_url_that_leads_there)
{
    write("configuration/A.json", R"({"": {"X": 1}, "X": 1, "Y": {"": {"X": 1}}})");
    begin();
    change(configurationOf("A"), "/X", "@value", 2);
    change(configurationOf("A"), "Y//X", "@value", 3);
    expectChanges(session->changes(),
                  {{"A", "/X", "@value", 1LL, 2LL}, {"A", "Y//X", "@value", 1LL, 3LL}});
    const auto tree = session->load(configurationOf("A"));
    for (const LeafChange& change : session->changes()) {
        const auto leaf = tree->getChildData(change.url);
        ASSERT_TRUE(leaf) << change.url.toStdString();
        EXPECT_EQ(leaf->getDataProperty(change.property), change.after);
    }
}

TEST_F(Sessions, merge_the_changes_of_several_stores)
{
    write("configuration/A.json", R"({"X": 1, "Y": 1})");
    begin();
    change(configurationOf("A"), "X", "@value", 2);
    change(configurationOf("A"), "Y", "@value", 2);
    change(configurationOf("A"), "X", "@value", 3);
    change(configurationOf("A"), "Y", "@value", 1);
    expectChanges(session->changes(), {{"A", "X", "@value", 1LL, 3LL}});
    change(configurationOf("A"), "X", "@value", 1);
    EXPECT_TRUE(session->changes().isEmpty());
}

TEST_F(Sessions, know_no_changes_any_more_after_a_commit)
{
    write("configuration/A.json", R"({"X": 1})");
    begin();
    change(configurationOf("A"), "X", "@value", 2);
    EXPECT_TRUE(session->commit());
    EXPECT_TRUE(session->changes().isEmpty());
    change(configurationOf("A"), "X", "@value", 3);
    EXPECT_TRUE(session->commit());
    EXPECT_EQ(read("configuration/A.json"), QByteArray(R"({"X": 3})"));
}

TEST_F(Sessions, leave_a_file_alone_that_was_changed_and_changed_back)
{
    write("configuration/Oven.json", oven);
    begin();
    const auto before = age();
    change(configurationOf("Oven"), "Temperature", "@value", 1);
    change(configurationOf("Oven"), "Temperature", "@value", 20.5);
    EXPECT_TRUE(session->changes().isEmpty());
    EXPECT_TRUE(session->commit());
    EXPECT_EQ(state(), before);
}

TEST_F(Sessions, keep_the_spelling_of_the_file_over_several_stores)
{
    write("configuration/Oven.json", oven);
    begin();
    change(configurationOf("Oven"), "Temperature", "@value", 1);
    change(configurationOf("Oven"), "Mode", "@value", "cool");
    change(configurationOf("Oven"), "Temperature", "@value", 20.5);
    EXPECT_TRUE(session->commit());
    EXPECT_EQ(read("configuration/Oven.json"), QByteArray(oven).replace("bake", "cool"));
}

TEST_F(Sessions, take_from_another_tree_with_the_same_nodes_only_what_differs)
{
    write("configuration/A.json", R"({"X": 1, "Y": 1.0})");
    begin();
    const int before = modifications().size();
    EXPECT_TRUE(session->store(configurationOf("A"), treeOn("{\"X\":1,\n\"Y\":1.00}"), {}, {}));
    EXPECT_TRUE(session->changes().isEmpty());
    EXPECT_EQ(modifications().size(), before);
    EXPECT_TRUE(session->store(configurationOf("A"), treeOn("{\"Y\":1.00,\n\"X\":2}"), {}, {}));
    EXPECT_TRUE(session->commit());
    EXPECT_EQ(read("configuration/A.json"), QByteArray(R"({"X": 2, "Y": 1.0})"));
}

TEST_F(Sessions, keep_nodes_without_properties_of_another_tree)
{
    write("configuration/A.json", R"({"X": 1.0, "Old": {}})");
    begin();
    const QByteArray other = R"({"X": 1.00, "New": null})";
    EXPECT_TRUE(session->store(configurationOf("A"), treeOn(other), {}, {}));
    EXPECT_TRUE(session->commit());
    EXPECT_EQ(read("configuration/A.json"), other);
}

TEST_F(Sessions, keep_properties_of_another_tree_apart_where_names_hold_slashes)
{
    write("configuration/A.json", R"({"X/Y": 1, "X": {"Y": 1}, "Z": {"@a": 1}})");
    begin();
    for (const QByteArray other : {R"({"X/Y": 2, "X": {"Y": 1}, "Z": {"@a": 1}})",
                                   R"({"X/Y": 1, "X": {"Y": 1}, "Z": {}})"}) {
        EXPECT_TRUE(session->store(configurationOf("A"), treeOn(other), {}, {}));
        EXPECT_TRUE(session->commit());
        EXPECT_EQ(read("configuration/A.json"), other);
    }
}

TEST_F(Sessions, replace_an_instance_by_another_tree_as_a_whole)
{
    write("configuration/A.json", R"({"X": 1, "Y": 1.0})");
    begin();
    change(configurationOf("A"), "X", "@value", 2);
    EXPECT_TRUE(session->store(configurationOf("A"), treeOn(R"({"Y": 1.00, "Z": 3})"), {}, {}));
    expectChanges(session->changes(),
                  {{"A", "Z", "@value", {}, 3LL}, {"A", "X", "@value", 1LL, {}}});
    EXPECT_TRUE(session->commit());
    EXPECT_EQ(read("configuration/A.json"), QByteArray(R"({"Y": 1.00, "Z": 3})"));
}

TEST_F(Sessions, note_a_modification_for_each_store_that_changed_something)
{
    write("configuration/Oven.json", oven);
    begin();
    change(configurationOf("Oven"), "Temperature", "@unitType", "C");
    EXPECT_TRUE(modifications().isEmpty());
    const QDateTime start = QDateTime::currentDateTimeUtc();
    change(configurationOf("Oven"), "Temperature", "@unitType", "K");
    change(configurationOf("Oven"), "Temperature", "@unitType", "F");
    const QList<ModifiedInstanceItem> items = modifications();
    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(items.last().originFirst, QString("first"));
    EXPECT_EQ(items.last().originSecond, QString("second"));
    EXPECT_EQ(items.last().instanceName, QString("Oven"));
    const QString time = items.last().modificationTime;
    EXPECT_TRUE(QRegularExpression("^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z$")
                    .match(time)
                    .hasMatch())
        << time.toStdString();
    const QDateTime noted = QDateTime::fromString(time, Qt::ISODateWithMs);
    EXPECT_GE(noted, start);
    EXPECT_LE(noted, QDateTime::currentDateTimeUtc());
}

TEST_F(Sessions, leave_a_file_alone_that_somebody_else_changed_and_write_the_others)
{
    write("configuration/A.json", R"({"X": 1})");
    write("configuration/B.json", R"({"X": 1})");
    write("configuration/C.json", R"({"X": 1})");
    begin();
    for (const char* name : {"A", "B", "C"}) {
        change(configurationOf(name), "X", "@value", 2);
    }
    write("configuration/A.json", R"({"X": 7})");
    QFile::remove(path("configuration/B.json"));
    EXPECT_FALSE(session->commit());
    const QList<Problem> problems = session->takeProblems();
    ASSERT_EQ(problems.size(), 2);
    EXPECT_EQ(problems[0].code, Code::Conflict);
    EXPECT_EQ(problems[0].file, QString("configuration/A.json"));
    EXPECT_EQ(problems[1].code, Code::Conflict);
    EXPECT_EQ(problems[1].file, QString("configuration/B.json"));
    EXPECT_EQ(read("configuration/A.json"), QByteArray(R"({"X": 7})"));
    EXPECT_FALSE(QFile::exists(path("configuration/B.json")));
    EXPECT_EQ(read("configuration/C.json"), QByteArray(R"({"X": 2})"));
    EXPECT_EQ(session->changes().size(), 2) << "what was not written still differs";
}

TEST_F(Sessions, write_nothing_that_follows_an_instance_that_could_not_be_written)
{
    write("configuration/A.json", R"({"X": 1})");
    write("configuration/B.json", R"({"X": 1})");
    begin();
    change(configurationOf("A"), "X", "@value", 2);
    change(configurationOf("B"), "X", "@value", 2);
    write("configuration/B.json", R"({"X": 7})");
    EXPECT_FALSE(session->commit(configurationOf("B")));
    const Problem problem = onlyProblem();
    EXPECT_EQ(problem.code, Code::Conflict);
    EXPECT_EQ(problem.file, QString("configuration/B.json"));
    EXPECT_TRUE(problem.message.endsWith("so nothing that follows it was written"));
    EXPECT_EQ(read("configuration/A.json"), QByteArray(R"({"X": 1})"));
    EXPECT_EQ(session->changes().size(), 2);
}

TEST_F(Sessions, write_the_others_when_one_that_follows_could_not_be_written)
{
    for (const char* file : {"configuration/A.json", "configuration/B.json", "process/P.json"}) {
        write(file, R"({"X": 1})");
    }
    begin();
    change(configurationOf("A"), "X", "@value", 2);
    change(configurationOf("B"), "X", "@value", 2);
    change(processOf("P"), "X", "@value", 2);
    write("configuration/B.json", R"({"X": 7})");
    EXPECT_FALSE(session->commit(configurationOf("A")));
    EXPECT_EQ(onlyProblem().file, QString("configuration/B.json"));
    EXPECT_EQ(read("configuration/A.json"), QByteArray(R"({"X": 2})"));
    EXPECT_EQ(read("process/P.json"), QByteArray(R"({"X": 2})"));
}

TEST_F(Sessions, write_in_the_order_in_which_instances_were_first_stored)
{
    const QStringList order{"process/Z.json", "configuration/B.json", "configuration/A.json"};
    for (const QString& file : order) {
        write(file, R"({"X": 1})");
    }
    begin();
    change(processOf("Z"), "X", "@value", 2);
    change(configurationOf("B"), "X", "@value", 2);
    change(configurationOf("A"), "X", "@value", 2);
    change(processOf("Z"), "X", "@value", 3);
    for (const QString& file : order) {
        write(file, "{}"); // so that each write is refused, which tells the order
    }
    EXPECT_FALSE(session->commit());
    QStringList refused;
    for (const Problem& problem : session->takeProblems()) {
        refused.append(problem.file);
    }
    EXPECT_EQ(refused, order);
}

TEST_F(Sessions, say_when_a_file_cannot_be_written)
{
    write("configuration/A.json", R"({"X": 1})");
    write("configuration/file", "");
    begin();
    EXPECT_TRUE(
        session->store(configurationOf("file/B"), session->load(configurationOf("A")), {}, {}));
    EXPECT_FALSE(session->commit());
    const Problem problem = onlyProblem();
    EXPECT_EQ(problem.code, Code::Write);
    EXPECT_EQ(problem.file, QString("configuration/file/B.json"));
    EXPECT_FALSE(problem.advice.isEmpty());
}

TEST_F(Sessions, say_which_name_is_alike_when_an_instance_is_missing)
{
    write("configuration/Line 1/Controller.json", "{}");
    begin();
    EXPECT_TRUE(session->load(configurationOf("Line 1/Controler")).isNull());
    Problem problem = onlyProblem();
    EXPECT_EQ(problem.code, Code::Missing);
    EXPECT_TRUE(problem.message.contains("\"Line 1/Controler\""));
    EXPECT_TRUE(problem.advice.contains("\"Line 1/Controller\""));
    EXPECT_TRUE(session->load(configurationOf("Quite another")).isNull());
    problem = onlyProblem();
    EXPECT_TRUE(problem.advice.contains("configuration/Quite another.json"));
}

TEST_F(Sessions, tell_a_problem_again_after_it_was_taken_but_not_twice_at_once)
{
    begin();
    session->load(configurationOf("A"));
    session->load(configurationOf("A"));
    EXPECT_EQ(session->takeProblems().size(), 1);
    session->load(configurationOf("A"));
    EXPECT_EQ(session->takeProblems().size(), 1);
}

TEST_F(Sessions, name_file_line_and_column_of_what_cannot_be_parsed)
{
    write("process/Oven.json", "{\n  \"A\": 1,\n}");
    begin();
    EXPECT_TRUE(session->load(processOf("Oven")).isNull());
    const Problem problem = onlyProblem();
    EXPECT_EQ(problem.code, Code::Syntax);
    EXPECT_TRUE(toText(problem).startsWith("process/Oven.json:3:1: "));
}

TEST_F(Sessions, refuse_a_tree_whose_root_is_no_object)
{
    write("configuration/A.json", "\n [1]");
    begin();
    EXPECT_TRUE(session->load(configurationOf("A")).isNull());
    const Problem problem = onlyProblem();
    EXPECT_EQ(problem.code, Code::Shape);
    EXPECT_EQ(problem.line, 2);
    EXPECT_EQ(problem.column, 2);
}

TEST_F(Sessions, read_regular_files_only)
{
    QDir(root()).mkpath("configuration/folder.json");
    ASSERT_EQ(mkfifo(path("configuration/pipe.json").toLocal8Bit().constData(), 0600), 0);
    begin();
    EXPECT_TRUE(session->load(configurationOf("folder")).isNull());
    EXPECT_EQ(onlyProblem().code, Code::Read);
    EXPECT_TRUE(session->load(configurationOf("pipe")).isNull()) << "and does not wait";
    EXPECT_EQ(onlyProblem().code, Code::Read);
}

TEST_F(Sessions, refuse_files_beyond_the_size_limit_without_reading_them)
{
    QFile file(path("configuration/A.json"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(qint64{1} << 40)); // sparse
    begin();
    EXPECT_TRUE(session->load(configurationOf("A")).isNull());
    EXPECT_EQ(onlyProblem().code, Code::Size);
}

TEST_F(Sessions, do_not_overwrite_what_they_cannot_read)
{
    write("configuration/Good.json", "{}");
    write("configuration/Bad.json", "{");
    begin();
    EXPECT_FALSE(
        session->store(configurationOf("Bad"), session->load(configurationOf("Good")), {}, {}));
    EXPECT_EQ(onlyProblem().code, Code::Syntax);
    EXPECT_TRUE(session->commit());
    EXPECT_EQ(read("configuration/Bad.json"), QByteArray("{"));
}

TEST_F(Sessions, refuse_to_store_what_is_no_whole_tree_of_theirs)
{
    write("configuration/Oven.json", oven);
    begin();
    EXPECT_FALSE(session->store(configurationOf("Oven"), {}, {}, {}));
    EXPECT_EQ(onlyProblem().code, Code::NotATree);
    const auto leaf = session->load(configurationOf("Oven"))->getChildData("Mode");
    EXPECT_FALSE(session->store(configurationOf("Oven"), leaf, {}, {}));
    EXPECT_EQ(onlyProblem().code, Code::NotATree);
    EXPECT_TRUE(session->changes().isEmpty());
}

TEST_F(Sessions, refuse_bad_names_everywhere)
{
    begin();
    EXPECT_TRUE(session->load(configurationOf("../a")).isNull());
    EXPECT_EQ(onlyProblem().code, Code::Name);
    EXPECT_FALSE(session->store(configurationOf("../a"), treeOn("{}"), {}, {}));
    EXPECT_EQ(onlyProblem().code, Code::Name);
    EXPECT_TRUE(session->description("../a").isEmpty());
    EXPECT_EQ(onlyProblem().code, Code::Name);
}

TEST_F(Sessions, make_a_file_for_a_new_instance)
{
    begin();
    EXPECT_TRUE(session->store(configurationOf("Line 1/New"), treeOn("{\"X\": 1}\n"), {}, {}));
    EXPECT_TRUE(session->takeProblems().isEmpty());
    expectChanges(session->changes(), {{"Line 1/New", "X", "@value", {}, 1LL}});
    EXPECT_FALSE(session->load(configurationOf("Line 1/New")).isNull());
    EXPECT_TRUE(session->commit());
    EXPECT_EQ(read("configuration/Line 1/New.json"), QByteArray("{\"X\": 1}\n"));
}

TEST_F(Sessions, do_not_overwrite_a_file_that_came_to_be_meanwhile)
{
    begin();
    EXPECT_TRUE(session->store(configurationOf("New"), treeOn("{}"), {}, {}));
    write("configuration/New.json", R"({"theirs": 1})");
    EXPECT_FALSE(session->commit());
    EXPECT_EQ(onlyProblem().code, Code::Conflict);
    EXPECT_EQ(read("configuration/New.json"), QByteArray(R"({"theirs": 1})"));
}

TEST_F(Sessions, store_the_last_of_two_trees_of_an_instance)
{
    write("configuration/A.json", R"({"X": 1, "Y": 1})");
    begin();
    const auto first = session->load(configurationOf("A"));
    const auto second = session->load(configurationOf("A"));
    first->getChildData("X")->setDataProperty("@value", 2);
    second->getChildData("Y")->setDataProperty("@value", 2);
    EXPECT_TRUE(session->store(configurationOf("A"), first, {}, {}));
    EXPECT_TRUE(session->store(configurationOf("A"), second, {}, {}));
    expectChanges(session->changes(), {{"A", "Y", "@value", 1LL, 2LL}});
}

TEST_F(Sessions, store_a_tree_again_after_more_was_written_to_it)
{
    write("configuration/A.json", R"({"X": 1, "Y": 1})");
    begin();
    const auto tree = session->load(configurationOf("A"));
    tree->getChildData("X")->setDataProperty("@unitType", "a");
    EXPECT_TRUE(session->store(configurationOf("A"), tree, {}, {}));
    tree->getChildData("X")->setDataProperty("@unitType", "b");
    tree->getChildData("Y")->setDataProperty("@unitType", "c");
    EXPECT_TRUE(session->store(configurationOf("A"), tree, {}, {}));
    EXPECT_TRUE(session->commit());
    EXPECT_EQ(read("configuration/A.json"), QByteArray(R"({"X": {"@value": 1, "@unitType": "b"}, )"
                                                       R"("Y": {"@value": 1, "@unitType": "c"}})"));
}

TEST_F(Sessions, refuse_to_store_what_could_not_be_read_back)
{
    // A list as deep as can be leaves no room for the object that a unit needs.
    const int levels = filehost::limits::depth - 1;
    write("configuration/A.json",
          "{\"X\": " + QByteArray(levels, '[') + QByteArray(levels, ']') + '}');
    begin();
    const auto tree = session->load(configurationOf("A"));
    EXPECT_EQ(tree->getChildData("X")->setDataProperty("@unitType", "K"), 0);
    EXPECT_FALSE(session->store(configurationOf("A"), tree, {}, {}));
    EXPECT_EQ(onlyProblem().code, Code::Depth);
    EXPECT_TRUE(session->changes().isEmpty());
}

TEST_F(Sessions, say_why_a_description_cannot_be_had)
{
    write("dependency/units.json", "{}");
    write("dependency/latin.json", "{\"a\": \"\xB0\"}");
    write("dependency/empty.json", "");
    begin();
    EXPECT_EQ(session->description("unit"), QString());
    Problem problem = onlyProblem();
    EXPECT_EQ(problem.code, Code::Missing);
    EXPECT_TRUE(problem.advice.contains("\"units\""));
    EXPECT_EQ(session->description("latin"), QString());
    EXPECT_TRUE(toText(onlyProblem()).startsWith("dependency/latin.json:1:8: "));
    EXPECT_EQ(session->description("empty"), QString());
    EXPECT_EQ(onlyProblem().code, Code::Syntax);
}

TEST_F(Sessions, hand_out_a_description_without_its_byte_order_mark)
{
    write("dependency/d.json", "\xEF\xBB\xBF{\"\xC2\xB0\": 1}");
    begin();
    EXPECT_EQ(session->description("d"), QString::fromUtf8("{\"\u00B0\": 1}"));
    EXPECT_TRUE(session->takeProblems().isEmpty());
}

// --- one instance after the other

TEST_F(Sessions, show_everybody_one_view_until_something_else_is_stored)
{
    write("configuration/Oven.json", oven);
    begin();
    const auto view = session->view(configurationOf("Oven"));
    ASSERT_FALSE(view.isNull());
    EXPECT_EQ(session->view(configurationOf("Oven")), view);
    EXPECT_NE(session->load(configurationOf("Oven")), view);
    change(configurationOf("Oven"), "Temperature", "@unitType", "K");
    const auto next = session->view(configurationOf("Oven"));
    EXPECT_EQ(next->getChildData("Temperature")->getDataProperty("@unitType"), QVariant("K"));
    EXPECT_EQ(view->getChildData("Temperature")->getDataProperty("@unitType"), QVariant("C"));
}

TEST_F(Sessions, say_for_each_view_why_there_is_none)
{
    begin();
    for (int time = 0; time < 2; ++time) {
        EXPECT_TRUE(session->view(configurationOf("Oven")).isNull());
        EXPECT_EQ(onlyProblem().code, Code::Missing);
    }
    EXPECT_TRUE(session->view(configurationOf("../Oven")).isNull());
    EXPECT_EQ(onlyProblem().code, Code::Name);
}

TEST_F(Sessions, complete_one_instance_and_leave_the_others_for_later)
{
    write("configuration/A.json", R"({"X": 1})");
    write("configuration/B.json", R"({"X": 1})");
    begin();
    change(configurationOf("A"), "X", "@value", 2);
    change(configurationOf("B"), "X", "@value", 2);
    const filehost::Completion completion = session->complete(configurationOf("A"));
    expectChanges(completion.changes, {{"A", "X", "@value", 1, 2}});
    ASSERT_EQ(completion.modifications.size(), 1);
    EXPECT_EQ(completion.modifications[0].instanceName, QString("A"));
    EXPECT_EQ(read("configuration/A.json"), QByteArray(R"({"X": 2})"));
    EXPECT_EQ(read("configuration/B.json"), QByteArray(R"({"X": 1})"));
    expectChanges(session->changes(), {{"B", "X", "@value", 1, 2}});
    EXPECT_EQ(modifications().size(), 1) << "A's went with its completion";
}

TEST_F(Sessions, read_an_instance_anew_after_it_was_completed)
{
    write("configuration/A.json", R"({"X": 1})");
    begin();
    change(configurationOf("A"), "X", "@value", 2);
    session->complete(configurationOf("A"));
    write("configuration/A.json", R"({"X": 7})");
    EXPECT_EQ(session->load(configurationOf("A"))->getChildData("X")->getDataProperty("@value"),
              QVariant(7));
}

TEST_F(Sessions, complete_without_a_word_what_did_not_change_or_was_never_asked_for)
{
    write("configuration/A.json", R"({"X": 1})");
    begin();
    change(configurationOf("A"), "X", "@value", 2);
    change(configurationOf("A"), "X", "@value", 1);
    for (const char* name : {"A", "B", "../C"}) {
        const filehost::Completion completion = session->complete(configurationOf(name));
        EXPECT_TRUE(completion.changes.isEmpty());
        EXPECT_TRUE(completion.modifications.isEmpty());
    }
    EXPECT_TRUE(session->takeProblems().isEmpty());
    EXPECT_EQ(read("configuration/A.json"), QByteArray(R"({"X": 1})"));
}

TEST_F(Sessions, tell_no_changes_of_an_instance_that_could_not_be_written)
{
    write("configuration/A.json", R"({"X": 1})");
    begin();
    change(configurationOf("A"), "X", "@value", 2);
    write("configuration/A.json", R"({"X": 7})");
    const filehost::Completion completion = session->complete(configurationOf("A"));
    EXPECT_EQ(onlyProblem().code, Code::Conflict);
    EXPECT_TRUE(completion.changes.isEmpty());
    EXPECT_TRUE(completion.modifications.isEmpty());
    EXPECT_EQ(read("configuration/A.json"), QByteArray(R"({"X": 7})"));
}

TEST_F(Sessions, that_only_read_complete_without_writing)
{
    write("configuration/A.json", R"({"X": 1})");
    const auto before = age();
    begin(Access::Read);
    change(configurationOf("A"), "X", "@value", 2);
    const filehost::Completion completion = session->complete(configurationOf("A"));
    expectChanges(completion.changes, {{"A", "X", "@value", 1, 2}});
    EXPECT_EQ(completion.modifications.size(), 1);
    EXPECT_EQ(state(), before);
    EXPECT_TRUE(session->takeProblems().isEmpty());
}

TEST_F(Sessions, find_an_instance_to_complete_after_many_others_under_two_names_each)
{
    write("configuration/A.json", R"({"X": 1})");
    begin();
    change(configurationOf("A"), "X", "@value", 2);
    for (int number = 0; number < 100; ++number) {
        const QString name = QString("B%1").arg(number);
        write("configuration/" + name + ".json", R"({"X": 1})");
        ASSERT_TRUE(QFile::link(name + ".json", path("configuration/alias of " + name + ".json")));
        session->load(configurationOf("alias of " + name));
        session->load(configurationOf(name));
        session->complete(configurationOf(name));
    }
    EXPECT_EQ(session->complete(configurationOf("A")).changes.size(), 1);
    EXPECT_EQ(read("configuration/A.json"), QByteArray(R"({"X": 2})"));
}

// --- several threads

TEST_F(Sessions, work_next_to_one_that_holds_the_lock)
{
    write("configuration/A.json", R"({"X": 1})");
    begin();
    filehost::Completion completion;
    std::thread([&] {
        Session next(workspace(), Access::Write);
        ASSERT_TRUE(next.beginNextTo(*session));
        const auto tree = next.load(configurationOf("A"));
        tree->getChildData("X")->setDataProperty("@value", 2);
        EXPECT_TRUE(next.store(configurationOf("A"), tree, "first", "second"));
        completion = next.complete(configurationOf("A"));
    }).join();
    EXPECT_EQ(read("configuration/A.json"), QByteArray(R"({"X": 2})"));
    EXPECT_EQ(completion.modifications.size(), 1);

    EXPECT_TRUE(modifications().isEmpty());
    session->adopt(completion.modifications);
    EXPECT_EQ(modifications().size(), 1);
    session->commit();
    EXPECT_EQ(modifications().size(), 1);
    session.reset();
    EXPECT_EQ(modifications().last().instanceName, QString("A")) << "the register has it now";
}

TEST_F(Sessions, write_only_next_to_one_that_holds_the_lock)
{
    Session holder(workspace(), Access::Read);
    Session next(workspace(), Access::Write);
    EXPECT_FALSE(next.beginNextTo(holder));
    ASSERT_EQ(next.takeProblems().size(), 1);
    EXPECT_EQ(Session::current(), nullptr);
}
