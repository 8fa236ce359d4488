#include "ExampleWorkspace.h"

#include <QtGlobal>
#include <gtest/gtest.h>

using checker::Example;
using checker::Finding;

namespace {

const char* const source = R"({
    "Settings": { "Unit": "m", "Limit": 5, "Mode": "lab", "Empty": "" },
    "Zones": { "A": "s", "B": "m/s" }
})";

const char* const target = R"({
    "Speed": { "@value": 1, "@unitType": "m/s" },
    "Length": { "@value": 1, "@unitType": "km" },
    "Odd": { "@value": 1, "@unitType": "furlongs per fortnight and a bit" },
    "Bare": 1,
    "Log": {
        "@type": "array",
        "@arrayInformation": [{ "name": "Time", "unitType": "s" }, { "name": "Speed" }],
        "@value": []
    }
})";

QList<Finding> inNodes(const QString& nodes, const QString& units = {})
{
    return findingsIn(Example{"{\n" + nodes + "\n}", source, target, {}, units});
}

/// A top-level node that runs for every write.
QString always(const QString& name, const QString& type, const QString& rows)
{
    return "\"" + name + "\": {\"Type\": \"CommandNode\", \"Commands\": {\"" + type + "\": [" +
           rows + "]}}";
}

QString fixed(const QString& name, const QString& rows)
{
    return always(name, "CommandSetUnitProperties", rows);
}

/// A top-level node with a guarded command.
QString guarded(const QString& name, const QString& condition, const QString& rows)
{
    return "\"" + name +
           "\": {\"Type\": \"SwitchNode\", \"Next\": {\"E\": {\"Type\": \"CommandNode\", " +
           condition + ", \"Commands\": {\"CommandSetUnitProperties\": [" + rows + "]}}}}";
}

QString messagesOf(const QList<Finding>& findings)
{
    QStringList messages;
    for (const Finding& finding : findings) {
        messages.append(finding.message);
    }
    return messages.join('\n');
}

QStringList codesOf(const QList<Finding>& findings)
{
    QStringList codes;
    for (const Finding& finding : findings) {
        codes.append(describe(finding.code).name);
    }
    return codes;
}

} // namespace

TEST(UnitFindings, are_of_a_fixed_unit_even_where_its_row_does_not_run)
{
    const QList<Finding> findings =
        inNodes(guarded("N", R"("ConditionValueComparator": [["Settings/Mode", "==", "field"]])",
                        R"(["Speed", "m/sek"], ["Bare", "kPA"])"));
    EXPECT_EQ(codesOf(findings), (QStringList{"unknown-unit", "unknown-unit"}));
    EXPECT_TRUE(findings.last().advice.contains("\"kPa\""));
}

TEST(UnitFindings, are_of_what_the_source_holds_where_the_row_runs)
{
    const QString type = "CommandSetUnitByConfigurationParameter";
    const QList<Finding> findings = inNodes(always("N", type, R"(["Settings/Limit", "", "Bare"])"));
    ASSERT_EQ(told(findings), QStringList{"2:87+16 unknown-unit"});
    EXPECT_TRUE(findings.first().message.contains("the value of \"Settings/Limit\" is \"5\""));
    EXPECT_TRUE(findings.first().advice.contains("units.json"));

    EXPECT_EQ(codesOf(inNodes(always("N", type, R"(["Settings/Empty", "", "Bare"])"))),
              QStringList());
    EXPECT_EQ(codesOf(inNodes(always("N", "CommandSetUnitByConfigurationParameterInstRegExp",
                                     R"(["^Settings/(Mode|Unit)$", "Bare"])"))),
              QStringList{"unknown-unit"});
    EXPECT_EQ(codesOf(inNodes(R"("N": {"Type": "SwitchNode", "Next": {"E": {"Type": "CommandNode",
"ConditionValueComparator": [["Settings/Mode", "!=", "lab"]], "Commands": {")" +
                              type + R"(": [["Settings/Mode", "", "Bare"]]}}}})")),
              QStringList());
}

TEST(UnitFindings, are_of_an_empty_one_that_takes_away_what_the_leaf_has)
{
    const QList<Finding> findings =
        inNodes(always("N", "CommandSetUnitByConfigurationParameter",
                       R"(["Settings/Empty", "", "Bare"], ["Settings/Empty", "", "Speed"])"));
    ASSERT_EQ(codesOf(findings), QStringList{"empty-unit"});
    EXPECT_TRUE(findings.first().message.contains("\"m/s\" from \"Speed\""));
}

