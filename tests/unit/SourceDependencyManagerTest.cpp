#include "SourceDependencyManager.h"

#include "EngineTest.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>

#include <type_traits>

using testhost::Message;

namespace {

class SourceManager : public testhost::EngineTest {
protected:
    /// Puts a manifest into the folder; the name is the host's.
    void writeManifest(const QByteArray& json) const
    {
        QFile file(manifestPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(json);
    }

    bool scan() { return manager.scanManifestFileForDependencyInstances(QDir(folder.path())); }

    QString manifestPath() const { return folder.path() + "/manifest.of.test"; }

    static Message noManifest(const QString& text)
    {
        return {QtWarningMsg,
                text,
                "SourceDependencyManager",
                61,
                "bool SourceDependencyManager::scanManifestFileForDependencyInstances(const QDir&)",
                "default"};
    }

    static Message readingNames(int line, const QString& text)
    {
        return {QtWarningMsg,
                text,
                "SourceDependencyManager",
                line,
                "QStringList SourceDependencyManager::jsonValueToStringList(const QJsonValue&)",
                "default"};
    }

    QTemporaryDir folder;
    SourceDependencyManager manager;
};

TEST_F(SourceManager, knows_no_source_before_the_first_scan)
{
    EXPECT_EQ(manager.getDependencySourceInstanceList(), QStringList());
    EXPECT_FALSE(manager.buildsDependency("a"));
    EXPECT_FALSE(manager.buildsDependency(""));
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(SourceManager, collects_the_flagged_instances_in_manifest_order)
{
    writeManifest(R"([{"instanceName": "z", "@isSource": true}, {"instanceName": "b"},
                      {"instanceName": "dir/a", "@isSource": true, "other": 1},
                      {"instanceName": "c", "@isSource": false}])");

    EXPECT_TRUE(scan());
    EXPECT_EQ(manager.getDependencySourceInstanceList(), (QStringList{"z", "dir/a"}));
    EXPECT_TRUE(manager.buildsDependency("z"));
    EXPECT_FALSE(manager.buildsDependency("b"));
    EXPECT_FALSE(manager.buildsDependency("c"));
}

TEST_F(SourceManager, filters_by_the_boolean_true_through_the_hosts_iteration)
{
    writeManifest(R"([{"instanceName": "a", "@isSource": true}, 5])");

    EXPECT_TRUE(scan());
    EXPECT_EQ(host.takeCalls(),
              (QStringList{"JsonDataIteratorFilter(instanceName, {@isSource: bool(true)}, true)",
                           "JsonDataIterator()", "iterate(2 values)", "getResult()",
                           "~JsonDataIterator()", "~JsonDataIteratorFilter()"}));
}

TEST_F(SourceManager, leaves_what_equals_true_to_the_hosts_filter)
{
    writeManifest(R"([{"instanceName": "one", "@isSource": 1},
                      {"instanceName": "text", "@isSource": "true"},
                      {"instanceName": "yes", "@isSource": true}])");

    EXPECT_TRUE(scan());
    EXPECT_EQ(manager.getDependencySourceInstanceList(), QStringList{"yes"});
}

TEST_F(SourceManager, keeps_a_name_that_is_listed_twice)
{
    writeManifest(R"([{"instanceName": "a", "@isSource": true},
                      {"instanceName": "b", "@isSource": true},
                      {"instanceName": "a", "@isSource": true}])");

    EXPECT_TRUE(scan());
    EXPECT_EQ(manager.getDependencySourceInstanceList(), (QStringList{"a", "b", "a"}));
}

TEST_F(SourceManager, fails_with_a_warning_on_a_missing_manifest_and_keeps_its_list)
{
    writeManifest(R"([{"instanceName": "a", "@isSource": true}])");
    ASSERT_TRUE(scan());
    ASSERT_TRUE(QFile::remove(manifestPath()));
    host.takeCalls();

    EXPECT_FALSE(scan());
    EXPECT_EQ(messages.take(),
              QList<Message>{noManifest("Can't open file  \"" + manifestPath() +
                                        "\"  IO Error:  \"No such file or directory\"")});
    EXPECT_EQ(manager.getDependencySourceInstanceList(), QStringList{"a"});
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(SourceManager, fails_silently_on_text_that_is_no_json_and_keeps_its_list)
{
    writeManifest(R"([{"instanceName": "a", "@isSource": true}])");
    ASSERT_TRUE(scan());
    host.takeCalls();

    for (const char* json :
         {"", "[", "[1,]", R"([{"instanceName": "b", "@isSource": true}] x)", "nothing", "5"}) {
        SCOPED_TRACE(json);
        writeManifest(json);
        EXPECT_FALSE(scan());
        EXPECT_EQ(manager.getDependencySourceInstanceList(), QStringList{"a"});
        EXPECT_EQ(host.takeCalls(), QStringList());
    }
}

TEST_F(SourceManager, finds_nothing_in_a_manifest_that_is_an_object)
{
    writeManifest(R"([{"instanceName": "a", "@isSource": true}])");
    ASSERT_TRUE(scan());
    host.takeCalls();

    writeManifest(R"({"instanceName": "a", "@isSource": true})");
    EXPECT_TRUE(scan());
    EXPECT_EQ(manager.getDependencySourceInstanceList(), QStringList());
    EXPECT_EQ(host.takeCalls({"iterate"}), QStringList{"iterate(0 values)"});
}

TEST_F(SourceManager, replaces_its_list_by_what_the_next_scan_finds)
{
    writeManifest(R"([{"instanceName": "a", "@isSource": true},
                      {"instanceName": "b", "@isSource": true}])");
    ASSERT_TRUE(scan());

    writeManifest(R"([{"instanceName": "a"}, {"instanceName": "b", "@isSource": true}])");
    EXPECT_TRUE(scan());
    EXPECT_EQ(manager.getDependencySourceInstanceList(), QStringList{"b"});

    writeManifest("[]");
    EXPECT_TRUE(scan());
    EXPECT_EQ(manager.getDependencySourceInstanceList(), QStringList());
}

