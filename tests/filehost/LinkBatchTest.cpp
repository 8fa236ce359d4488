#include "filehost/LinkBatch.h"

#include "TestWorkspace.h"
#include "filehost/FileDependencyResolver.h"

#include <gtest/gtest.h>

#include <functional>

using filehost::FileDependencyResolver;
using filehost::Link;
using filehost::LinkBatch;
using filehost::Problem;
using filehost::Session;

namespace {

/// The unit at "Unit" of a source goes to "X" of a target.
const QByteArray follow = R"({"Follow": {"Type": "SwitchNode", "Next": {"Set": {
    "Type": "CommandNode",
    "ConditionWriteOnUrls": [["Unit"]],
    "Commands": {"CommandSetUnitByConfigurationParameter": [["Unit", "", "X"]]}}}}})";

QStringList logged;

void remember(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text)
{
    logged.append(text);
}

QStringList listen(const std::function<void()>& work)
{
    const QStringList before = std::exchange(logged, {});
    work();
    return std::exchange(logged, before);
}

/// What is said about a link, one line for each problem and each message.
struct Said {
    bool isResolved;
    bool isChanged;
    QStringList lines;
};

bool operator==(const Said& left, const Said& right)
{
    return left.isResolved == right.isResolved && left.isChanged == right.isChanged &&
           left.lines == right.lines;
}

void PrintTo(const Said& said, std::ostream* stream)
{
    *stream << (said.isResolved ? "resolved" : "not resolved")
            << (said.isChanged ? ", changed\n" : "\n") << said.lines.join('\n').toStdString();
}

class Batch : public TestWorkspace {
protected:
    Batch() : previous(qInstallMessageHandler(remember))
    {
        logged.clear();
        write("configuration/A.json", R"({"Unit": "K"})");
        write("configuration/B.json", R"({"X": 1})");
        write("configuration/C.json", R"({"X": 1})");
        write("process/P.json", R"({"X": 1})");
        write("dependency/follow.json", follow);
    }

    void begin()
    {
        session.emplace(workspace(), Session::Access::Write);
        ASSERT_TRUE(session->begin({}));
    }

    Said said(const std::function<bool(bool& changed)>& resolve)
    {
        bool changed = false;
        const bool isResolved = resolve(changed);
        QStringList lines;
        const QList<Problem> problems = session->takeProblems();
        for (const Problem& problem : problems) {
            lines.append(toText(problem));
        }
        for (const QString& message : std::exchange(logged, {})) {
            // The two that a batch leaves out.
            if (!message.startsWith("Unable to resolve") &&
                !message.startsWith("Source or target")) {
                lines.append(message);
            }
        }
        return {isResolved, changed, lines};
    }

    /// What a batch says about links, one after the other.
    QList<Said> saidByBatch(const QList<Link>& links)
    {
        LinkBatch batch(*session, listen);
        QList<Said> all;
        for (const Link& link : links) {
            all.append(said([&](bool& changed) { return batch.resolve(link, {}, changed); }));
        }
        return all;
    }

    QList<Said> saidByResolver(const QList<Link>& links)
    {
        const FileDependencyResolver resolver(workspace());
        QList<Said> all;
        for (const Link& link : links) {
            all.append(
                said([&](bool& changed) { return resolver.resolveLink(link, {}, changed); }));
        }
        return all;
    }

    /// Runs links both ways, each from the same files.
    void expectTheSame(const QList<Link>& links)
    {
        begin();
        const QList<Said> byBatch = saidByBatch(links);
        const QList<filehost::LeafChange> changedByBatch = session->changes();
        session.reset();
        begin();
        const QList<Said> byResolver = saidByResolver(links);
        EXPECT_EQ(byBatch, byResolver);
        EXPECT_EQ(changedByBatch.size(), session->changes().size());
    }

    std::optional<Session> session;

    void TearDown() override { qInstallMessageHandler(previous); }

private:
    QtMessageHandler previous;
};

