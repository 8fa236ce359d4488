#include "filehost/FileManifestHandler.h"

#include "TestWorkspace.h"
#include "filehost/FileDependencyResolver.h"
#include "filehost/Session.h"
#include "host/ConfigurationDataAndProcessDescriptionAccess.h"
#include "host/ConfigurationModificationHandler.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>

using filehost::FileDependencyResolver;
using filehost::FileManifestHandler;
using filehost::Problem;
using filehost::Session;
using Code = Problem::Code;

namespace {

const QString key = QStringLiteral("lastModified");
const QString manifest = QStringLiteral("configuration/manifest.json");

class ManifestHandler : public TestWorkspace {
protected:
    /// Updates through a handler of its own, without a session.
    bool update(const QString& name, const QVariant& value)
    {
        FileManifestHandler handler(workspace());
        return handler.update(name, key, value, false) && handler.writeToManifestFile();
    }

    /// What the manifest is after updates of these instances to these values.
    QByteArray updated(const QByteArray& before, const QList<QPair<QString, QVariant>>& updates)
    {
        write(manifest, before);
        FileManifestHandler handler(workspace());
        for (const auto& [name, value] : updates) {
            EXPECT_TRUE(handler.update(name, key, value, false)) << name.toStdString();
        }
        EXPECT_TRUE(handler.writeToManifestFile());
        return read(manifest);
    }

    void begin(Session::Access access = Session::Access::Write)
    {
        session.emplace(workspace(), access);
        ASSERT_TRUE(session->begin({}));
    }

    void change(const filehost::Instance& instance, const QVariant& value)
    {
        const BaseClassSharedPointer root = session->load(instance);
        ASSERT_FALSE(root.isNull());
        root->getChildData("X")->setDataProperty("@value", value);
        ASSERT_TRUE(session->store(instance, root, "unitflow", workspace().directory()));
    }

    /// As a program ends its work.
    void updateByResolver()
    {
        FileDependencyResolver resolver(workspace());
        FileManifestHandler handler(workspace());
        resolver.setConfigurationManifestHandler(&handler);
        resolver.updateConfigurationManifest();
    }

    Problem onlyProblem()
    {
        const QList<Problem> problems = session->takeProblems();
        EXPECT_EQ(problems.size(), 1);
        return problems.value(0, {Code::Read, "no problem", 0, 0, {}, {}});
    }

    std::optional<Session> session;
};

QList<ModifiedInstanceItem> modifications()
{
    QList<ModifiedInstanceItem> items;
    ConfigurationModificationHandler::getInstance()->getModifiedInstances(items);
    return items;
}

/// The "lastModified" of the manifest's text that stands behind the first "instanceName": "<name>".
QByteArray timeOf(const QByteArray& text, const QByteArray& name)
{
    const QByteArray timeKey = R"("lastModified": ")";
    const int entry = text.indexOf(R"("instanceName": ")" + name + '"');
    const int time = entry < 0 ? -1 : text.indexOf(timeKey, entry);
    return time < 0 ? QByteArray() : text.mid(time + timeKey.size(), 24);
}

} // namespace

TEST_F(ManifestHandler, changes_the_value_and_no_other_byte)
{
    EXPECT_EQ(updated("[ {\"lastModified\" :\"old\",\t\"instanceName\":\"A\" , \"x\": 1.50},\r\n"
                      "{\"instanceName\": \"B\", \"lastModified\": \"old\"}]",
                      {{"A", "new"}}),
              QByteArray("[ {\"lastModified\" :\"new\",\t\"instanceName\":\"A\" , \"x\": 1.50},\r\n"
                         "{\"instanceName\": \"B\", \"lastModified\": \"old\"}]"));
}

TEST_F(ManifestHandler, adds_the_key_to_an_entry_that_does_not_have_it)
{
    EXPECT_EQ(
        updated("[\n  {\n    \"instanceName\": \"A\"\n  }\n]\n", {{"A", "new"}}),
        QByteArray("[\n  {\n    \"instanceName\": \"A\",\n    \"lastModified\": \"new\"\n  }\n]"
                   "\n"));
}

TEST_F(ManifestHandler, adds_entries_behind_the_last_one_in_the_order_of_the_updates)
{
    EXPECT_EQ(updated("[\n  {\"instanceName\": \"A\", \"lastModified\": \"old\"}\n]\n",
                      {{"C", "1"}, {"A", "2"}, {"B", "3"}}),
              QByteArray("[\n  {\"instanceName\": \"A\", \"lastModified\": \"2\"},\n"
                         "  {\"instanceName\": \"C\", \"lastModified\": \"1\"},\n"
                         "  {\"instanceName\": \"B\", \"lastModified\": \"3\"}\n]\n"));
}

