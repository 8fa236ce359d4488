#include "TestTree.h"
#include "TestWorkspace.h"
#include "host/Array2dDataTypeWrapper.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataParser.h"
#include "host/ConfigurationAndProcessDataTools.h"
#include "host/ConfigurationDataAndProcessDescriptionAccess.h"
#include "host/ConfigurationModificationHandler.h"
#include "host/PropertyManagerConst.h"
#include "host/SystemInformationManagerRegistryDefinitions.h"

#include <QFile>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <future>
#include <optional>

using filehost::Problem;
using filehost::Session;
using Access = ConfigurationDataAndProcessDescriptionAccess;
using Code = Problem::Code;
using Definitions = ConfigurationAndProcessDataDefinitions;

namespace {

QList<ModifiedInstanceItem> modifications()
{
    QList<ModifiedInstanceItem> items;
    ConfigurationModificationHandler::getInstance()->getModifiedInstances(items);
    return items;
}

QVariant valueAt(const BaseClassSharedPointer& root, const QString& url)
{
    return ConfigurationAndProcessDataTools::extractConfigValue(url, root);
}

class HostServices : public TestWorkspace {
protected:
    BaseClassSharedPointer load(const QString& name) const
    {
        return Access::getParsedConfigurationProcessDescription(configuration(), name, false);
    }

    bool store(const QString& name, const BaseClassSharedPointer& tree) const
    {
        return Access::setParsedConfigurationProcessDescription(configuration(), "first", "second",
                                                                name, tree, false);
    }

    /// The problems that services report to a session of this thread while they run.
    QList<Problem> problemsOf(const std::function<void()>& services) const
    {
        Session session(workspace(), Session::Access::Read);
        session.begin({});
        services();
        return session.takeProblems();
    }
};

BaseClassSharedPointer parse(const QString& json)
{
    return ConfigurationAndProcessDataParser().parseFromJson(
        json, PropertyManagerConst::getConfigFileExtension());
}

} // namespace

TEST(HostDefinitions, spell_the_keys_as_the_files_do)
{
    EXPECT_EQ(Definitions::getKeyDataPropertyValue(), QString("@value"));
    EXPECT_EQ(Definitions::getKeyDataPropertyUnitType(), QString("@unitType"));
    EXPECT_EQ(Definitions::getKeyDataPropertyType(), QString("@type"));
    EXPECT_EQ(Definitions::getKeyDataTypeArray(), QString("array"));
    EXPECT_EQ(Definitions::getKeyDataPropertyArrayInformation(), QString("@arrayInformation"));
    EXPECT_EQ(Definitions::getKeyDataPropertyHasDependency(), QString("hasDependency"));
    EXPECT_EQ(SystemInformationManagerRegistryDefinitions::getKeyLastModified(),
              QString("lastModified"));
}

TEST(HostDefinitions, lay_out_the_workspace)
{
    EXPECT_EQ(PropertyManagerConst::getConfigurationFolderPath("/w"), QString("/w/configuration"));
    EXPECT_EQ(PropertyManagerConst::getProcessFolderPath("/w"), QString("/w/process"));
    EXPECT_EQ(PropertyManagerConst::getDependencyFolderPath("/w"), QString("/w/dependency"));
    EXPECT_EQ(PropertyManagerConst::getConfigFileExtension(), QString("json"));
    EXPECT_EQ(PropertyManagerConst::getConfigurationManifestFilename(), QString("manifest.json"));
}

TEST(ExtractedValue, is_invalid_without_a_root_a_leaf_or_a_value)
{
    const auto root = treeOn(R"({"A": 1, "B": {"@unitType": "K"}, "C": null})");
    EXPECT_EQ(valueAt(root, "A"), QVariant(1LL));
    EXPECT_FALSE(valueAt({}, "A").isValid());
    EXPECT_FALSE(valueAt(root, "").isValid());
    EXPECT_FALSE(valueAt(root, "X").isValid());
    EXPECT_FALSE(valueAt(root, "B").isValid());
    EXPECT_FALSE(valueAt(root, "C").isValid());
}

TEST(Parser, makes_a_tree_of_a_text_and_null_of_what_is_no_tree)
{
    EXPECT_EQ(valueAt(parse(QString::fromUtf8("\uFEFF{\"A\": {\"\u00B0\": \"x\"}}")),
                      QString::fromUtf8("A/\u00B0")),
              QVariant("x"));
    const QStringList noTrees{"", "{", "[]", "1", "{} x", R"({"a": 1, "a": 2})"};
    for (const QString& text : noTrees) {
        EXPECT_TRUE(parse(text).isNull()) << text.toStdString();
    }
    EXPECT_TRUE(parse("{\"" + QString(QChar(0xD83D)) + "\": 1}").isNull());
}

