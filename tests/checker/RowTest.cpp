#include "ExampleWorkspace.h"
#include "TypeDescription.h"

#include <gtest/gtest.h>

using checker::Code;
using checker::describe;
using checker::Finding;

namespace {

QList<Finding> inCommand(const QString& type, const QString& rows)
{
    return findingsIn("{\"N\": {\"Type\": \"CommandNode\", \"Commands\": {\n\"" + type + "\": [" +
                      rows + "]}}}");
}

QList<Finding> inCondition(const QString& type, const QString& rows)
{
    return findingsIn(
        R"({"N": {"Type": "SwitchNode", "Next": {"E": {"Type": "CommandNode", "Commands":
        {"CommandSetUnitProperties": [["A", "m"]]},)"
        "\n\"" +
        type + "\": [" + rows + "]}}}}");
}

QStringList codesOf(const QList<Finding>& findings)
{
    QStringList names;
    for (const Finding& finding : findings) {
        names.append(describe(finding.code).name);
    }
    return names;
}

} // namespace

TEST(RowFindings, follow_the_table_of_each_type)
{
    const QString pattern = "\"(a)\"";
    for (const auto kind : {TypeDescription::Kind::Command, TypeDescription::Kind::Condition}) {
        ASSERT_FALSE(TypeCatalog::types(kind).isEmpty());
        for (const TypeDescription& type : TypeCatalog::types(kind)) {
            for (int count = 0; count < 7; ++count) {
                QStringList cells;
                for (int i = 0; i < count; ++i) {
                    cells.append(pattern);
                }
                const QString row = "[" + cells.join(", ") + "]";
                const QStringList found =
                    codesOf(kind == TypeDescription::Kind::Command ? inCommand(type.name, row)
                                                                   : inCondition(type.name, row));
                using Fate = TableDescription::RowFate;
                const Fate fate = type.table.fateOf(count);
                EXPECT_EQ(found.contains("row-fatal"), fate == Fate::Fatal);
                EXPECT_EQ(found.contains("row-skipped"), fate == Fate::Skipped);
                EXPECT_EQ(found.contains("row-truncated"), fate == Fate::Truncated);
            }
        }
    }
}

TEST(RowFindings, rewrite_a_row_that_lacks_its_remark_or_has_too_many_cells)
{
    const auto advice = [](const QString& type, const QString& row) {
        return inCommand(type, row).first().advice.section(';', 0, 0);
    };
    EXPECT_EQ(advice("CommandSetUnitByConfigurationParameter", R"(["S/Unit", "T"])"),
              R"(write ["S/Unit", "", "T"])");
    EXPECT_EQ(advice("CommandSetUnitProperties", R"(["A", "m", "x", 7])"), R"(write ["A", "m"])");
    EXPECT_EQ(advice("CommandSetUnitByConfigurationParameterInstRegExp", R"(["(A).", "B", "m"])"),
              "a row is [\"pattern\", \"target URL\"]");
}

TEST(RowFindings, put_brackets_around_a_url_that_is_a_row)
{
    const Finding finding = inCondition("ConditionWriteOnUrls", R"("A/B")").first();
    EXPECT_EQ(finding.code, Code::RowNotAList);
    EXPECT_EQ(finding.advice, R"(write ["A/B"])");
}

