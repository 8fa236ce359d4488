#include "ExampleWorkspace.h"

#include <QDir>
#include <gtest/gtest.h>

using checker::Finding;

namespace {

struct Mistake {
    const char* title;
    QString description;
    QStringList findings;
};

void PrintTo(const Mistake& mistake, std::ostream* stream)
{
    *stream << mistake.title;
}

class Description : public testing::TestWithParam<Mistake> {};

const QString command =
    R"("Type": "CommandNode", "Commands": { "CommandSetUnitProperties": [["A", "m"]] })";

} // namespace

TEST_P(Description, is_checked_in_the_order_of_its_text)
{
    EXPECT_EQ(told(findingsIn(GetParam().description)), GetParam().findings);
}

INSTANTIATE_TEST_SUITE_P(
    With, Description,
    testing::Values(
        Mistake{"nothing", "{}", {}},
        Mistake{"remarks", "{\"@comment\": \"x\", \"N\": {\"@comment\": 1, " + command + "}}", {}},
        Mistake{"no_object", "[]", {"1:1+1 not-an-object"}},
        Mistake{"text_beside_nodes", "{\"Remark\": \"x\"}", {"1:2+8 missing-type"}},
        Mistake{"the_place_of_the_schema",
                "{\"$schema\": \"../a.json\", \"N\": {" + command + "}}",
                {}},
        Mistake{"a_node_that_is_named_like_it", "{\"$schema\": {}}", {"1:2+9 missing-type"}},
        Mistake{"the_place_of_a_schema_in_a_node",
                "{\"N\": {" + command + ", \"$schema\": \"a\"}}",
                {"1:89+9 ignored-member"}},
        Mistake{"a_node_without_a_name", "{" + command + "}", {"1:2+6 missing-type"}},
        Mistake{"a_successor_without_a_name",
                "{\"N\": {\"Type\": \"SwitchNode\", \"Next\": {" + command + "}}}",
                {"1:39+6 missing-type"}},
        Mistake{"a_type_that_is_no_text", "{\"N\": {\"Type\": [1]}}", {"1:16+3 unknown-node-type"}},
        Mistake{"a_type_without_value", "{\"N\": {\"Type\": null}}", {"1:8+6 unknown-node-type"}},
        Mistake{"a_long_type",
                "{\"N\": {\"Type\": {\"@value\": \"Nod\"}}}",
                {"1:27+5 unknown-node-type"}},
        Mistake{"two_mistakes",
                "{\n\"B\": {\"Type\": \"X\"},\n\"A\": {\"Type\": \"Y\"}}",
                {"2:15+3 unknown-node-type", "3:15+3 unknown-node-type"}},
        Mistake{"a_mistake_inside_something_unknown",
                "{\"N\": {\"Type\": \"X\", \"Next\": {\"M\": {}}}}",
                {"1:16+3 unknown-node-type", "1:30+3 missing-type"}},
        Mistake{"a_miscased_next",
                "{\"N\": {" + command + ", \"next\": {}}}",
                {"1:89+6 ignored-member"}},
        Mistake{"a_condition_in_another_case",
                "{\"N\": {" + command + ", \"conditionWriteOnUrls\": [[\"A\"]]}}",
                {"1:89+22 unknown-condition"}},
        Mistake{"several_problems_of_the_json",
                "{\"a\": 1, \"a\": 99999999999999999999}",
                {"1:10+1 duplicate-key", "1:15+1 beyond-limits"}}),
    [](const testing::TestParamInfo<Mistake>& test) { return test.param.title; });

TEST(DescriptionFindings, tell_apart_a_missing_type_and_one_in_another_case)
{
    EXPECT_TRUE(
        findingsIn(QString(R"({"N": {"TYPE": "SwitchNode"}})")).first().advice.contains("case"));
    EXPECT_FALSE(findingsIn(QString(R"({"N": {}})")).first().advice.contains("case"));
}

TEST(DescriptionFindings, name_the_key_that_was_meant_to_be_the_type)
{
    const QList<Finding> findings = findingsIn(QString(R"({"N": {"Typ": "SwitchNode"}})"));
    ASSERT_EQ(told(findings), QStringList{"1:2+3 missing-type"});
    EXPECT_TRUE(findings.first().advice.contains("\"Typ\""));
}

