#include "tools/why/Reach.h"

#include "DependencyWalker.h"
#include "filehost/FileDependencyResolver.h"
#include "filehost/LinkPlan.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "tools/console/Console.h"
#include "tools/console/Messages.h"
#include "tools/why/OpenComparisons.h"
#include "tools/workspace/Access.h"
#include "tools/workspace/Leaves.h"

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

namespace tools {

namespace {

using filehost::Instance;
using filehost::Link;
using filehost::Problem;
using filehost::Session;
using Keys = ConfigurationAndProcessDataDefinitions;
using RowOutcome = TraversalObserver::RowOutcome;

/// Tells of each row that a command runs, and in which node.
class RowObserver : public TraversalObserver {
public:
    using Told = std::function<void(const CommandRowId& id, const CommandRow& row)>;

    RowObserver(int link, Told told) : link(link), told(std::move(told)) {}

    void nodeEntered(const Node& node) override { nodes.append(node.name); }
    void nodeLeft(const Node& /*node*/, bool /*outcome*/) override { nodes.removeLast(); }
    void commandStarted(const Command& started) override { command = started.type; }
    void commandRowExecuted(const CommandRow& row) override
    {
        told({link, nodes, command, row.row}, row);
    }

private:
    const int link;
    const Told told;
    QStringList nodes;
    QString command;
};

/// Stands for the value of a leaf that has none yet: no text of a file.
const QString& anyValue()
{
    static const QString text(QChar(0xFFFF));
    return text;
}

/// Gives a value to each leaf that has none, as a write may; false when all have one.
bool fillValues(const BaseClassSharedPointer& source)
{
    bool isAnyFilled = false;
    for (const Leaf& leaf : leavesBelow(source, QString())) {
        if (!leaf.value.isValid()) {
            source->getChildData(leaf.url)->setDataProperty(Keys::getKeyDataPropertyValue(),
                                                            anyValue());
            isAnyFilled = true;
        }
    }
    return isAnyFilled;
}

/// The nearer a row comes to set something, the more.
int rank(RowOutcome outcome)
{
    if (isSet(outcome)) {
        return 2;
    }
    return outcome == RowOutcome::NoTarget ? 0 : 1;
}

/// What the rows of a link can do, collected over many runs.
class RowCollection {
public:
    /// Only what is known about rows with this target is kept in full.
    explicit RowCollection(QString wantedUrl) : wantedUrl(std::move(wantedUrl)) {}

    /// All rows of one URL come before those of the next.
    void add(const CommandRowId& id, const TraversalObserver::CommandRow& row, const QString& url)
    {
        if (row.targetUrl.isEmpty()) {
            return;
        }
        const auto [found, isNew] =
            rows.try_emplace({id, row.targetUrl, row.column},
                             ReachingRow{id, row.targetUrl, row.column, row.outcome, {}, {}});
        ReachingRow& known = found->second;
        if (rank(row.outcome) > rank(known.outcome)) {
            known.outcome = row.outcome;
            known.urls.clear();
        }
        if (row.targetUrl != wantedUrl || rank(row.outcome) < rank(known.outcome)) {
            return;
        }
        if (known.urls.isEmpty() || known.urls.last() != url) {
            known.urls.append(url);
        }
        if (isSet(row.outcome) && row.unit != anyValue() && !known.units.contains(row.unit)) {
            known.units.append(row.unit);
        }
    }