TEST_F(ManifestHandler, makes_a_missing_manifest_with_an_entry_for_each_instance)
{
    FileManifestHandler handler(workspace());
    EXPECT_TRUE(handler.update("A", key, "1", false));
    EXPECT_TRUE(handler.update("B\n\u00B0", key, "2", false));
    EXPECT_TRUE(handler.writeToManifestFile());
    EXPECT_EQ(
        read(manifest),
        QByteArray("[\n    {\n        \"instanceName\": \"A\",\n        \"lastModified\": \"1\"\n"
                   "    },\n    {\n        \"instanceName\": \"B\\n\u00B0\",\n"
                   "        \"lastModified\": \"2\"\n    }\n]\n"));
}

TEST_F(ManifestHandler, fills_an_empty_list)
{
    EXPECT_EQ(updated("[]", {{"A", "1"}}),
              QByteArray(R"([{"instanceName": "A", "lastModified": "1"}])"));
}

TEST_F(ManifestHandler, keeps_the_last_of_several_updates_of_an_instance)
{
    EXPECT_EQ(updated(R"([{"instanceName": "A"}])", {{"A", "1"}, {"B", "2"}, {"A", "3"}, {"B", 4}}),
              QByteArray(R"([{"instanceName": "A", "lastModified": "3"}, )"
                         R"({"instanceName": "B", "lastModified": 4}])"));
}

TEST_F(ManifestHandler, takes_the_first_entry_with_the_name_at_any_depth)
{
    EXPECT_EQ(
        updated(R"([{"group": [{"instanceName": "A"}]}, {"instanceName": "A"}])", {{"A", "1"}}),
        QByteArray(R"([{"group": [{"instanceName": "A", "lastModified": "1"}]}, )"
                   R"({"instanceName": "A"}])"));
}

TEST_F(ManifestHandler, takes_nothing_for_an_entry_that_the_update_itself_replaces)
{
    EXPECT_EQ(updated(R"([{"instanceName": "A", "lastModified": {"instanceName": "B"}}])",
                      {{"A", "1"}, {"B", "2"}}),
              QByteArray(R"([{"instanceName": "A", "lastModified": "1"}, )"
                         R"({"instanceName": "B", "lastModified": "2"}])"));
}

TEST_F(ManifestHandler, compares_names_as_texts_with_case)
{
    EXPECT_EQ(updated(R"([{"instanceName": 5}, {"instanceName": "a"}, 5, "A"])", {{"5", "1"}}),
              QByteArray(R"([{"instanceName": 5}, {"instanceName": "a"}, 5, "A", )"
                         R"({"instanceName": "5", "lastModified": "1"}])"));
}

TEST_F(ManifestHandler, does_not_rewrite_what_would_not_change)
{
    write(manifest, R"([{"instanceName": "A", "lastModified": "1"}])");
    const auto before = age();
    EXPECT_TRUE(update("A", "1"));
    EXPECT_EQ(read(manifest), before[manifest].first);
    EXPECT_EQ(state()[manifest].second, before[manifest].second);
}

TEST_F(ManifestHandler, writes_nothing_without_an_update)
{
    FileManifestHandler handler(workspace());
    EXPECT_TRUE(handler.writeToManifestFile());
    EXPECT_EQ(read(manifest), QByteArray("no such file"));
}

TEST_F(ManifestHandler, writes_each_update_once)
{
    FileManifestHandler handler(workspace());
    EXPECT_TRUE(handler.update("A", key, "1", false));
    EXPECT_TRUE(handler.writeToManifestFile());
    write(manifest, "[]");
    EXPECT_TRUE(handler.writeToManifestFile());
    EXPECT_EQ(read(manifest), QByteArray("[]"));
}

TEST_F(ManifestHandler, leaves_the_file_alone_until_it_is_told_to_write)
{
    write(manifest, "[]");
    FileManifestHandler handler(workspace());
    EXPECT_TRUE(handler.update("A", key, "1", false));
    EXPECT_EQ(read(manifest), QByteArray("[]"));
}