TEST(DescriptionFindings, say_where_commands_and_successors_belong)
{
    const auto advice = [](const QString& member) {
        return findingsIn("{\"N\": {" + command + ", " + member + "}}").first().advice;
    };
    EXPECT_TRUE(advice("\"CommandSetUnitPropertiesRegExp\": []").contains("\"Commands\""));
    EXPECT_TRUE(advice("\"M\": {\"Type\": \"SwitchNode\"}").contains("\"Next\""));
    EXPECT_TRUE(advice("\"Comands\": {}").contains("\"Commands\""));
    EXPECT_TRUE(advice("\"Note\": 1").contains("@comment"));
}

TEST(DescriptionFindings, know_the_two_names_that_differ_from_their_classes)
{
    EXPECT_TRUE(findingsIn(QString(R"({"N": {"Type": "CommandNode", "Commands":
        {"CommandSetUnitByConfigurationParameterRegExp": []}}})"))
                    .first()
                    .advice.contains("\"CommandSetUnitByConfigurationParameterInstRegExp\""));
    EXPECT_TRUE(findingsIn(QString("{\"N\": {" + command + ", \"ConditionValueComparators\": []}}"))
                    .first()
                    .advice.contains("\"ConditionValueComparator\""));
}

TEST(DescriptionFindings, do_not_tell_conditions_that_exclude_each_other)
{
    const auto edge = [](const QString& conditions) {
        return told(findingsIn("{\"N\": {\"Type\": \"SwitchNode\", \"Next\": {\"E\": {" + command +
                               ", " + conditions + "}}}}"));
    };
    const QString urls = R"("ConditionWriteOnUrls": [["A/Mode"]], )";
    EXPECT_EQ(edge(urls + R"("ConditionWriteOnUrlsRegExp": [["^B/"]])"), QStringList());
    EXPECT_EQ(edge(urls + R"("ConditionValueComparatorRegExp": [["^B/", "==", 1]])"),
              QStringList());
    EXPECT_EQ(edge(urls + R"("ConditionValueComparatorRegExp": [["Mode", "==", 1]])").size(), 2)
        << "alternatives, and a node that runs twice";
    EXPECT_EQ(edge(urls + R"("ConditionValueComparator": [["A/Limit", "==", 1]])").size(), 1);
}

TEST(DescriptionFindings, tell_a_subgraph_without_effect_once_at_its_top)
{
    const auto below = [](const QString& successors) {
        return told(findingsIn("{\"N\": {\"Type\": \"SwitchNode\", \"Next\": {\"K\": {" + command +
                               "},\n\"S\": {\"Type\": \"SwitchNode\", \"Next\": {" + successors +
                               "}}}}}"));
    };
    const QString idle = R"("A": {"Type": "SwitchNode"}, "B": {"Type": "CommandNode",
        "Next": {"C": {"Type": "CommandNode", "Commands": {"@comment": "none"}}}})";
    EXPECT_EQ(below(idle), QStringList{"2:1+3 no-effect"});
    EXPECT_EQ(told(findingsIn("{\"T\": {\"Type\": \"SwitchNode\", \"Next\": {" + idle + "}}}")),
              QStringList{"1:2+3 no-effect"});
    EXPECT_EQ(below(R"("A": {"Type": "SwitchNode"}, "B": {)" + command + "}"),
              QStringList{"2:38+3 switch-without-edges"});
    EXPECT_EQ(below(R"("A": {"Type": "CommandNode", "Next": {}})"), QStringList{"2:1+3 no-effect"});
}

TEST(DescriptionFindings, leave_subgraphs_alone_that_watch_or_are_wrong_otherwise)
{
    const auto below = [](const QString& successor) {
        return told(findingsIn("{\"N\": {\"Type\": \"SwitchNode\", \"Next\": {\"S\": {" +
                               successor + "}}}}"));
    };
    EXPECT_EQ(below(R"("Type": "CommandNode", "ConditionWriteOnUrls": [["A"]])"), QStringList());
    EXPECT_EQ(below(R"("Type": "CommandNode", "Commands": {"CommandSetUnitProperties": []})"),
              QStringList{"1:81+26 empty-table"});
    EXPECT_EQ(below(R"("Type": "CommandNode", "Next": [])"), QStringList{"1:76+2 not-an-object"});
    EXPECT_EQ(below(R"("Type": "Commandnode")"), QStringList{"1:53+13 unknown-node-type"});
}

TEST(ExampleDescriptions, have_no_findings)
{
    ExampleWorkspace workspace;
    workspace.copy(UNITFLOW_EXAMPLES_FOLDER "/oven-line");
    EXPECT_EQ(told(workspace.check()), QStringList());
    EXPECT_EQ(QDir(workspace.path("dependency")).entryList(QDir::Files).size(), 6);
}