Link linkTo(const QString& target, const QString& dependency = "follow", bool isProcess = false)
{
    return {"A", target, dependency, isProcess, {}, 1, 1};
}

TEST_F(Batch, resolves_stores_and_tells_a_change)
{
    begin();
    EXPECT_EQ(saidByBatch({linkTo("B"), linkTo("B"), linkTo("P", "follow", true)}),
              (QList<Said>{{true, true, {}}, {true, false, {}}, {true, true, {}}}));
    EXPECT_TRUE(session->commit());
    EXPECT_TRUE(read("configuration/B.json").contains("K"));
    EXPECT_TRUE(read("process/P.json").contains("K"));
}

TEST_F(Batch, stores_under_the_origins_of_the_resolver)
{
    begin();
    saidByBatch({linkTo("B")});
    const QList<ModifiedInstanceItem> items = session->modifications();
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0].originFirst, FileDependencyResolver::origin());
    EXPECT_EQ(items[0].originSecond, workspace().directory());
    EXPECT_EQ(items[0].instanceName, "B");
}

TEST_F(Batch, reads_a_source_and_a_description_once)
{
    begin();
    LinkBatch batch(*session, listen);
    bool changed = false;
    EXPECT_TRUE(batch.resolve(linkTo("B"), {}, changed));
    write("configuration/A.json", "{");
    write("dependency/follow.json", "{");
    EXPECT_TRUE(batch.resolve(linkTo("C"), {}, changed));
    EXPECT_EQ(session->changes().size(), 2);
}

TEST_F(Batch, shows_a_later_link_what_an_earlier_one_stored_in_its_source)
{
    write("configuration/A.json", R"({"Unit": "K", "X": 1})");
    write("dependency/copy.json",
          QByteArray(follow).replace(R"("Unit", "", "X")", R"("Unit", "", "Unit")"));
    begin();
    LinkBatch batch(*session, listen);
    const Link intoItself{"A", "A", "follow", false, {}, 1, 1};
    bool changed = false;
    EXPECT_TRUE(batch.resolve(intoItself, {}, changed));
    const BaseClassSharedPointer view = session->view(configurationOf("A"));
    EXPECT_EQ(view->getChildData("X")->getDataProperty("@unitType"), QVariant("K"));
}

TEST_F(Batch, says_for_each_link_what_building_its_description_said)
{
    write(
        "dependency/odd.json",
        QByteArray(follow).replace("CommandSetUnitByConfigurationParameter", "CommandNobodyKnows"));
    write("dependency/broken.json", "{");
    expectTheSame({linkTo("B", "odd"), linkTo("C", "odd"), linkTo("B", "broken"),
                   linkTo("C", "broken"), linkTo("B")});
}

TEST_F(Batch, says_what_the_resolver_says_about_what_is_missing)
{
    const Link withoutSource{"Z", "B", "follow", false, {}, 1, 1};
    const Link withNothing{"Z", "Z", "nothing", true, {}, 1, 1};
    const Link refused{"../A", "../B", "../follow", false, {}, 1, 1};
    expectTheSame({linkTo("Z"), linkTo("Z"), withoutSource, linkTo("B", "nothing"),
                   linkTo("B", "nothing"), withNothing, refused, linkTo("B")});
}

TEST_F(Batch, does_not_speak_of_a_broken_description_when_there_is_no_target)
{
    write("dependency/broken.json", "{");
    expectTheSame({linkTo("Z", "broken"), linkTo("B", "broken"), linkTo("Z", "broken")});
}

TEST_F(Batch, keeps_no_more_than_a_few_descriptions_but_serves_any_number)
{
    QList<Link> links;
    for (int round = 0; round < 2; ++round) {
        for (int number = 0; number < 40; ++number) {
            const QString name = QString("follow%1").arg(number);
            write("dependency/" + name + ".json", follow);
            links.append(linkTo("B", name));
        }
    }
    expectTheSame(links);
}

} // namespace
