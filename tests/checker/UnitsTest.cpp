#include "checker/Units.h"

#include "ExampleWorkspace.h"

#include <gtest/gtest.h>

#include <memory>

using checker::Units;
using filehost::Problem;
using filehost::json::JsonText;

namespace {

/// The units that there are with a file; its problems are added.
std::unique_ptr<Units> unitsWith(const char* own, QList<Problem>& problems)
{
    std::unique_ptr<Units> units = Units::load(problems);
    units->add(*JsonText::parse(own, "units.json", problems), problems);
    return units;
}

std::unique_ptr<Units> unitsWith(const char* own)
{
    QList<Problem> problems;
    std::unique_ptr<Units> units = unitsWith(own, problems);
    EXPECT_TRUE(problems.isEmpty());
    return units;
}

QStringList placesOf(const QList<Problem>& problems)
{
    QStringList places;
    for (const Problem& problem : problems) {
        EXPECT_FALSE(problem.advice.isEmpty());
        places.append(QString("%1:%2").arg(problem.line).arg(problem.column));
    }
    return places;
}

/// As the environment names another list of units.
class OtherList {
public:
    explicit OtherList(const char* path) { qputenv("UDUNITS2_XML_PATH", path); }
    ~OtherList() { qunsetenv("UDUNITS2_XML_PATH"); }
    OtherList(const OtherList&) = delete;
    OtherList& operator=(const OtherList&) = delete;
};

} // namespace

TEST(Units, are_those_that_people_write)
{
    const auto units = unitsWith("{}");
    for (const char* unit :
         {"°C", "°F", "K", "mbar", "hPa",   "psi",   "m³/h",  "ft³/min", "m/min",   "mA",     "mV",
          "Ω",  "%",  "1", "ppm",  "kg/m³", "m/s^2", "1/min", "N m",     "10^3/ml", "1e3/min"}) {
        EXPECT_TRUE(units->isKnown(unit)) << unit;
    }
}

TEST(Units, are_no_other_texts_and_no_mere_numbers)
{
    const auto units = unitsWith("{}");
    for (const char* text :
         {"", " m", "m ", "KPa", "pcs", "production", "true", "off", "0", "5", "-1.5", "1e3", "1.0",
          "5 bar", "1 bar", "2.5kPa", "100 %", "° C", "ºC"}) {
        EXPECT_FALSE(units->isKnown(text)) << "\"" << text << "\"";
    }
}

TEST(Units, are_converted_within_one_kind_only)
{
    const auto units = unitsWith("{}");
    EXPECT_TRUE(units->areConvertible("°C", "°F"));
    EXPECT_TRUE(units->areConvertible("mbar", "psi"));
    EXPECT_TRUE(units->areConvertible("%", "ppm"));
    EXPECT_TRUE(units->areConvertible("1/min", "Hz"));
    EXPECT_FALSE(units->areConvertible("°C", "bar"));
    EXPECT_FALSE(units->areConvertible("m³", "m³/h"));
    EXPECT_FALSE(units->areConvertible("s", "Hz"));
    EXPECT_FALSE(units->areConvertible("%", "m"));
}

