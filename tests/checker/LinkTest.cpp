#include "ExampleWorkspace.h"

#include <gtest/gtest.h>

using checker::Example;
using checker::Finding;

namespace {

const char* const source = R"({
    "Settings": { "Unit": "m", "Limit": 5, "Empty": null, "On": true,
                  "List": [1, 2] },
    "Zones": { "A": { "Mode": "lab", "Unit": "m" }, "B": { "Mode": "off" } }
})";

const char* const target = R"({
    "A": { "Speed": 1 },
    "B": { "Speed": 2 },
    "C": 3,
    "Log": { "@type": "array", "@arrayInformation": [{ "name": "x" }], "@value": [] }
})";

QList<Finding> inCommand(const QString& type, const QString& rows, const QString& parameters = {})
{
    return findingsIn(Example{"{\"N\": {\"Type\": \"CommandNode\", \"Commands\": {\"" + type +
                                  "\": [\n" + rows + "]}}}",
                              source,
                              target,
                              parameters,
                              {}});
}

QList<Finding> inCondition(const QString& type, const QString& rows)
{
    return findingsIn(
        Example{R"({"N": {"Type": "SwitchNode", "Next": {"E": {"Type": "CommandNode", "Commands":
        {"CommandSetUnitProperties": [["A", "m"]]},)"
                "\n\"" +
                    type + "\": [\n" + rows + "]}}}}",
                source,
                target,
                {},
                {}});
}

} // namespace

TEST(LinkFindings, name_the_link_and_the_nearest_leaf)
{
    const QList<Finding> findings =
        inCommand("CommandSetUnitByConfigurationParameter", R"(["Setings/Unit", "", "A/Sped"])");
    ASSERT_EQ(told(findings),
              (QStringList{"2:2+14 unknown-source-url", "2:22+8 unknown-target-url"}));
    EXPECT_TRUE(findings.first().advice.contains("\"Settings/Unit\""));
    EXPECT_TRUE(findings.last().advice.contains("\"A/Speed\""));
    ASSERT_TRUE(findings.first().link);
    EXPECT_EQ(findings.first().link->source, "controller");
}

TEST(LinkFindings, resolve_prefixes_and_parameters)
{
    const QString rows = R"(["Speed", "m"])";
    EXPECT_EQ(told(inCommand("CommandSetUnitProperties", rows, R"(["B/"])")), QStringList());
    EXPECT_EQ(told(inCommand("CommandSetUnitProperties", rows, R"(["D/"])")),
              QStringList{"2:2+7 unknown-target-url"});

    const QString places = R"(["Settings/Unit", "", "%1/%2"])";
    const QString type = "CommandSetUnitByConfigurationParameter";
    EXPECT_EQ(told(inCommand(type, places, R"(["A", "Speed"])")), QStringList());
    EXPECT_EQ(told(inCommand(type, places, R"(["A", 1])")),
              QStringList{"2:23+7 unknown-target-url"});
    EXPECT_EQ(told(inCommand(type, places, R"(["A"])")), QStringList{"2:23+7 unfilled-place"});
    EXPECT_EQ(told(inCommand(type, places, R"(["A", []])")), QStringList{"2:23+7 unfilled-place"});
}

TEST(LinkFindings, tell_of_places_for_parameters_as_they_are_written)
{
    const QString type = "CommandSetUnitByConfigurationParameter";
    const QList<Finding> first = inCommand(type, R"(["Settings/Unit", "", "A/%1"])", R"(["A"])");
    ASSERT_EQ(told(first), QStringList{"2:23+6 unfilled-place"});
    EXPECT_TRUE(first.first().message.startsWith("\"%1\" is only filled by a link with exactly two "
                                                 "parameters, and this one has 1;"))
        << first.first().message.toStdString();
    const QList<Finding> second =
        inCommand(type, R"(["Settings/Unit", "", "A/%2"])", R"(["A", "B", "C"])");
    ASSERT_EQ(told(second), QStringList{"2:23+6 unfilled-place"});
    EXPECT_TRUE(second.first().message.startsWith("\"%2\" is only filled by a link with exactly "
                                                  "two parameters, and this one has 3;"))
        << second.first().message.toStdString();
}

