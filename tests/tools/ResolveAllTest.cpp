#include "Fixture.h"
#include "GeneratedWorkspace.h"
#include "filehost/LinkPlan.h"
#include "tools/console/Console.h"
#include "tools/resolve/Summary.h"
#include "tools/workspace/Changes.h"
#include "tools/workspace/Links.h"

#include <QFile>
#include <QJsonArray>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <vector>

namespace {

using filehost::Instance;
using filehost::LeafChange;
using filehost::Link;
using tools::countOf;

QStringList resolveAll(int jobs, const QStringList& options = {})
{
    return QStringList{QStringLiteral("resolve"), QStringLiteral("--all"), QStringLiteral("--jobs"),
                       QString::number(jobs)} +
           options;
}

/// The files of a workspace without the times that the manifest notes.
QMap<QString, QByteArray> timelessFiles(const TestWorkspace& workspace)
{
    const QRegularExpression time(QStringLiteral("\"2\\d{3}-[-0-9T:.]+Z\""));
    QMap<QString, QByteArray> files = workspace.files();
    QByteArray& manifest = files[QStringLiteral("configuration/manifest.json")];
    manifest = QString::fromUtf8(manifest).replace(time, QStringLiteral("\"now\"")).toUtf8();
    return files;
}

void copy(const TestWorkspace& from, const TestWorkspace& to)
{
    const QMap<QString, QByteArray> stale = to.files();
    for (const QString& file : stale.keys()) {
        to.remove(file);
    }
    const QMap<QString, QByteArray> files = from.files();
    for (auto file = files.begin(); file != files.end(); ++file) {
        to.write(file.key(), file.value());
    }
}

// --- the plain way: one link after the other in one session, each by the engine's resolver

struct PlainRun {
    QString out;
    QString err;
    int exitCode = 0;
};

bool touches(const Link& link, const Instance& instance)
{
    return targetOf(link) == instance || sourceOf(link) == instance;
}

/// The links that have to do with the first of `links`, in their order.
std::vector<int> relatedTo(int first, const QList<Link>& links)
{
    std::vector<int> related{first};
    for (std::size_t known = 0; known < related.size(); ++known) {
        for (int other = 0; other < links.size(); ++other) {
            const Link& link = links[related[known]];
            const bool isRelated =
                touches(links[other], targetOf(link)) || touches(link, targetOf(links[other]));
            if (isRelated && std::find(related.begin(), related.end(), other) == related.end()) {
                related.push_back(other);
            }
        }
    }
    std::sort(related.begin(), related.end());
    return related;
}

/// The instances that no link behind `link` touches any more, its source first.
QList<Instance> lastTouchedBy(int link, const QList<Link>& links)
{
    QList<Instance> instances;
    for (const Instance& instance : {sourceOf(links[link]), targetOf(links[link])}) {
        const bool isLast =
            std::none_of(links.begin() + link + 1, links.end(),
                         [&](const Link& later) { return touches(later, instance); });
        if (isLast && !instances.contains(instance)) {
            instances.append(instance);
        }
    }
    return instances;
}

QString linesOf(const Instance& instance, const QList<LeafChange>& changes)
{
    QList<LeafChange> ofInstance;
    std::copy_if(changes.begin(), changes.end(), std::back_inserter(ofInstance),
                 [&](const LeafChange& change) { return change.instance == instance; });
    return ofInstance.isEmpty() ? QString() : tools::changeLines(ofInstance, false);
}

/// What a console writes to standard error while some work is done.
template <typename Work>
QString errOf(std::ostringstream& err, const Work& work)
{
    err.str({});
    work();
    return QString::fromStdString(err.str());
}

PlainRun runPlainly(const TestWorkspace& folder, bool isDryRun)
{
    std::ostringstream out;
    std::ostringstream err;
    tools::Console console({out, err, false, false}, {});
    QList<filehost::Problem> problems;
    const auto workspace = filehost::Workspace::open(folder.path(), problems);
    const QList<Link> links = workspace->links(problems);
    const bool areSound = problems.isEmpty();
    PlainRun plain;
    plain.err = errOf(err, [&] { console.report(problems); });
    if (links.isEmpty() && !areSound) {
        plain.exitCode = 2;
        return plain;
    }

    filehost::Session session(*workspace, isDryRun ? filehost::Session::Access::Read
                                                   : filehost::Session::Access::Write);
    EXPECT_TRUE(session.begin({}));
    tools::LinkRunner runner(session, console);
    std::vector<QString> errors;
    tools::Summary summary;
    for (const Link& link : links) {
        errors.push_back(errOf(err, [&] {
            const tools::LinkRun run = runner.run(link, {});
            summary.count(run.outcome);
            if (run.outcome == tools::Outcome::Unresolved) {
                complainAboutUnresolved(run, console);
            }
        }));
    }
    tools::Changes changes;
    const QString lastErrors =
        errOf(err, [&] { changes = keepChanges(session, isDryRun, console); });
    summary.changed = countOf(changes.list);
    summary.files = changes.files;

    std::vector<bool> isTold(errors.size(), false);
    for (int first = 0; first < links.size(); ++first) {
        if (isTold[static_cast<std::size_t>(first)]) {
            continue;
        }
        for (const int link : relatedTo(first, links)) {
            isTold[static_cast<std::size_t>(link)] = true;
            plain.err += errors[static_cast<std::size_t>(link)];
            for (const Instance& instance : lastTouchedBy(link, links)) {
                plain.out += linesOf(instance, changes.list);
            }
        }
    }
    plain.err += lastErrors;
    if (!changes.list.isEmpty()) {
        plain.out += totalText(summary.changed);
    } else if (summary.resolved > 0 && changes.allKept) {
        plain.out += QStringLiteral("Nothing changed.\n");
    }
    plain.out += linksText(summary) + QStringLiteral(".\n");
    if (isDryRun) {
        plain.out += QStringLiteral("Dry run: nothing was written.\n");
    }
    plain.exitCode = !changes.allKept ? 2 : areSound && summary.isAllResolved() ? 0 : 1;
    return plain;
}

void expectTheSame(const Result& result, const PlainRun& plain)
{
    EXPECT_EQ(result.out, plain.out);
    EXPECT_EQ(result.err, plain.err);
    EXPECT_EQ(result.exitCode, plain.exitCode);
}

class RandomWorkspace : public testing::TestWithParam<unsigned> {};

TEST_P(RandomWorkspace, is_resolved_as_if_one_link_ran_after_the_other)
{
    const TestWorkspace original;
    writeRandomWorkspace(original, GetParam());
    const TestWorkspace plainOne;
    copy(original, plainOne);
    const PlainRun dry = runPlainly(plainOne, true);
    const PlainRun plain = runPlainly(plainOne, false);
    const QMap<QString, QByteArray> expected = timelessFiles(plainOne);

    for (const int jobs : {1, 2, 5}) {
        const testing::ScopedTrace trace(__FILE__, __LINE__, std::to_string(jobs) + " jobs");
        const TestWorkspace workspace;
        copy(original, workspace);
        expectTheSame(run(workspace, resolveAll(jobs, {QStringLiteral("--dry-run")})), dry);
        EXPECT_EQ(workspace.files(), original.files());
        expectTheSame(run(workspace, resolveAll(jobs)), plain);
        EXPECT_EQ(timelessFiles(workspace), expected);
    }
}

INSTANTIATE_TEST_SUITE_P(Seed, RandomWorkspace, testing::Range(0U, 25U));

TEST(RandomWorkspaces, have_links_of_every_outcome_and_changes_in_several_instances_of_a_unit)
{
    QMap<QString, int> outcomes;
    int changes = 0;
    int shared = 0; // units of more than one link
    for (unsigned seed = 0; seed < 25; ++seed) {
        const TestWorkspace workspace;
        writeRandomWorkspace(workspace, seed);
        const QJsonObject document =
            run(workspace, resolveAll(1, {QStringLiteral("--json")})).json();
        for (const QJsonValue link : document[QStringLiteral("links")].toArray()) {
            ++outcomes[link.toObject()[QStringLiteral("outcome")].toString()];
        }
        changes += document[QStringLiteral("changes")].toArray().size();
        QList<filehost::Problem> problems;
        const auto opened = filehost::Workspace::open(workspace.path(), problems);
        const filehost::LinkPlan plan(*opened, opened->links(problems));
        for (const std::vector<int>& unit : plan.units()) {
            shared += unit.size() > 1 ? 1 : 0;
        }
    }
    EXPECT_GT(outcomes[QStringLiteral("resolved")], 50);
    EXPECT_GT(outcomes[QStringLiteral("unresolved")], 20);
    EXPECT_GT(outcomes[QStringLiteral("failed")], 20);
    EXPECT_GT(changes, 50);
    EXPECT_GT(shared, 20);
}

// --- what the plain way does not tell

TEST(ResolveAll, writes_the_same_document_with_any_number_of_jobs)
{
    const TestWorkspace original;
    writeRandomWorkspace(original, 3);
    QStringList documents;
    for (const int jobs : {1, 2, 5}) {
        const TestWorkspace workspace;
        copy(original, workspace);
        documents.append(run(workspace, resolveAll(jobs, {QStringLiteral("--json")})).out);
    }
    EXPECT_EQ(documents[1], documents[0]);
    EXPECT_EQ(documents[2], documents[0]);
}

TEST(ResolveAll, works_on_many_instances_with_several_jobs)
{
    constexpr int instances = 400;
    const TestWorkspace workspace;
    writeLargeWorkspace(workspace, {instances, 2, 0});
    const Result result = run(workspace, resolveAll(4));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    EXPECT_TRUE(result.out.endsWith(QStringLiteral("800 leaves changed in 400 instances.\n"
                                                   "400 of 400 links resolved; 401 files "
                                                   "written.\n")));
    EXPECT_EQ(run(workspace, resolveAll(4)).out,
              QStringLiteral("Nothing changed.\n400 of 400 links resolved.\n"));
}

TEST(ResolveAll, shows_instances_in_the_order_of_the_links)
{
    const TestWorkspace workspace;
    writeLargeWorkspace(workspace, {300, 1, 0});
    const Result result = run(workspace, resolveAll(5));
    QStringList shown;
    for (const QString& line : result.out.split(QLatin1Char('\n'))) {
        if (line.startsWith(QStringLiteral("follower"))) {
            shown.append(line);
        }
    }
    ASSERT_EQ(shown.size(), 300);
    for (int number = 0; number < shown.size(); ++number) {
        EXPECT_EQ(shown[number], QStringLiteral("follower%1").arg(number));
    }
}

TEST(ResolveAll, says_nothing_but_problems_when_it_is_quiet)
{
    const TestWorkspace workspace;
    writeLargeWorkspace(workspace, {10, 1, 0});
    const Result result = run(workspace, resolveAll(2, {QStringLiteral("--quiet")}));
    EXPECT_EQ(result.out, QString());
    EXPECT_EQ(result.err, QString());
    EXPECT_EQ(result.exitCode, 0);
}

TEST(ResolveAll, follows_a_chain_through_instances_that_are_written_meanwhile)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("dependency/chain.json"), chainDescription);
    QByteArray links = "[";
    for (int number = 0; number < 50; ++number) {
        const QByteArray source = QByteArray::number(number);
        const QByteArray target = QByteArray::number(number + 1);
        workspace.write(QStringLiteral("configuration/%1.json").arg(number),
                        R"({"Unit": "u)" + source + R"(", "Follower": {"@unitType": "old"}})");
        links += (number == 0 ? "" : ",\n") + QByteArray(R"({"source": ")") + source +
                 R"(", "target": ")" + target + R"(", "dependency": "chain"})";
    }
    workspace.write(QStringLiteral("configuration/50.json"),
                    R"({"Unit": "last", "Follower": {"@unitType": "old"}})");
    workspace.write(QStringLiteral("links.json"), links + "]");
    EXPECT_EQ(run(workspace, resolveAll(3)).exitCode, 0);
    EXPECT_EQ(workspace.read(QStringLiteral("configuration/1.json")),
              QByteArray(R"({"Unit": "u1", "Follower": {"@unitType": "u0"}})"));
    EXPECT_EQ(workspace.read(QStringLiteral("configuration/50.json")),
              QByteArray(R"({"Unit": "last", "Follower": {"@unitType": "u49"}})"));
}

