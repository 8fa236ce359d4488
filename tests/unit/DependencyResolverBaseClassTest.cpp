#include "DependencyResolverBaseClass.h"

#include "CommandFixture.h"
#include "Probe.h"
#include "host/ConfigurationManifestHandler.h"

#include <QMetaObject>

#include <functional>
#include <memory>
#include <vector>

using testhost::Message;
using testhost::tree;

namespace {

/// Resolves on a host that has a source "Src", a target "Tgt" as configuration and another "Tgt" as
/// process description, and a description "follow".
class Resolver : public testhost::GraphTest {
protected:
    Resolver()
    {
        host.instances["/base/configurations/Src"] = source;
        host.instances["/base/configurations/Tgt"] = target;
        host.instances["/base/processes/Tgt"] = process;
        host.descriptions["follow"] = follow;
        host.descriptions["failing"] =
            R"({"A": {"Type": "CommandNode", "Commands": {"Probe": {"@val": "a", "@result": false}}}})";
    }

    static Message rootInvalid()
    {
        return {QtWarningMsg,
                "Source or target root invalid",
                "DependencyResolverBaseClass",
                296,
                "bool DependencyResolverBaseClass::resolveDependencyInternal("
                "const BaseClassSharedPointer&, const BaseClassSharedPointer&, const QString&, "
                "bool&, const QStringList&, const QVariantList&, "
                "const QSharedPointer<UnitManipulatorBase>&) const",
                "default"};
    }

    static Message unresolved(const QString& text)
    {
        return {QtWarningMsg,
                text,
                "DependencyResolverBaseClass",
                184,
                "bool DependencyResolverBaseClass::resolveDependency(const QDir&, const QString&, "
                "const QDir&, const QString&, const QString&, bool&, bool, const QStringList&, "
                "const QVariantList&, const QSharedPointer<UnitManipulatorBase>&) const",
                "default"};
    }

    /// The record of the store that ends a resolution.
    static QString stored(const QString& folder, const QString& instance, const QString& root,
                          const QString& isProcess)
    {
        return QString("setParsedConfigurationProcessDescription(%1, first origin, second origin, "
                       "%2, %3, %4) -> true")
            .arg(folder, instance, root, isProcess);
    }

    bool internal(const QString& json, const QStringList& urls)
    {
        return resolver.resolveDependencyInternal(source, target, json, changed, urls, {}, {});
    }

    /// "follow" makes a unit of the target follow the written setting.
    const QString follow = R"({"A": {"Type": "SwitchNode", "Next": {"N": {"Type": "CommandNode",
        "ConditionWriteOnUrls": [["Unit"]],
        "Commands": {"CommandSetUnitByConfigurationParameter": [["Unit", "", "leaf"]]}}}}})";
    testhost::NodePointer source = tree("source", R"({"Unit": "K"})");
    testhost::NodePointer target = tree("target", R"({"leaf": 1})");
    testhost::NodePointer process = tree("process", R"({"leaf": 1})");
    DependencyResolverBaseClass resolver{"/base", "first origin", "second origin"};
    bool changed = false;

    /// The beginnings of the calls that tell one resolution's steps.
    const QStringList steps{"getDependency", "getParsed", "parseFromJson", "setDataProperty",
                            "setParsed"};
};

TEST_F(Resolver, asks_for_its_folders_once_and_in_order)
{
    EXPECT_EQ(host.takeCalls(),
              (QStringList{"getConfigurationFolderPath(/base)", "getProcessFolderPath(/base)",
                           "getDependencyFolderPath(/base)"}));
}

TEST_F(Resolver, is_an_object_of_its_class_without_parent)
{
    EXPECT_STREQ(resolver.metaObject()->className(), "DependencyResolverBaseClass");
    EXPECT_STREQ(resolver.metaObject()->superClass()->className(), "QObject");
    EXPECT_EQ(resolver.qt_metacast("DependencyResolverBaseClass"), &resolver);
    EXPECT_TRUE(resolver.inherits("DependencyResolverBaseClass"));
    EXPECT_EQ(resolver.parent(), nullptr);
    EXPECT_EQ(resolver.metaObject()->methodCount(), QObject::staticMetaObject.methodCount());
    EXPECT_EQ(resolver.metaObject()->propertyCount(), QObject::staticMetaObject.propertyCount());
}

