#include "Commands/CommandSetUnitByConfigurationParameterArray.h"

#include "CommandFixture.h"

#include <limits>
#include <vector>

using testhost::Message;
using testhost::table;
using testhost::tree;

namespace {

/// Array leaves of this host: "@columns" lists the unit of each column.
class SetColumnUnit : public CommandTest {
protected:
    using Command = CommandSetUnitByConfigurationParameterArray;

    static QString withBlank(const QString& text, const QString& quoted)
    {
        return text + " \"" + quoted + '"';
    }

    static Message warning(int line, const char* function, const QString& text)
    {
        return {QtWarningMsg, text,     "Commands/CommandSetUnitByConfigurationParameterArray",
                line,         function, "default"};
    }

    static Message executing(int line, const QString& text)
    {
        return warning(line,
                       "virtual bool CommandSetUnitByConfigurationParameterArray::executeCommand("
                       "const BaseClassSharedPointer&, const BaseClassSharedPointer&, "
                       "const QString&, QVariantList&, bool&, const QVariantList&, "
                       "const QSharedPointer<UnitManipulatorBase>&)",
                       text);
    }

    static Message readingTarget(int line, const QString& text)
    {
        return warning(
            line,
            "bool CommandSetUnitByConfigurationParameterArray::getArrayUrlAndColumnIndex("
            "const QString&, QString&, int&)",
            text);
    }

    static Message unparsable(int line, const QString& expression)
    {
        return warning(line,
                       "int CommandSetUnitByConfigurationParameterArray::evalArrayIndexExpression("
                       "const QString&)",
                       withBlank("Unable to parse array index string", expression));
    }

    static Message noTarget(const QString& arrayTarget)
    {
        return executing(110, withBlank("Unable to get Array index and url", arrayTarget));
    }

    static Message manipulatorNotAsked()
    {
        return executing(92, "Manipulate unit is not implemented for command "
                             "SetUnitByConfigurationParameterArray.");
    }