TEST(ArrayWrapper, gives_the_rows_as_it_got_them)
{
    const QVariantList rows{QVariantList{"a", 1}, "no row"};
    EXPECT_EQ(Array2dDataTypeWrapper(rows, {}).getArrayValueContent(), rows);
    EXPECT_TRUE(Array2dDataTypeWrapper({}, {}).getColumnUnitTypes().isEmpty());
}

TEST(ArrayWrapper, gives_an_empty_unit_for_a_column_without_one)
{
    const Array2dDataTypeWrapper wrapper(
        {},
        json(R"([{"name": "t", "unitType": "s"}, {"name": "T"}, {"unitType": null}, 7])").toList());
    EXPECT_EQ(wrapper.getColumnUnitTypes(), (QStringList{"s", "", "", ""}));
}

TEST(ArrayWrapper, accepts_exactly_one_unit_for_each_column)
{
    Array2dDataTypeWrapper wrapper({}, json(R"([{"name": "t"}, {"name": "T"}])").toList());
    EXPECT_FALSE(wrapper.setColumnUnitTypes({"s"}));
    EXPECT_FALSE(wrapper.setColumnUnitTypes({"s", "K", "x"}));
    EXPECT_EQ(wrapper.getColumnUnitTypes(), (QStringList{"", ""}));
    EXPECT_TRUE(wrapper.setColumnUnitTypes({"s", "K"}));
    EXPECT_EQ(wrapper.getColumnUnitTypes(), (QStringList{"s", "K"}));
}

TEST(ArrayWrapper, refuses_a_unit_for_what_is_no_column)
{
    Array2dDataTypeWrapper wrapper({}, {QVariant(7LL)});
    EXPECT_TRUE(wrapper.setColumnUnitTypes({""}));
    EXPECT_FALSE(wrapper.setColumnUnitTypes({"s"}));
}

TEST(ArrayWrapper, writes_only_the_units_that_differ_into_the_leaf)
{
    const auto root = treeOn(R"({"T": {"@type": "array", "@arrayInformation": )"
                             R"([{"name":"t","unitType": "s"}, {"name": "T"}, {"name": "p"}]}})");
    const QVariantList columns =
        root->getChildData("T")->getDataProperty("@arrayInformation").toList();
    Array2dDataTypeWrapper wrapper({}, columns);
    EXPECT_TRUE(wrapper.setColumnUnitTypes({"s", "", "Pa"}));
    EXPECT_EQ(wrapper.setArrayInfoWithStatus(root, "T"), 0);
    EXPECT_EQ(
        textOf(root),
        QByteArray(
            R"({"T": {"@type": "array", "@arrayInformation": )"
            R"([{"name":"t","unitType": "s"}, {"name": "T"}, {"name": "p", "unitType": "Pa"}]}})"));
    EXPECT_EQ(wrapper.setArrayInfoWithStatus(root, "T"), 1);
    EXPECT_EQ(wrapper.setArrayInfoWithStatus(root, "X"), 2);
    EXPECT_EQ(wrapper.setArrayInfoWithStatus({}, "T"), 2);
}

TEST_F(HostServices, act_on_the_files_themselves_without_a_session)
{
    write("configuration/A.json", "{\n  \"X\": 1.50\n}\n");
    const int before = modifications().size();
    const auto tree = load("A");
    ASSERT_FALSE(tree.isNull());
    tree->getChildData("X")->setDataProperty("@unitType", "K");
    EXPECT_TRUE(store("A", tree));
    EXPECT_EQ(read("configuration/A.json"),
              QByteArray("{\n  \"X\": {\"@value\": 1.50, \"@unitType\": \"K\"}\n}\n"));
    ASSERT_EQ(modifications().size(), before + 1);
    EXPECT_EQ(modifications().last().originFirst, QString("first"));
    EXPECT_EQ(modifications().last().originSecond, QString("second"));
    EXPECT_EQ(modifications().last().instanceName, QString("A"));
    EXPECT_FALSE(QFile::exists(path(".unitflow.lock")));
}