TEST_F(Resolver, has_hooks_that_do_nothing)
{
    host.takeCalls();
    BaseClassSharedPointer instance = source;

    EXPECT_FALSE(resolver.resolveAllDependency());
    EXPECT_FALSE(resolver.resolveDependencyOfInstance(instance, "Src"));
    EXPECT_EQ(instance, source);
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(Resolver, lets_the_host_override_both_hooks)
{
    class HostResolver : public DependencyResolverBaseClass {
    public:
        using DependencyResolverBaseClass::DependencyResolverBaseClass;
        bool resolveAllDependency() override { return true; }
        bool resolveDependencyOfInstance(BaseClassSharedPointer& instance,
                                         const QString& instanceName) override
        {
            instance = nullptr;
            return instanceName == "Src";
        }
    };
    HostResolver hostResolver("/base", "", "");
    DependencyResolverBaseClass& base = hostResolver;
    BaseClassSharedPointer instance = source;

    EXPECT_TRUE(base.resolveAllDependency());
    EXPECT_TRUE(base.resolveDependencyOfInstance(instance, "Src"));
    EXPECT_TRUE(instance.isNull());
    EXPECT_STREQ(base.metaObject()->className(), "DependencyResolverBaseClass");
}

TEST_F(Resolver, borrows_the_manifest_handler)
{
    class Handler : public ConfigurationManifestHandler {
    public:
        explicit Handler(bool& destroyed) : destroyed(destroyed) {}
        ~Handler() override { destroyed = true; }
        bool update(const QString&, const QString&, const QVariant&, bool) override
        {
            return false;
        }
        bool writeToManifestFile() override { return false; }

    private:
        bool& destroyed;
    };
    bool destroyed = false;
    const auto handler = std::make_unique<Handler>(destroyed);
    {
        DependencyResolverBaseClass shortLived("/base", "", "");
        EXPECT_EQ(shortLived.getConfigurationManifestHandler(), nullptr);
        shortLived.setConfigurationManifestHandler(handler.get());
        EXPECT_EQ(shortLived.getConfigurationManifestHandler(), handler.get());
        shortLived.setConfigurationManifestHandler(nullptr);
        EXPECT_EQ(shortLived.getConfigurationManifestHandler(), nullptr);
        shortLived.setConfigurationManifestHandler(handler.get());
    }
    EXPECT_FALSE(destroyed);
}

TEST_F(Resolver, loads_resolves_and_stores_in_its_own_folders)
{
    host.takeCalls();

    EXPECT_TRUE(
        resolver.resolveDependency("Src", "Tgt", "follow", changed, false, {"Unit"}, {}, {}));
    EXPECT_TRUE(changed);
    EXPECT_EQ(
        host.takeCalls(steps),
        (QStringList{"getDependency(/base/dependencies, follow)",
                     "getParsedConfigurationProcessDescription(/base/configurations, Src, false)",
                     "getParsedConfigurationProcessDescription(/base/configurations, Tgt, false)",
                     "parseFromJson(" + follow + ", .tree)",
                     "setDataProperty(target/leaf, @unit, 'K') -> 0",
                     stored("/base/configurations", "Tgt", "target", "false")}));
}

TEST_F(Resolver, takes_only_the_target_for_a_process_description)
{
    host.takeCalls();

    EXPECT_TRUE(
        resolver.resolveDependency("Src", "Tgt", "follow", changed, true, {"Unit"}, {}, {}));
    EXPECT_TRUE(changed);
    EXPECT_EQ(
        host.takeCalls(steps),
        (QStringList{"getDependency(/base/dependencies, follow)",
                     "getParsedConfigurationProcessDescription(/base/configurations, Src, false)",
                     "getParsedConfigurationProcessDescription(/base/processes, Tgt, true)",
                     "parseFromJson(" + follow + ", .tree)",
                     "setDataProperty(process/leaf, @unit, 'K') -> 0",
                     stored("/base/processes", "Tgt", "process", "true")}));
}

TEST_F(Resolver, resolves_in_any_two_folders)
{
    host.instances["/from/Src"] = source;
    host.instances["/to/Tgt"] = process;
    for (const bool isProcess : {false, true}) {
        const QString flag = isProcess ? "true" : "false";
        host.takeCalls();
        EXPECT_TRUE(resolver.resolveDependency(QDir("/from"), "Src", QDir("/to"), "Tgt", "follow",
                                               changed, isProcess, {"Unit"}, {}, {}));
        EXPECT_EQ(host.takeCalls({"getDependency", "getParsed", "setParsed"}),
                  (QStringList{"getDependency(/base/dependencies, follow)",
                               "getParsedConfigurationProcessDescription(/from, Src, false)",
                               "getParsedConfigurationProcessDescription(/to, Tgt, " + flag + ')',
                               stored("/to", "Tgt", "process", flag)}));
    }
    EXPECT_TRUE(changed);
}

TEST_F(Resolver, resolves_trees_of_the_caller_and_stores_nothing)
{
    host.takeCalls();

    EXPECT_TRUE(resolver.resolveDependency(source, target, "follow", changed, {"Unit"}, {}, {}));
    EXPECT_TRUE(changed);
    EXPECT_EQ(host.takeCalls(steps),
              (QStringList{"getDependency(/base/dependencies, follow)",
                           "parseFromJson(" + follow + ", .tree)",
                           "setDataProperty(target/leaf, @unit, 'K') -> 0"}));
}

TEST_F(Resolver, resolves_a_given_description_text_without_the_store)
{
    host.takeCalls();

    EXPECT_TRUE(internal(follow, {"Unit"}));
    EXPECT_TRUE(changed);
    EXPECT_EQ(host.takeCalls(steps),
              (QStringList{"parseFromJson(" + follow + ", .tree)",
                           "setDataProperty(target/leaf, @unit, 'K') -> 0"}));
}

TEST_F(Resolver, does_the_same_for_a_caller_who_does_not_ask_for_changes)
{
    const auto callsOf = [this](const std::function<bool()>& resolve) {
        target->at("leaf").setProperty("@unit", QVariant());
        host.takeCalls();
        EXPECT_TRUE(resolve());
        return host.takeCalls();
    };
    const QDir folder("/base/configurations");

    EXPECT_EQ(callsOf([&] {
                  return resolver.resolveDependency("Src", "Tgt", "follow", false, {"Unit"}, {},
                                                    {});
              }),
              callsOf([&] {
                  return resolver.resolveDependency("Src", "Tgt", "follow", changed, false,
                                                    {"Unit"}, {}, {});
              }));
    EXPECT_EQ(callsOf([&] {
                  return resolver.resolveDependency(folder, "Src", folder, "Tgt", "follow", false,
                                                    {"Unit"}, {}, {});
              }),
              callsOf([&] {
                  return resolver.resolveDependency(folder, "Src", folder, "Tgt", "follow", changed,
                                                    false, {"Unit"}, {}, {});
              }));
    EXPECT_EQ(callsOf([&] {
                  return resolver.resolveDependency(source, target, "follow", {"Unit"}, {}, {});
              }),
              callsOf([&] {
                  return resolver.resolveDependency(source, target, "follow", changed, {"Unit"}, {},
                                                    {});
              }));
}

TEST_F(Resolver, starts_with_nothing_changed_for_a_caller_who_does_not_ask_for_changes)
{
    const auto manipulator = QSharedPointer<ScriptedManipulator>::create();
    target->at("leaf").answerWritesWith({1, 1, 1});
    host.takeCalls();

    resolver.resolveDependency("Src", "Tgt", "follow", false, {"Unit"}, {}, manipulator);
    resolver.resolveDependency(QDir("/base/configurations"), "Src", QDir("/base/configurations"),
                               "Tgt", "follow", false, {"Unit"}, {}, manipulator);
    resolver.resolveDependency(source, target, "follow", {"Unit"}, {}, manipulator);
    const QString asked = "manipulateUnit(target/leaf, K, 1, 0)";
    EXPECT_EQ(host.takeCalls({"manipulateUnit"}), (QStringList{asked, asked, asked}));
}

TEST_F(Resolver, stores_the_target_after_success_also_when_nothing_changed)
{
    target->at("leaf").setProperty("@unit", "K");
    host.takeCalls();

    EXPECT_TRUE(
        resolver.resolveDependency("Src", "Tgt", "follow", changed, false, {"Unit"}, {}, {}));
    EXPECT_FALSE(changed);
    EXPECT_EQ(host.takeCalls({"setParsed"}).size(), 1);
}

TEST_F(Resolver, returns_what_the_store_returns_and_says_nothing)
{
    host.storing = false;

    EXPECT_FALSE(
        resolver.resolveDependency("Src", "Tgt", "follow", changed, false, {"Unit"}, {}, {}));
    EXPECT_TRUE(changed);
}

TEST_F(Resolver, warns_of_a_failed_resolution_and_stores_nothing)
{
    host.takeCalls();

    EXPECT_FALSE(
        resolver.resolveDependency("Src", "Tgt", "failing", changed, true, {"Unit"}, {}, {}));
    EXPECT_EQ(host.takeCalls({"execute", "setParsed"}), QStringList{"execute(a)"});
    EXPECT_EQ(messages.take(),
              QList<Message>{unresolved("Unable to resolve dependency between "
                                        "\"/base/configurations\" and \"/base/processes\" "
                                        "defined by \"failing\"")});
}

TEST_F(Resolver, names_absolute_folders_and_quotes_as_qt_does)
{
    EXPECT_FALSE(resolver.resolveDependency(QDir("from"), "Src", QDir("/t\"o"), "Tgt", "no\nsuch",
                                            false, {}, {}, {}));
    const QString from = QDir("from").absolutePath();
    ASSERT_TRUE(from.startsWith('/'));
    EXPECT_EQ(messages.take(),
              QList<Message>{unresolved("Unable to resolve dependency between \"" + from +
                                        R"(" and "/t\"o" defined by "no\nsuch")")});
}

TEST_F(Resolver, warns_of_unknown_types_before_it_warns_of_the_failure)
{
    host.descriptions["odd"] = R"({"A": {"Type": "CommandNode", "Commands": {"Odd": 1}}})";

    EXPECT_FALSE(resolver.resolveDependency("Src", "Tgt", "odd", false, {}, {}, {}));
    const QList<Message> written = messages.take();
    ASSERT_EQ(written.size(), 2);
    EXPECT_EQ(written.at(0).text, R"(Unknown command "Odd")");
    EXPECT_EQ(written.at(1).line, 184);
}

TEST_F(Resolver, fails_in_silence_without_a_description_text)
{
    host.takeCalls();

    EXPECT_FALSE(internal("", {"Unit"}));
    EXPECT_FALSE(internal(QString(), {}));
    EXPECT_EQ(host.takeCalls(), QStringList());
    EXPECT_FALSE(resolver.resolveDependency(source, target, "missing", changed, {}, {}, {}));
    source = target = nullptr;
    EXPECT_FALSE(internal("", {})) << "a missing description comes before missing trees";
    EXPECT_FALSE(changed);
}

TEST_F(Resolver, warns_of_a_description_that_its_store_does_not_have)
{
    host.takeCalls();

    EXPECT_FALSE(resolver.resolveDependency("Src", "Tgt", "missing", false, {}, {}, {}));
    EXPECT_EQ(host.takeCalls().size(), 3) << "description, source and target were asked for";
    EXPECT_EQ(messages.take(),
              QList<Message>{unresolved("Unable to resolve dependency between "
                                        "\"/base/configurations\" and \"/base/configurations\" "
                                        "defined by \"missing\"")});
}

TEST_F(Resolver, takes_a_missing_tree_for_success_and_warns)
{
    host.takeCalls();

    source = nullptr;
    EXPECT_TRUE(internal(follow, {"Unit"}));
    target = nullptr;
    EXPECT_TRUE(internal("no tree", {"Unit"}));
    source = tree("source", "{}");
    EXPECT_TRUE(resolver.resolveDependency(source, target, "follow", changed, {}, {}, {}));
    EXPECT_EQ(messages.take(), (QList<Message>{rootInvalid(), rootInvalid(), rootInvalid()}));
    EXPECT_EQ(host.takeCalls(), QStringList{"getDependency(/base/dependencies, follow)"});
    EXPECT_FALSE(changed);
}

TEST_F(Resolver, stores_the_target_although_a_tree_is_missing)
{
    host.takeCalls();

    EXPECT_TRUE(resolver.resolveDependency("No", "Tgt", "follow", false, {"Unit"}, {}, {}));
    EXPECT_TRUE(resolver.resolveDependency("Src", "No", "follow", false, {"Unit"}, {}, {}));
    EXPECT_EQ(messages.take(), (QList<Message>{rootInvalid(), rootInvalid()}));
    EXPECT_EQ(host.takeCalls({"setParsed"}),
              (QStringList{stored("/base/configurations", "Tgt", "target", "false"),
                           stored("/base/configurations", "No", "null", "false")}));
}

TEST_F(Resolver, fails_when_the_host_makes_no_tree_of_the_description)
{
    host.descriptions["broken"] = "no tree";
    host.takeCalls();

    EXPECT_FALSE(internal("no tree", {"Unit"}));
    EXPECT_EQ(host.takeCalls(), QStringList{"parseFromJson(no tree, .tree)"});
    EXPECT_FALSE(resolver.resolveDependency("Src", "Tgt", "broken", false, {"Unit"}, {}, {}));
    EXPECT_EQ(messages.take().size(), 1) << "the warning that names the folders";
    EXPECT_EQ(host.takeCalls({"setParsed"}), QStringList());
}

TEST_F(Resolver, fails_when_nothing_runs)
{
    EXPECT_FALSE(internal("{}", {"Unit"}));
    EXPECT_FALSE(internal("{}", {}));
    EXPECT_FALSE(internal(follow, {"Other"}));
}

/// Two URLs, "b" and "a", which are watched in this order.
QString watchingTwoUrls(const QString& probeOfB, const QString& probeOfA)
{
    return QString(R"({"A": {"Type": "SwitchNode", "Next": {
        "1": {"Type": "CommandNode", "ConditionWriteOnUrls": [["b"]], "Commands": {"Probe": %1}},
        "2": {"Type": "CommandNode", "ConditionWriteOnUrls": [["a"]], "Commands": {"Probe": %2}}}},
        "B": {"Type": "CommandNode", "Commands": {"Probe": {"@val": "always", "@result": false}}}})")
        .arg(probeOfB, probeOfA);
}

