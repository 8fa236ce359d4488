#include "Commands/CommandSetUnitByConfigurationParameterInstRegExp.h"

#include "CommandFixture.h"

#include <vector>

using testhost::Message;
using testhost::table;
using testhost::tree;

namespace {

class SetUnitByWrittenParameter : public CommandTest {
protected:
    bool write(CommandBase& command, const QString& url)
    {
        return command.executeCommand(source, target, url, results, changed, {}, manipulator);
    }

    static Message manipulatorNotAsked()
    {
        return {QtWarningMsg,
                "Manipulate unit is not implemented for command "
                "SetUnitByConfigurationParameterRegExp.",
                "Commands/CommandSetUnitByConfigurationParameterInstRegExp",
                75,
                "virtual bool CommandSetUnitByConfigurationParameterRegExp::executeCommand("
                "const BaseClassSharedPointer&, const BaseClassSharedPointer&, const QString&, "
                "QVariantList&, bool&, const QVariantList&, "
                "const QSharedPointer<UnitManipulatorBase>&)",
                "default"};
    }
};

TEST_F(SetUnitByWrittenParameter, writes_the_written_value_as_unit_of_the_leaf_the_groups_name)
{
    source = tree("source", R"({"Heater1": {"Unit": "K"}})");
    target = tree("target", R"({"Heater1": {"Value": 20}})");
    CommandSetUnitByConfigurationParameterRegExp command(
        table(R"-([["^(?<inst>[^/]+)/Unit$", "(?<inst>)/Value"]])-"));
    host.takeCalls();

    EXPECT_TRUE(write(command, "Heater1/Unit"));

    EXPECT_TRUE(changed);
    EXPECT_EQ(host.takeCalls(),
              (QStringList{"getChildData(target, Heater1/Value)",
                           "extractConfigValue(Heater1/Unit, source)",
                           "setDataProperty(target/Heater1/Value, @unit, 'K') -> 0"}));
}

TEST_F(SetUnitByWrittenParameter, applies_all_rows_that_match_in_order)
{
    source = tree("source", R"({"w": "K"})");
    target = tree("target", R"({"a": 1, "b": 1})");
    CommandSetUnitByConfigurationParameterRegExp command(
        table(R"-([["(w)", "b"], ["(x)", "a"], ["(w)", "a"]])-"));
    host.takeCalls();

    EXPECT_TRUE(write(command, "w"));
    EXPECT_EQ(host.takeCalls(),
              (QStringList{"getChildData(target, b)", "extractConfigValue(w, source)",
                           "setDataProperty(target/b, @unit, 'K') -> 0", "getChildData(target, a)",
                           "extractConfigValue(w, source)",
                           "setDataProperty(target/a, @unit, 'K') -> 0"}));
}

TEST_F(SetUnitByWrittenParameter, writes_one_leaf_twice_when_two_rows_lead_to_it)
{
    source = tree("source", R"({"w": "K"})");
    target = tree("target", R"({"a": 1})");
    CommandSetUnitByConfigurationParameterRegExp command(
        table(R"-([["(w)", "a"], ["^(w)$", "a"]])-"));
    host.takeCalls();

    EXPECT_TRUE(write(command, "w"));
    EXPECT_TRUE(changed);
    EXPECT_EQ(host.takeCalls({"setDataProperty"}),
              (QStringList{"setDataProperty(target/a, @unit, 'K') -> 0",
                           "setDataProperty(target/a, @unit, 'K') -> 1"}));
}

TEST_F(SetUnitByWrittenParameter, skips_rows_that_do_not_apply_silently_and_goes_on)
{
    struct Row {
        const char* title;
        const char* row;
        const char* written;
        QStringList calls;
    };
    const std::vector<Row> table{
        {"a pattern without group, though it matches", R"(["w", "a"])", "w", {}},
        {"a pattern with a group that captures nothing for itself", R"-(["(?:w)", "a"])-", "w", {}},
        {"no match", R"-(["(x)", "a"])-", "w", {}},
        {"no match of an anchored pattern", R"-(["^(w)$", "a"])-", "w/w", {}},
        {"no leaf: the source is not even read",
         R"-(["(w)", "missing"])-",
         "w",
         {"getChildData(target, missing)"}},
        {"an empty target URL is looked up like any other",
         R"-(["(w)", ""])-",
         "w",
         {"getChildData(target, )"}},
        {"no value at the written URL",
         R"-(["(n)", "a"])-",
         "nothing-w",
         {"getChildData(target, a)", "extractConfigValue(nothing-w, source)"}},
        {"a written node without a value",
         R"-(["(f)", "a"])-",
         "folder-w",
         {"getChildData(target, a)", "extractConfigValue(folder-w, source)"}},
    };
    source = tree("source", R"({"w": "K", "folder-w": {}, "w/w": "K"})");
    manipulator = QSharedPointer<ScriptedManipulator>::create();
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        target = tree("target", R"({"a": 1})");
        CommandSetUnitByConfigurationParameterRegExp command(
            testhost::table(QString(R"-([%1, ["()", "last"]])-").replace("%1", row.row)));
        host.takeCalls();

        EXPECT_FALSE(write(command, row.written));
        EXPECT_FALSE(changed);
        EXPECT_EQ(host.takeCalls(), row.calls + QStringList{"getChildData(target, last)"});
    }
}

