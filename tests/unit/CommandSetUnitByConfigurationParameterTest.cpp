#include "Commands/CommandSetUnitByConfigurationParameter.h"

#include "CommandFixture.h"

#include <random>
#include <vector>

using testhost::table;
using testhost::tree;

namespace {

class SetUnitByParameter : public CommandTest {};

TEST_F(SetUnitByParameter, writes_the_source_value_as_unit_of_each_row_in_order)
{
    source = tree("source", R"({"Settings": {"T": "K", "P": "bar"}})");
    target = tree("target", R"({"a": 20, "b": {"c": 3}})");
    CommandSetUnitByConfigurationParameter command(
        table(R"([["Settings/P", "", "b/c"], ["Settings/T", "", "a"]])"));
    host.takeCalls();

    EXPECT_TRUE(execute(command));

    EXPECT_TRUE(changed);
    EXPECT_EQ(host.takeCalls(),
              (QStringList{"getChildData(target, b/c)", "extractConfigValue(Settings/P, source)",
                           "setDataProperty(target/b/c, @unit, 'bar') -> 0",
                           "getChildData(target, a)", "extractConfigValue(Settings/T, source)",
                           "setDataProperty(target/a, @unit, 'K') -> 0"}));
}

TEST_F(SetUnitByParameter, has_rows_of_parameter_extra_and_target_template)
{
    const CommandSetUnitByConfigurationParameter::UnitProperties row{"s", "x", "%1"};

    EXPECT_EQ(row.parameterUrl, "s");
    EXPECT_EQ(row.extra, "x");
    EXPECT_EQ(row.targetUrlTemplate, "%1");
}

TEST_F(SetUnitByParameter, reads_its_table_once_and_through_the_array_wrapper)
{
    const CommandSetUnitByConfigurationParameter command(table(R"([["s", "", "a"]])"));

    EXPECT_EQ(host.takeCalls(), (QStringList{"getDataProperty(description, @val)",
                                             "getArrayValueContent(1 rows, 0 columns described)"}));
}

TEST_F(SetUnitByParameter, does_nothing_without_rows)
{
    for (const BaseClassSharedPointer& description :
         {BaseClassSharedPointer(), BaseClassSharedPointer(tree("description", "{}")),
          BaseClassSharedPointer(table("[]"))}) {
        CommandSetUnitByConfigurationParameter command(description);
        host.takeCalls();

        EXPECT_FALSE(execute(command));
        EXPECT_FALSE(changed);
        EXPECT_EQ(command.getCommandAsString(), "");
        EXPECT_EQ(host.takeCalls(), QStringList());
    }
}

TEST_F(SetUnitByParameter, reads_rows_of_exactly_three_cells)
{
    struct Row {
        const char* title;
        const char* rows;
        const char* text;
    };
    const std::vector<Row> table{
        {"three cells make a row", R"([["s", "x", "a"]])",
         "SetUnitByConfigurationParameter(s,x,a);"},
        {"two cells make none", R"([["s", "a"], ["t", "", "b"]])",
         "SetUnitByConfigurationParameter(t,,b);"},
        {"four cells make none", R"([["s", "", "a", "y"], ["t", "", "b"]])",
         "SetUnitByConfigurationParameter(t,,b);"},
        {"one cell makes none", R"([["s"]])", ""},
        {"no cell makes none", R"([[]])", ""},
        {"a plain value makes none", R"(["s", 5, ["t", "", "b"]])",
         "SetUnitByConfigurationParameter(t,,b);"},
        {"cells are read as text", R"([[1, 2.5, true]])",
         "SetUnitByConfigurationParameter(1,2.5,true);"},
        {"placeholders are printed as they stand", R"([["s", "", "%1/%2"]])",
         "SetUnitByConfigurationParameter(s,,%1/%2);"},
        {"rows are run together", R"([["s", "", "a"], ["t", "x", "b"]])",
         "SetUnitByConfigurationParameter(s,,a);SetUnitByConfigurationParameter(t,x,b);"},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        const CommandSetUnitByConfigurationParameter command(testhost::table(row.rows));
        EXPECT_EQ(command.getCommandAsString(), row.text);
    }
}

TEST_F(SetUnitByParameter, always_initializes_with_success)
{
    CommandSetUnitByConfigurationParameter command(nullptr);

    EXPECT_TRUE(command.initCommand(nullptr));
    EXPECT_TRUE(command.initCommand(tree("description", "{}")));
    EXPECT_TRUE(command.initCommand(table(R"(["no row"])")));
    EXPECT_TRUE(command.initCommand(table(R"([["s", "", "a"]])")));
    EXPECT_EQ(command.getCommandAsString(), "SetUnitByConfigurationParameter(s,,a);");
}

TEST_F(SetUnitByParameter, fills_the_template_from_exactly_two_parameters)
{
    struct Row {
        const char* title = nullptr;
        const char* urlTemplate = nullptr;
        QVariantList parameters;
        const char* lookedUp = nullptr;
    };
    const std::vector<Row> table{
        {"two parameters fill both places",
         "Device/%1/Channel%2/Value",
         {"Inst2", 3},
         "Device/Inst2/Channel3/Value"},
        {"the places may stand in any order", "%2/%1", {"a", "b"}, "b/a"},
        {"one place may stand twice", "%1/%1/%2", {"a", "b"}, "a/a/b"},
        {"without parameters the template is the URL", "%1/%2", {}, "%1/%2"},
        {"so it is with one parameter", "%1/%2", {"a"}, "%1/%2"},
        {"so it is with three", "%1/%2", {"a", "b", "c"}, "%1/%2"},
        {"so it is when the first is no text", "%1/%2", {QVariant(), "b"}, "%1/%2"},
        {"so it is when the second is no text", "%1/%2", {"a", QVariant(QVariantList{})}, "%1/%2"},
        {"the lowest number takes the first parameter", "%7/%3", {"a", "b"}, "b/a"},
        {"a number that stands alone does too", "%2", {"a", "b"}, "a"},
        {"a template with one place drops the second parameter", "%1", {"a", "b"}, "a"},
        {"a template without places drops both", "Leaf%", {"a", "b"}, "Leaf%"},
        {"empty texts fill too", "%1/%2", {"", ""}, "/"},
        {"the parameters are filled in one after the other", "%1/%2", {"%3", "b"}, "%3/b"},
        {"what the first brings along may be filled by the second", "%1/%2", {"%1", "b"}, "b/%2"},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        CommandSetUnitByConfigurationParameter command(
            testhost::table(QString(R"([["s", "", "%1"]])").replace("%1", row.urlTemplate)));
        host.takeCalls();
        execute(command, row.parameters);
        EXPECT_EQ(host.takeCalls(),
                  QStringList{QString("getChildData(target, ") + row.lookedUp + ')'});
    }
}

TEST_F(SetUnitByParameter, fills_random_templates_like_two_calls_of_arg_but_in_silence)
{
    const QStringList pieces{"%", "L", "0", "1", "2", "9", "/", "a"};
    std::mt19937 random(20); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same templates in every run
    const auto text = [&](int length) {
        QString built;
        for (int i = 0; i < length; ++i) {
            built += pieces.at(int(random() % unsigned(pieces.size())));
        }
        return built;
    };
    for (int round = 0; round < 2000; ++round) {
        const QString urlTemplate = text(int(random() % 12));
        const QString first = text(int(random() % 4));
        const QString second = text(int(random() % 4));
        CommandSetUnitByConfigurationParameter command(
            table(QString(R"([["s", "", "TEMPLATE"]])").replace("TEMPLATE", urlTemplate)));
        host.takeCalls();
        execute(command, {first, second});
        ASSERT_EQ(messages.take(), QList<testhost::Message>()) << urlTemplate.toStdString();

        const QString filled = urlTemplate.arg(first).arg(second);
        messages.take(); // Qt's own, about templates without places
        ASSERT_EQ(host.takeCalls(), QStringList{"getChildData(target, " + filled + ')'})
            << urlTemplate.toStdString();
    }
}

TEST_F(SetUnitByParameter, writes_the_source_value_in_its_own_type)
{
    source->addChild("s")->setProperty("@val", 5);
    target = tree("target", R"({"a": 1})");
    manipulator = QSharedPointer<ScriptedManipulator>::create();
    CommandSetUnitByConfigurationParameter command(table(R"([["s", "", "a"]])"));
    host.takeCalls();

    EXPECT_TRUE(execute(command));
    EXPECT_EQ(target->at("a").unit().userType(), int(QMetaType::Int));
    EXPECT_EQ(host.takeCalls({"setDataProperty", "manipulateUnit"}),
              (QStringList{"setDataProperty(target/a, @unit, int(5)) -> 0",
                           "manipulateUnit(target/a, 5, 1, 1)"}));
}

TEST_F(SetUnitByParameter, writes_an_empty_source_text)
{
    source = tree("source", R"({"s": ""})");
    target = tree("target", R"({"a": {"@unit": "K"}})");
    CommandSetUnitByConfigurationParameter command(table(R"([["s", "", "a"]])"));

    EXPECT_TRUE(execute(command));
    EXPECT_EQ(target->at("a").unit(), QVariant(""));
}

TEST_F(SetUnitByParameter, skips_rows_that_lack_something_and_goes_on)
{
    struct Row {
        const char* title = nullptr;
        const char* row = nullptr;
        QStringList calls;
    };
    const std::vector<Row> table{
        {"no leaf: the source is not even read",
         R"(["s", "", "missing"])",
         {"getChildData(target, missing)"}},
        {"no parameter URL: the source is not read",
         R"(["", "", "a"])",
         {"getChildData(target, a)"}},
        {"no source value: nothing is written",
         R"(["missing", "", "a"])",
         {"getChildData(target, a)", "extractConfigValue(missing, source)"}},
        {"a source node without a value: nothing is written",
         R"(["folder", "", "a"])",
         {"getChildData(target, a)", "extractConfigValue(folder, source)"}},
    };
    source = tree("source", R"({"s": "K", "folder": {}})");
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        target = tree("target", R"({"a": 1, "last": 1})");
        CommandSetUnitByConfigurationParameter command(
            testhost::table(QString(R"([%1, ["s", "", "last"]])").arg(row.row)));
        host.takeCalls();

        EXPECT_TRUE(execute(command));
        EXPECT_EQ(host.takeCalls(),
                  row.calls +
                      QStringList({"getChildData(target, last)", "extractConfigValue(s, source)",
                                   "setDataProperty(target/last, @unit, 'K') -> 0"}));
    }
}

