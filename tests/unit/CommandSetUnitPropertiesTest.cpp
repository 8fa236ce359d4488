#include "Commands/CommandSetUnitProperties.h"

#include "CommandFixture.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"

#include <vector>

using testhost::table;
using testhost::tree;

namespace {

class SetUnitProperties : public CommandTest {};
using SetUnitPropertiesDeathTest = SetUnitProperties;

TEST_F(SetUnitProperties, writes_the_unit_of_each_row_in_order)
{
    target = tree("target", R"({"a": 20, "b": {"c": 3}})");
    CommandSetUnitProperties command(table(R"([["b/c", "bar"], ["a", "K"]])"));
    host.takeCalls();

    EXPECT_TRUE(execute(command));

    EXPECT_TRUE(changed);
    EXPECT_EQ(
        host.takeCalls(),
        (QStringList{"getChildData(target, b/c)", "setDataProperty(target/b/c, @unit, 'bar') -> 0",
                     "getChildData(target, a)", "setDataProperty(target/a, @unit, 'K') -> 0"}));
    EXPECT_EQ(target->at("a").unit(), QVariant("K"));
    EXPECT_EQ(target->at("b/c").unit(), QVariant("bar"));
}

TEST_F(SetUnitProperties, has_rows_of_target_unit_and_extra)
{
    const CommandSetUnitProperties::UnitProperties row{"a", "K", "x"};

    EXPECT_EQ(row.targetUrl, "a");
    EXPECT_EQ(row.unit, "K");
    EXPECT_EQ(row.extra, "x");
}

TEST_F(SetUnitProperties, writes_the_same_again_when_it_is_executed_again)
{
    target = tree("target", R"({"a": 20})");
    CommandSetUnitProperties command(table(R"([["a", "K"]])"));

    EXPECT_TRUE(execute(command));
    EXPECT_TRUE(changed);
    changed = false;
    EXPECT_TRUE(execute(command));
    EXPECT_FALSE(changed);
}

TEST_F(SetUnitProperties, reads_its_table_once_and_through_the_array_wrapper)
{
    const CommandSetUnitProperties command(table(R"([["a", "K"], ["b", "bar"]])"));

    EXPECT_EQ(host.takeCalls(), (QStringList{"getDataProperty(description, @val)",
                                             "getArrayValueContent(2 rows, 0 columns described)"}));
}

TEST_F(SetUnitProperties, takes_the_rows_that_the_wrapper_holds)
{
    host.rowsOf = [](const QVariantList&) { return QVariantList{QVariantList{"b", "bar"}}; };
    const CommandSetUnitProperties command(table(R"([["a", "K"]])"));

    EXPECT_EQ(command.getCommandAsString(), "SetUnit(b,bar,);");
}

TEST_F(SetUnitProperties, does_nothing_without_a_value_property)
{
    CommandSetUnitProperties command(tree("description", R"({"@other": [["a", "K"]]})"));
    EXPECT_EQ(host.takeCalls(), QStringList{"getDataProperty(description, @val)"});

    EXPECT_FALSE(execute(command));
    EXPECT_FALSE(changed);
    EXPECT_EQ(command.getCommandAsString(), "");
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(SetUnitProperties, does_nothing_without_a_description)
{
    CommandSetUnitProperties command(nullptr);

    EXPECT_FALSE(execute(command));
    EXPECT_EQ(command.getCommandAsString(), "");
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(SetUnitProperties, reads_rows_of_two_cells_and_of_three)
{
    struct Row {
        const char* title;
        const char* rows;
        const char* text;
    };
    const std::vector<Row> table{
        {"two cells leave the third empty", R"([["a", "K"]])", "SetUnit(a,K,);"},
        {"three cells are all kept", R"([["a", "K", "x"]])", "SetUnit(a,K,x);"},
        {"of four cells the first two are kept", R"([["a", "K", "x", "y"]])", "SetUnit(a,K,);"},
        {"of five cells too", R"([["a", "K", "x", "y", "z"]])", "SetUnit(a,K,);"},
        {"a row that is a plain value is passed over", R"(["a", 5, ["b", "bar"]])",
         "SetUnit(b,bar,);"},
        {"a row that is an object is passed over", R"([{"a": "K"}, ["b", "bar"]])",
         "SetUnit(b,bar,);"},
        {"cells are read as text", R"([[1, 2.5, true]])", "SetUnit(1,2.5,true);"},
        {"empty cells are kept", R"([["", ""]])", "SetUnit(,,);"},
        {"a value that is no list has no rows", R"("a")", ""},
        {"an empty list has no rows", R"([])", ""},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        const CommandSetUnitProperties command(testhost::table(row.rows));
        EXPECT_EQ(command.getCommandAsString(), row.text);
    }
}

TEST_F(SetUnitProperties, reads_a_row_that_is_a_list_of_texts)
{
    host.rowsOf = [](const QVariantList&) { return QVariantList{QStringList{"a", "K"}}; };
    const CommandSetUnitProperties command(table("[]"));

    EXPECT_EQ(command.getCommandAsString(), "SetUnit(a,K,);");
}

TEST_F(SetUnitProperties, tells_from_initializing_whether_a_row_was_a_list)
{
    CommandSetUnitProperties command(nullptr);

    EXPECT_FALSE(command.initCommand(nullptr));
    EXPECT_FALSE(command.initCommand(tree("description", "{}")));
    EXPECT_FALSE(command.initCommand(table(R"(["a", 5])")));
    EXPECT_TRUE(command.initCommand(table(R"(["a", ["b", "bar"]])")));
    EXPECT_TRUE(command.initCommand(table(R"([["c", "m"]])")));
    EXPECT_EQ(command.getCommandAsString(), "SetUnit(b,bar,);SetUnit(c,m,);");
}

TEST_F(SetUnitProperties, prints_its_rows_run_together)
{
    const CommandSetUnitProperties command(table(R"([["a", "K"], ["b", "°C", "x"]])"));

    EXPECT_EQ(command.getCommandAsString(), "SetUnit(a,K,);SetUnit(b,°C,x);");
}

TEST_F(SetUnitProperties, puts_the_first_parameter_in_front_of_the_url)
{
    struct Row {
        const char* title;
        QVariantList parameters;
        const char* lookedUp;
    };
    const std::vector<Row> table{
        {"no parameter leaves the URL as it is", {}, "Leaf"},
        {"text goes in front as it is", {"Inst1/"}, "Inst1/Leaf"},
        {"no separator is added", {"Inst1"}, "Inst1Leaf"},
        {"a number goes in front as text", {7}, "7Leaf"},
        {"further parameters are not used", {"Inst1/", "Inst2/"}, "Inst1/Leaf"},
        {"empty text adds nothing", {""}, "Leaf"},
        {"an invalid first parameter is not used", {QVariant()}, "Leaf"},
        {"nor is the second one in its stead", {QVariant(), "Inst2/"}, "Leaf"},
        {"a list is not text", {QVariant(QVariantList{"Inst1/"})}, "Leaf"},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        CommandSetUnitProperties command(testhost::table(R"([["Leaf", "K"]])"));
        host.takeCalls();
        execute(command, row.parameters);
        EXPECT_EQ(host.takeCalls(),
                  QStringList{QString("getChildData(target, %1)").arg(row.lookedUp)});
    }
}

TEST_F(SetUnitProperties, finds_the_leaf_below_the_prefix)
{
    target = tree("target", R"({"Inst1": {"Leaf": 1}, "Leaf": 2})");
    CommandSetUnitProperties command(table(R"([["Leaf", "K"]])"));

    EXPECT_TRUE(execute(command, {"Inst1/"}));
    EXPECT_EQ(target->at("Inst1/Leaf").unit(), QVariant("K"));
    EXPECT_FALSE(target->at("Leaf").unit().isValid());
}

TEST_F(SetUnitProperties, skips_a_row_without_leaf_and_goes_on)
{
    target = tree("target", R"({"b": 1})");
    CommandSetUnitProperties command(table(R"([["missing", "K"], ["b", "bar"]])"));
    host.takeCalls();

    EXPECT_TRUE(execute(command));
    EXPECT_EQ(host.takeCalls(),
              (QStringList{"getChildData(target, missing)", "getChildData(target, b)",
                           "setDataProperty(target/b, @unit, 'bar') -> 0"}));
}

TEST_F(SetUnitProperties, skips_a_row_with_an_empty_unit_and_goes_on)
{
    target = tree("target", R"({"a": {"@unit": "K"}, "b": 1})");
    CommandSetUnitProperties command(table(R"([["a", ""], ["b", "bar"]])"));
    host.takeCalls();

    EXPECT_TRUE(execute(command));
    EXPECT_EQ(target->at("a").unit(), QVariant("K"));
    EXPECT_EQ(host.takeCalls({"setDataProperty"}),
              QStringList{"setDataProperty(target/b, @unit, 'bar') -> 0"});
}

TEST_F(SetUnitProperties, looks_an_empty_url_up_like_any_other)
{
    target->addChild("");
    CommandSetUnitProperties command(table(R"([["", "K"]])"));

    EXPECT_TRUE(execute(command));
    EXPECT_EQ(target->at("").unit(), QVariant("K"));
}

TEST_F(SetUnitProperties, turns_write_statuses_into_its_result_and_the_changed_flag)
{
    for (const StatusRow& row : statusTable()) {
        SCOPED_TRACE(row.title);
        QStringList rows;
        for (int i = 0; i < row.statuses.size(); ++i) {
            rows.append(R"(["a", "K"])");
        }
        CommandSetUnitProperties command(table('[' + rows.join(',') + ']'));
        target = tree("target", R"({"a": 1})");
        target->at("a").answerWritesWith(row.statuses);
        changed = row.changedBefore;

        EXPECT_EQ(execute(command), row.result);
        EXPECT_EQ(changed, row.changed);
    }
}

TEST_F(SetUnitProperties, does_nothing_when_a_root_is_null)
{
    CommandSetUnitProperties command(table(R"([["a", "K"]])"));
    const testhost::NodePointer tree = testhost::tree("tree", R"({"a": 1})");
    manipulator = QSharedPointer<ScriptedManipulator>::create();
    host.takeCalls();

    source = tree, target = nullptr;
    EXPECT_FALSE(execute(command));
    source = nullptr, target = tree;
    EXPECT_FALSE(execute(command));
    source = nullptr, target = nullptr;
    EXPECT_FALSE(execute(command));
    EXPECT_FALSE(changed);
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(SetUnitProperties, leaves_the_results_list_and_the_source_alone)
{
    target = tree("target", R"({"a": 1})");
    results = {"kept", 5};
    CommandSetUnitProperties command(table(R"([["a", "K"]])"));
    host.takeCalls();

    execute(command);
    EXPECT_EQ(results, (QVariantList{"kept", 5}));
    EXPECT_EQ(host.takeCalls().filter("source"), QStringList());
}

TEST_F(SetUnitProperties, asks_the_manipulator_after_each_write_whatever_its_status)
{
    target = tree("target", R"({"a": 1, "b": 1, "c": {"@unit": "m"}})");
    target->at("a").answerWritesWith({2});
    manipulator = QSharedPointer<ScriptedManipulator>::create();
    CommandSetUnitProperties command(
        table(R"([["a", "K"], ["missing", "K"], ["c", ""], ["c", "m"], ["b", "bar"]])"));
    host.takeCalls();

    EXPECT_TRUE(execute(command));
    EXPECT_EQ(host.takeCalls({"setDataProperty", "manipulateUnit"}),
              (QStringList{
                  "setDataProperty(target/a, @unit, 'K') -> 2", "manipulateUnit(target/a, K, 0, 0)",
                  "setDataProperty(target/c, @unit, 'm') -> 1", "manipulateUnit(target/c, m, 1, 0)",
                  "setDataProperty(target/b, @unit, 'bar') -> 0",
                  "manipulateUnit(target/b, bar, 1, 1)"}));
}

TEST_F(SetUnitProperties, lets_the_manipulator_turn_both_flags)
{
    struct Row {
        const char* title;
        int status;
        bool setsResult, setsChanged;
    };
    const std::vector<Row> table{
        {"a success made a failure", 0, false, false},
        {"a failure made a success", 2, true, true},
        {"a change made no change", 0, true, false},
        {"a failure that changed something", 2, false, true},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        target = tree("target", R"({"a": 1})");
        target->at("a").answerWritesWith({row.status});
        manipulator =
            QSharedPointer<ScriptedManipulator>::create([&row](bool& commandResult, bool& changed) {
                commandResult = row.setsResult;
                changed = row.setsChanged;
            });
        CommandSetUnitProperties command(testhost::table(R"([["a", "K"]])"));
        changed = false;

        EXPECT_EQ(execute(command), row.setsResult);
        EXPECT_EQ(changed, row.setsChanged);
    }
}

TEST_F(SetUnitProperties, goes_on_from_what_the_manipulator_left)
{
    target = tree("target", R"({"a": 1, "b": 1, "c": 1})");
    target->at("b").answerWritesWith({1});
    target->at("c").answerWritesWith({2});
    manipulator = QSharedPointer<ScriptedManipulator>::create(
        [](bool& commandResult, bool& changed) { commandResult = changed = false; });
    CommandSetUnitProperties command(table(R"([["a", "K"], ["b", "K"], ["c", "K"]])"));

    EXPECT_FALSE(execute(command));
    EXPECT_FALSE(changed);
    EXPECT_EQ(host.takeCalls({"manipulateUnit"}),
              (QStringList{"manipulateUnit(target/a, K, 1, 1)", "manipulateUnit(target/b, K, 1, 0)",
                           "manipulateUnit(target/c, K, 0, 0)"}));
}

TEST_F(SetUnitPropertiesDeathTest, ends_the_process_at_a_row_of_one_cell)
{
    const BaseClassSharedPointer description = table(R"([["a"]])");

    EXPECT_DEATH(CommandSetUnitProperties{description}, "index out of range");
}

TEST_F(SetUnitPropertiesDeathTest, ends_the_process_at_a_row_without_cells)
{
    const BaseClassSharedPointer description = table(R"([[]])");

    EXPECT_DEATH(CommandSetUnitProperties{description}, "index out of range");
}

} // namespace