TEST_F(HostServices, touch_nothing_for_a_tree_that_did_not_change)
{
    write("configuration/A.json", R"({"X": 1.50})");
    const auto before = age();
    const int modificationsBefore = modifications().size();
    const auto tree = load("A");
    tree->getChildData("X")->setDataProperty("@value", 1.5);
    EXPECT_TRUE(store("A", tree));
    EXPECT_EQ(state(), before);
    EXPECT_EQ(modifications().size(), modificationsBefore);
}

TEST_F(HostServices, store_the_same_tree_again_and_again)
{
    write("configuration/A.json", R"({"X": 1})");
    const auto tree = load("A");
    for (const char* unit : {"a", "b", "c"}) {
        tree->getChildData("X")->setDataProperty("@unitType", unit);
        EXPECT_TRUE(store("A", tree));
    }
    EXPECT_EQ(read("configuration/A.json"),
              QByteArray(R"({"X": {"@value": 1, "@unitType": "c"}})"));
}

TEST_F(HostServices, do_not_overwrite_what_somebody_else_wrote_since_the_tree_was_read)
{
    write("configuration/A.json", R"({"X": 1})");
    const auto tree = load("A");
    tree->getChildData("X")->setDataProperty("@value", 2);
    write("configuration/A.json", R"({"X": 7})");
    EXPECT_FALSE(store("A", tree));
    EXPECT_EQ(read("configuration/A.json"), QByteArray(R"({"X": 7})"));
}

TEST_F(HostServices, store_a_parsed_tree_over_a_file_and_as_a_new_one)
{
    write("configuration/A.json", R"({"X": 1})");
    EXPECT_TRUE(store("A", treeOn(R"({"Y": 2})")));
    EXPECT_TRUE(store("New/B", treeOn(R"({"Z": 3})")));
    EXPECT_EQ(read("configuration/A.json"), QByteArray(R"({"Y": 2})"));
    EXPECT_EQ(read("configuration/New/B.json"), QByteArray(R"({"Z": 3})"));
}

TEST_F(HostServices, take_from_a_parsed_tree_with_the_same_nodes_only_what_differs)
{
    write("configuration/A.json", R"({"X": 1, "Y": 1.0})");
    const auto before = age();
    EXPECT_TRUE(store("A", treeOn(R"({"X":1,"Y":1.00})")));
    EXPECT_EQ(state()["configuration/A.json"], before["configuration/A.json"]);
    EXPECT_TRUE(store("A", treeOn(R"({"X":2,"Y":1.00})")));
    EXPECT_EQ(read("configuration/A.json"), QByteArray(R"({"X": 2, "Y": 1.0})"));
}

TEST_F(HostServices, give_null_and_false_for_what_cannot_be_had)
{
    write("configuration/Bad.json", "{");
    write("../outside.json", "{}");
    for (const char* name : {"Missing", "Bad", "", "../outside", "../../outside", "manifest"}) {
        EXPECT_TRUE(load(name).isNull()) << name;
    }
    EXPECT_FALSE(store("Bad", treeOn("{}")));
    EXPECT_FALSE(store("../outside", treeOn("{}")));
    EXPECT_FALSE(store("A", {}));
    EXPECT_EQ(Access::getDependency(dependency(), "missing"), QString());
    EXPECT_EQ(Access::getDependency(dependency(), "../configuration/Bad"), QString());
    EXPECT_FALSE(QFile::exists(path("configuration/A.json")));
}

TEST_F(HostServices, allow_the_manifest_as_a_process)
{
    write("process/manifest.json", R"({"X": 1})");
    const auto tree = Access::getParsedConfigurationProcessDescription(process(), "manifest", true);
    EXPECT_EQ(valueAt(tree, "X"), QVariant(1LL));
}

TEST_F(HostServices, wait_for_a_session_of_another_thread)
{
    write("configuration/A.json", R"({"X": 1})");
    std::optional<Session> session(std::in_place, workspace(), Session::Access::Write);
    ASSERT_TRUE(session->begin({}));
    auto other = std::async(std::launch::async, [&] { return store("A", treeOn(R"({"X": 2})")); });
    EXPECT_EQ(other.wait_for(std::chrono::milliseconds(500)), std::future_status::timeout);
    EXPECT_EQ(read("configuration/A.json"), QByteArray(R"({"X": 1})"));
    session.reset();
    EXPECT_TRUE(other.get());
    EXPECT_EQ(read("configuration/A.json"), QByteArray(R"({"X": 2})"));
}

