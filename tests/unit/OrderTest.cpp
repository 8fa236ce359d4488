// The order of everything is the same in every run, whatever Qt's hash seed is.

#include "DependencyWalker.h"
#include "EngineTest.h"
#include "Nodes/NodeSwitch.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QSet>

#include <algorithm>
#include <random>
#include <vector>

namespace {

/// What another process prints under a hash seed; under one of Qt's choice when `seed` is empty.
QString runScenario(const QString& seed)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("QT_HASH_SEED");
    if (!seed.isEmpty()) {
        environment.insert("QT_HASH_SEED", seed);
    }
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(UNITFLOW_ORDER_SCENARIO, QStringList());
    EXPECT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
    return QString::fromUtf8(process.readAllStandardOutput());
}

TEST(Order, is_the_same_in_every_process_whatever_the_hash_seed)
{
    QSet<QString> hashOrders;
    QString expected;
    for (const char* seed : {"0", "1", "2", "77777", "2147483647", "", "", ""}) {
        SCOPED_TRACE(seed);
        const QString output = runScenario(seed);
        hashOrders.insert(output.section('\n', 0, 0));
        const QString rest = output.section('\n', 1);
        ASSERT_GT(rest.count('\n'), 300) << output.toStdString();
        if (expected.isEmpty()) {
            expected = rest;
        }
        EXPECT_EQ(rest, expected);
    }
    EXPECT_GT(hashOrders.size(), 1) << "the hashes of these processes were alike by chance";
}

class RandomOrder : public testhost::EngineTest {
protected:
    /// Names that sort differently by case, by number, by locale and by code point.
    QStringList randomNames()
    {
        static const QStringList pieces{"a",
                                        "A",
                                        "b",
                                        "Z",
                                        "1",
                                        "10",
                                        "9",
                                        "_",
                                        " ",
                                        "é",
                                        "ß",
                                        "ÿ",
                                        "/",
                                        "~",
                                        "−",
                                        "\uFFFD",
                                        QString::fromUtf8("😀"),
                                        QString(QChar(0xD800)),
                                        QString(QChar(0))};
        QSet<QString> names;
        const auto count = random() % 12;
        for (unsigned i = 0; i < count; ++i) {
            QString name;
            const auto length = random() % 4;
            for (unsigned j = 0; j < length; ++j) {
                name += pieces.at(int(random() % unsigned(pieces.size())));
            }
            names.insert(name);
        }
        return {names.begin(), names.end()};
    }

    /// Slow and obvious: the smallest of the rest, again and again.
    static QStringList sorted(QStringList names)
    {
        QStringList ascending;
        while (!names.isEmpty()) {
            QString smallest = names.constFirst();
            for (const QString& name : qAsConst(names)) {
                if (QString::compare(name, smallest) < 0) {
                    smallest = name;
                }
            }
            names.removeOne(smallest);
            ascending.append(smallest);
        }
        return ascending;
    }

    std::mt19937 random{5}; // NOLINT(cert-msc32-c,cert-msc51-cpp): the same names in every run
};

TEST_F(RandomOrder, of_edges_is_ascending)
{
    for (int round = 0; round < 300; ++round) {
        const QStringList names = randomNames();
        const auto description = testhost::tree("d", R"({"Next": {}})");
        for (const QString& name : names) {
            description->at("Next").addChild(name)->addChild("Type")->setProperty("@val",
                                                                                  "SwitchNode");
        }
        QStringList built;
        for (const auto& edge : NodeSwitch("Top", description).getSucessorList()) {
            built.append(edge.node->getNodeName());
        }
        ASSERT_EQ(built, sorted(names));
    }
}

TEST_F(RandomOrder, of_top_level_nodes_is_ascending)
{
    for (int round = 0; round < 300; ++round) {
        const QStringList names = randomNames();
        const auto description = testhost::tree("d", "{}");
        for (const QString& name : names) {
            const auto node = description->addChild(name);
            node->addChild("Type")->setProperty("@val", "SwitchNode");
            const auto successor = node->addChild("Next")->addChild("N");
            successor->addChild("Type")->setProperty("@val", "SwitchNode");
            const QVariantList row{"url of " + name};
            successor->addChild("ConditionWriteOnUrls")
                ->setProperty("@val", QVariantList{QVariant(row)});
            successor->addChild("ConditionWriteOnUrlsRegExp")
                ->setProperty("@val", QVariantList{QVariant(QVariantList{"."})});
        }
        QStringList expectedUrls;
        for (const QString& name : sorted(names)) {
            expectedUrls.append("url of " + name);
        }

        DependencyWalker walker;
        walker.initDependencyGraph(description);
        QList<QSharedPointer<NodeBase>> matches;
        walker.filterRegExpMatches("x", matches);
        QStringList matched;
        for (const auto& node : matches) {
            matched.append(node->getNodeName());
        }
        ASSERT_EQ(walker.getDependencyUrlList(), expectedUrls);
        ASSERT_EQ(matched, sorted(names));
    }
}

} // namespace
