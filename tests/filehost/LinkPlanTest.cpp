#include "filehost/LinkPlan.h"

#include "TestWorkspace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

using filehost::Link;
using filehost::LinkPlan;

namespace {

using Units = std::vector<std::vector<int>>;

Link linkBetween(const QString& source, const QString& target, bool isProcess = false)
{
    return {source, target, QStringLiteral("any"), isProcess, {}, 0, 0};
}

class Plan : public TestWorkspace {
protected:
    Units unitsOf(const QList<Link>& links) const { return LinkPlan(workspace(), links).units(); }
};

TEST_F(Plan, of_no_links_is_empty)
{
    EXPECT_EQ(unitsOf({}), Units());
}

TEST_F(Plan, lets_links_into_different_instances_run_apart_although_they_read_the_same_one)
{
    EXPECT_EQ(unitsOf({linkBetween("A", "B"), linkBetween("A", "C")}), (Units{{0}, {1}}));
}

TEST_F(Plan, keeps_links_into_one_instance_together_in_their_order)
{
    EXPECT_EQ(unitsOf({linkBetween("A", "X"), linkBetween("A", "Y"), linkBetween("B", "X")}),
              (Units{{0, 2}, {1}}));
}

TEST_F(Plan, keeps_a_link_with_those_that_write_its_source)
{
    EXPECT_EQ(unitsOf({linkBetween("A", "B"), linkBetween("B", "C"), linkBetween("C", "D")}),
              (Units{{0, 1, 2}}));
}

TEST_F(Plan, keeps_a_link_with_those_that_write_its_source_later)
{
    EXPECT_EQ(unitsOf({linkBetween("B", "C"), linkBetween("X", "Y"), linkBetween("A", "B")}),
              (Units{{0, 2}, {1}}));
}

TEST_F(Plan, keeps_the_two_kinds_of_instances_apart)
{
    EXPECT_EQ(unitsOf({linkBetween("A", "B", true), linkBetween("B", "C")}), (Units{{0}, {1}}));
}

TEST_F(Plan, knows_one_file_under_two_names)
{
    write("configuration/B.json", "{}");
    ASSERT_TRUE(QFile::link("B.json", path("configuration/alias.json")));
    EXPECT_EQ(
        unitsOf({linkBetween("A", "B"), linkBetween("alias", "C"), linkBetween("A", "alias")}),
        (Units{{0, 1, 2}}));
}

TEST_F(Plan, knows_one_file_under_two_names_among_many_files)
{
    QList<Link> links;
    for (int number = 0; number < 200; ++number) {
        links.append(linkBetween("A", QStringLiteral("T%1").arg(number)));
        write(QStringLiteral("configuration/T%1.json").arg(number), "{}");
    }
    ASSERT_TRUE(QFile::link("T7.json", path("configuration/alias.json")));
    links.append(linkBetween("A", "alias"));
    const Units units = unitsOf(links);
    EXPECT_EQ(units.size(), 200U);
    EXPECT_EQ(units[7], (std::vector<int>{7, 200}));
}

TEST_F(Plan, has_a_unit_for_each_name_that_is_refused)
{
    EXPECT_EQ(
        unitsOf({linkBetween("A", "../B"), linkBetween("A", "../C"), linkBetween("A", "../B")}),
        (Units{{0, 2}, {1}}));
}

TEST_F(Plan, tells_the_last_use_of_what_is_written)
{
    const LinkPlan plan(workspace(), {linkBetween("A", "B"), linkBetween("B", "C"),
                                      linkBetween("A", "C"), linkBetween("D", "D")});
    std::vector<bool> lastOfSource;
    std::vector<bool> lastOfTarget;
    for (int link = 0; link < 4; ++link) {
        lastOfSource.push_back(plan.isLastOfSource(link));
        lastOfTarget.push_back(plan.isLastOfTarget(link));
    }
    EXPECT_EQ(lastOfSource, (std::vector<bool>{false, true, false, false}));
    EXPECT_EQ(lastOfTarget, (std::vector<bool>{false, false, true, true}));
}

/// What units are by definition: grown from pairs until nothing changes any more.
Units plainUnitsOf(const QList<Link>& links)
{
    std::vector<int> unitOf(static_cast<std::size_t>(links.size()));
    for (std::size_t link = 0; link < unitOf.size(); ++link) {
        unitOf[link] = static_cast<int>(link);
    }
    for (bool isGrowing = true; isGrowing;) {
        isGrowing = false;
        for (std::size_t i = 0; i < unitOf.size(); ++i) {
            for (std::size_t j = 0; j < unitOf.size(); ++j) {
                const Link& left = links[static_cast<int>(i)];
                const Link& right = links[static_cast<int>(j)];
                if ((left.target == right.target || left.target == right.source) &&
                    unitOf[i] != unitOf[j]) {
                    unitOf[i] = unitOf[j] = std::min(unitOf[i], unitOf[j]);
                    isGrowing = true;
                }
            }
        }
    }
    std::map<int, std::vector<int>> units;
    for (std::size_t link = 0; link < unitOf.size(); ++link) {
        units[unitOf[link]].push_back(static_cast<int>(link));
    }
    Units inOrder;
    for (const auto& unit : units) {
        inOrder.push_back(unit.second);
    }
    return inOrder;
}

TEST_F(Plan, of_random_links_is_what_it_is_by_definition)
{
    std::mt19937 random(7); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same cases in each run
    for (int round = 0; round < 300; ++round) {
        std::uniform_int_distribution<int> instance(0, 2 + round / 10);
        QList<Link> links;
        for (int link = 0; link < round / 10; ++link) {
            links.append(
                linkBetween(QString::number(instance(random)), QString::number(instance(random))));
        }
        ASSERT_EQ(unitsOf(links), plainUnitsOf(links)) << "in round " << round;
    }
}

} // namespace