TEST(LinkFindings, resolve_groups_for_each_leaf_that_a_pattern_matches)
{
    const QString type = "CommandSetUnitPropertiesRegExp";
    EXPECT_EQ(told(inCommand(type, R"(["^Zones/(?<z>.)/", "(?<z>)/Speed", "m"])")), QStringList());
    EXPECT_EQ(told(inCommand(type, R"(["^Zones/(?<z>.)/", "(?<z>)/Sped", "m"])")),
              QStringList{"2:21+13 unknown-target-url"});
    EXPECT_EQ(told(inCommand(type, R"(["^Zone/(?<z>.)/", "(?<z>)/Speed", "m"])")),
              QStringList{"2:2+16 pattern-matches-nothing"});
}

TEST(LinkFindings, tell_leaves_without_a_value_where_the_value_is_read)
{
    EXPECT_EQ(told(inCondition("ConditionWriteOnUrls", R"(["Settings/Empty"], ["Settings/Unit"])")),
              QStringList())
        << "it can be written";
    for (const QList<Finding>& findings :
         {inCondition("ConditionValueComparator", R"(["Settings/Empty", "==", 1])"),
          inCommand("CommandSetUnitByConfigurationParameter", R"(["Settings/Empty", "", "C"])")}) {
        ASSERT_EQ(findings.size(), 1);
        EXPECT_EQ(findings.first().code, checker::Code::UnknownSourceUrl);
        EXPECT_TRUE(findings.first().message.contains("as long as it has none"));
        EXPECT_FALSE(findings.first().advice.contains("\"Settings/Empty\""));
    }
    EXPECT_EQ(told(inCondition("ConditionWriteOnUrls", R"(["Settings"])")),
              QStringList{"4:2+10 unknown-source-url"})
        << "this is no leaf";
}

TEST(LinkFindings, of_texts_beside_truth_values_are_of_those_that_read_otherwise)
{
    const auto found = [](const QString& constant) {
        return told(
            inCondition("ConditionValueComparator", "[\"Settings/On\", \"==\", " + constant + "]"));
    };
    EXPECT_EQ(found("\"off\""), QStringList{"4:23+5 text-as-truth"});
    EXPECT_EQ(found("\"no\"").size(), 1);
    EXPECT_EQ(found("\"0.0\"").size(), 1);
    for (const char* asMeant : {"\"False\"", "\"0\"", "\"\"", "\"on\"", "true", "0"}) {
        EXPECT_EQ(found(asMeant), QStringList()) << asMeant;
    }
    const QList<Finding> off =
        inCondition("ConditionValueComparator", R"(["Settings/On", "==", "off"])");
    EXPECT_TRUE(off.first().message.contains("reads \"off\" as true"));
}

TEST(LinkFindings, of_a_prefix_advise_as_the_cell_and_the_link_have_it)
{
    const auto advice = [](const QString& url, const QString& prefix) {
        const QList<Finding> findings = inCommand(
            "CommandSetUnitProperties", "[\"" + url + "\", \"m\"]", "[\"" + prefix + "\"]");
        EXPECT_EQ(findings.size(), 1);
        return findings.first().advice;
    };
    EXPECT_EQ(advice("Speed", "A"), "end the parameter of the link with \"/\": \"A/\"");
    EXPECT_EQ(advice("Sped", "A/"), "did you mean \"Speed\"?");
    EXPECT_EQ(advice("Speed", "D/"),
              "no leaf of the target begins with the parameter of the link, \"D/\"");
}

TEST(LinkFindings, leave_out_what_follows_from_another_one)
{
    EXPECT_EQ(told(inCommand("CommandSetUnitPropertiesRegExp",
                             R"(["^Zones/(?<z>.)/", "(?<Z>)(?<z>)/Speed", "m"])")),
              QStringList{"2:22+6 unknown-group"});
    EXPECT_EQ(told(inCommand("CommandSetUnitProperties", R"(["%1/Speed", "m"])")),
              QStringList{"2:3+2 unfilled-place"});
    EXPECT_EQ(told(inCommand("CommandSetUnitByConfigurationParameterArray",
                             R"(["Settings/Unit", "Log[%1]"])")),
              QStringList{"2:24+2 unfilled-place"});
    EXPECT_EQ(told(inCondition("ConditionWriteOnUrlsRegExp", R"(["RE:^Zones/"])")),
              QStringList{"4:3+3 prefixed-pattern"});
}