    /// `leaves` are those of the source, whose URLs came first.
    QList<ReachingRow> take(const QStringList& leaves)
    {
        QList<ReachingRow> taken;
        for (auto& [key, row] : rows) {
            row.everyWrite = !leaves.isEmpty() && row.urls.mid(0, leaves.size()) == leaves;
            taken.append(row);
        }
        return taken;
    }

private:
    const QString wantedUrl;
    std::map<std::tuple<CommandRowId, QString, int>, ReachingRow> rows;
};

/// Runs a link for each URL by itself, on a target of its own.
QList<ReachingRow> rowsOf(Session& session, const Link& link, int number, const QString& wantedUrl)
{
    const BaseClassSharedPointer source = session.view(filehost::sourceOf(link));
    const BaseClassSharedPointer filled = session.load(filehost::sourceOf(link));
    const BaseClassSharedPointer target = session.load(filehost::targetOf(link));
    const QString description = session.description(link.dependency);
    DependencyWalker written;
    DependencyWalker walker;
    if (!source || !filled || !target || description.isEmpty()) {
        return {};
    }
    const QList<BaseClassSharedPointer> sources =
        fillValues(filled) ? QList{source, filled} : QList{source};
    if (!written.initDependencyGraphByJsonString(description) ||
        !walker.initDependencyGraphByJsonString(withOpenComparisons(description, filled))) {
        return {};
    }

    const QStringList leaves = urlsOf(leavesBelow(source, QString()));
    const QStringList watched = written.getDependencyUrlList();
    // With nothing watched the empty URL is what is run without a write.
    QStringList urls = leaves + (watched.isEmpty() ? QStringList{QString()} : watched);
    urls.removeDuplicates();

    RowCollection rows(wantedUrl);
    for (const QString& url : qAsConst(urls)) {
        RowObserver observer(number,
                             [&](const CommandRowId& id, const TraversalObserver::CommandRow& row) {
                                 rows.add(id, row, url);
                             });
        const TraversalObservation observation(observer);
        QVariantList results;
        for (const BaseClassSharedPointer& present : sources) {
            walker.traverseDependencyGraph(url, present, target, results, link.parameters, {});
        }
    }
    return rows.take(leaves);
}

/// The numbers of the links that have the instance as their target, under whatever name.
QList<int> linksTo(const Session& session, const QList<Link>& links, const Instance& instance)
{
    QList<Problem> ignored; // a refused name is reported when its link runs
    const QString path = session.workspace().instancePath(instance, ignored);
    QList<int> numbers;
    for (int number = 0; number < links.size(); ++number) {
        if (session.workspace().instancePath(filehost::targetOf(links.at(number)), ignored) ==
            path) {
            numbers.append(number);
        }
    }
    return numbers;
}

/// Those links whose results can matter to the given ones, these included, in their order.
QList<int> linksThatMatter(const Session& session, const QList<Link>& links,
                           const QList<int>& given)
{
    QList<int> numbers;
    const filehost::LinkPlan plan(session.workspace(), links);
    for (const std::vector<int>& unit : plan.units()) {
        if (std::any_of(unit.begin(), unit.end(), [&](int link) { return given.contains(link); })) {
            for (const int link : unit) {
                numbers.append(link);
            }
        }
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

/// Resolves links as `unitflow resolve --all` does, without writing, and notes who decides.
class DryResolution {
public:
    DryResolution(Session& session, const QList<Link>& links, const QString& url, Reach& reach,
                  Console& console)
        : links(links), url(url), reach(reach),
          runner(session, resolveBy(session), reportTo(console), reportTo(console))
    {}

    void run(int number, bool isToInstance)
    {
        std::map<int, Decision> made;
        RowObserver observer(number,
                             [&](const CommandRowId& id, const TraversalObserver::CommandRow& row) {
                                 if (row.targetUrl == url && isSet(row.outcome)) {
                                     made[row.column] = {id, row.column, row.unit};
                                 }
                             });
        const auto runObserved = [&] {
            const TraversalObservation observation(observer);
            return runner.run(links.at(number), {});
        };
        const LinkRun run = runObserved();
        reach.isComplete = reach.isComplete && run.outcome != Outcome::Failed;
        if (!isToInstance) {
            return;
        }
        reach.runs.append(run);
        if (run.outcome == Outcome::Resolved) { // otherwise the target is left as it was
            for (const auto& [column, decision] : made) {
                decisions[column] = decision;
            }
        }
    }

    QList<Decision> takeDecisions() const
    {
        QList<Decision> list;
        for (const auto& [column, decision] : decisions) {
            list.append(decision);
        }
        return list;
    }

private:
    static LinkRunner::Resolve resolveBy(const Session& session)
    {
        const auto resolver =
            std::make_shared<const filehost::FileDependencyResolver>(session.workspace());
        return [resolver](const Link& link, const QStringList& urls, bool& changed) {
            return resolver->resolveLink(link, urls, changed);
        };
    }

    /// Warnings are for those who run the links.
    static LinkRunner::Report reportTo(Console& console)
    {
        return [&console](const Diagnostic& found) {
            if (found.severity == Severity::Error) {
                console.report(found);
            }
        };
    }

    const QList<Link>& links;
    const QString url;
    Reach& reach;
    LinkRunner runner;
    std::map<int, Decision> decisions; ///< by column
};

} // namespace

bool operator==(const CommandRowId& left, const CommandRowId& right)
{
    return std::tie(left.link, left.nodes, left.command, left.row) ==
           std::tie(right.link, right.nodes, right.command, right.row);
}

bool operator<(const CommandRowId& left, const CommandRowId& right)
{
    const auto before = [](const QStringList& one, const QStringList& other) {
        return std::lexicographical_compare(one.begin(), one.end(), other.begin(), other.end());
    };
    if (left.link != right.link) {
        return left.link < right.link;
    }
    if (left.nodes != right.nodes) {
        return before(left.nodes, right.nodes);
    }
    return std::tie(left.command, left.row) < std::tie(right.command, right.row);
}

bool isSet(RowOutcome outcome)
{
    return outcome == RowOutcome::Changed || outcome == RowOutcome::Unchanged;
}

Reach reachOf(Session& session, const QList<Link>& links, const Instance& instance,
              const QString& url, Console& console)
{
    Reach reach;
    const QList<int> numbers = linksTo(session, links, instance);
    for (const int number : numbers) {
        const Messages messages([&](const QString& lastWords) {
            const Link& link = links.at(number);
            console.report(Diagnostic{Severity::Error,
                                      endOfProgram(session.workspace(), link, lastWords), link});
        });
        const QList<ReachingRow> rows = rowsOf(session, links.at(number), number, url);
        session.takeProblems(); // they come again when the link is resolved
        for (const ReachingRow& row : rows) {
            (row.targetUrl == url && isSet(row.outcome) ? reach.rows : reach.others).append(row);
        }
    }

    DryResolution resolution(session, links, url, reach, console);
    for (const int number : linksThatMatter(session, links, numbers)) {
        resolution.run(number, numbers.contains(number));
    }
    reach.decisions = resolution.takeDecisions();
    if (const BaseClassSharedPointer root = session.view(instance)) {
        if (const BaseClassSharedPointer leaf = root->getChildData(url)) {
            reach.unit = leaf->getDataProperty(Keys::getKeyDataPropertyUnitType());
            reach.arrayInformation =
                leaf->getDataProperty(Keys::getKeyDataPropertyArrayInformation());
        }
    }
    return reach;
}

} // namespace tools