    static testhost::NodePointer targetWithTable()
    {
        return tree("target", R"({"T": {"@dataType": "an array", "@columns": ["m", "s", "K"]}})");
    }
};
using SetColumnUnitDeathTest = SetColumnUnit;

TEST_F(SetColumnUnit, writes_the_source_value_as_unit_of_one_column)
{
    source = tree("source", R"({"Settings": {"P": "bar"}})");
    target = targetWithTable();
    Command command(table(R"([["Settings/P", "T[1]"]])"));
    host.takeCalls();

    EXPECT_TRUE(execute(command));

    EXPECT_TRUE(changed);
    EXPECT_EQ(target->at("T").property("@columns"), QVariant(QVariantList{"m", "bar", "K"}));
    EXPECT_EQ(host.takeCalls(),
              (QStringList{"getChildData(target, T)", "getDataProperty(target/T, @dataType)",
                           "getDataProperty(target/T, @columns)",
                           "Array2dDataTypeWrapper(0 rows, ['m', 's', 'K'])",
                           "extractConfigValue(Settings/P, source)", "getColumnUnitTypes()",
                           "setColumnUnitTypes(m|bar|K) -> true",
                           "setArrayInfoWithStatus(target, T, ['m', 'bar', 'K']) -> 0"}));
}

TEST_F(SetColumnUnit, writes_each_row_on_what_the_rows_before_left)
{
    source = tree("source", R"({"s": "bar", "t": "°C"})");
    target = targetWithTable();
    target->addChild("deep")->setChild("U", targetWithTable()->find("T"));
    Command command(table(R"([["s", "T[2]"], ["t", "extra", "T[1-1]"], ["t", "deep/U[0+1]"]])"));
    host.takeCalls();

    EXPECT_TRUE(execute(command));
    EXPECT_EQ(host.takeCalls({"setArrayInfoWithStatus"}),
              (QStringList{"setArrayInfoWithStatus(target, T, ['m', 's', 'bar']) -> 0",
                           "setArrayInfoWithStatus(target, T, ['°C', 's', 'bar']) -> 0",
                           "setArrayInfoWithStatus(target, deep/U, ['m', '°C', 'K']) -> 0"}));
}

TEST_F(SetColumnUnit, writes_a_value_of_another_type_as_text)
{
    source->addChild("s")->setProperty("@val", 5);
    target = targetWithTable();
    Command command(table(R"([["s", "T[0]"]])"));

    EXPECT_TRUE(execute(command));
    EXPECT_EQ(target->at("T").property("@columns"), QVariant(QVariantList{"5", "s", "K"}));
}

TEST_F(SetColumnUnit, writes_an_empty_text)
{
    source = tree("source", R"({"s": ""})");
    target = targetWithTable();
    Command command(table(R"([["s", "T[0]"]])"));

    EXPECT_TRUE(execute(command));
    EXPECT_EQ(target->at("T").property("@columns"), QVariant(QVariantList{"", "s", "K"}));
}

TEST_F(SetColumnUnit, evaluates_column_expressions)
{
    struct Row {
        const char* title;
        const char* expression;
        int value;
    };
    const std::vector<Row> table{
        {"a number", "4", 4},
        {"a number with blanks around it", " 4 ", 4},
        {"zero is accepted", "0", 0},
        {"leading zeros", "007", 7},
        {"a sum", "2+3", 5},
        {"a sum with blanks around it", " 2 + 3 ", 5},
        {"a difference", "10-4", 6},
        {"a difference with blanks", "10 - 4", 6},
        {"a difference below zero", "2-5", -3},
        {"a difference that is the failure value", "1-2", -1},
        {"a sum with a negative right side", "3+-1", 2},
        {"a sum with a negative left side", "-1+3", 2},
        {"a sum of two negative sides", "-1+-1", -2},
        {"no number", "x", -1},
        {"nothing", "", -1},
        {"blanks", "  ", -1},
        {"a sign in front", "-3", -1},
        {"a plus in front", "+5", -1},
        {"a plus at the end", "5+", -1},
        {"a minus at the end", "5-", -1},
        {"a plus alone", "+", -1},
        {"a minus alone", "-", -1},
        {"a sum with no number on the left", "x+1", -1},
        {"a sum with no number on the right", "1+x", -1},
        {"a difference with no number on the left", "x-1", -1},
        {"a difference with no number on the right", "1-x", -1},
        {"a blank inside a number", "1 2", -1},
        {"a blank inside a number of a sum", "1+2 3", -1},
        {"a fraction", "1.5", -1},
        {"a hexadecimal number", "0x10", -1},
        {"a product", "2*3", -1},
        {"the largest number", "2147483647", std::numeric_limits<int>::max()},
        {"beyond the largest number", "2147483648", -1},
        {"far beyond it", "99999999999999999999", -1},
        {"a sum that fits", "2147483646+1", std::numeric_limits<int>::max()},
        {"a sum that is too large", "2147483647+1", -1},
        {"a sum of two large numbers", "2147483647+2147483647", -1},
        {"a sum that is too small", "-2147483648+-1", -1},
        {"a sum that just fits below", "-2147483647+-1", std::numeric_limits<int>::min()},
        {"a difference that just fits", "0-2147483647", -std::numeric_limits<int>::max()},
        {"a sum with a number that does not fit", "1+2147483648", -1},
        {"a difference with a number that does not fit", "2147483648-1", -1},
    };
    Command command(nullptr);
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(command.evalArrayIndexExpression(row.expression), row.value);
    }
}

TEST_F(SetColumnUnit, warns_of_expressions_with_more_than_two_operands)
{
    struct Row {
        const char* expression;
        int line;
    };
    const std::vector<Row> table{
        {"1+2+3", 211}, {"1++2", 211}, {"++", 211},  {"1+2-3+4", 211},
        {"5-1-1", 225}, {"1--2", 225}, {"--3", 225}, {"---", 225},
    };
    Command command(nullptr);
    for (const auto& row : table) {
        SCOPED_TRACE(row.expression);
        EXPECT_EQ(command.evalArrayIndexExpression(row.expression), -1);
        EXPECT_EQ(messages.take(), QList<Message>{unparsable(row.line, row.expression)});
    }
}

TEST_F(SetColumnUnit, reads_a_sum_first_so_that_a_difference_is_no_operand_of_it)
{
    Command command(nullptr);

    EXPECT_EQ(command.evalArrayIndexExpression("5-1+1"), -1);
    EXPECT_EQ(command.evalArrayIndexExpression("1+5-1"), -1);
}