TEST(RowFindings, point_into_a_pattern_however_it_is_spelled)
{
    EXPECT_EQ(told(inCondition("ConditionWriteOnUrlsRegExp", R"(["^\u00D6fen/\\d+(°"])")),
              QStringList{"3:50+1 invalid-pattern"});
    EXPECT_EQ(told(inCondition("ConditionWriteOnUrlsRegExp", R"(["a[b"])")),
              QStringList{"3:36+1 invalid-pattern"});
}

TEST(RowFindings, check_the_pattern_of_a_url_with_prefix)
{
    EXPECT_EQ(codesOf(inCondition("ConditionWriteOnUrls", R"(["RE:(("])")),
              (QStringList{"prefixed-url", "invalid-pattern"}));
    EXPECT_EQ(codesOf(inCondition("ConditionWriteOnUrls", R"(["re:x"])")), QStringList());
}

TEST(RowFindings, suggest_the_comparator_that_was_meant)
{
    const auto advice = [](const QString& comparator) {
        return inCondition("ConditionValueComparator", "[\"A\", \"" + comparator + "\", 1]")
            .first()
            .advice;
    };
    for (const char* equal : {"=", "===", " == ", "eq"}) {
        EXPECT_EQ(advice(equal), "write \"==\"");
    }
    for (const char* unequal : {"<>", "!==", "≠", " !="}) {
        EXPECT_EQ(advice(unequal), "write \"!=\"");
    }
    EXPECT_TRUE(advice("<").contains("nothing else"));
}

TEST(RowFindings, take_numbers_as_the_engine_does)
{
    const QList<Finding> findings =
        inCommand("CommandSetUnitProperties", R"(["A", 7], ["B", null])");
    ASSERT_EQ(codesOf(findings), (QStringList{"cell-not-text", "cell-not-text", "empty-unit"}));
    EXPECT_TRUE(findings.first().message.contains("\"7\""));
}

TEST(RowFindings, know_which_groups_a_target_url_takes)
{
    const QString type = "CommandSetUnitByConfigurationParameterInstRegExp";
    EXPECT_EQ(told(inCommand(type, R"x(["^(?<a>x)(?<b>y)", "T/(?<a>)/(?<c>)"])x")),
              (QStringList{"2:67+1 unused-group", "2:84+6 unknown-group"}));
    EXPECT_EQ(codesOf(inCommand(type, R"(["^(x).", "T"])")), QStringList());
}

TEST(RowFindings, know_which_places_a_link_fills)
{
    const QString type = "CommandSetUnitByConfigurationParameter";
    EXPECT_EQ(codesOf(inCommand(type, R"(["A", "", "%1/%2/%1"])")), QStringList());
    EXPECT_EQ(told(inCommand(type, R"(["A", "", "%1/%2/%7"])")),
              QStringList{"2:61+2 unfilled-place"});
    EXPECT_EQ(codesOf(inCommand("CommandSetUnitProperties", R"(["100%/A", "m"])")), QStringList());
}

TEST(RowFindings, know_rows_that_leave_no_value_out)
{
    const auto found = [](const QString& rows) {
        return codesOf(inCondition("ConditionValueComparator", rows));
    };
    const QStringList always{"always-holds"};
    EXPECT_EQ(found(R"(["A", "!=", "x"], ["A", "!=", "y"])"), always);
    EXPECT_EQ(found(R"(["A", "==", "x"], ["A", "!=", "x"])"), always);
    EXPECT_EQ(found(R"(["A", "!=", 1], ["B", "!=", 2], ["A", "==", 1])"), always);
    EXPECT_EQ(found(R"(["A", "!=", "x"], ["B", "!=", "y"])"), QStringList());
    EXPECT_EQ(found(R"(["A", "!=", "x"], ["A", "!=", "x"])"), QStringList());
    EXPECT_EQ(found(R"(["A", "!=", "x"], ["A", "==", "y"])"), QStringList());
    EXPECT_EQ(found(R"(["A", "==", "x"], ["A", "==", "y"])"), QStringList());
    EXPECT_EQ(found(R"(["A", "<", "x"], ["A", "!=", "y"])"), QStringList{"unknown-comparator"});
}

TEST(RowFindings, point_at_what_stands_behind_a_column)
{
    const auto found = [](const QString& target) {
        return codesOf(inCommand("CommandSetUnitByConfigurationParameterArray",
                                 "[\"A\", \"" + target + "\"]"));
    };
    EXPECT_EQ(
        told(inCommand("CommandSetUnitByConfigurationParameterArray", R"(["A", "L[1]/Max"])")),
        QStringList{"2:60+4 ignored-text"});
    EXPECT_EQ(found("L[1]"), QStringList());
    EXPECT_EQ(found("L[0]/M[1]"), QStringList()) << "brackets in the URL";
    EXPECT_EQ(found("L[x]/Max"), QStringList{"invalid-column"});
}