TEST_F(SourceManager, answers_from_the_last_scan_without_reading_again)
{
    writeManifest(R"([{"instanceName": "a", "@isSource": true}])");
    ASSERT_TRUE(scan());
    ASSERT_TRUE(QFile::remove(manifestPath()));

    EXPECT_TRUE(manager.buildsDependency("a"));
}

TEST_F(SourceManager, passes_over_a_name_that_is_no_text_with_a_warning)
{
    writeManifest(R"([{"instanceName": "a", "@isSource": true},
                      {"instanceName": 7, "@isSource": true},
                      {"instanceName": "b", "@isSource": true}])");

    EXPECT_TRUE(scan());
    EXPECT_EQ(manager.getDependencySourceInstanceList(), (QStringList{"a", "b"}));
    EXPECT_EQ(messages.take(),
              QList<Message>{readingNames(112, "item QJsonValue(double, 7) is not a string!")});
}

TEST_F(SourceManager, takes_an_iteration_without_an_array_for_no_instances)
{
    writeManifest(R"([{"instanceName": "a", "@isSource": true}])");
    ASSERT_TRUE(scan());

    host.iterationResult = QJsonValue("a");
    EXPECT_TRUE(scan());
    EXPECT_EQ(manager.getDependencySourceInstanceList(), QStringList());
    EXPECT_EQ(messages.take(), QList<Message>{readingNames(118, "Json value is not an array!")});
}

TEST_F(SourceManager, turns_a_json_array_into_its_texts_with_a_warning_for_all_else)
{
    const QJsonArray items{"a", true, "b", QJsonArray{"c"}, "a", QJsonValue(), ""};

    EXPECT_EQ(manager.jsonValueToStringList(items), (QStringList{"a", "b", "a", ""}));
    EXPECT_EQ(
        messages.take(),
        (QList<Message>{
            readingNames(112, "item QJsonValue(bool, true) is not a string!"),
            readingNames(112, R"(item QJsonValue(array, QJsonArray(["c"])) is not a string!)"),
            readingNames(112, "item QJsonValue(null) is not a string!")}));
    EXPECT_EQ(manager.jsonValueToStringList(QJsonArray()), QStringList());
}

TEST_F(SourceManager, warns_of_a_json_value_that_is_no_array)
{
    for (const QJsonValue& value :
         {QJsonValue("a"), QJsonValue(5), QJsonValue(), QJsonValue(QJsonValue::Undefined),
          QJsonValue(QJsonObject{{"instanceName", "a"}})}) {
        EXPECT_EQ(manager.jsonValueToStringList(value), QStringList());
        EXPECT_EQ(messages.take(),
                  QList<Message>{readingNames(118, "Json value is not an array!")});
    }
}

TEST_F(SourceManager, compares_names_whole_and_with_their_case)
{
    writeManifest(R"([{"instanceName": "b", "@isSource": true},
                      {"instanceName": "dir/c", "@isSource": true}])");
    ASSERT_TRUE(scan());

    EXPECT_TRUE(manager.buildsDependency("b"));
    EXPECT_TRUE(manager.buildsDependency("dir/c"));
    for (const char* name : {"dir/b", "B", "c", "Dir/c", "b ", ""}) {
        EXPECT_FALSE(manager.buildsDependency(name)) << name;
    }
}

TEST_F(SourceManager, strips_no_path_from_a_name_that_has_one_and_everything_else)
{
    EXPECT_EQ(manager.stripPathOfInstanceName("dir/plain"), "dir/plain");
    EXPECT_EQ(manager.stripPathOfInstanceName("a/b/c"), "a/b/c");
    EXPECT_EQ(manager.stripPathOfInstanceName("/"), "/");
    EXPECT_EQ(manager.stripPathOfInstanceName("a//b/"), "a//b/");
    EXPECT_TRUE(manager.stripPathOfInstanceName("plain").isNull());
    EXPECT_TRUE(manager.stripPathOfInstanceName("").isNull());
    EXPECT_TRUE(manager.stripPathOfInstanceName("back\\slash").isNull());
}

TEST_F(SourceManager, copies_with_its_list)
{
    writeManifest(R"([{"instanceName": "a", "@isSource": true}])");
    ASSERT_TRUE(scan());
    const SourceDependencyManager copy(manager);
    SourceDependencyManager assigned;
    assigned = manager;
    writeManifest("[]");
    ASSERT_TRUE(scan());

    EXPECT_EQ(copy.getDependencySourceInstanceList(), QStringList{"a"});
    EXPECT_EQ(assigned.getDependencySourceInstanceList(), QStringList{"a"});
}

TEST_F(SourceManager, keeps_its_answer_when_the_host_scans_with_it_in_between)
{
    writeManifest(R"([{"instanceName": "a", "@isSource": true}])");
    host.insideNext("iterate", [&] {
        writeManifest(R"([{"instanceName": "inner", "@isSource": true}])");
        EXPECT_TRUE(scan());
        EXPECT_EQ(manager.getDependencySourceInstanceList(), QStringList{"inner"});
    });

    EXPECT_TRUE(scan());
    EXPECT_EQ(manager.getDependencySourceInstanceList(), QStringList{"a"});
}

static_assert(std::has_virtual_destructor_v<SourceDependencyManager>);

} // namespace