TEST_F(SetUnitByWrittenParameter, never_applies_an_invalid_pattern_and_says_nothing)
{
    source = tree("source", R"({"a": "K"})");
    target = tree("target", R"({"a": 1})");
    for (const char* pattern : {"(", "(a", "[", "*(a)", "(a){2,1}", "(?<n>a)(?<n>b)", "(?<>a)"}) {
        SCOPED_TRACE(pattern);
        CommandSetUnitByConfigurationParameterRegExp command(
            table(QString(R"-([["%1", "a"]])-").replace("%1", pattern)));
        host.takeCalls();

        EXPECT_FALSE(write(command, "a"));
        EXPECT_EQ(host.takeCalls(), QStringList());
    }
}

TEST_F(SetUnitByWrittenParameter, meets_odd_urls_and_patterns_in_silence)
{
    const QString nul = QString("x") + QChar(0) + "y";
    const QString loneSurrogate = QString("a") + QChar(0xD800);
    for (const QString& name : {nul, loneSurrogate}) {
        source->addChild(name)->setProperty("@val", "K");
        target->addChild(name);
    }

    CommandSetUnitByConfigurationParameterRegExp all(table(R"-([["(?<n>.*)", "(?<n>)"]])-"));
    EXPECT_TRUE(write(all, nul)) << "a NUL is a character like any other";
    EXPECT_EQ(target->at(nul).unit(), QVariant("K"));
    EXPECT_FALSE(write(all, loneSurrogate)) << "no text, so nothing is found in it";

    host.rowsOf = [&](const QVariantList&) {
        return QVariantList{QVariantList{'(' + loneSurrogate + ')', loneSurrogate}};
    };
    CommandSetUnitByConfigurationParameterRegExp invalid(table("[]"));
    EXPECT_FALSE(write(invalid, loneSurrogate)) << "no valid pattern";
}

TEST_F(SetUnitByWrittenParameter, writes_the_value_in_its_own_type)
{
    source->addChild("w")->setProperty("@val", 5);
    target = tree("target", R"({"a": 1})");
    CommandSetUnitByConfigurationParameterRegExp command(table(R"-([["(w)", "a"]])-"));

    EXPECT_TRUE(write(command, "w"));
    EXPECT_EQ(target->at("a").unit().userType(), int(QMetaType::Int));
}

TEST_F(SetUnitByWrittenParameter, writes_an_empty_text)
{
    source = tree("source", R"({"w": ""})");
    target = tree("target", R"({"a": {"@unit": "K"}})");
    CommandSetUnitByConfigurationParameterRegExp command(table(R"-([["(w)", "a"]])-"));

    EXPECT_TRUE(write(command, "w"));
    EXPECT_EQ(target->at("a").unit(), QVariant(""));
}

