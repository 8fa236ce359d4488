#include "Engine.h"
#include "Shrink.h"
#include "TraversalObserver.h"
#include "Twin.h"

#include <QJsonDocument>
#include <gtest/gtest.h>

using reference::Evaluator;
using reference::Outcome;
using reference::Scenario;

namespace {

std::uint64_t fromEnvironment(const char* name, std::uint64_t otherwise)
{
    bool ok = false;
    const qulonglong number = qEnvironmentVariable(name).toULongLong(&ok);
    return ok ? number : otherwise;
}

/// Whether engine and twin do something else. What ends the process is not run.
bool differ(const Scenario& scenario, Evaluator& twin)
{
    const Outcome expected = twin.evaluate(scenario);
    return !expected.fatal && reference::runEngine(scenario) != expected;
}

/// The least that makes engine and twin differ, starting from a scenario that does.
Scenario leastDifference(const Scenario& scenario, const std::string& brokenRule)
{
    return reference::shrink(scenario, [&](const Scenario& smaller) {
        Evaluator twin{brokenRule, {}};
        return differ(smaller, twin);
    });
}

QString print(const Outcome& outcome)
{
    QString text;
    for (const QString& event : outcome.events) {
        text += "  " + event + '\n';
    }
    for (const bool result : outcome.results) {
        text += result ? "  result true\n" : "  result false\n";
    }
    return text + (outcome.changed ? "  changed true\n" : "  changed false\n");
}

/// What to look at when engine and twin differ: the seed, and the least that shows it.
std::string report(std::uint64_t seed, const Scenario& scenario)
{
    const Scenario least = leastDifference(scenario, {});
    const QString text =
        QString("seed %1; the least that differs:\n%2engine:\n%3twin:\n%4")
            .arg(QString::number(seed), QJsonDocument(least).toJson(),
                 print(reference::runEngine(least)), print(Evaluator().evaluate(least)));
    return text.toStdString();
}

/// The first scenario that shows that the rule is broken; empty when none of many does.
Scenario firstDifference(const std::string& brokenRule)
{
    for (std::uint64_t seed = 1; seed <= 2000; ++seed) {
        Scenario scenario = reference::generate(seed);
        Evaluator twin{brokenRule, {}};
        if (differ(scenario, twin)) {
            return scenario;
        }
    }
    return {};
}

TEST(Reference, the_engine_does_what_its_plain_twin_works_out)
{
    const std::uint64_t first = fromEnvironment("UNITFLOW_REFERENCE_SEED", 1);
    const std::uint64_t count = fromEnvironment("UNITFLOW_REFERENCE_COUNT", 2000);
    std::uint64_t ends = 0;
    for (std::uint64_t seed = first; seed < first + count; ++seed) {
        const Scenario scenario = reference::generate(seed);
        const Outcome expected = Evaluator().evaluate(scenario);
        if (expected.fatal) {
            ++ends;
            continue;
        }
        ASSERT_TRUE(reference::runEngine(scenario) == expected) << report(seed, scenario);
    }
    EXPECT_LE(ends, count / 5) << "too many scenarios end the process";
}

TEST(Reference, no_rule_of_the_twin_can_be_broken_unnoticed)
{
    std::set<std::string> met;
    std::set<std::string> noticed;
    for (std::uint64_t seed = 1; seed <= 100 || (seed <= 2000 && noticed != met); ++seed) {
        const Scenario scenario = reference::generate(seed);
        Evaluator twin;
        if (twin.evaluate(scenario).fatal) {
            continue;
        }
        const Outcome actual = reference::runEngine(scenario);
        for (const std::string& rule : twin.rulesMet) {
            met.insert(rule);
            if (noticed.count(rule) == 0 && Evaluator{rule, {}}.evaluate(scenario) != actual) {
                noticed.insert(rule);
            }
        }
    }
    EXPECT_GT(met.size(), 35U);
    EXPECT_EQ(noticed, met);
}

TEST(Reference, a_difference_shrinks_to_what_shows_it)
{
    const std::string rule = "a write without change leaves the flag alone";
    const Scenario scenario = firstDifference(rule);
    const Scenario least = leastDifference(scenario, rule);

    Evaluator twin{rule, {}};
    EXPECT_TRUE(differ(least, twin));
    EXPECT_EQ(leastDifference(least, rule), least) << "nothing more can be left out";
    EXPECT_LT(QJsonDocument(least).toJson(QJsonDocument::Compact).size() * 5,
              QJsonDocument(scenario).toJson(QJsonDocument::Compact).size());
}

/// Looks at the end of each traversal alone.
class Counter final : public TraversalObserver {
public:
    void traversalFinished(bool /*outcome*/, bool /*changed*/) override { ++traversals; }
    int traversals = 0;
};

TEST(Reference, an_observer_changes_neither_results_nor_writes_nor_any_call_of_the_host)
{
    Counter counter;
    for (std::uint64_t seed = 1; seed <= 1000; ++seed) {
        const Scenario scenario = reference::generate(seed);
        if (Evaluator().evaluate(scenario).fatal) {
            continue;
        }
        const Outcome alone = reference::runEngine(scenario);
        const QStringList callsAlone = reference::hostCalls(scenario);
        const TraversalObservation observed(counter);
        ASSERT_TRUE(reference::runEngine(scenario) == alone) << "seed " << seed;
        ASSERT_EQ(reference::hostCalls(scenario), callsAlone) << "seed " << seed;
    }
    EXPECT_GT(counter.traversals, 1000);
}

TEST(Reference, a_seed_draws_the_same_scenario_again)
{
    EXPECT_EQ(reference::generate(7), reference::generate(7));
    EXPECT_NE(reference::generate(7), reference::generate(8));
}

TEST(ReferenceDeathTest, the_engine_ends_the_process_where_the_twin_says_so)
{
    int ended = 0;
    for (std::uint64_t seed = 1; ended < 10; ++seed) {
        const Scenario scenario = reference::generate(seed);
        if (Evaluator().evaluate(scenario).fatal) {
            EXPECT_DEATH(reference::runEngine(scenario), "") << "seed " << seed;
            ++ended;
        }
    }
}

} // namespace
