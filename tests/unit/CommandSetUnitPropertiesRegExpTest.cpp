#include "Commands/CommandSetUnitPropertiesRegExp.h"

#include "CommandFixture.h"

#include <vector>

using testhost::Message;
using testhost::table;
using testhost::tree;

namespace {

class SetUnitPropertiesRegExp : public CommandTest {
protected:
    bool write(CommandBase& command, const QString& url)
    {
        return command.executeCommand(source, target, url, results, changed, {}, manipulator);
    }

    static Message warning(const QString& text)
    {
        return {QtWarningMsg,
                text,
                "Commands/CommandSetUnitPropertiesRegExp",
                0,
                "virtual bool CommandSetUnitPropertiesRegExp::executeCommand("
                "const BaseClassSharedPointer&, const BaseClassSharedPointer&, const QString&, "
                "QVariantList&, bool&, const QVariantList&, "
                "const QSharedPointer<UnitManipulatorBase>&)",
                "default"};
    }
};
using SetUnitPropertiesRegExpDeathTest = SetUnitPropertiesRegExp;

TEST_F(SetUnitPropertiesRegExp, writes_the_unit_of_the_leaf_that_the_groups_name)
{
    target = tree("target", R"({"Heater1": {"Unit": 1, "Value": 20}})");
    CommandSetUnitPropertiesRegExp command(
        table(R"-([["^(?<inst>[^/]+)/Value$", "(?<inst>)/Unit", "K"]])-"));
    host.takeCalls();

    EXPECT_TRUE(write(command, "Heater1/Value"));

    EXPECT_TRUE(changed);
    EXPECT_EQ(host.takeCalls(),
              (QStringList{"getChildData(target, Heater1/Unit)",
                           "setDataProperty(target/Heater1/Unit, @unit, 'K') -> 0"}));
}

TEST_F(SetUnitPropertiesRegExp, serves_every_instance_that_the_pattern_matches)
{
    target = tree("target", R"({"Heater1": 1, "Heater2": 2})");
    CommandSetUnitPropertiesRegExp command(
        table(R"-([["^Settings/(?<inst>.+)$", "(?<inst>)", "K"]])-"));

    EXPECT_TRUE(write(command, "Settings/Heater2"));
    EXPECT_FALSE(target->at("Heater1").unit().isValid());
    EXPECT_EQ(target->at("Heater2").unit(), QVariant("K"));
    EXPECT_TRUE(write(command, "Settings/Heater1"));
    EXPECT_EQ(target->at("Heater1").unit(), QVariant("K"));
}

TEST_F(SetUnitPropertiesRegExp, applies_all_rows_that_match_in_order)
{
    target = tree("target", R"({"a": 1, "b": 1})");
    CommandSetUnitPropertiesRegExp command(table(
        R"-([["(?<u>b)", "(?<u>)", "bar"], ["(x)", "a", "no"], ["(a)", "a", "K"], ["(b)", "b", "m"]])-"));
    host.takeCalls();

    EXPECT_TRUE(write(command, "a/b"));
    EXPECT_EQ(
        host.takeCalls(),
        (QStringList{"getChildData(target, b)", "setDataProperty(target/b, @unit, 'bar') -> 0",
                     "getChildData(target, a)", "setDataProperty(target/a, @unit, 'K') -> 0",
                     "getChildData(target, b)", "setDataProperty(target/b, @unit, 'm') -> 0"}));
}

TEST_F(SetUnitPropertiesRegExp, passes_over_a_pattern_without_group_even_when_it_matches)
{
    target = tree("target", R"({"a": 1})");
    CommandSetUnitPropertiesRegExp command(
        table(R"-([["Heater1/Value", "a", "K"], ["(?:Heater1)", "a", "K"], ["", "a", "K"]])-"));
    host.takeCalls();

    EXPECT_FALSE(write(command, "Heater1/Value"));
    EXPECT_FALSE(changed);
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(SetUnitPropertiesRegExp, searches_the_pattern_in_the_written_url)
{
    struct Row {
        const char* title;
        const char* pattern;
        const char* written;
        const char* lookedUp; // null: nothing was
    };
    const std::vector<Row> table{
        {"a match in the middle", "(?<n>b)", "a/b/c", "b"},
        {"the first of several matches", "(?<n>[a-z])", "x/y", "x"},
        {"an anchored pattern elsewhere", "^(?<n>b)$", "a/b", nullptr},
        {"another case", "(?<n>B)", "b", nullptr},
        {"another case that the pattern allows", "(?i)(?<n>B)", "b", "b"},
        {"a match of nothing, with a group, at an empty URL", "()(?<n>x)?z?", "", ""},
        {"look-behind is understood", "(?<=a/)(?<n>.)", "a/b", "b"},
        {"no match", "(?<n>q)", "a/b/c", nullptr},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        CommandSetUnitPropertiesRegExp command(
            testhost::table(QString(R"-([["%1", "t(?<n>)", "K"]])-").replace("%1", row.pattern)));
        host.takeCalls();

        EXPECT_FALSE(write(command, row.written));
        if (row.lookedUp == nullptr) {
            EXPECT_EQ(host.takeCalls(), QStringList());
        } else {
            const QString url = QString("t") + row.lookedUp;
            EXPECT_EQ(host.takeCalls(), QStringList{"getChildData(target, " + url + ')'});
            EXPECT_EQ(messages.take(),
                      QList<Message>{warning("Unable to connect to leaf \"" + url + '"')});
        }
    }
}

TEST_F(SetUnitPropertiesRegExp, fills_its_template_with_the_named_groups)
{
    struct Row {
        const char* title;
        const char* pattern;
        const char* urlTemplate;
        const char* lookedUp;
    };
    const std::vector<Row> table{
        {"two groups in any order", "^(?<a>.+)/(?<b>.+)$", "(?<b>)-(?<a>)", "Value-Heater1"},
        {"one group twice", "^(?<a>[^/]+)", "(?<a>)/(?<a>)", "Heater1/Heater1"},
        {"an unnamed group lends no name", "(Heater)(?<n>.)", "x(?<n>)", "x1"},
        {"an unnamed group alone is enough for a fixed URL", "(Heater)", "fixed", "fixed"},
        {"an unknown name stays as it stands", "(?<a>.)", "(?<b>)", "(?<b>)"},
        {"a group that took no part leaves nothing", "(?<a>H)|(?<b>x)", "t(?<b>)(?<a>)", "tH"},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        CommandSetUnitPropertiesRegExp command(
            testhost::table(QString(R"-([["%1", "%2", "K"]])-")
                                .replace("%1", row.pattern)
                                .replace("%2", row.urlTemplate)));
        host.takeCalls();

        EXPECT_FALSE(write(command, "Heater1/Value"));
        EXPECT_EQ(host.takeCalls(),
                  QStringList{QString("getChildData(target, ") + row.lookedUp + ')'});
        EXPECT_EQ(messages.take(), QList<Message>{warning(QString("Unable to connect to leaf \"") +
                                                          row.lookedUp + '"')});
    }
}

TEST_F(SetUnitPropertiesRegExp, fills_its_template_through_the_virtual_operation)
{
    class Redirecting final : public CommandSetUnitPropertiesRegExp {
    public:
        using CommandSetUnitPropertiesRegExp::CommandSetUnitPropertiesRegExp;
        QString replaceMatchedGroups(const QStringList& groupNames,
                                     const QRegularExpressionMatch& match,
                                     const QString& text) override
        {
            return groupNames.join('|') + '/' + match.captured() + '/' + text;
        }
    };
    Redirecting command(table(R"-([["(?<a>H)(e)", "T", "K"]])-"));
    host.takeCalls();

    EXPECT_FALSE(write(command, "Heater1"));
    EXPECT_EQ(host.takeCalls(), QStringList{"getChildData(target, |a|/He/T)"});
    EXPECT_EQ(messages.take(), QList<Message>{warning(R"(Unable to connect to leaf "|a|/He/T")")});
}

TEST_F(SetUnitPropertiesRegExp, warns_of_an_empty_target_url_and_goes_on)
{
    target = tree("target", R"({"": 1, "a": 1})");
    CommandSetUnitPropertiesRegExp command(
        table(R"-([["(?<n>x?)", "(?<n>)", "K"], ["(a)", "", "K"], ["(a)", "a", "bar"]])-"));
    host.takeCalls();

    EXPECT_TRUE(write(command, "a"));
    EXPECT_EQ(messages.take(), (QList<Message>{warning("Empty target url given"),
                                               warning("Empty target url given")}));
    EXPECT_EQ(host.takeCalls(), (QStringList{"getChildData(target, a)",
                                             "setDataProperty(target/a, @unit, 'bar') -> 0"}));
}

TEST_F(SetUnitPropertiesRegExp, warns_of_a_missing_leaf_and_goes_on)
{
    target = tree("target", R"({"a": 1})");
    CommandSetUnitPropertiesRegExp command(
        table(R"-([["(?<n>.+)", "x/(?<n>)", "K"], ["(a)", "a", "bar"]])-"));

    EXPECT_TRUE(write(command, "a\"°"));
    EXPECT_EQ(messages.take(), QList<Message>{warning("Unable to connect to leaf \"x/a\\\"°\"")});
    EXPECT_EQ(target->at("a").unit(), QVariant("bar"));
}

TEST_F(SetUnitPropertiesRegExp, warns_of_a_missing_leaf_even_when_the_unit_is_empty)
{
    CommandSetUnitPropertiesRegExp command(table(R"-([["(a)", "missing", ""]])-"));

    EXPECT_FALSE(write(command, "a"));
    EXPECT_EQ(messages.take(), QList<Message>{warning(R"(Unable to connect to leaf "missing")")});
}

TEST_F(SetUnitPropertiesRegExp, skips_a_row_with_an_empty_unit_silently_and_goes_on)
{
    target = tree("target", R"({"a": {"@unit": "K"}, "b": 1})");
    manipulator = QSharedPointer<ScriptedManipulator>::create();
    CommandSetUnitPropertiesRegExp command(table(R"-([["(w)", "a", ""], ["(x)", "b", "m"]])-"));
    host.takeCalls();

    EXPECT_FALSE(write(command, "w"));
    EXPECT_FALSE(changed);
    EXPECT_EQ(host.takeCalls(), QStringList{"getChildData(target, a)"});
}

TEST_F(SetUnitPropertiesRegExp, applies_the_rows_after_one_with_an_empty_unit)
{
    target = tree("target", R"({"a": 1})");
    CommandSetUnitPropertiesRegExp command(table(R"-([["(w)", "a", ""], ["(w)", "a", "m"]])-"));

    EXPECT_TRUE(write(command, "w"));
    EXPECT_EQ(target->at("a").unit(), QVariant("m"));
}

TEST_F(SetUnitPropertiesRegExp, never_applies_an_invalid_pattern_and_says_nothing)
{
    target = tree("target", R"({"a": 1})");
    for (const char* pattern : {"(", "(a", "[", "*(a)", "(a){2,1}", "(?<n>a)(?<n>b)", "(?<>a)"}) {
        SCOPED_TRACE(pattern);
        CommandSetUnitPropertiesRegExp command(
            table(QString(R"-([["%1", "a", "K"], ["(a)", "a", "K"]])-").replace("%1", pattern)));
        host.takeCalls();

        EXPECT_TRUE(write(command, "a"));
        EXPECT_EQ(host.takeCalls({"setDataProperty"}).size(), 1);
    }
}

TEST_F(SetUnitPropertiesRegExp, meets_odd_urls_and_patterns_in_silence)
{
    const QString nul = QString("x") + QChar(0) + "y";
    const QString loneSurrogate = QString("a") + QChar(0xD800);
    target->addChild(nul);
    target->addChild(loneSurrogate);

    CommandSetUnitPropertiesRegExp all(table(R"-([["(?<n>.*)", "(?<n>)", "K"]])-"));
    EXPECT_TRUE(write(all, nul)) << "a NUL is a character like any other";
    EXPECT_EQ(target->at(nul).unit(), QVariant("K"));
    EXPECT_FALSE(write(all, loneSurrogate)) << "no text, so nothing is found in it";

    host.rowsOf = [&](const QVariantList&) {
        return QVariantList{QVariantList{'(' + loneSurrogate + ')', "a", "K"}};
    };
    CommandSetUnitPropertiesRegExp invalid(table("[]"));
    EXPECT_FALSE(write(invalid, loneSurrogate)) << "no valid pattern";
}

TEST_F(SetUnitPropertiesRegExp, warns_when_a_root_is_null)
{
    CommandSetUnitPropertiesRegExp command(table(R"-([["(a)", "a", "K"]])-"));
    const testhost::NodePointer tree = testhost::tree("tree", R"({"a": 1})");
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
    const Message once = warning("Target root null pointer given");
    EXPECT_EQ(messages.take(), (QList<Message>{once, once, once}));
}

TEST_F(SetUnitPropertiesRegExp, warns_when_a_root_is_null_even_without_rows)
{
    CommandSetUnitPropertiesRegExp command(nullptr);
    target = nullptr;

    EXPECT_FALSE(write(command, "a"));
    EXPECT_EQ(messages.take(), QList<Message>{warning("Target root null pointer given")});
}

TEST_F(SetUnitPropertiesRegExp, turns_write_statuses_into_its_result_and_the_changed_flag)
{
    for (const StatusRow& row : statusTable()) {
        SCOPED_TRACE(row.title);
        QStringList rows;
        for (int i = 0; i < row.statuses.size(); ++i) {
            rows.append(R"-(["(w)", "a", "K"])-");
        }
        CommandSetUnitPropertiesRegExp command(table('[' + rows.join(',') + ']'));
        target = tree("target", R"({"a": 1})");
        target->at("a").answerWritesWith(row.statuses);
        changed = row.changedBefore;

        EXPECT_EQ(write(command, "w"), row.result);
        EXPECT_EQ(changed, row.changed);
    }
}

TEST_F(SetUnitPropertiesRegExp, warns_after_each_write_that_it_does_not_ask_the_manipulator)
{
    target = tree("target", R"({"a": 1, "b": {"@unit": "m"}, "c": 1})");
    target->at("a").answerWritesWith({2});
    manipulator = QSharedPointer<ScriptedManipulator>::create();
    CommandSetUnitPropertiesRegExp command(table(
        R"-([["(w)", "a", "K"], ["(x)", "a", "K"], ["(w)", "b", ""], ["(w)", "b", "m"], ["(w)", "c", "s"]])-"));
    const Message told =
        warning("Manipulate unit is not implemented for command SetUnitPropertiesRegExp.");
    QList<int> toldBeforeWrite;
    for (const char* leaf : {"a", "b", "c"}) {
        host.insideNext(QString("setDataProperty(target/") + leaf,
                        [&] { toldBeforeWrite.append(messages.take().size()); });
    }

    EXPECT_TRUE(write(command, "w"));
    EXPECT_EQ(host.takeCalls({"manipulateUnit"}), QStringList());
    EXPECT_EQ(toldBeforeWrite, (QList<int>{0, 1, 1}));
    EXPECT_EQ(messages.take(), QList<Message>{told});
    EXPECT_EQ(target->at("c").unit(), QVariant("s"));
}

TEST_F(SetUnitPropertiesRegExp, uses_neither_parameters_nor_results_nor_the_source)
{
    target = tree("target", R"({"a": 1, "Inst1": {"a": 1}})");
    results = {"kept", 5};
    CommandSetUnitPropertiesRegExp command(table(R"-([["(w)", "a", "K"]])-"));
    host.takeCalls();

    EXPECT_TRUE(command.executeCommand(source, target, "w", results, changed, {"Inst1/", "x"}, {}));
    EXPECT_EQ(results, (QVariantList{"kept", 5}));
    EXPECT_EQ(host.takeCalls(), (QStringList{"getChildData(target, a)",
                                             "setDataProperty(target/a, @unit, 'K') -> 0"}));
}

TEST_F(SetUnitPropertiesRegExp, reads_its_table_once_and_through_the_array_wrapper)
{
    const CommandSetUnitPropertiesRegExp command(table(R"([["p", "t", "u"]])"));

    EXPECT_EQ(host.takeCalls(), (QStringList{"getDataProperty(description, @val)",
                                             "getArrayValueContent(1 rows, 0 columns described)"}));
}

TEST_F(SetUnitPropertiesRegExp, does_nothing_without_rows)
{
    for (const BaseClassSharedPointer& description :
         {BaseClassSharedPointer(), BaseClassSharedPointer(tree("description", "{}")),
          BaseClassSharedPointer(table("[]"))}) {
        CommandSetUnitPropertiesRegExp command(description);
        host.takeCalls();

        EXPECT_FALSE(write(command, "a"));
        EXPECT_FALSE(changed);
        EXPECT_EQ(command.getCommandAsString(), "");
        EXPECT_EQ(host.takeCalls(), QStringList());
    }
}

TEST_F(SetUnitPropertiesRegExp, reads_rows_of_three_cells_and_of_four)
{
    struct Row {
        const char* title;
        const char* rows;
        const char* text;
    };
    const std::vector<Row> table{
        {"three cells leave the fourth empty", R"([["p", "t", "u"]])", "SetUnitRegExp(p,t,u,);"},
        {"four cells are all kept", R"([["p", "t", "u", "x"]])", "SetUnitRegExp(p,t,u,x);"},
        {"of five cells the first three are kept", R"([["p", "t", "u", "x", "y"]])",
         "SetUnitRegExp(p,t,u,);"},
        {"of six cells too", R"([["p", "t", "u", "x", "y", "z"]])", "SetUnitRegExp(p,t,u,);"},
        {"a row that is a plain value is passed over", R"(["p", 5, ["p", "t", "u"]])",
         "SetUnitRegExp(p,t,u,);"},
        {"cells are read as text", R"([[1, 2.5, true, 7]])", "SetUnitRegExp(1,2.5,true,7);"},
        {"patterns and templates are printed as written", R"-([["(?<n>.)", "(?<n>)", "u"]])-",
         "SetUnitRegExp((?<n>.),(?<n>),u,);"},
        {"rows are run together", R"([["p", "t", "u"], ["q", "v", "°C", "x"]])",
         "SetUnitRegExp(p,t,u,);SetUnitRegExp(q,v,°C,x);"},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        const CommandSetUnitPropertiesRegExp command(testhost::table(row.rows));
        EXPECT_EQ(command.getCommandAsString(), row.text);
    }
}

TEST_F(SetUnitPropertiesRegExp, tells_from_initializing_whether_a_row_was_a_list)
{
    CommandSetUnitPropertiesRegExp command(nullptr);

    EXPECT_FALSE(command.initCommand(nullptr));
    EXPECT_FALSE(command.initCommand(tree("description", "{}")));
    EXPECT_FALSE(command.initCommand(table(R"(["p", 5])")));
    EXPECT_TRUE(command.initCommand(table(R"(["p", ["p", "t", "u"]])")));
    EXPECT_TRUE(command.initCommand(table(R"([["q", "t", "u"]])")));
    EXPECT_EQ(command.getCommandAsString(), "SetUnitRegExp(p,t,u,);SetUnitRegExp(q,t,u,);");
}

TEST_F(SetUnitPropertiesRegExp, goes_on_with_its_rows_when_the_host_adds_some_meanwhile)
{
    target = tree("target", R"({"a": 1, "b": 1, "c": 1})");
    CommandSetUnitPropertiesRegExp command(table(R"-([["(w)", "a", "K"], ["(w)", "b", "K"]])-"));
    host.insideNext("setDataProperty(target/a", [&] {
        for (int i = 0; i < 100; ++i) {
            command.initCommand(table(R"-([["(w)", "c", "K"]])-"));
        }
    });

    EXPECT_TRUE(write(command, "w"));
    EXPECT_EQ(host.takeCalls({"setDataProperty"}),
              (QStringList{"setDataProperty(target/a, @unit, 'K') -> 0",
                           "setDataProperty(target/b, @unit, 'K') -> 0"}));
}

TEST_F(SetUnitPropertiesRegExp, may_be_executed_again_from_within_a_write)
{
    target = tree("target", R"({"a": 1, "b": 1})");
    CommandSetUnitPropertiesRegExp command(
        table(R"-([["(?<n>[ab])", "(?<n>)", "K"], ["(?<n>[ab])", "(?<n>)", "m"]])-"));
    host.insideNext("setDataProperty(target/a", [&] { EXPECT_TRUE(write(command, "b")); });
    host.takeCalls();

    EXPECT_TRUE(write(command, "a"));
    EXPECT_EQ(host.takeCalls({"setDataProperty"}),
              (QStringList{"setDataProperty(target/a, @unit, 'K') -> 0",
                           "setDataProperty(target/b, @unit, 'K') -> 0",
                           "setDataProperty(target/b, @unit, 'm') -> 0",
                           "setDataProperty(target/a, @unit, 'm') -> 0"}));
}

TEST_F(SetUnitPropertiesRegExpDeathTest, ends_the_process_at_a_row_of_less_than_three_cells)
{
    for (const char* rows : {R"([["p", "t"]])", R"([["p"]])", "[[]]"}) {
        SCOPED_TRACE(rows);
        const BaseClassSharedPointer description = table(rows);
        EXPECT_DEATH(CommandSetUnitPropertiesRegExp{description}, "index out of range");
    }
}

} // namespace