TEST_F(ManifestHandler, refuses_what_the_manifest_cannot_hold)
{
    begin();
    FileManifestHandler handler(workspace());
    EXPECT_FALSE(handler.update("A", key, QVariant(), false));
    EXPECT_FALSE(handler.update("A", key, std::numeric_limits<double>::infinity(), false));
    EXPECT_FALSE(handler.update("A", "instanceName", "B", false));
    EXPECT_FALSE(handler.update(QString(QChar(0xD800)), key, "1", false));
    for (const Problem& problem : session->takeProblems()) {
        EXPECT_EQ(problem.code, Code::Shape);
        EXPECT_EQ(problem.file, manifest);
    }
    EXPECT_TRUE(handler.writeToManifestFile());
    EXPECT_TRUE(session->commit());
    EXPECT_EQ(read(manifest), QByteArray("no such file"));
}

TEST_F(ManifestHandler, says_where_a_manifest_does_not_read_and_leaves_it_alone)
{
    write(manifest, "[\n  {\"instanceName\": }\n]");
    begin();
    FileManifestHandler handler(workspace());
    EXPECT_FALSE(handler.update("A", key, "1", false));
    const Problem problem = onlyProblem();
    EXPECT_EQ(problem.code, Code::Syntax);
    EXPECT_EQ(problem.file, manifest);
    EXPECT_EQ(problem.line, 2);
    EXPECT_EQ(problem.column, 20);
    EXPECT_TRUE(handler.writeToManifestFile());
    EXPECT_TRUE(session->commit());
    EXPECT_EQ(read(manifest), QByteArray("[\n  {\"instanceName\": }\n]"));
}

TEST_F(ManifestHandler, says_that_a_manifest_is_a_list)
{
    write(manifest, R"( {"instanceName": "A"})");
    begin();
    FileManifestHandler handler(workspace());
    EXPECT_FALSE(handler.update("A", key, "1", false));
    const Problem problem = onlyProblem();
    EXPECT_EQ(problem.code, Code::Shape);
    EXPECT_EQ(problem.column, 2);
}

TEST_F(ManifestHandler, is_false_without_a_session_for_a_manifest_that_does_not_read)
{
    write(manifest, "[");
    EXPECT_FALSE(update("A", "1"));
    EXPECT_EQ(read(manifest), QByteArray("["));
}

TEST_F(ManifestHandler, does_not_follow_a_link_out_of_the_workspace)
{
    QFile other(outside() + "/manifest.json");
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    other.write("[]");
    other.close();
    ASSERT_TRUE(QFile::link(outside() + "/manifest.json", path(manifest)));
    begin();
    FileManifestHandler handler(workspace());
    EXPECT_FALSE(handler.update("A", key, "1", false));
    EXPECT_EQ(onlyProblem().code, Code::Name);
}

TEST_F(ManifestHandler, waits_for_the_commit_of_the_session)
{
    write(manifest, R"([{"instanceName": "A"}])");
    begin();
    EXPECT_TRUE(update("A", "1"));
    EXPECT_EQ(read(manifest), QByteArray(R"([{"instanceName": "A"}])"));
    EXPECT_TRUE(session->changes().isEmpty());
    EXPECT_TRUE(session->commit());
    EXPECT_EQ(read(manifest), QByteArray(R"([{"instanceName": "A", "lastModified": "1"}])"));
}

TEST_F(ManifestHandler, is_not_written_by_a_session_that_does_not_commit)
{
    write("configuration/A.json", R"({"X": 1})");
    write(manifest, R"([{"instanceName": "A"}])");
    const auto before = age();
    begin(Session::Access::Read);
    change(configurationOf("A"), 2);
    updateByResolver();
    session.reset();
    EXPECT_EQ(state(), before);
}

TEST_F(ManifestHandler, gets_several_updates_over_several_commits)
{
    begin();
    EXPECT_TRUE(update("A", "1"));
    EXPECT_TRUE(session->commit());
    EXPECT_TRUE(update("A", "2"));
    EXPECT_TRUE(update("B", "3"));
    EXPECT_TRUE(session->commit());
    EXPECT_EQ(timeOf(read(manifest), "A").left(1), QByteArray("2"));
    EXPECT_EQ(timeOf(read(manifest), "B").left(1), QByteArray("3"));
}

TEST_F(ManifestHandler, leaves_a_manifest_alone_that_somebody_else_changed)
{
    write(manifest, "[]");
    begin();
    EXPECT_TRUE(update("A", "1"));
    write(manifest, "[ ]");
    EXPECT_FALSE(session->commit());
    const Problem problem = onlyProblem();
    EXPECT_EQ(problem.code, Code::Conflict);
    EXPECT_EQ(problem.file, manifest);
    EXPECT_EQ(read(manifest), QByteArray("[ ]"));
}

