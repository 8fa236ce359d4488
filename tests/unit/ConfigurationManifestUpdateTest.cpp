#include "DependencyResolverBaseClass.h"
#include "EngineTest.h"
#include "Manifest.h"

using testhost::Message;

namespace {

/// What `DependencyResolverBaseClass::updateConfigurationManifest` does with the host's register.
class ManifestUpdate : public testhost::EngineTest {
protected:
    ManifestUpdate()
    {
        resolver.setConfigurationManifestHandler(&handler);
        host.takeCalls();
    }

    static Message warning(int line, const QString& text)
    {
        return {QtWarningMsg,
                text,
                "DependencyResolverBaseClass",
                line,
                "void DependencyResolverBaseClass::updateConfigurationManifest()",
                "default"};
    }

    DependencyResolverBaseClass resolver{"base", "first", "second"};
    testhost::ManifestHandler handler;
};

TEST_F(ManifestUpdate, passes_the_modification_times_of_its_own_instances_on_in_order)
{
    host.modifiedInstances = {{"first", "second", "dir/b", "2024-05-06T07:08:09.010Z"},
                              {"first", "second", "a", ""}};

    resolver.updateConfigurationManifest();
    EXPECT_EQ(
        host.takeCalls(),
        (QStringList{"ConfigurationModificationHandler::getInstance()", "getModifiedInstances()",
                     "update(dir/b, @modified, '2024-05-06T07:08:09.010Z', false) -> true",
                     "update(a, @modified, '', false) -> true", "writeToManifestFile() -> true"}));
}

TEST_F(ManifestUpdate, warns_without_a_handler_and_does_not_even_ask_for_modifications)
{
    resolver.setConfigurationManifestHandler(nullptr);
    host.modifiedInstances = {{"first", "second", "a", "t"}};

    resolver.updateConfigurationManifest();
    EXPECT_EQ(messages.take(),
              QList<Message>{warning(240, "Invalid pointer for configuration manifest handler!")});
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(ManifestUpdate, has_no_handler_before_one_is_set)
{
    DependencyResolverBaseClass fresh("base", "first", "second");
    host.takeCalls();

    EXPECT_EQ(fresh.getConfigurationManifestHandler(), nullptr);
    fresh.updateConfigurationManifest();
    EXPECT_EQ(messages.take().size(), 1);
    fresh.setConfigurationManifestHandler(&handler);
    EXPECT_EQ(fresh.getConfigurationManifestHandler(), &handler);
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(ManifestUpdate, writes_the_manifest_once_when_nothing_was_modified)
{
    resolver.updateConfigurationManifest();
    EXPECT_EQ(host.takeCalls(),
              (QStringList{"ConfigurationModificationHandler::getInstance()",
                           "getModifiedInstances()", "writeToManifestFile() -> true"}));
}

TEST_F(ManifestUpdate, passes_over_what_others_modified)
{
    host.modifiedInstances = {{"first", "other", "a", "t"},
                              {"other", "second", "b", "t"},
                              {"second", "first", "c", "t"},
                              {"First", "second", "d", "t"},
                              {"first", "Second", "e", "t"},
                              {"first ", "second", "f", "t"},
                              {"", "", "g", "t"},
                              {"first", "second", "mine", "t"}};

    resolver.updateConfigurationManifest();
    EXPECT_EQ(host.takeCalls({"update", "write"}),
              (QStringList{"update(mine, @modified, 't', false) -> true",
                           "writeToManifestFile() -> true"}));
}

TEST_F(ManifestUpdate, passes_both_modifications_of_one_instance_on)
{
    host.modifiedInstances = {{"first", "second", "a", "late"}, {"first", "second", "a", "early"}};

    resolver.updateConfigurationManifest();
    EXPECT_EQ(host.takeCalls({"update", "write"}),
              (QStringList{"update(a, @modified, 'late', false) -> true",
                           "update(a, @modified, 'early', false) -> true",
                           "writeToManifestFile() -> true"}));
}

TEST_F(ManifestUpdate, warns_of_an_entry_that_cannot_be_updated_and_goes_on)
{
    host.modifiedInstances = {{"first", "second", "a", "t"},
                              {"first", "other", "b", "t"},
                              {"first", "second", "c \"d\"", "t"},
                              {"first", "second", "e", "t"}};
    handler.updating = {false, false, true};

    resolver.updateConfigurationManifest();
    EXPECT_EQ(
        messages.take(),
        (QList<Message>{
            warning(231, R"(Error on updating modification date for instance: "a" !)"),
            warning(231, R"(Error on updating modification date for instance: "c \"d\"" !)")}));
    EXPECT_EQ(
        host.takeCalls({"update", "write"}),
        (QStringList{"update(a, @modified, 't', false) -> false",
                     R"(update(c "d", @modified, 't', false) -> false)",
                     "update(e, @modified, 't', false) -> true", "writeToManifestFile() -> true"}));
}

TEST_F(ManifestUpdate, ignores_whether_the_manifest_could_be_written)
{
    handler.writing = false;

    resolver.updateConfigurationManifest();
    EXPECT_EQ(host.takeCalls({"write"}), QStringList{"writeToManifestFile() -> false"});
}

TEST_F(ManifestUpdate, clears_nothing_in_the_hosts_register)
{
    host.modifiedInstances = {{"first", "second", "a", "t"}};

    resolver.updateConfigurationManifest();
    resolver.updateConfigurationManifest();
    EXPECT_EQ(host.takeCalls({"update"}).size(), 2);
    EXPECT_EQ(host.modifiedInstances.size(), 1);
}

TEST_F(ManifestUpdate, goes_on_with_its_list_and_handler_when_the_host_changes_both_meanwhile)
{
    host.modifiedInstances = {{"first", "second", "a", "t"}, {"first", "second", "b", "t"}};
    host.insideNext("update(a", [&] {
        host.modifiedInstances = {{"first", "second", "c", "t"}};
        resolver.setConfigurationManifestHandler(nullptr);
    });

    resolver.updateConfigurationManifest();
    EXPECT_EQ(
        host.takeCalls({"update", "write"}),
        (QStringList{"update(a, @modified, 't', false) -> true",
                     "update(b, @modified, 't', false) -> true", "writeToManifestFile() -> true"}));
}

} // namespace