TEST_F(Resolver, without_urls_runs_every_url_that_is_watched)
{
    EXPECT_TRUE(internal(watchingTwoUrls(R"("on b")", R"("on a")"), {}));
    EXPECT_EQ(executed(), (QStringList{"on b", "always", "on a", "always"}));
}

TEST_F(Resolver, with_urls_runs_those_in_their_order_and_no_others)
{
    const QString json = watchingTwoUrls(R"("on b")", R"("on a")");

    EXPECT_TRUE(internal(json, {"a"}));
    EXPECT_EQ(executed(), (QStringList{"on a", "always"}));
    EXPECT_TRUE(internal(json, {"a", "b", "a"}));
    EXPECT_EQ(executed(), (QStringList{"on a", "always", "on b", "always", "on a", "always"}));
}

TEST_F(Resolver, runs_unconditional_nodes_for_a_url_that_nobody_watches)
{
    EXPECT_FALSE(internal(watchingTwoUrls(R"("on b")", R"("on a")"), {"other"}));
    EXPECT_EQ(executed(), QStringList{"always"});
    EXPECT_FALSE(internal(watchingTwoUrls(R"("on b")", R"("on a")"), {""}));
    EXPECT_EQ(executed(), QStringList{"always"});
}

TEST_F(Resolver, runs_once_with_the_empty_url_when_no_plain_url_is_watched)
{
    const QString json = R"({
        "A": {"Type": "CommandNode", "Commands": {"Probe": "always"}},
        "B": {"Type": "CommandNode", "Commands": {"Probe": "any url"}, "Next": {
            "N": {"Type": "SwitchNode", "ConditionWriteOnUrlsRegExp": [[".*"]]}}},
        "C": {"Type": "CommandNode", "Commands": {"Probe": "some url"}, "Next": {
            "N": {"Type": "SwitchNode", "ConditionWriteOnUrlsRegExp": [["."]]}}}})";

    EXPECT_TRUE(internal(json, {}));
    EXPECT_EQ(executed(), (QStringList{"any url", "always"}));
    EXPECT_TRUE(internal(R"({"A": {"Type": "CommandNode", "Commands": {"Probe": "always"}}})", {}));
    EXPECT_EQ(executed(), QStringList{"always"});
}