TEST_F(SetUnitByWrittenParameter, does_nothing_and_says_nothing_when_a_root_is_null)
{
    CommandSetUnitByConfigurationParameterRegExp command(table(R"-([["(a)", "a"]])-"));
    const testhost::NodePointer tree = testhost::tree("tree", R"({"a": "K"})");
    manipulator = QSharedPointer<ScriptedManipulator>::create();
    host.takeCalls();

    source = tree, target = nullptr;
    EXPECT_FALSE(write(command, "a"));
    source = nullptr, target = tree;
    EXPECT_FALSE(write(command, "a"));
    source = nullptr, target = nullptr;
    EXPECT_FALSE(write(command, "a"));
    EXPECT_FALSE(changed);
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(SetUnitByWrittenParameter, turns_write_statuses_into_its_result_and_the_changed_flag)
{
    source = tree("source", R"({"w": "K"})");
    for (const StatusRow& row : statusTable()) {
        SCOPED_TRACE(row.title);
        QStringList rows;
        for (int i = 0; i < row.statuses.size(); ++i) {
            rows.append(R"-(["(w)", "a"])-");
        }
        CommandSetUnitByConfigurationParameterRegExp command(table('[' + rows.join(',') + ']'));
        target = tree("target", R"({"a": 1})");
        target->at("a").answerWritesWith(row.statuses);
        changed = row.changedBefore;

        EXPECT_EQ(write(command, "w"), row.result);
        EXPECT_EQ(changed, row.changed);
    }
}

TEST_F(SetUnitByWrittenParameter, warns_after_each_write_that_it_does_not_ask_the_manipulator)
{
    source = tree("source", R"({"w": "K"})");
    target = tree("target", R"({"a": 1, "b": {"@unit": "K"}, "c": 1})");
    target->at("a").answerWritesWith({2});
    manipulator = QSharedPointer<ScriptedManipulator>::create();
    CommandSetUnitByConfigurationParameterRegExp command(
        table(R"-([["(w)", "a"], ["(w)", "missing"], ["(w)", "b"], ["(x)", "b"], ["(w)", "c"]])-"));
    QList<int> toldBeforeWrite;
    for (const char* leaf : {"a", "b", "c"}) {
        host.insideNext(QString("setDataProperty(target/") + leaf,
                        [&] { toldBeforeWrite.append(messages.take().size()); });
    }

    EXPECT_TRUE(write(command, "w"));
    EXPECT_EQ(host.takeCalls({"manipulateUnit"}), QStringList());
    EXPECT_EQ(toldBeforeWrite, (QList<int>{0, 1, 1}));
    EXPECT_EQ(messages.take(), QList<Message>{manipulatorNotAsked()});
    EXPECT_EQ(target->at("c").unit(), QVariant("K"));
}

TEST_F(SetUnitByWrittenParameter, uses_neither_parameters_nor_results)
{
    source = tree("source", R"({"w": "K"})");
    target = tree("target", R"({"a": 1})");
    results = {"kept", 5};
    CommandSetUnitByConfigurationParameterRegExp command(table(R"-([["(w)", "a"]])-"));
    host.takeCalls();

    EXPECT_TRUE(command.executeCommand(source, target, "w", results, changed, {"Inst1/", "x"}, {}));
    EXPECT_EQ(results, (QVariantList{"kept", 5}));
    EXPECT_EQ(host.takeCalls({"getChildData"}), QStringList{"getChildData(target, a)"});
}

TEST_F(SetUnitByWrittenParameter, fills_its_template_through_the_virtual_operation)
{
    class Redirecting final : public CommandSetUnitByConfigurationParameterRegExp {
    public:
        using CommandSetUnitByConfigurationParameterRegExp::
            CommandSetUnitByConfigurationParameterRegExp;
        QString replaceMatchedGroups(const QStringList& groupNames,
                                     const QRegularExpressionMatch& match,
                                     const QString& text) override
        {
            return groupNames.join('|') + '/' + match.captured() + '/' + text;
        }
    };
    Redirecting command(table(R"-([["(?<a>H)(e)", "T"]])-"));
    host.takeCalls();

    EXPECT_FALSE(write(command, "Heater1"));
    EXPECT_EQ(host.takeCalls(), QStringList{"getChildData(target, |a|/He/T)"});
}

TEST_F(SetUnitByWrittenParameter, hands_out_leaf_and_value_of_one_row)
{
    source = tree("source", R"({"w": "K"})");
    target = tree("target", R"({"a": 1})");
    CommandSetUnitByConfigurationParameterRegExp command(nullptr);
    QVariant value;

    EXPECT_EQ(command.getUnitValueAndTargetLeaf("w", "(w)", "a", source, target, value),
              target->find("a"));
    EXPECT_EQ(value, QVariant("K"));
}

TEST_F(SetUnitByWrittenParameter, hands_out_no_leaf_when_something_is_missing)
{
    struct Row {
        const char* title;
        const char* url;
        const char* pattern;
        const char* urlTemplate;
        bool valueRead;
    };
    const std::vector<Row> table{
        {"no match", "w", "(x)", "a", false},
        {"no group", "w", "w", "a", false},
        {"no leaf", "w", "(w)", "missing", false},
        {"no value", "x", "(x)", "a", true},
    };
    source = tree("source", R"({"w": "K"})");
    target = tree("target", R"({"a": 1})");
    CommandSetUnitByConfigurationParameterRegExp command(nullptr);
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        QVariant value = "before";
        EXPECT_EQ(command.getUnitValueAndTargetLeaf(row.url, row.pattern, row.urlTemplate, source,
                                                    target, value),
                  nullptr);
        EXPECT_EQ(value, row.valueRead ? QVariant() : QVariant("before"));
    }
}