TEST_F(SetUnitByParameter, turns_write_statuses_into_its_result_and_the_changed_flag)
{
    source = tree("source", R"({"s": "K"})");
    for (const StatusRow& row : statusTable()) {
        SCOPED_TRACE(row.title);
        QStringList rows;
        for (int i = 0; i < row.statuses.size(); ++i) {
            rows.append(R"(["s", "", "a"])");
        }
        CommandSetUnitByConfigurationParameter command(table('[' + rows.join(',') + ']'));
        target = tree("target", R"({"a": 1})");
        target->at("a").answerWritesWith(row.statuses);
        changed = row.changedBefore;

        EXPECT_EQ(execute(command), row.result);
        EXPECT_EQ(changed, row.changed);
    }
}

TEST_F(SetUnitByParameter, does_nothing_when_a_root_is_null)
{
    CommandSetUnitByConfigurationParameter command(table(R"([["a", "", "a"]])"));
    const testhost::NodePointer tree = testhost::tree("tree", R"({"a": "K"})");
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

TEST_F(SetUnitByParameter, leaves_the_results_list_alone)
{
    source = tree("source", R"({"s": "K"})");
    target = tree("target", R"({"a": 1})");
    results = {"kept", 5};
    CommandSetUnitByConfigurationParameter command(table(R"([["s", "", "a"]])"));

    EXPECT_TRUE(execute(command));
    EXPECT_EQ(results, (QVariantList{"kept", 5}));
}

TEST_F(SetUnitByParameter, asks_the_manipulator_after_each_write_whatever_its_status)
{
    source = tree("source", R"({"s": "K"})");
    target = tree("target", R"({"a": 1, "b": 1, "c": {"@unit": "K"}})");
    target->at("a").answerWritesWith({2});
    manipulator = QSharedPointer<ScriptedManipulator>::create();
    CommandSetUnitByConfigurationParameter command(
        table(R"([["s", "", "a"], ["s", "", "missing"], ["missing", "", "c"],
                  ["s", "", "c"], ["s", "", "b"]])"));
    host.takeCalls();

    EXPECT_TRUE(execute(command));
    EXPECT_EQ(host.takeCalls({"manipulateUnit"}),
              (QStringList{"manipulateUnit(target/a, K, 0, 0)", "manipulateUnit(target/c, K, 1, 0)",
                           "manipulateUnit(target/b, K, 1, 1)"}));
}

TEST_F(SetUnitByParameter, lets_the_manipulator_turn_both_flags)
{
    source = tree("source", R"({"s": "K"})");
    CommandSetUnitByConfigurationParameter command(table(R"([["s", "", "a"]])"));
    for (const bool outcome : {false, true}) {
        target = tree("target", R"({"a": 1})");
        target->at("a").answerWritesWith({outcome ? 2 : 0});
        manipulator = QSharedPointer<ScriptedManipulator>::create(
            [outcome](bool& commandResult, bool& changed) { commandResult = changed = outcome; });
        changed = !outcome;

        EXPECT_EQ(execute(command), outcome);
        EXPECT_EQ(changed, outcome);
    }
}

} // namespace
