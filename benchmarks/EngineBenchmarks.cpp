// What the engine takes for a write, a search among patterns and a build, next to the floors that
// these are compared with. Names and meanings are those of report.py.

#include "DependencyWalker.h"
#include "Graphs.h"
#include "MemoryTree.h"
#include "checker/Check.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"

#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QVariantList>
#include <QtGlobal>
#include <benchmark/benchmark.h>

#include <array>
#include <cstdlib>
#include <ctime>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

using benchmark::State;
using graphs::Watching;
using Urls = std::vector<QString>;
using Matches = QList<QSharedPointer<NodeBase>>;

constexpr int manyNodes = 10'000;
constexpr int seenUrls = 64;

/// A number that was not used before, for a URL that nobody has seen.
int nextSerial()
{
    static int serial = 0;
    return ++serial;
}

/// The processor time of this thread, in which another program's work does not show.
double seconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

/// Measures `work` on one URL after the other. They are made anew for each batch, and that is not
/// measured.
template <class MakeUrl, class Work>
void measureOnFreshUrls(State& state, int batch, const MakeUrl& makeUrl, const Work& work)
{
    Urls urls;
    while (state.KeepRunningBatch(batch)) {
        urls.clear();
        for (int i = 0; i < batch; ++i) {
            const QString url = makeUrl();
            urls.emplace_back(url.constData(), url.size()); // none of the room it grew in
        }
        const double start = seconds();
        for (const QString& url : urls) {
            work(url);
        }
        state.SetIterationTime(seconds() - start);
    }
}

constexpr int batchSize = 256;

/// Measures `work` on the same few things over and over.
template <class List, class Work>
void measureInTurn(State& state, List& list, const Work& work)
{
    auto next = list.begin();
    while (state.KeepRunning()) {
        work(*next);
        if (++next == list.end()) {
            next = list.begin();
        }
    }
}

void require(bool holds, const char* what)
{
    if (!holds) {
        qFatal("%s", what);
    }
}

// ---- The search among patterns ------------------------------------------------------------------

DependencyWalker built(const QString& description)
{
    DependencyWalker walker;
    require(walker.initDependencyGraphByJsonString(description), "the description does not parse");
    return walker;
}

/// Each graph is built once, whatever the number of repetitions.
const DependencyWalker& walkerOf(int nodeCount, Watching watching)
{
    static std::map<std::pair<int, Watching>, DependencyWalker> walkers;
    const auto [walker, isNew] = walkers.try_emplace({nodeCount, watching});
    if (isNew) {
        walker->second = built(graphs::description(nodeCount, watching));
    }
    return walker->second;
}

/// Asks a walker, and ends the process when the answer is not as long as it should be.
class Question {
public:
    Question(const DependencyWalker& walker, int expected) : walker(walker), expected(expected) {}

    void operator()(const QString& url) const
    {
        walker.filterRegExpMatches(url, matches);
        require(matches.size() == expected, "another number of matches than expected");
    }

private:
    const DependencyWalker& walker;
    int expected;
    mutable Matches matches;
};

/// A zone out of a few all over a range. The floor has its one expression at hand, so the measured
/// ones are not searched for in slow memory either.
int someZone(int serial, int zoneCount)
{
    return int(qint64(serial % seenUrls) * 7919 % zoneCount);
}

QString freshUrl(int zoneCount)
{
    const int serial = nextSerial();
    return graphs::zoneUrl(someZone(serial, zoneCount), serial);
}