TEST_F(SetColumnUnit, takes_targets_apart)
{
    struct Row {
        const char* title;
        const char* arrayTarget;
        const char* url;
        int column;
    };
    const std::vector<Row> table{
        {"a number", "a/T[4]", "a/T", 4},
        {"a sum", "a/T[2 + 3]", "a/T", 5},
        {"the first column", "T[0]", "T", 0},
        {"the last brackets count", "a[1]/T[2]", "a[1]/T", 2},
        {"text after the brackets is ignored", "T[2]/x", "T", 2},
        {"a bracket that is never closed belongs to the URL's tail", "T[2][", "T", 2},
        {"a URL may be a blank", " [1]", " ", 1},
    };
    Command command(nullptr);
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        QString url = "before";
        int column = -7;
        EXPECT_TRUE(command.getArrayUrlAndColumnIndex(row.arrayTarget, url, column));
        EXPECT_EQ(url, row.url);
        EXPECT_EQ(column, row.column);
    }
}

TEST_F(SetColumnUnit, warns_of_targets_that_cannot_be_taken_apart)
{
    struct Row {
        const char* title;
        const char* arrayTarget;
        int line;
        const char* text;
        const char* url;
        int column;
    };
    const std::vector<Row> table{
        {"no brackets", "a/T", 165, "No valid url given", "", -7},
        {"empty brackets", "a/T[]", 165, "No valid url given", "", -7},
        {"no URL", "[1]", 165, "No valid url given", "", -7},
        {"nothing", "", 165, "No valid url given", "", -7},
        {"brackets the wrong way round", "T]1[", 165, "No valid url given", "", -7},
        {"a bracket that is never closed", "T[1", 165, "No valid url given", "", -7},
        {"no number", "T[x]", 181, "Array index is no number or expression", "T", -1},
        {"a negative result", "T[2-5]", 181, "Array index is no number or expression", "T", -3},
        {"the failure value", "T[1-2]", 181, "Array index is no number or expression", "T", -1},
        {"a negative number", "T[-3]", 181, "Array index is no number or expression", "T", -1},
        {"a blank", "T[ ]", 181, "Array index is no number or expression", "T", -1},
        {"too large a sum", "T[2147483647+1]", 181, "Array index is no number or expression", "T",
         -1},
    };
    Command command(nullptr);
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        QString url = "before";
        int column = -7;
        EXPECT_FALSE(command.getArrayUrlAndColumnIndex(row.arrayTarget, url, column));
        EXPECT_EQ(url, row.url);
        EXPECT_EQ(column, row.column);
        EXPECT_EQ(messages.take(),
                  QList<Message>{readingTarget(row.line, withBlank(row.text, row.arrayTarget))});
    }
}

TEST_F(SetColumnUnit, piles_up_warnings_of_a_bad_expression)
{
    Command command(table(R"([["s", "T[1+2+3]"], ["s", "T[1-2-3]"]])"));
    host.takeCalls();

    EXPECT_FALSE(execute(command));
    EXPECT_EQ(
        messages.take(),
        (QList<Message>{unparsable(211, "1+2+3"),
                        readingTarget(181, R"(Array index is no number or expression "T[1+2+3]")"),
                        noTarget("T[1+2+3]"), unparsable(225, "1-2-3"),
                        readingTarget(181, R"(Array index is no number or expression "T[1-2-3]")"),
                        noTarget("T[1-2-3]")}));
    EXPECT_EQ(host.takeCalls(), QStringList()) << "the target was not even looked at";
}

TEST_F(SetColumnUnit, piles_up_warnings_of_a_target_without_brackets)
{
    Command command(table(R"([["s", "T°"]])"));

    EXPECT_FALSE(execute(command));
    EXPECT_EQ(messages.take(),
              (QList<Message>{readingTarget(165, "No valid url given \"T°\""),
                              executing(110, "Unable to get Array index and url \"T°\"")}));
}

TEST_F(SetColumnUnit, warns_of_a_missing_leaf_by_its_whole_target)
{
    Command command(table(R"([["s", "a/T[1]"]])"));
    host.takeCalls();

    EXPECT_FALSE(execute(command));
    EXPECT_EQ(messages.take(),
              QList<Message>{executing(105, R"(Unable to connect to leaf "a/T[1]")")});
    EXPECT_EQ(host.takeCalls(), QStringList{"getChildData(target, a/T)"});
}

