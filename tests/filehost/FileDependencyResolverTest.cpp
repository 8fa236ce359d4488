#include "filehost/FileDependencyResolver.h"

#include "MessageLog.h"
#include "TestTree.h"
#include "TestWorkspace.h"

#include <gtest/gtest.h>

using filehost::FileDependencyResolver;
using filehost::LeafChange;
using filehost::Link;
using filehost::Problem;
using filehost::Session;
using Access = Session::Access;

namespace {

/// The unit at "Unit" of a source goes to the leaf of a target that the row names.
QByteArray description(const QByteArray& target)
{
    return R"({"Follow": {"Type": "SwitchNode", "Next": {"Set": {
        "Type": "CommandNode",
        "ConditionWriteOnUrls": [["Unit"]],
        "Commands": {"CommandSetUnitByConfigurationParameter": [["Unit", "", ")" +
           target + R"("]]}}}}})";
}

class Resolving : public TestWorkspace {
protected:
    Resolving()
    {
        write("configuration/A.json", R"({"Unit": "K"})");
        write("configuration/B.json", R"({"Unit": "C", "X": 1, "Y": 2})");
        write("process/P.json", R"({"X": 1})");
        write("dependency/x.json", description("X"));
        write("dependency/y.json", description("Y"));
        write("dependency/parameters.json", description("%1%2"));
        write("dependency/broken.json", "{");
    }

    void begin()
    {
        session.emplace(workspace(), Access::Write);
        ASSERT_TRUE(session->begin({}));
        resolver.emplace(workspace());
    }

    /// "instance url property: value" for each change.
    QStringList changes() const
    {
        QStringList shown;
        const QList<LeafChange> changed = session->changes();
        for (const LeafChange& change : changed) {
            shown.append(QString("%1 %2 %3: %4")
                             .arg(change.instance.name, change.url, change.property,
                                  change.after.toString()));
        }
        return shown;
    }

    std::optional<Session> session;
    std::optional<FileDependencyResolver> resolver;
};

} // namespace

TEST_F(Resolving, all_runs_every_link)
{
    write("links.json", R"([{"source": "A", "target": "B", "dependency": "x"},
                            {"source": "B", "target": "P", "dependency": "x", "process": true}])");
    begin();
    EXPECT_TRUE(resolver->resolveAllDependency());
    EXPECT_EQ(changes(), (QStringList{"B X @unitType: K", "P X @unitType: C"}));
    EXPECT_TRUE(session->takeProblems().isEmpty());
}

TEST_F(Resolving, several_links_into_one_target_keeps_what_each_of_them_set)
{
    write("links.json", R"([{"source": "A", "target": "B", "dependency": "x"},
                            {"source": "A", "target": "B", "dependency": "y"}])");
    begin();
    EXPECT_TRUE(resolver->resolveAllDependency());
    EXPECT_TRUE(session->commit());
    EXPECT_EQ(read("configuration/B.json"),
              QByteArray(R"({"Unit": "C", "X": {"@value": 1, "@unitType": "K"}, )"
                         R"("Y": {"@value": 2, "@unitType": "K"}})"));
}

TEST_F(Resolving, sees_in_a_later_link_what_an_earlier_one_set)
{
    write("configuration/A.json", R"({"Unit": "K", "X": 1})");
    write("links.json", R"([{"source": "A", "target": "A", "dependency": "x"},
                            {"source": "A", "target": "B", "dependency": "x"}])");
    begin();
    EXPECT_TRUE(resolver->resolveAllDependency());
    EXPECT_EQ(changes(), (QStringList{"A X @unitType: K", "B X @unitType: K"}));
}

TEST_F(Resolving, goes_on_after_a_link_that_fails)
{
    write("links.json", R"([{"source": "A", "target": "B", "dependency": "missing"},
                            {"source": "A", "target": "B", "dependency": "broken"},
                            {"source": "A", "target": "nobody", "dependency": "x"},
                            {"source": "A", "target": "B"},
                            {"source": "A", "target": "B", "dependency": "x"}])");
    begin();
    EXPECT_FALSE(resolver->resolveAllDependency());
    EXPECT_EQ(changes(), QStringList{"B X @unitType: K"});
    QStringList files;
    const QList<Problem> problems = session->takeProblems();
    for (const Problem& problem : problems) {
        files.append(problem.file);
    }
    EXPECT_EQ(files, (QStringList{"links.json", "dependency/missing.json", "dependency/broken.json",
                                  "configuration/nobody.json"}));
    QList<int> lines;
    for (const testhost::Message& message : takeMessages()) {
        lines.append(message.line);
    }
    EXPECT_EQ(lines, (QList<int>{184, 184, 296})) << "the engine's own warnings";
}

TEST_F(Resolving, all_is_false_for_links_that_cannot_be_read)
{
    write("links.json", "[");
    begin();
    EXPECT_FALSE(resolver->resolveAllDependency());
    EXPECT_EQ(session->takeProblems().size(), 1);
}

TEST_F(Resolving, all_is_true_without_links)
{
    begin();
    EXPECT_TRUE(resolver->resolveAllDependency());
}

TEST_F(Resolving, of_an_instance_runs_its_links_alone)
{
    write("links.json", R"([{"source": "A", "target": "B", "dependency": "x"},
                            {"source": "B", "target": "P", "dependency": "x", "process": true}])");
    begin();
    BaseClassSharedPointer instance;
    EXPECT_TRUE(resolver->resolveDependencyOfInstance(instance, "A"));
    EXPECT_EQ(changes(), QStringList{"B X @unitType: K"});
    ASSERT_FALSE(instance.isNull()) << "the source that was loaded is handed back";
    EXPECT_TRUE(instance->hasChildData("Unit"));
}

TEST_F(Resolving, of_an_instance_uses_the_tree_that_it_is_given)
{
    write("links.json", R"([{"source": "A", "target": "B", "dependency": "x"}])");
    begin();
    BaseClassSharedPointer instance = treeOn(R"({"Unit": "mK"})");
    EXPECT_TRUE(resolver->resolveDependencyOfInstance(instance, "A"));
    EXPECT_EQ(changes(), QStringList{"B X @unitType: mK"});
}

TEST_F(Resolving, of_an_instance_that_is_missing_is_false)
{
    write("links.json", R"([{"source": "Z", "target": "B", "dependency": "x"}])");
    begin();
    BaseClassSharedPointer instance;
    EXPECT_FALSE(resolver->resolveDependencyOfInstance(instance, "Z"));
    EXPECT_TRUE(instance.isNull());
    EXPECT_TRUE(changes().isEmpty());
}

TEST_F(Resolving, a_link_hands_on_its_parameters_and_tells_a_change)
{
    begin();
    const Link link{"A", "P", "parameters", true, {"", "X"}, 1, 1};
    bool changed = false;
    EXPECT_TRUE(resolver->resolveLink(link, {"Unit"}, changed));
    EXPECT_TRUE(changed);
    EXPECT_EQ(changes(), QStringList{"P X @unitType: K"});
    changed = false;
    EXPECT_TRUE(resolver->resolveLink(link, {"Unit"}, changed));
    EXPECT_FALSE(changed);
}

TEST_F(Resolving, works_on_the_files_themselves_without_a_session)
{
    write("links.json", R"([{"source": "A", "target": "B", "dependency": "x"}])");
    EXPECT_TRUE(FileDependencyResolver(workspace()).resolveAllDependency());
    EXPECT_TRUE(read("configuration/B.json").contains(R"("X": {"@value": 1, "@unitType": "K"})"));
}