/// In a zone that none of the patterns is about.
QString freshUrlBeyond(int zoneCount)
{
    const int serial = nextSerial();
    return graphs::zoneUrl(zoneCount + someZone(serial, 100'000 - zoneCount), serial);
}

/// The floor: one expression, compiled beforehand, that finds its match.
void matchOnce(State& state)
{
    const QRegularExpression expression(graphs::zonePattern(42));
    measureOnFreshUrls(
        state, batchSize, [] { return graphs::zoneUrl(42, nextSerial()); },
        [&](const QString& url) { require(expression.match(url).hasMatch(), "no match"); });
}

void selectSeen(State& state)
{
    const Question ask(walkerOf(int(state.range(0)), Watching::Patterns), 1);
    Urls urls;
    for (int i = 0; i < seenUrls; ++i) {
        urls.push_back(freshUrl(int(state.range(0))));
        ask(urls.back());
    }
    measureInTurn(state, urls, ask);
}

void selectOne(State& state)
{
    const int zones = int(state.range(0));
    const Question ask(walkerOf(zones, Watching::Patterns), 1);
    for (int i = 0; i < seenUrls; ++i) {
        ask(freshUrl(zones)); // compiles what is tried for the first time
    }
    measureOnFreshUrls(
        state, batchSize, [&] { return freshUrl(zones); }, ask);
}

void selectNone(State& state)
{
    const int zones = int(state.range(0));
    const Question ask(walkerOf(zones, Watching::Patterns), 0);
    for (int i = 0; i < seenUrls; ++i) {
        ask(freshUrlBeyond(zones));
    }
    measureOnFreshUrls(
        state, batchSize, [&] { return freshUrlBeyond(zones); }, ask);
}

constexpr int fewUrls = 8; // a thousand expressions are tried for each

QString freshSharedUrl()
{
    return graphs::sharedUrl(nextSerial());
}

/// The floor: the expressions that share their text, all tried.
void matchSharing(State& state)
{
    std::vector<QRegularExpression> expressions;
    for (int length = 0; length < graphs::sharingCount; ++length) {
        expressions.emplace_back(graphs::sharedPattern(length));
        expressions.back().optimize();
    }
    measureOnFreshUrls(state, fewUrls, freshSharedUrl, [&](const QString& url) {
        int matches = 0;
        for (const QRegularExpression& expression : expressions) {
            matches += expression.match(url).hasMatch() ? 1 : 0;
        }
        require(matches == 1, "another number of matches than expected");
    });
}

void selectSharing(State& state)
{
    const Question ask(walkerOf(manyNodes, Watching::SharingPatterns), 1);
    ask(freshSharedUrl()); // compiles what is tried here for the first time
    measureOnFreshUrls(state, fewUrls, freshSharedUrl, ask);
}

// ---- Whole writes -------------------------------------------------------------------------------

const QSharedPointer<MemoryTree>& target()
{
    static const QSharedPointer<MemoryTree> tree = [] {
        QSharedPointer<MemoryTree> made(new MemoryTree);
        for (int leaf = 0; leaf < graphs::leafCount; ++leaf) {
            made->make(graphs::leafUrl(leaf));
        }
        return made;
    }();
    return tree;
}

QString unitKey()
{
    return ConfigurationAndProcessDataDefinitions::getKeyDataPropertyUnitType();
}

/// Some nodes all over the graph, each followed by the one that writes another unit to its leaf.
/// So nearly every write changes something.
std::vector<int> writtenNodes()
{
    std::vector<int> nodes;
    for (int i = 0; i < seenUrls; i += 2) {
        const int node = i * (manyNodes / seenUrls) / 2 * 2;
        nodes.push_back(node);
        nodes.push_back(node + 1);
    }
    return nodes;
}

/// The floor: find a leaf and set its unit.
void setLeaf(State& state)
{
    const BaseClassSharedPointer root = target();
    const QString key = unitKey();
    std::vector<std::pair<QString, QString>> leaves;
    for (const int node : writtenNodes()) {
        leaves.emplace_back(graphs::leafUrl(graphs::leafOf(node)), graphs::unit(node));
    }
    measureInTurn(state, leaves, [&](const std::pair<QString, QString>& leaf) {
        const int status = root->getChildData(leaf.first)->setDataProperty(key, leaf.second);
        require(status <= 1, "the write was refused");
    });
}

void write(State& state, Watching watching)
{
    DependencyWalker walker = walkerOf(manyNodes, watching);
    const BaseClassSharedPointer source(new MemoryTree);
    const BaseClassSharedPointer root = target();
    Urls urls;
    for (const int node : writtenNodes()) {
        urls.push_back(graphs::zoneUrl(node, 0));
    }
    QVariantList results;
    const auto run = [&](const QString& url) {
        bool changed = false;
        const bool written =
            walker.traverseDependencyGraph(url, source, root, results, changed, {}, {});
        require(written, "no command ran");
    };
    for (const QString& url : urls) {
        run(url);
    }
    measureInTurn(state, urls, run);
}

// ---- A command with many rows -------------------------------------------------------------------

constexpr std::array<const char*, 2> twoUnits{"K", "\u00B0C"};

/// The floor: what the command asks of the host, written down as a loop.
void setRows(State& state)
{
    const BaseClassSharedPointer root = target();
    const QString key = unitKey();
    std::array<std::vector<std::pair<QString, QString>>, 2> tables;
    for (std::size_t i = 0; i < tables.size(); ++i) {
        for (int leaf = 0; leaf < graphs::leafCount; ++leaf) {
            tables[i].emplace_back(graphs::leafUrl(leaf), QString::fromUtf8(twoUnits[i]));
        }
    }
    measureInTurn(state, tables, [&](const auto& rows) {
        bool changed = false;
        for (const auto& [url, unit] : rows) {
            const BaseClassSharedPointer leaf = root->getChildData(url);
            if (!leaf.isNull() && leaf->setDataProperty(key, QVariant(unit)) == 0) {
                changed = true;
            }
        }
        benchmark::DoNotOptimize(changed);
    });
}

void runRows(State& state)
{
    const BaseClassSharedPointer source(new MemoryTree);
    const BaseClassSharedPointer root = target();
    std::array<DependencyWalker, 2> walkers;
    for (std::size_t i = 0; i < walkers.size(); ++i) {
        walkers.at(i) = built(graphs::rowsDescription(QString::fromUtf8(twoUnits.at(i))));
    }
    QVariantList results;
    measureInTurn(state, walkers, [&](DependencyWalker& walker) {
        bool changed = false;
        walker.traverseDependencyGraph(QStringLiteral("Written"), source, root, results, changed,
                                       {}, {});
        benchmark::DoNotOptimize(changed);
    });
}

// ---- Building -----------------------------------------------------------------------------------

void lookAtAll(const BaseClassSharedPointer& node, const QString& valueKey)
{
    for (const BaseClassSharedPointer& child : node->getChildMap()) {
        benchmark::DoNotOptimize(child->getDataProperty(valueKey));
        lookAtAll(child, valueKey);
    }
}

/// A tree with everything in it that the host's parser puts off until somebody asks.
BaseClassSharedPointer wholeTree(const QString& text)
{
    static const QString valueKey =
        ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue();
    BaseClassSharedPointer tree = graphs::parsed(text);
    lookAtAll(tree, valueKey);
    return tree;
}

/// The floor: the host's parser on the same text.
void parse(State& state, Watching watching)
{
    const QString text = graphs::description(manyNodes, watching);
    while (state.KeepRunning()) {
        const double start = seconds();
        const BaseClassSharedPointer tree = wholeTree(text);
        state.SetIterationTime(seconds() - start);
        require(!tree.isNull(), "the description does not parse");
    }
}

/// A build, and one question for what waits for the first, without parsing.
void build(State& state, Watching watching)
{
    const QString text = graphs::description(manyNodes, watching);
    Matches matches;
    while (state.KeepRunning()) {
        const BaseClassSharedPointer tree = wholeTree(text);
        DependencyWalker walker;
        const QString url = freshUrlBeyond(manyNodes);
        const double start = seconds();
        walker.initDependencyGraph(tree);
        walker.filterRegExpMatches(url, matches);
        state.SetIterationTime(seconds() - start);
        require(walker.isValid(), "nothing was built");
    }
}

/// A check of a description by itself, its parsing included.
void check(State& state, Watching watching)
{
    const QByteArray bytes = graphs::description(manyNodes, watching).toUtf8();
    while (state.KeepRunning()) {
        const double start = seconds();
        const checker::CheckedFile checked = checker::checkText(bytes, QStringLiteral("graph"));
        state.SetIterationTime(seconds() - start);
        require(checked.findings.isEmpty(), "the description is taken for a wrong one");
    }
}

void registerAll()
{
    using benchmark::RegisterBenchmark;
    RegisterBenchmark("match/one", matchOnce)->UseManualTime();
    RegisterBenchmark("select/seen", selectSeen)->Arg(manyNodes);
    for (const int count : {10, 100, 1000, manyNodes}) {
        RegisterBenchmark("select/one", selectOne)->Arg(count)->UseManualTime();
        RegisterBenchmark("select/none", selectNone)->Arg(count)->UseManualTime();
    }
    RegisterBenchmark("match/sharing", matchSharing)->UseManualTime();
    RegisterBenchmark("select/sharing", selectSharing)->UseManualTime();
    RegisterBenchmark("set/leaf", setLeaf);
    RegisterBenchmark("write/urls", write, Watching::Urls);
    RegisterBenchmark("write/patterns", write, Watching::Patterns);
    RegisterBenchmark("set/rows", setRows);
    RegisterBenchmark("run/rows", runRows);
    for (const Watching watching : {Watching::Urls, Watching::Patterns}) {
        const std::string what = watching == Watching::Urls ? "urls" : "patterns";
        RegisterBenchmark(("parse/" + what).c_str(), parse, watching)->UseManualTime();
        RegisterBenchmark(("build/" + what).c_str(), build, watching)->UseManualTime();
        RegisterBenchmark(("check/" + what).c_str(), check, watching)->UseManualTime();
    }
}

} // namespace

int main(int argc, char* argv[])
{
    benchmark::AddCustomContext("compiler", __VERSION__);
    benchmark::AddCustomContext("qt", qVersion());
    registerAll();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return EXIT_FAILURE;
    }
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