TEST(Units, are_what_plants_take_them_for)
{
    const auto units = unitsWith("{}");
    const QList<QPair<QString, QString>> pairs{
        {"kWh", "MJ"},      {"mAh", "C"},       {"kvar", "kW"},     {"PS", "hp"},
        {"Nm", "N m"},      {"kp", "N"},        {"kip", "lbf"},     {"rev", "°"},
        {"rev/min", "rpm"}, {"U/min", "1/min"}, {"r/min", "Hz"},    {"min⁻¹", "Hz"},
        {"s⁻¹", "Hz"},      {"deg", "°"},       {"dpt", "1/m"},     {"mph", "km/h"},
        {"kn", "m/s"},      {"gal", "l"},       {"gal/min", "gpm"}, {"gal/h", "gph"},
        {"gpm", "m³/h"},    {"cfm", "m³/h"},    {"cfh", "ft³/h"},   {"sccm", "slm"},
        {"Nm³", "m³"},      {"Nm³/h", "l/min"}, {"Nl", "l"},        {"Nl/min", "l/min"},
        {"mbarg", "Pa"},    {"bara", "psia"},   {"psig", "bar"},    {"mWS", "mbar"},
        {"mmWS", "Pa"},     {"mmH2O", "inH2O"}, {"cP", "mPa.s"},    {"mPas", "Pa.s"},
        {"kB", "bit"},      {"‰", "%"},         {"%RH", "%"},       {"vol%", "ppm"},
        {"dB", "dB"},       {"pH", "pH"},       {"Nm3", "m³"},      {"Nm3/h", "Nm³/min"},
        {"Nm3/min", "lpm"}, {"bar(a)", "Pa"},   {"bar(g)", "Pa"},   {"mbar(g)", "Pa"},
        {"psi(a)", "bar"},  {"psi(g)", "bar"},  {"mH2O", "mWS"},    {"mmH₂O", "Pa"},
        {"lpm", "l/min"},   {"cbm", "m³"},      {"cbm/h", "m³/h"},  {"dBm", "dBm"}};
    for (const auto& [left, right] : pairs) {
        ASSERT_TRUE(units->isKnown(left)) << left.toStdString();
        ASSERT_TRUE(units->isKnown(right)) << right.toStdString();
        EXPECT_TRUE(units->areConvertible(left, right)) << left.toStdString();
    }
    EXPECT_FALSE(units->areConvertible("dB", "%"));
    EXPECT_FALSE(units->areConvertible("pH", "H"));
    EXPECT_FALSE(units->areConvertible("dBm", "dB"));
    EXPECT_FALSE(units->areConvertible("pH", "dB"));
}

TEST(Units, are_of_a_kind_that_has_a_name_where_people_have_one)
{
    const auto units = unitsWith(R"({ "pcs": null })");
    EXPECT_EQ(units->kindOf("°F"), "a temperature, K");
    EXPECT_EQ(units->kindOf("mbar"), "a pressure, m⁻¹·kg·s⁻²");
    EXPECT_EQ(units->kindOf("%"), "a plain number or an angle, 1");
    EXPECT_EQ(units->kindOf("kg/m"), "m⁻¹·kg");
    EXPECT_EQ(units->kindOf("pcs/h"), "s⁻¹·pcs");
}

TEST(Units, that_are_nearly_written_are_offered)
{
    const auto units = unitsWith(R"({ "pieces": null })");
    EXPECT_EQ(units->nearest("KPa"), "kPa");
    EXPECT_EQ(units->nearest("l/mn"), "l/min");
    EXPECT_EQ(units->nearest(" m"), "m");
    EXPECT_EQ(units->nearest("kg/m³.."), "kg/m³");
    EXPECT_EQ(units->nearest("peices"), "pieces");
    EXPECT_EQ(units->nearest("production"), "");
    EXPECT_EQ(units->nearest("º C"), "°C");
    EXPECT_EQ(units->nearest("° F"), "°F");
    EXPECT_EQ(units->nearest("5 bar"), "bar");
}

TEST(Units, that_differ_in_case_only_are_offered_first)
{
    const auto units = unitsWith("{}");
    EXPECT_EQ(units->nearest("KPA"), "kPa");
    EXPECT_EQ(units->nearest("KM/H"), "km/h");
}

TEST(Units, that_fit_the_present_one_are_offered_only)
{
    const auto units = unitsWith("{}");
    EXPECT_EQ(units->nearest("m/mn", "km/h"), "m/min");
    EXPECT_EQ(units->nearest("barr", "mbar"), "bar");
    EXPECT_EQ(units->nearest("barr", "°C"), "");
    EXPECT_EQ(units->nearest("barr", "no unit at all"), "bar");
}

TEST(Units, are_equal_however_they_are_spelled)
{
    const auto units = unitsWith("{}");
    EXPECT_TRUE(units->areEqual("m3/h", "m³/h"));
    EXPECT_FALSE(units->areEqual("m³/h", "m³/s"));
    EXPECT_FALSE(units->areEqual("pcs", "pcs"));
}