TEST(UnitFindings, are_of_a_fixed_unit_without_a_link)
{
    const ExampleWorkspace workspace(
        {"{" + fixed("N", R"(["Speed", "m/sek"])") + "}", source, target, {}, R"({"pcs": null})"});
    workspace.write("links.json", "[]");
    EXPECT_EQ(codesOf(workspace.check()), QStringList{"unknown-unit"});
}

TEST(UnitFindings, suggest_what_fits_the_unit_of_the_leaf)
{
    const QList<Finding> findings = inNodes(fixed("N", R"(["Speed", "barr"], ["Bare", "barr"])"));
    ASSERT_EQ(codesOf(findings), (QStringList{"unknown-unit", "unknown-unit"}));
    EXPECT_FALSE(findings.first().advice.contains("\"bar\""));
    EXPECT_TRUE(findings.last().advice.contains("\"bar\""));
}

TEST(UnitFindings, are_told_at_the_first_of_the_rows_that_take_one_value)
{
    EXPECT_EQ(told(inNodes(always("N", "CommandSetUnitByConfigurationParameter",
                                  "\n[\"Settings/Limit\", \"\", \"Bare\"],\n"
                                  "[\"Settings/Limit\", \"\", \"Odd\"]"))),
              QStringList{"3:2+16 unknown-unit"});
}

TEST(UnitFindings, are_not_of_what_the_workspace_lists)
{
    EXPECT_EQ(codesOf(inNodes(fixed("N", R"(["Bare", "pcs/h"])"), R"({ "pcs": null })")),
              QStringList());
    const QList<Finding> findings = inNodes(fixed("N", R"(["Bare", "pcs/h"])"), R"({ "pcs": 1 })");
    EXPECT_EQ(codesOf(findings), (QStringList{"unknown-unit", "bad-unit"}));
    EXPECT_EQ(findings.last().file, "units.json");
    EXPECT_EQ(findings.last().place.column, 10);
}

TEST(UnitFindings, name_both_units_and_what_they_measure)
{
    const QList<Finding> findings = inNodes(fixed("N", R"(["Speed", "°C"])"));
    ASSERT_EQ(told(findings), QStringList{"2:82+4 other-dimension"});
    EXPECT_TRUE(findings.first().message.contains("\"°C\" (a temperature, K)"));
    EXPECT_TRUE(findings.first().message.contains("\"m/s\" (a speed, m·s⁻¹)"));
}

TEST(UnitFindings, compare_only_with_a_unit_that_is_there_and_known)
{
    EXPECT_EQ(codesOf(inNodes(fixed("N", R"(["Speed", "km/h"], ["Bare", "bar"], ["Odd", "bar"])"))),
              QStringList());
}

TEST(UnitFindings, compare_with_what_the_file_holds_and_not_with_an_earlier_row)
{
    EXPECT_EQ(codesOf(inNodes(fixed("A", R"(["Length", "mm"])") + ",\n" +
                              fixed("B", R"(["Length", "bar"])"))),
              (QStringList{"conflicting-units", "other-dimension"}));
}

TEST(UnitFindings, look_at_the_columns_of_arrays)
{
    const QString type = "CommandSetUnitByConfigurationParameterArray";
    EXPECT_EQ(codesOf(inNodes(always(
                  "N", type, R"(["Settings/Unit", "Log[0]"], ["Settings/Unit", "Log[1]"])"))),
              QStringList{"other-dimension"});
    EXPECT_EQ(codesOf(inNodes(always("N", type, R"(["Zones/A", "Log[0]"])"))), QStringList());
}

TEST(UnitFindings, are_told_once_however_many_writes_lead_there)
{
    EXPECT_EQ(codesOf(inNodes(guarded("N", R"("ConditionWriteOnUrlsRegExp": [["^Zones/"]])",
                                      R"(["Speed", "bar"])"))),
              QStringList{"other-dimension"});
}