TEST_F(Resolver, succeeds_only_when_every_url_does_and_runs_them_all)
{
    const QString succeeding = R"({"@val": "%1"})";
    const QString failing = R"({"@val": "%1", "@result": false})";
    struct Row {
        const char* title;
        QString onB, onA;
        bool result;
    };
    const std::vector<Row> table{
        {"both succeed", succeeding, succeeding, true},
        {"the first fails", failing, succeeding, false},
        {"the last fails", succeeding, failing, false},
        {"both fail", failing, failing, false},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(internal(watchingTwoUrls(row.onB.arg("b"), row.onA.arg("a")), {"b", "a"}),
                  row.result);
        EXPECT_EQ(executed(), (QStringList{"b", "always", "a", "always"}));
    }
}

TEST_F(Resolver, never_resets_the_changed_flag)
{
    changed = true;
    EXPECT_TRUE(internal(R"({"A": {"Type": "CommandNode", "Commands": {"Probe": "a"}}})", {}));
    EXPECT_FALSE(internal("", {}));
    EXPECT_TRUE(changed);
}

TEST_F(Resolver, tells_of_a_change_although_the_resolution_failed)
{
    EXPECT_FALSE(internal(follow, {"Unit", "Other"}));
    EXPECT_TRUE(changed);
}

TEST_F(Resolver, hands_parameters_and_manipulator_to_the_commands)
{
    target = tree("target", R"({"Inst1": {"leaf": 1}})");
    host.takeCalls();

    EXPECT_TRUE(resolver.resolveDependencyInternal(
        source, target,
        R"({"A": {"Type": "CommandNode", "Commands": {"CommandSetUnitProperties": [["leaf", "m"]]}}})",
        changed, {}, {"Inst1/"}, QSharedPointer<ScriptedManipulator>::create()));
    EXPECT_EQ(host.takeCalls({"setDataProperty", "manipulateUnit"}),
              (QStringList{"setDataProperty(target/Inst1/leaf, @unit, 'm') -> 0",
                           "manipulateUnit(target/Inst1/leaf, m, 1, 1)"}));
}

TEST_F(Resolver, starts_from_a_fresh_graph_every_time)
{
    EXPECT_TRUE(internal(R"({"A": {"Type": "CommandNode", "Commands": {"Probe": "a"}}})", {}));
    EXPECT_TRUE(internal(R"({"B": {"Type": "CommandNode", "Commands": {"Probe": "b"}}})", {}));
    EXPECT_EQ(executed(), (QStringList{"a", "b"}));
}

} // namespace