TEST_F(ManifestHandler, notes_instances_of_both_kinds_that_the_session_wrote)
{
    write("configuration/A.json", R"({"X": 1})");
    write("process/P.json", R"({"X": 1})");
    begin();
    change(configurationOf("A"), 2);
    change(processOf("P"), 2);
    const QList<ModifiedInstanceItem> items = modifications();
    ASSERT_EQ(items.size(), 2);
    updateByResolver();
    EXPECT_TRUE(session->commit());
    EXPECT_EQ(timeOf(read(manifest), "A"), items[0].modificationTime.toUtf8());
    EXPECT_EQ(timeOf(read(manifest), "P"), items[1].modificationTime.toUtf8());
}

TEST_F(ManifestHandler, does_not_note_an_instance_that_could_not_be_written)
{
    write("configuration/A.json", R"({"X": 1})");
    write("configuration/B.json", R"({"X": 1})");
    begin();
    change(configurationOf("A"), 2);
    change(configurationOf("B"), 2);
    updateByResolver();
    write("configuration/B.json", R"({"X": 3})");
    EXPECT_FALSE(session->commit());
    EXPECT_EQ(timeOf(read(manifest), "A").size(), 24);
    EXPECT_FALSE(read(manifest).contains("\"B\""));
}

TEST_F(ManifestHandler, does_not_note_an_instance_that_was_changed_back)
{
    write("configuration/A.json", R"({"X": 1})");
    begin();
    change(configurationOf("A"), 2);
    change(configurationOf("A"), 1);
    updateByResolver();
    EXPECT_TRUE(session->commit());
    EXPECT_EQ(read(manifest), QByteArray("no such file"));
}

TEST_F(ManifestHandler, never_gets_what_an_earlier_session_of_the_process_modified)
{
    write("configuration/A.json", R"({"X": 1})");
    write("configuration/B.json", R"({"X": 1})");
    begin();
    change(configurationOf("A"), 2);
    EXPECT_TRUE(session->commit());
    session.reset();
    begin();
    change(configurationOf("B"), 2);
    updateByResolver();
    EXPECT_TRUE(session->commit());
    EXPECT_FALSE(read(manifest).contains("\"A\""));
    EXPECT_TRUE(read(manifest).contains("\"B\""));
}

TEST_F(ManifestHandler, gets_without_a_session_what_was_written_since_the_process_started)
{
    write("configuration/A.json", R"({"X": 1})");
    write("configuration/B.json", R"({"X": 1})");
    begin();
    change(configurationOf("A"), 2);
    EXPECT_TRUE(session->commit());
    change(configurationOf("B"), 2);
    session.reset(); // B was never written
    updateByResolver();
    EXPECT_EQ(timeOf(read(manifest), "A").size(), 24);
    EXPECT_FALSE(read(manifest).contains("\"B\""));
}

TEST_F(ManifestHandler, works_beside_a_session_on_another_workspace)
{
    QList<Problem> problems;
    QDir().mkpath(outside() + "/other/configuration");
    const auto other = filehost::Workspace::open(outside() + "/other", problems);
    ASSERT_TRUE(other);
    begin();
    FileManifestHandler handler(*other);
    EXPECT_TRUE(handler.update("A", key, "1", false));
    EXPECT_TRUE(handler.writeToManifestFile());
    EXPECT_TRUE(QFileInfo::exists(outside() + "/other/configuration/manifest.json"));
    EXPECT_EQ(read(manifest), QByteArray("no such file"));
}

TEST_F(ManifestHandler, keeps_a_byte_order_mark)
{
    EXPECT_EQ(updated("\xEF\xBB\xBF[{\"instanceName\": \"A\"}]", {{"A", 1}}),
              QByteArray("\xEF\xBB\xBF[{\"instanceName\": \"A\", \"lastModified\": 1}]"));
}

TEST_F(ManifestHandler, checks_of_a_workspace_find_a_missing_manifest_too)
{
    QList<Problem> problems;
    EXPECT_FALSE(workspace().checkManifest(problems));
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.first().code, Code::Missing);
    EXPECT_EQ(problems.first().file, manifest);
    EXPECT_FALSE(problems.first().advice.isEmpty());
    problems.clear();
    write(manifest, "[]");
    EXPECT_TRUE(workspace().checkManifest(problems));
    EXPECT_TRUE(problems.isEmpty());
}