TEST(OwnUnits, are_of_a_kind_of_their_own_or_of_that_of_their_definition)
{
    const auto units = unitsWith(R"({
        "@comment": "Counted.", "pcs": null, "lot": "", "box": "24 pcs", "shift": "8 h", "rpm": "lot/min"
    })");
    EXPECT_TRUE(units->areConvertible("box", "pcs"));
    EXPECT_TRUE(units->areConvertible("box/h", "pcs/min"));
    EXPECT_TRUE(units->areConvertible("shift", "s"));
    EXPECT_FALSE(units->areConvertible("pcs", "lot"));
    EXPECT_FALSE(units->areConvertible("pcs", "1"));
    EXPECT_FALSE(units->isKnown("@comment"));
}

TEST(OwnUnits, come_before_those_of_the_same_name)
{
    const auto units = unitsWith(R"({ "C": "°C", "METER": "s", "Nm³/h": "kg/h" })");
    EXPECT_TRUE(units->areConvertible("C", "K"));
    EXPECT_TRUE(units->areConvertible("C/min", "K/s"));
    EXPECT_TRUE(units->areConvertible("METER", "s"));
    EXPECT_TRUE(units->areConvertible("Nm³/h", "g/s"));
}

TEST(OwnUnits, are_left_out_where_they_are_wrong)
{
    QList<Problem> problems;
    const auto units =
        unitsWith("{ \"box\": \"24 pcs\",\n\"pcs\": null,\n\"dozen\": 12,\n\"piece\": \"pcs\",\n"
                  "\"\": null }",
                  problems);
    EXPECT_EQ(placesOf(problems), (QStringList{"1:10", "3:10", "5:5"}));
    EXPECT_FALSE(units->isKnown("box"));
    EXPECT_FALSE(units->isKnown("dozen"));
    EXPECT_TRUE(units->areConvertible("pcs", "piece"));

    problems.clear();
    unitsWith("[]", problems);
    EXPECT_EQ(placesOf(problems), QStringList{"1:1"});
}

TEST(Units, that_cannot_be_read_are_a_problem)
{
    const OtherList none("/no/such/list.xml");
    QList<Problem> problems;
    EXPECT_EQ(Units::load(problems), nullptr);
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.first().code, Problem::Code::Read);
    EXPECT_EQ(problems.first().file, "/no/such/list.xml");
    EXPECT_TRUE(problems.first().advice.contains("libudunits2-data"));
}

TEST(Units, that_cannot_be_read_are_told_once_and_leave_the_other_findings)
{
    const OtherList none("/no/such/list.xml");
    const checker::Example example{
        R"({"N": {"Type": "CommandNode", "Commands": {"CommandSetUnitProperties": [["X", "y"]]}}})",
        "{}",
        "{}",
        {},
        {}};
    const ExampleWorkspace workspace(example);
    workspace.write("dependency/other.json", "{}");
    QList<Problem> problems;
    const auto opened = filehost::Workspace::open(workspace.path(), problems);
    checker::WorkspaceCheck check(*opened);
    EXPECT_FALSE(check.checkUnits(problems));
    EXPECT_EQ(problems.size(), 1);
    EXPECT_EQ(told(check.checkDescription("units", problems).findings),
              QStringList{"1:74+3 unknown-target-url"});
    EXPECT_EQ(problems.size(), 1);
}

TEST(OwnUnits, that_cannot_be_read_leave_every_unit_without_a_judgment)
{
    for (const char* broken : {"{ \"pcs\": nul }", "[]"}) {
        checker::Example example{
            R"({"N": {"Type": "CommandNode", "Commands": {"CommandSetUnitProperties": [["X", "pcs"]]}}})",
            "{}",
            R"({"X": 1})",
            {},
            broken};
        const QList<checker::Finding> findings = findingsIn(example);
        ASSERT_EQ(findings.size(), 1) << broken;
        EXPECT_EQ(findings.first().file, "units.json");
    }
}