TEST_F(SetColumnUnit, warns_of_a_leaf_that_is_no_array_by_the_parameter)
{
    target = tree("target", R"({"plain": 1, "T": {"@dataType": "An array", "@columns": ["m"]}})");
    Command command(table(R"([["s/x", "plain[0]"], ["", "T[0]"]])"));
    host.takeCalls();

    EXPECT_FALSE(execute(command));
    EXPECT_EQ(messages.take(), (QList<Message>{executing(100, R"(Not an array datatype "s/x")"),
                                               executing(100, R"(Not an array datatype "")")}));
    EXPECT_EQ(
        host.takeCalls(),
        (QStringList{"getChildData(target, plain)", "getDataProperty(target/plain, @dataType)",
                     "getChildData(target, T)", "getDataProperty(target/T, @dataType)"}));
}

TEST_F(SetColumnUnit, goes_on_after_a_row_that_failed)
{
    source = tree("source", R"({"s": "bar", "list": {"@val": ["x", ["y"]]}})");
    manipulator = QSharedPointer<ScriptedManipulator>::create();
    for (const char* row : {R"(["s", "T"])", R"(["s", "T[x]"])", R"(["s", "missing[0]"])",
                            R"(["s", "plain[0]"])", R"(["s", "bare[0]"])", R"(["", "T[0]"])",
                            R"(["missing", "T[0]"])", R"(["list", "T[0]"])"}) {
        SCOPED_TRACE(row);
        target = targetWithTable();
        target->addChild("plain");
        target->addChild("bare")->setProperty("@dataType", "an array");
        changed = false;
        Command command(table(QString(R"([%1, ["s", "T[1]"]])").arg(row)));

        EXPECT_TRUE(execute(command));
        EXPECT_TRUE(changed);
        EXPECT_EQ(target->at("T").property("@columns"), QVariant(QVariantList{"m", "bar", "K"}));
        EXPECT_EQ(messages.take().count(manipulatorNotAsked()), 1);
    }
}

TEST_F(SetColumnUnit, skips_rows_without_column_information_silently)
{
    source = tree("source", R"({"s": "bar"})");
    for (const QVariant& information : {QVariant(), QVariant("m"), QVariant(5)}) {
        SCOPED_TRACE(testhost::describe(information).toStdString());
        target = tree("target", R"({"T": {"@dataType": "an array"}})");
        target->at("T").setProperty("@columns", information);
        Command command(table(R"([["s", "T[0]"]])"));
        host.takeCalls();

        EXPECT_FALSE(execute(command));
        EXPECT_FALSE(changed);
        EXPECT_EQ(host.takeCalls(),
                  (QStringList{"getChildData(target, T)", "getDataProperty(target/T, @dataType)",
                               "getDataProperty(target/T, @columns)"}));
    }
}

TEST_F(SetColumnUnit, skips_rows_without_a_usable_value_silently)
{
    struct Row {
        const char* title;
        const char* parameterUrl;
        QStringList calls;
    };
    const std::vector<Row> rows{
        {"no parameter URL: the source is not read", "", {}},
        {"no value", "missing", {"extractConfigValue(missing, source)"}},
        {"a node without a value", "folder", {"extractConfigValue(folder, source)"}},
        {"a value that is no text", "list", {"extractConfigValue(list, source)"}},
    };
    source = tree("source", R"({"folder": {}, "list": {"@val": ["x", ["y"]]}})");
    manipulator = QSharedPointer<ScriptedManipulator>::create();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.title);
        target = targetWithTable();
        Command command(
            table(QString(R"([["%1", "T[9]"]])").arg(row.parameterUrl))); // no such column
        host.takeCalls();

        EXPECT_FALSE(execute(command));
        EXPECT_FALSE(changed);
        EXPECT_EQ(host.takeCalls(),
                  QStringList({"getChildData(target, T)", "getDataProperty(target/T, @dataType)",
                               "getDataProperty(target/T, @columns)",
                               "Array2dDataTypeWrapper(0 rows, ['m', 's', 'K'])"}) +
                      row.calls);
    }
}