TEST_F(SetUnitByWrittenParameter, reads_its_table_once_and_through_the_array_wrapper)
{
    const CommandSetUnitByConfigurationParameterRegExp command(table(R"([["p", "t"]])"));

    EXPECT_EQ(host.takeCalls(), (QStringList{"getDataProperty(description, @val)",
                                             "getArrayValueContent(1 rows, 0 columns described)"}));
}

TEST_F(SetUnitByWrittenParameter, reads_rows_of_exactly_two_cells)
{
    struct Row {
        const char* title;
        const char* rows;
        const char* text;
    };
    const std::vector<Row> table{
        {"two cells make a row", R"([["p", "t"]])",
         "CommandSetUnitByConfigurationParameterRegExp(p,t);"},
        {"three cells make none", R"([["p", "t", "x"], ["q", "u"]])",
         "CommandSetUnitByConfigurationParameterRegExp(q,u);"},
        {"one cell makes none", R"([["p"]])", ""},
        {"no cell makes none", R"([[]])", ""},
        {"a plain value makes none", R"(["p", 5])", ""},
        {"cells are read as text", R"([[1, 2.5]])",
         "CommandSetUnitByConfigurationParameterRegExp(1,2.5);"},
        {"rows are run together", R"-([["p", "t"], ["(?<n>.)", "(?<n>)"]])-",
         "CommandSetUnitByConfigurationParameterRegExp(p,t);"
         "CommandSetUnitByConfigurationParameterRegExp((?<n>.),(?<n>));"},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        const CommandSetUnitByConfigurationParameterRegExp command(testhost::table(row.rows));
        EXPECT_EQ(command.getCommandAsString(), row.text);
    }
}

TEST_F(SetUnitByWrittenParameter, always_initializes_with_success_and_does_nothing_without_rows)
{
    CommandSetUnitByConfigurationParameterRegExp command(nullptr);
    source = tree("source", R"({"w": "K"})");
    target = tree("target", R"({"a": 1})");

    EXPECT_TRUE(command.initCommand(nullptr));
    EXPECT_TRUE(command.initCommand(tree("description", "{}")));
    EXPECT_TRUE(command.initCommand(table("[]")));
    EXPECT_TRUE(command.initCommand(table(R"-(["p", ["(w)", "a", "x"], ["(w)"]])-")));
    EXPECT_EQ(command.getCommandAsString(), "");
    host.takeCalls();
    EXPECT_FALSE(write(command, "w"));
    EXPECT_EQ(host.takeCalls(), QStringList());

    EXPECT_TRUE(command.initCommand(table(R"-([["(w)", "a"]])-")));
    EXPECT_TRUE(write(command, "w"));
}

TEST_F(SetUnitByWrittenParameter, goes_on_with_its_rows_when_the_host_adds_some_meanwhile)
{
    source = tree("source", R"({"w": "K"})");
    target = tree("target", R"({"a": 1, "b": 1, "c": 1})");
    CommandSetUnitByConfigurationParameterRegExp command(
        table(R"-([["(w)", "a"], ["(w)", "b"]])-"));
    host.insideNext("setDataProperty(target/a", [&] {
        for (int i = 0; i < 100; ++i) {
            command.initCommand(table(R"-([["(w)", "c"]])-"));
        }
    });

    EXPECT_TRUE(write(command, "w"));
    EXPECT_EQ(host.takeCalls({"setDataProperty"}),
              (QStringList{"setDataProperty(target/a, @unit, 'K') -> 0",
                           "setDataProperty(target/b, @unit, 'K') -> 0"}));
}

} // namespace