TEST_F(HostServices, go_through_the_session_of_their_thread)
{
    write("configuration/A.json", R"({"X": 1})");
    write("process/A.json", R"({"X": "p"})");
    const auto before = age();
    Session session(workspace(), Session::Access::Read);
    ASSERT_TRUE(session.begin({}));
    const auto tree = load("A");
    tree->getChildData("X")->setDataProperty("@value", 2);
    EXPECT_TRUE(store("A", tree));
    EXPECT_EQ(valueAt(load("A"), "X"), QVariant(2LL));
    EXPECT_EQ(valueAt(Access::getParsedConfigurationProcessDescription(process(), "A", true), "X"),
              QVariant("p"));
    ASSERT_EQ(session.changes().size(), 1);
    EXPECT_EQ(session.changes().first().instance.name, QString("A"));
    EXPECT_EQ(state(), before);
}

TEST_F(HostServices, know_the_session_s_workspace_by_any_path_to_it)
{
    write("configuration/Line 1/A.json", R"({"X": 1})");
    ASSERT_TRUE(QFile::link(root(), outside() + "/alias"));
    Session session(workspace(), Session::Access::Read);
    ASSERT_TRUE(session.begin({}));
    const QDir folder(outside() + "/alias/configuration/../configuration/Line 1");
    const auto tree = Access::getParsedConfigurationProcessDescription(folder, "A", false);
    tree->getChildData("X")->setDataProperty("@value", 2);
    EXPECT_TRUE(Access::setParsedConfigurationProcessDescription(folder, {}, {}, "A", tree, false));
    ASSERT_EQ(session.changes().size(), 1);
    EXPECT_EQ(session.changes().first().instance.name, QString("Line 1/A"));
}

TEST_F(HostServices, act_on_the_files_of_a_workspace_that_is_not_the_session_s)
{
    const QString other = outside() + "/other/configuration";
    QDir().mkpath(other);
    Session session(workspace(), Session::Access::Read);
    ASSERT_TRUE(session.begin({}));
    EXPECT_TRUE(Access::setParsedConfigurationProcessDescription(QDir(other), {}, {}, "A",
                                                                 treeOn("{}"), false));
    EXPECT_TRUE(QFile::exists(other + "/A.json"));
    EXPECT_TRUE(session.changes().isEmpty());
}

TEST_F(HostServices, refuse_folders_of_the_session_s_workspace_that_hold_no_instances)
{
    const QList<Problem> problems = problemsOf([&] {
        const QDir folder(path("dependency"));
        EXPECT_FALSE(Access::setParsedConfigurationProcessDescription(folder, {}, {}, "A",
                                                                      treeOn("{}"), false));
        EXPECT_TRUE(Access::getParsedConfigurationProcessDescription(folder, "A", false).isNull());
    });
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.first().code, Code::Name);
    EXPECT_FALSE(QFile::exists(path("dependency/A.json")));
}

TEST_F(HostServices, name_the_file_of_a_description_that_does_not_parse)
{
    write("dependency/first.json", "{\n  \"a\": \n}");
    write("dependency/second.json", "{\"\xC2\xB0\": x}");
    const QList<Problem> problems = problemsOf([&] {
        const QString first = Access::getDependency(dependency(), "first");
        const QString second = Access::getDependency(dependency(), "second");
        EXPECT_TRUE(parse(first).isNull());
        EXPECT_TRUE(parse(second).isNull());
        EXPECT_TRUE(parse("{").isNull());
    });
    ASSERT_EQ(problems.size(), 3);
    EXPECT_TRUE(toText(problems[0]).startsWith("dependency/first.json:3:1: "));
    EXPECT_TRUE(toText(problems[1]).startsWith("dependency/second.json:1:7: "));
    EXPECT_EQ(problems[2].file, QString());
}

TEST_F(HostServices, name_the_file_of_a_description_outside_the_session_s_workspace)
{
    write("../other/dependency/d.json", "{");
    const QList<Problem> problems = problemsOf([&] {
        EXPECT_TRUE(
            parse(Access::getDependency(QDir(outside() + "/other/dependency"), "d")).isNull());
    });
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.first().file, QString("dependency/d.json"));
}

TEST_F(HostServices, report_a_missing_description)
{
    const QList<Problem> problems =
        problemsOf([&] { EXPECT_EQ(Access::getDependency(dependency(), "d"), QString()); });
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.first().code, Code::Missing);
    EXPECT_EQ(problems.first().file, QString("dependency/d.json"));
}