TEST_F(SetColumnUnit, warns_when_a_root_is_null)
{
    Command command(table(R"([["s", "T[0]"]])"));
    const testhost::NodePointer tree = targetWithTable();
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
    const Message once = executing(116, "Target root null pointer given");
    EXPECT_EQ(messages.take(), (QList<Message>{once, once, once}));
}

TEST_F(SetColumnUnit, warns_when_a_root_is_null_even_without_rows)
{
    Command command(nullptr);
    target = nullptr;

    EXPECT_FALSE(execute(command));
    EXPECT_EQ(messages.take(), QList<Message>{executing(116, "Target root null pointer given")});
}

TEST_F(SetColumnUnit, turns_write_statuses_into_its_result_and_the_changed_flag)
{
    source = tree("source", R"({"s": "bar"})");
    for (const StatusRow& row : statusTable()) {
        SCOPED_TRACE(row.title);
        QStringList rows;
        for (int i = 0; i < row.statuses.size(); ++i) {
            rows.append(R"(["s", "T[0]"])");
        }
        Command command(table('[' + rows.join(',') + ']'));
        target = targetWithTable();
        target->at("T").answerWritesWith(row.statuses);
        changed = row.changedBefore;

        EXPECT_EQ(execute(command), row.result);
        EXPECT_EQ(changed, row.changed);
    }
}

TEST_F(SetColumnUnit, writes_nothing_back_when_the_wrapper_does_not_take_the_units)
{
    source = tree("source", R"({"s": "bar"})");
    target = targetWithTable();
    manipulator = QSharedPointer<ScriptedManipulator>::create();
    host.takingColumnUnits = false;
    Command command(table(R"([["s", "T[0]"]])"));
    host.takeCalls();

    EXPECT_FALSE(execute(command));
    EXPECT_FALSE(changed);
    EXPECT_EQ(host.takeCalls({"set"}), QStringList{"setColumnUnitTypes(bar|s|K) -> false"});
    EXPECT_EQ(messages.take(), QList<Message>{manipulatorNotAsked()});
}

TEST_F(SetColumnUnit, warns_after_each_write_that_it_does_not_ask_the_manipulator)
{
    source = tree("source", R"({"s": "bar"})");
    target = targetWithTable();
    target->at("T").answerWritesWith({2, 1, 0});
    manipulator = QSharedPointer<ScriptedManipulator>::create();
    Command command(table(R"([["s", "T[0]"], ["", "T[1]"], ["s", "T[1]"], ["s", "T[2]"]])"));
    QList<int> toldBeforeWrite;
    for (int i = 0; i < 3; ++i) {
        host.insideNext("setArrayInfoWithStatus",
                        [&] { toldBeforeWrite.append(messages.take().size()); });
    }

    EXPECT_TRUE(execute(command));
    EXPECT_EQ(host.takeCalls({"manipulateUnit"}), QStringList());
    EXPECT_EQ(toldBeforeWrite, (QList<int>{0, 1, 1}));
    EXPECT_EQ(messages.take(), QList<Message>{manipulatorNotAsked()});
    EXPECT_EQ(target->at("T").property("@columns"), QVariant(QVariantList{"m", "s", "bar"}));
}

TEST_F(SetColumnUnit, uses_neither_parameters_nor_results)
{
    source = tree("source", R"({"s": "bar"})");
    target = targetWithTable();
    results = {"kept", 5};
    Command command(table(R"([["s", "T[0]"]])"));

    EXPECT_TRUE(execute(command, {"Inst1/", "x"}));
    EXPECT_EQ(results, (QVariantList{"kept", 5}));
}

TEST_F(SetColumnUnit, reads_its_table_once_and_through_the_array_wrapper)
{
    const Command command(table(R"([["s", "T[0]"]])"));

    EXPECT_EQ(host.takeCalls(), (QStringList{"getDataProperty(description, @val)",
                                             "getArrayValueContent(1 rows, 0 columns described)"}));
}