TEST(ResolveAll, adds_instances_to_the_manifest_in_the_order_in_which_links_changed_them)
{
    const TestWorkspace workspace;
    writeLargeWorkspace(workspace, {3, 1, 0});
    workspace.write(QStringLiteral("dependency/other.json"),
                    QByteArray(chainDescription).replace("\"Follower\"", "\"Padding\""));
    // The first link into follower0 changes nothing, the last one does.
    workspace.write(QStringLiteral("configuration/follower0.json"),
                    R"({"Leaf0": {"@unitType": "new"}, "Padding": {"@unitType": "old"}})");
    workspace.write(QStringLiteral("links.json"),
                    workspace.read(QStringLiteral("links.json")).replace("\n]", R"(,
{"source": "leader", "target": "follower0", "dependency": "other"}])"));
    ASSERT_EQ(run(workspace, resolveAll(3)).exitCode, 0);
    const QByteArray manifest = workspace.read(QStringLiteral("configuration/manifest.json"));
    EXPECT_LT(manifest.indexOf("follower1"), manifest.indexOf("follower2"));
    EXPECT_LT(manifest.indexOf("follower2"), manifest.indexOf("follower0"));
}

TEST(ResolveAll, treats_two_names_of_one_file_as_one_instance)
{
    const TestWorkspace workspace;
    workspace.write(QStringLiteral("dependency/chain.json"), chainDescription);
    workspace.write(QStringLiteral("configuration/A.json"), R"({"Unit": "a"})");
    workspace.write(QStringLiteral("configuration/B.json"), R"({"Unit": "b"})");
    workspace.write(QStringLiteral("configuration/C.json"), R"({"Follower": {"@unitType": "c"}})");
    ASSERT_TRUE(QFile::link(QStringLiteral("C.json"),
                            workspace.path(QStringLiteral("configuration/alias.json"))));
    workspace.write(QStringLiteral("links.json"),
                    R"([{"source": "A", "target": "C", "dependency": "chain"},
                        {"source": "B", "target": "alias", "dependency": "chain"}])");
    for (int round = 0; round < 20; ++round) {
        const Result result = run(workspace, resolveAll(2));
        ASSERT_EQ(result.exitCode, 0);
        ASSERT_EQ(workspace.read(QStringLiteral("configuration/C.json")),
                  QByteArray(R"({"Follower": {"@unitType": "b"}})"));
    }
}

TEST(ResolveAll, works_on_the_others_when_one_instance_cannot_be_read)
{
    const TestWorkspace workspace;
    writeLargeWorkspace(workspace, {6, 1, 0});
    workspace.write(QStringLiteral("configuration/follower3.json"), "{ this is no tree");
    const Result result = run(workspace, resolveAll(2));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.contains(QStringLiteral("5 leaves changed in 5 instances.\n"
                                                   "5 of 6 links resolved, 1 failed; 6 files ")))
        << result.out.toStdString();
    EXPECT_TRUE(result.err.startsWith(QStringLiteral("error: configuration/follower3.json:1:3: ")))
        << result.err.toStdString();
}

} // namespace
