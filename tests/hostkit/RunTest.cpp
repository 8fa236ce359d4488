#include "hostkit/Run.h"

#include "DefectiveHost.h"
#include "hostkit/Check.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

#include <sstream>

using defective::Defect;

namespace {

struct Result {
    int exitCode;
    std::string out;
    std::string err;
};

Result runChecks(Defect defect, const QStringList& arguments)
{
    defective::start(defect);
    const std::unique_ptr<hostkit::Adapter> adapter = defective::makeAdapter();
    std::ostringstream out;
    std::ostringstream err;
    const int exitCode = hostkit::run(*adapter, arguments, out, err);
    return {exitCode, out.str(), err.str()};
}

const hostkit::Check& checkNamed(const char* name)
{
    for (const hostkit::Check& check : hostkit::allChecks()) {
        if (check.name == name) {
            return check;
        }
    }
    throw std::out_of_range(name);
}

TEST(Run, of_one_check_prints_one_line_and_returns_0_when_it_passes)
{
    const Result run = runChecks(Defect::None, {"store.unknown_instance_is_null"});
    EXPECT_EQ(run.out, "passed  store.unknown_instance_is_null\n");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.exitCode, 0);
}

// The documents show this file.
TEST(Run, prints_expectation_consequence_and_finding_of_a_failure_and_returns_1)
{
    const Result run =
        runChecks(Defect::SameWriteReturns0, {"tree.write_of_the_same_unit_returns_1"});
    QFile expected(FAILED_CHECK);
    ASSERT_TRUE(expected.open(QIODevice::ReadOnly)) << FAILED_CHECK;
    EXPECT_EQ(run.out, expected.readAll().toStdString());
    EXPECT_EQ(run.exitCode, 1);
}

TEST(Run, prints_what_the_engine_wrote_to_the_log_during_a_failed_check)
{
    const Result run =
        runChecks(Defect::ArrayTypeIsAnotherText, {"resolution.columns_follow_parameters"});
    EXPECT_NE(run.out.find("    message:   Not an array datatype \"Temperature\"\n"),
              std::string::npos)
        << run.out;
}

TEST(Run, of_several_checks_ends_with_their_number_and_that_of_the_failures)
{
    const Result run =
        runChecks(Defect::SameWriteReturns0,
                  {"tree.write_of_the_same_unit_returns_1", "store.unknown_instance_is_null"});
    const std::string end = "passed  store.unknown_instance_is_null\n2 checks, 1 failed\n";
    EXPECT_EQ(run.out.substr(run.out.size() - end.size()), end);
}

TEST(Run, says_that_a_check_was_skipped_and_why)
{
    class Unrefusing : public hostkit::Adapter {
    public:
        QString basePath() override { return {}; }
        QString url(const QStringList& path) override { return path.join("::"); }
        QString text(const hostkit::Leaves& /*leaves*/) override { return {}; }
        void putInstance(const QString& /*name*/, bool /*isProcess*/,
                         const QString& /*text*/) override
        {}
        void putDescription(const QString& /*name*/, const QString& /*text*/) override {}
        ConfigurationManifestHandler& manifestHandler() override { throw std::logic_error("none"); }
    };
    Unrefusing adapter;
    std::ostringstream out;
    EXPECT_EQ(hostkit::run(adapter, {"tree.refused_write_returns_neither_0_nor_1"}, out, out), 0);
    EXPECT_EQ(out.str(), "skipped tree.refused_write_returns_neither_0_nor_1: the host refuses no "
                         "unit, says the adapter\n");
}

TEST(Run, takes_an_exception_from_the_host_for_a_failure)
{
    const Result run = runChecks(Defect::NullTreeThrows, {"store.null_tree_is_survived"});
    EXPECT_NE(run.out.find("found:     the host threw an exception: no tree to store\n"),
              std::string::npos)
        << run.out;
    EXPECT_EQ(run.exitCode, 1);
}

TEST(Run, names_the_check_in_which_the_process_was_stopped)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH(runChecks(Defect::NullTreeStopsTheProcess, {"store.null_tree_is_survived"}),
                 "failed  store.null_tree_is_survived\n(.|\n)*the process would end there.\n"
                 "    found:     the process was stopped: no tree to store");
}

TEST(Run, lists_the_name_of_every_check)
{
    const Result run = runChecks(Defect::None, {"--list"});
    std::string names;
    for (const hostkit::Check& check : hostkit::allChecks()) {
        names += check.name.toStdString() + '\n';
    }
    EXPECT_EQ(run.out, names);
    EXPECT_EQ(run.exitCode, 0);
}

TEST(Run, explains_itself)
{
    const Result run = runChecks(Defect::None, {"--help"});
    EXPECT_EQ(run.out.substr(0, 48), "Checks what the engine expects of this host.\n\nus");
    EXPECT_EQ(run.exitCode, 0);
}

TEST(Run, carries_out_nothing_when_a_name_is_unknown_and_returns_2)
{
    const Result run =
        runChecks(Defect::None, {"store.unknown_instance_is_null", "store.misspelled"});
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "There is no check \"store.misspelled\". --list prints them all.\n");
    EXPECT_EQ(run.exitCode, 2);
}

TEST(Perform, takes_whatever_is_thrown_for_a_failure)
{
    const hostkit::Check check{"host.throws", "Nothing is thrown.", "The engine ends.",
                               [](hostkit::Bench&) { throw 5; }};
    const auto adapter = defective::makeAdapter();
    const hostkit::Outcome outcome = hostkit::perform(check, *adapter);
    EXPECT_EQ(outcome.kind, hostkit::Outcome::Kind::Failed);
    EXPECT_EQ(outcome.found, QStringList{"the host threw something that is no std::exception"});
}

TEST(Perform, restores_the_message_handler)
{
    static QStringList received;
    const QtMessageHandler ours = [](QtMsgType, const QMessageLogContext&, const QString& text) {
        received.append(text);
    };
    const QtMessageHandler before = qInstallMessageHandler(ours);
    defective::start(Defect::None);
    const auto adapter = defective::makeAdapter();
    hostkit::perform(checkNamed("resolution.missing_source_is_no_failure"), *adapter);
    EXPECT_EQ(qInstallMessageHandler(before), ours);
    EXPECT_EQ(received, QStringList());
}

TEST(Check, has_a_name_of_its_own_and_whole_sentences)
{
    const QRegularExpression name("^[a-z]+\\.[a-zA-Z0-9_]+$");
    QSet<QString> names;
    for (const hostkit::Check& check : hostkit::allChecks()) {
        EXPECT_TRUE(name.match(check.name).hasMatch()) << check.name.toStdString();
        EXPECT_FALSE(names.contains(check.name)) << check.name.toStdString();
        names.insert(check.name);
        for (const QString& sentence : {check.expectation, check.consequence}) {
            EXPECT_TRUE(sentence.endsWith('.')) << sentence.toStdString();
        }
    }
    EXPECT_GT(names.size(), 0);
}

} // namespace