TEST_F(SetColumnUnit, reads_rows_of_two_cells_and_of_three)
{
    struct Row {
        const char* title;
        const char* rows;
        const char* text;
    };
    const std::vector<Row> table{
        {"two cells leave the middle empty", R"([["s", "T[0]"]])",
         "CommandSetUnitByConfigurationParameterArray(s,,T[0]);"},
        {"three cells are all kept", R"([["s", "x", "T[0]"]])",
         "CommandSetUnitByConfigurationParameterArray(s,x,T[0]);"},
        {"four cells make no row", R"([["s", "x", "T[0]", "y"]])", ""},
        {"one cell makes none", R"([["s"]])", ""},
        {"no cell makes none", R"([[]])", ""},
        {"a plain value makes none", R"(["s", 5])", ""},
        {"cells are read as text", R"([[1, 2.5, true]])",
         "CommandSetUnitByConfigurationParameterArray(1,2.5,true);"},
        {"rows are run together", R"([["s", "T[0]"], [], ["t", "x", "U[1]"]])",
         "CommandSetUnitByConfigurationParameterArray(s,,T[0]);"
         "CommandSetUnitByConfigurationParameterArray(t,x,U[1]);"},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        const Command command(testhost::table(row.rows));
        EXPECT_EQ(command.getCommandAsString(), row.text);
    }
}

TEST_F(SetColumnUnit, tells_from_initializing_whether_a_row_was_taken)
{
    Command command(nullptr);

    EXPECT_FALSE(command.initCommand(nullptr));
    EXPECT_FALSE(command.initCommand(tree("description", "{}")));
    EXPECT_FALSE(command.initCommand(table("[]")));
    EXPECT_FALSE(command.initCommand(table(R"(["s", ["s"], ["s", "x", "T[0]", "y"]])")));
    EXPECT_EQ(command.getCommandAsString(), "");
    EXPECT_TRUE(command.initCommand(table(R"([["s", "T[0]"], ["s"]])")));
    EXPECT_TRUE(command.initCommand(table(R"([["t", "x", "T[1]"]])")));
    EXPECT_EQ(command.getCommandAsString(),
              "CommandSetUnitByConfigurationParameterArray(s,,T[0]);"
              "CommandSetUnitByConfigurationParameterArray(t,x,T[1]);");
}

TEST_F(SetColumnUnit, does_nothing_without_rows)
{
    Command command(table("[]"));
    host.takeCalls();

    EXPECT_FALSE(execute(command));
    EXPECT_FALSE(changed);
    EXPECT_EQ(host.takeCalls(), QStringList());
}

TEST_F(SetColumnUnit, goes_on_with_its_rows_when_the_host_adds_some_meanwhile)
{
    source = tree("source", R"({"s": "bar"})");
    target = targetWithTable();
    Command command(table(R"([["s", "T[0]"], ["s", "T[1]"]])"));
    host.insideNext("setArrayInfoWithStatus", [&] {
        for (int i = 0; i < 100; ++i) {
            command.initCommand(table(R"([["s", "T[2]"]])"));
        }
    });

    EXPECT_TRUE(execute(command));
    EXPECT_EQ(target->at("T").property("@columns"), QVariant(QVariantList{"bar", "bar", "K"}));
}

TEST_F(SetColumnUnit, keeps_the_leaf_alive_that_the_host_drops_meanwhile)
{
    source = tree("source", R"({"s": "bar"})");
    target = targetWithTable();
    Command command(table(R"([["s", "T[0]"]])"));
    host.insideNext("getDataProperty(target/T, @dataType)", [&] { target->removeChild("T"); });

    EXPECT_FALSE(execute(command));
    EXPECT_EQ(host.takeCalls({"setArrayInfoWithStatus"}),
              QStringList{"setArrayInfoWithStatus(target, T, ['bar', 's', 'K']) -> 2"});
}

TEST_F(SetColumnUnitDeathTest, ends_the_process_at_a_column_that_is_not_there)
{
    source = tree("source", R"({"s": "bar"})");
    for (const char* arrayTarget : {"T[3]", "T[1+2]", "T[2147483647]", "none[0]"}) {
        SCOPED_TRACE(arrayTarget);
        target = targetWithTable();
        target->addChild("none")->setProperty("@dataType", "an array");
        target->at("none").setProperty("@columns", QVariantList());
        Command command(table(QString(R"([["s", "%1"]])").arg(arrayTarget)));
        EXPECT_DEATH(execute(command), "index out of range");
    }
}

} // namespace
