#include "checker/Codes.h"

#include "ExampleWorkspace.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

using checker::CodeDescription;
using checker::codes;
using checker::describe;
using checker::explain;
using checker::explainAll;
using checker::findCode;
using checker::Finding;

namespace {

class EachCode : public testing::TestWithParam<CodeDescription> {};

std::string titleOf(const testing::TestParamInfo<CodeDescription>& test)
{
    return QString(test.param.name).replace("-", "_").toStdString();
}

} // namespace

namespace checker {

void PrintTo(const CodeDescription& code, std::ostream* stream)
{
    *stream << code.name.toStdString();
}

} // namespace checker

TEST_P(EachCode, is_found_in_its_bad_example)
{
    const QList<Finding> findings = findingsIn(GetParam().bad);
    EXPECT_TRUE(std::any_of(findings.begin(), findings.end(), [](const Finding& finding) {
        return finding.code == GetParam().code;
    })) << told(findings).join(", ").toStdString();
    for (const Finding& finding : findings) {
        EXPECT_FALSE(finding.message.isEmpty());
        EXPECT_FALSE(finding.advice.isEmpty());
        EXPECT_GT(finding.place.line, 0);
        EXPECT_GT(finding.place.length, 0);
    }
}

TEST_P(EachCode, is_all_that_is_wrong_with_its_bad_example)
{
    for (const Finding& finding : findingsIn(GetParam().bad)) {
        EXPECT_EQ(describe(finding.code).name, GetParam().name);
    }
}

TEST_P(EachCode, is_mended_in_its_good_example)
{
    EXPECT_EQ(told(findingsIn(GetParam().good)), QStringList());
}

INSTANTIATE_TEST_SUITE_P(OfTheTable, EachCode, testing::ValuesIn(codes()), titleOf);

TEST(Codes, have_names_of_their_own_that_fit_a_command_line)
{
    ASSERT_GT(codes().size(), 40);
    QSet<QString> names;
    for (const CodeDescription& code : codes()) {
        names.insert(code.name);
        EXPECT_TRUE(QRegularExpression("^[a-z]+(-[a-z]+)*$").match(code.name).hasMatch());
        EXPECT_EQ(findCode(code.name), &code);
        EXPECT_EQ(describe(code.code).name, code.name);
    }
    EXPECT_EQ(names.size(), codes().size());
    EXPECT_EQ(findCode("no-such-code"), nullptr);
}

TEST(Codes, are_explained_in_eighty_columns_with_examples_of_a_hundred)
{
    for (const CodeDescription& code : codes()) {
        bool isExample = false;
        for (const QString& line : explain(code).split('\n')) {
            isExample = line.startsWith("```") ? !isExample : isExample;
            EXPECT_LE(line.size(), isExample ? 100 : 80) << line.toStdString();
        }
    }
}

TEST(Codes, are_explained_in_the_document_as_the_program_does)
{
    QFile document(UNITFLOW_DOCS_FOLDER "/findings.md");
    if (qEnvironmentVariableIsSet("UNITFLOW_APPROVE")) {
        ASSERT_TRUE(document.open(QIODevice::WriteOnly));
        document.write(explainAll().toUtf8());
        document.close();
    }
    ASSERT_TRUE(document.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(document.readAll()), explainAll())
        << "UNITFLOW_APPROVE=1 writes it anew";
}