TEST(UnitFindings, do_not_run_what_would_end_the_process)
{
    EXPECT_EQ(codesOf(inNodes(fixed("A", R"(["Speed"], ["Speed", "bar"])"))),
              QStringList{"row-fatal"});
    EXPECT_EQ(codesOf(inNodes(always("A", "CommandSetUnitByConfigurationParameterArray",
                                     R"(["Zones/A", "Log[2]"])") +
                              ",\n" + fixed("B", R"(["Speed", "bar"])"))),
              QStringList{"column-out-of-range"});
}

TEST(RunsTwice, are_nodes_with_two_patterns_that_match_one_url)
{
    const auto found = [](const QString& first, const QString& second) {
        return inNodes(
            "\"N\": {\"Type\": \"SwitchNode\", \"Next\": {" +
            QString(R"("A": {"Type": "CommandNode", "ConditionWriteOnUrlsRegExp": [["%1"]]},
"B": {"Type": "CommandNode", "ConditionValueComparatorRegExp": [["%2", "==", "s"]]}}})")
                .arg(first, second));
    };
    const QList<Finding> findings = found("^Zones/", "/[AB]$");
    ASSERT_EQ(told(findings), QStringList{"3:66+8 runs-twice"});
    EXPECT_TRUE(findings.first().message.contains("\"Zones/A\""));
    EXPECT_EQ(codesOf(found("^Zones/A", "/B$")), QStringList());
    EXPECT_EQ(codesOf(found("^Zones/", "^Zones/")), QStringList()) << "watched once";
}

TEST(Conflicts, are_found_between_nodes_that_run_for_one_write)
{
    const QList<Finding> everywhere =
        inNodes(fixed("A", R"(["Speed", "km/h"])") + ",\n" + fixed("B", R"(["Speed", "m/min"])"));
    EXPECT_EQ(told(everywhere), QStringList{"3:73+7 conflicting-units"});
    EXPECT_TRUE(messagesOf(everywhere).contains("whatever is written, after line 2"));

    const QList<Finding> once =
        inNodes(guarded("A", R"("ConditionWriteOnUrls": [["Zones/A"], ["Zones/B"]])",
                        R"(["Speed", "km/h"])") +
                ",\n" +
                guarded("B", R"("ConditionWriteOnUrlsRegExp": [["^Zones/[BC]"]])",
                        R"(["Speed", "m/min"])"));
    EXPECT_EQ(codesOf(once), QStringList{"conflicting-units"});
    EXPECT_TRUE(messagesOf(once).contains("when \"Zones/B\" is written"));
}

TEST(Conflicts, are_not_found_where_conditions_exclude_each_other)
{
    const QString watched = R"("ConditionWriteOnUrls": [["Zones/%1"]])";
    EXPECT_EQ(codesOf(inNodes(guarded("A", watched.arg("A"), R"(["Speed", "km/h"])") + ",\n" +
                              guarded("B", watched.arg("B"), R"(["Speed", "m/min"])"))),
              QStringList());
    const QString mode = R"("ConditionValueComparator": [["Settings/Mode", "%1", "lab"]])";
    EXPECT_EQ(codesOf(inNodes(guarded("A", mode.arg("=="), R"(["Speed", "km/h"])") + ",\n" +
                              guarded("B", mode.arg("!="), R"(["Speed", "m/min"])"))),
              QStringList());
}

TEST(Conflicts, are_none_where_the_units_are_the_same)
{
    EXPECT_EQ(codesOf(inNodes(fixed("A", R"(["Length", "m"])") + ",\n" +
                              always("B", "CommandSetUnitByConfigurationParameter",
                                     R"(["Settings/Unit", "", "Length"])"))),
              QStringList());
}

TEST(Conflicts, are_none_where_one_unit_is_spelled_in_two_ways)
{
    EXPECT_EQ(codesOf(inNodes(fixed("A", R"(["Bare", "m3/h"])") + ",\n" +
                              fixed("B", R"(["Bare", "m³/h"])"))),
              QStringList());
}

TEST(Runs, leave_no_message_in_the_log)
{
    static int logged = 0;
    const auto before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString&) { ++logged; });
    const QList<Finding> findings =
        inNodes(always("N", "CommandSetUnitPropertiesRegExp", R"(["^(Settings)/", "None", "m"])") +
                ",\n" + always("M", "CommandSetUnit", R"(["A", "m"])"));
    qInstallMessageHandler(before);
    EXPECT_EQ(codesOf(findings), (QStringList{"unknown-target-url", "unknown-command"}));
    EXPECT_EQ(logged, 0);
}