TEST(LinkFindings, of_one_missing_leaf_are_one_for_all_instances)
{
    ExampleWorkspace workspace(
        {R"({"N": {"Type": "CommandNode", "Commands": {"CommandSetUnitProperties": [["X", "m"]]}}})",
         source,
         target,
         {},
         {}});
    workspace.write("configuration/other.json", target);
    workspace.write("links.json",
                    R"([{"source": "controller", "target": "display", "dependency": "units"},
{"source": "controller", "target": "other", "dependency": "units"}])");
    const QList<Finding> findings = workspace.check();
    ASSERT_EQ(findings.size(), 1);
    EXPECT_EQ(findings.first().otherLinks, 1);
}

TEST(LinkFindings, are_of_no_conflict_with_a_row_that_sets_nothing)
{
    const QString type = "CommandSetUnitByConfigurationParameter";
    const QString missing =
        R"(["Settings/Unit", "", "C"], ["Settings/None", "", "C"], ["Settings/List", "", "C"])";
    for (const Finding& finding : inCommand(type, missing)) {
        EXPECT_NE(finding.code, checker::Code::ConflictingUnits);
    }
    EXPECT_EQ(told(inCommand("CommandSetUnitProperties", R"(["C", "m3/h"], ["C", "m³/h"])")),
              QStringList())
        << "one unit in two spellings";
}

TEST(LinkFindings, are_of_a_description_that_has_no_nodes)
{
    for (const char* empty : {"{}", R"({"@comment": "later"})", R"({"$schema": "a.json"})"}) {
        EXPECT_EQ(told(findingsIn(Example{empty, source, target, {}, {}})),
                  QStringList{QString("1:1+%1 no-effect").arg(QString(empty).size())});
    }
}

TEST(LinkFindings, read_constants_in_the_type_of_the_value)
{
    const auto found = [](const QString& url, const QString& constant) {
        return told(inCondition("ConditionValueComparator",
                                "[\"" + url + "\", \"==\", " + constant + "]"))
            .size();
    };
    EXPECT_EQ(found("Settings/Limit", "5"), 0);
    EXPECT_EQ(found("Settings/Limit", "5.5"), 0);
    EXPECT_EQ(found("Settings/Limit", "\"5\""), 0);
    EXPECT_EQ(found("Settings/Limit", "\"high\""), 1);
    EXPECT_EQ(found("Settings/Unit", "7"), 0);
    EXPECT_EQ(found("Settings/Unit", "[7]"), 1);
    EXPECT_EQ(found("Settings/On", "\"yes\""), 0);
    EXPECT_EQ(told(inCondition("ConditionValueComparatorRegExp", R"(["Mode$", "==", {}])")).size(),
              1);
}

TEST(LinkFindings, know_which_rows_set_one_leaf_in_one_write)
{
    const QString fixed = "CommandSetUnitPropertiesRegExp";
    EXPECT_EQ(told(inCommand(fixed, "[\"^Zones/(A)/\", \"C\", \"m\"],\n[\"^Zones/(B)/\", \"C\", "
                                    "\"s\"]")),
              QStringList())
        << "never in the same write";
    EXPECT_EQ(told(inCommand(fixed, "[\"^Zones/(.)/\", \"C\", \"m\"],\n[\"^Zones/(B)/\", \"C\", "
                                    "\"s\"]")),
              QStringList{"3:17+3 conflicting-units"});
    EXPECT_EQ(told(inCommand("CommandSetUnitProperties", "[\"C\", \"m\"],\n[\"C\", \"m\"]")),
              QStringList());
    EXPECT_EQ(told(inCommand("CommandSetUnitByConfigurationParameter",
                             "[\"Settings/Unit\", \"\", \"C\"],\n[\"Zones/A/Unit\", \"\", \"C\"]")),
              QStringList{"3:22+3 conflicting-units"});
}

