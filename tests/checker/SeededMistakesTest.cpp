#include "ExampleWorkspace.h"

#include <gtest/gtest.h>

#include <ostream>

using checker::describe;
using checker::Finding;

namespace {

/// A slip in one file of the example workspace, in which nothing else is wrong.
struct Slip {
    const char* file;
    const char* right;
    const char* wrong;
    int line;
    const char* code;
};

void PrintTo(const Slip& slip, std::ostream* stream)
{
    *stream << slip.wrong;
}

class SeededMistake : public testing::TestWithParam<Slip> {};

} // namespace

TEST_P(SeededMistake, is_found_in_its_line_and_nothing_else_is)
{
    ExampleWorkspace workspace;
    workspace.copy(UNITFLOW_EXAMPLES_FOLDER "/oven-line");
    const QString text = workspace.read(GetParam().file);
    const int at = text.indexOf(GetParam().right);
    ASSERT_GE(at, 0);
    ASSERT_EQ(text.left(at).count('\n') + 1, GetParam().line) << "the slip stands elsewhere";
    workspace.write(GetParam().file,
                    QString(text).replace(at, QString(GetParam().right).size(), GetParam().wrong));

    const QList<Finding> findings = workspace.check();
    ASSERT_FALSE(findings.isEmpty());
    for (const Finding& finding : findings) {
        EXPECT_EQ(finding.file, GetParam().file);
        EXPECT_EQ(finding.place.line, GetParam().line) << finding.message.toStdString();
        EXPECT_EQ(describe(finding.code).name, GetParam().code);
    }
}

INSTANTIATE_TEST_SUITE_P(
    OfTen, SeededMistake,
    testing::Values(Slip{"dependency/air-total.json", "\"!=\"", "\"<>\"", 9, "unknown-comparator"},
                    Slip{"dependency/air-total.json", "\"m³\"", "\"\"", 13, "empty-unit"},
                    Slip{"dependency/chamber-log.json", "[4-1]", "[4]", 15, "column-out-of-range"},
                    Slip{"dependency/chamber-log.json", "[1]", "[one]", 13, "invalid-column"},
                    Slip{"dependency/display-units.json", "^Zones/[^/]+/Signal$",
                         "^Zones/([^/]+/Signal$", 14, "invalid-pattern"},
                    Slip{"dependency/display-units.json", "Fields/Cure", "Field/Cure", 25,
                         "unknown-target-url"},
                    Slip{"dependency/process-units.json", "ConditionWriteOnUrls",
                         "ConditionWriteOnUrl", 7, "unknown-condition"},
                    Slip{"dependency/process-units.json", "m/min", "m/mn", 46, "unknown-unit"},
                    Slip{"dependency/recorder-card.json", "\"SwitchNode\"", "\"switchNode\"", 4,
                         "unknown-node-type"},
                    Slip{"dependency/zone-inputs.json", "Inputs/", "Input/", 12,
                         "unknown-target-url"},
                    Slip{"links.json", "\"chamber-log\"", "\"chamberlog\"", 40, "missing-file"}));