TEST(LinkFindings, are_told_once_and_counted_for_the_other_links)
{
    ExampleWorkspace workspace(
        {R"({"N": {"Type": "CommandNode", "Commands": {"CommandSetUnitProperties": [["X", "m"]]}}})",
         source,
         target,
         {},
         {}});
    const QString link = R"({"source": "controller", "target": "display", "dependency": "units"})";
    workspace.write("links.json", "[" + link + ", " + link + ", " + link + "]");
    const QList<Finding> findings = workspace.check();
    ASSERT_EQ(findings.size(), 1);
    EXPECT_EQ(findings.first().otherLinks, 2);
}

TEST(LinkFindings, tell_of_parameters_that_nothing_takes)
{
    const auto found = [](const QString& type, const QString& row, const QString& parameters) {
        return told(inCommand(type, row, parameters));
    };
    const QString fixed = "CommandSetUnitProperties";
    const QString copied = "CommandSetUnitByConfigurationParameter";
    EXPECT_EQ(found(fixed, R"(["Speed", "m"])", R"(["A/"])"), QStringList());
    EXPECT_EQ(found(fixed, R"(["Speed", "m"])", R"(["A/", 1])"),
              QStringList{"1:86+9 unused-parameters"});
    EXPECT_EQ(found(fixed, R"(["C", "m"])", "[[1]]"), QStringList{"1:86+5 unused-parameters"});
    EXPECT_EQ(found(copied, R"(["Settings/Unit", "", "C"])", R"(["A/"])"),
              QStringList{"1:86+6 unused-parameters"});
    EXPECT_EQ(found(copied, R"(["Settings/Unit", "", "A/%2%1"])", R"(["eed", "Sp"])"),
              QStringList());
    EXPECT_EQ(found(copied, R"(["Settings/Unit", "", "A/%1"])", R"(["eed"])"),
              QStringList{"2:23+6 unfilled-place"});
}

TEST(LinkFindings, tell_of_a_list_that_is_to_be_a_unit)
{
    const QList<Finding> skipped =
        inCommand("CommandSetUnitByConfigurationParameterArray", R"(["Settings/List", "Log[0]"])");
    ASSERT_EQ(told(skipped), QStringList{"2:2+15 unknown-unit"});
    EXPECT_TRUE(skipped.first().message.contains("skips the row"));
    const QList<Finding> set =
        inCommand("CommandSetUnitByConfigurationParameter", R"(["Settings/List", "", "C"])");
    ASSERT_EQ(told(set), QStringList{"2:2+15 unknown-unit"});
    EXPECT_TRUE(set.first().message.contains("sets it all the same"));
}

TEST(LinkFindings, tell_how_a_link_is_written)
{
    ExampleWorkspace workspace(
        {R"({"N": {"Type": "CommandNode", "Commands": {"CommandSetUnitProperties": [["C", "m"]]}}})",
         source,
         target,
         {},
         {}});
    workspace.write("links.json", R"([
{"source": "configuration/controller", "target": "display.json", "dependency": "units"},
{"source": "controller", "target": "display", "dependency": "units", "Process": true}
])");
    const QList<Finding> findings = workspace.check();
    ASSERT_EQ(findings.size(), 3);
    EXPECT_TRUE(findings.at(0).advice.startsWith("write \"controller\""));
    EXPECT_TRUE(findings.at(1).advice.startsWith("write \"display\""));
    EXPECT_EQ(findings.at(2).message, "\"Process\" means nothing in a link");
    EXPECT_EQ(findings.at(2).advice, "did you mean \"process\"?");
}

TEST(LinkFindings, tell_what_links_name_and_is_not_there)
{
    ExampleWorkspace workspace(
        {R"({"N": {"Type": "CommandNode", "Commands": {"CommandSetUnitProperties": [["C", "m"]]}}})",
         source,
         target,
         {},
         {}});
    workspace.write("links.json", R"([
{"source": "controler", "target": "display", "dependency": "units"},
{"source": "controller", "target": "display", "process": true, "dependency": "unit"},
{"source": "controller", "aim": "display", "dependency": "units"}
])");
    const QList<Finding> findings = workspace.check();
    EXPECT_EQ(told(findings),
              (QStringList{"2:12+11 missing-file", "3:36+9 missing-file", "3:78+6 missing-file",
                           "4:1+1 bad-link", "4:26+1 bad-link"}));
    EXPECT_EQ(findings.first().file, "links.json");
    EXPECT_TRUE(findings.first().advice.contains("\"controller\""));
}
