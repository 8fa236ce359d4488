#include "GeneratedWorkspace.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <random>

const char* const chainDescription = R"({"Follow": {"Type": "SwitchNode", "Next": {"Set": {
    "Type": "CommandNode",
    "ConditionWriteOnUrls": [["Unit"]],
    "Commands": {"CommandSetUnitByConfigurationParameter": [["Unit", "", "Follower"]]}}}}})";

namespace {

void clear(const TestWorkspace& workspace)
{
    const QMap<QString, QByteArray> files = workspace.files();
    for (const QString& file : files.keys()) {
        workspace.remove(file);
    }
}

class RandomWriter {
public:
    RandomWriter(const TestWorkspace& workspace, unsigned seed) : workspace(workspace), random(seed)
    {}

    void write()
    {
        instances = 2 + pick(12);
        for (int number = 0; number < instances; ++number) {
            writeInstance(QStringLiteral("configuration/"), number);
            writeInstance(QStringLiteral("process/"), number);
        }
        for (int number = 0; number < descriptions; ++number) {
            writeDescription(number);
        }
        writeManifest();
        writeLinks();
    }

private:
    static constexpr int descriptions = 5;

    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); }
    bool happens(int percent) { return pick(100) < percent; }
    QByteArray unit() { return "u" + QByteArray::number(pick(4)); }
    QString instance() { return QStringLiteral("i%1").arg(pick(instances)); }

    QByteArray leaf()
    {
        QByteArray value = '"' + unit() + '"';
        switch (pick(3)) {
        case 0:
            return value;
        case 1:
            return R"({ "@value": )" + value + " }";
        default:
            return R"({"@value": )" + value + R"(, "@unitType": ")" + unit() + "\"}";
        }
    }

    void writeInstance(const QString& folder, int number)
    {
        if (happens(5)) {
            return; // missing
        }
        QByteArray text = "{\n  \"A\": " + leaf() + ",\n  \"B\": " + leaf() +
                          ",\n  \"N\": { \"A\": " + leaf() + ", \"C\": " + leaf() + " },\n" +
                          R"(  "T": {"@type": "array", "@value": [], "@arrayInformation": [)" +
                          R"({"name": "x", "unitType": ")" + unit() +
                          "\"}, {\"name\": \"y\"}]}\n}\n";
        if (happens(5)) {
            text.chop(3); // broken
        }
        workspace.write(folder + QStringLiteral("i%1.json").arg(number), text);
    }

    QByteArray command()
    {
        static const QList<QByteArray> commands{
            R"("CommandSetUnitByConfigurationParameter": [["A", "", "N/A"], ["B", "", "B"]])",
            R"("CommandSetUnitByConfigurationParameter": [["N/C", "", "%1/%2"]])",
            R"("CommandSetUnitByConfigurationParameter": [["A", "", "A"]])",
            R"("CommandSetUnitByConfigurationParameterArray": [["A", "T[1]"]])",
            R"("CommandSetUnitByConfigurationParameterArray": [["A", "B[0]"], ["B", "T[0]"]])",
            R"("CommandSetUnitProperties": [["B", "fixed"]])",
            R"("CommandSetUnitProperties": [["Z", "fixed"]])",
            R"("CommandNobodyKnows": [["A", "fixed"]])",
        };
        return commands[pick(commands.size())];
    }

    void writeDescription(int number)
    {
        if (happens(8)) {
            return; // missing
        }
        const QByteArray condition = happens(60) ? R"("A")" : R"("A", "B")";
        QByteArray text = R"({"S": {"Type": "SwitchNode", "Next": {)"
                          R"("C": {"Type": "CommandNode", "ConditionWriteOnUrls": [[)" +
                          condition + R"(]], "Commands": {)" + command() + "}}}}";
        if (happens(30)) {
            text += R"(, "U": {"Type": "CommandNode", "Commands": {)" + command() + "}}";
        }
        text += happens(8) ? "" : "}"; // broken
        workspace.write(QStringLiteral("dependency/d%1.json").arg(number), text);
    }

    void writeManifest()
    {
        if (happens(20)) {
            return;
        }
        if (happens(10)) {
            workspace.write(QStringLiteral("configuration/manifest.json"), "{}");
            return;
        }
        QByteArray text = "[\n";
        for (int number = 0; number < instances; number += 1 + pick(3)) {
            text += (text.size() > 2 ? ",\n" : "") + QByteArray(R"(  { "instanceName": "i)") +
                    QByteArray::number(number) +
                    R"(", "lastModified": "2020-01-01T00:00:00.000Z" })";
        }
        workspace.write(QStringLiteral("configuration/manifest.json"), text + "\n]\n");
    }

    void writeLinks()
    {
        QJsonArray links;
        const int count = pick(3 * instances);
        for (int number = 0; number < count; ++number) {
            QJsonObject link{{"source", instance()},
                             {"target", happens(3) ? QStringLiteral("../i0") : instance()},
                             {"dependency", QStringLiteral("d%1").arg(pick(descriptions))},
                             {"process", happens(40)}};
            if (happens(50)) {
                link.insert("parameters", QJsonArray{"N", happens(80) ? "C" : "missing"});
            }
            if (happens(2)) {
                link.insert("unknown", 1);
            }
            links.append(link);
        }
        workspace.write(QStringLiteral("links.json"), QJsonDocument(links).toJson());
    }

    const TestWorkspace& workspace;
    std::mt19937 random;
    int instances = 0;
};

} // namespace

void writeLargeWorkspace(const TestWorkspace& workspace, const LargeWorkspace& size)
{
    clear(workspace);
    QByteArray rows;
    QByteArray leaves;
    for (int leaf = 0; leaf < size.leaves; ++leaf) {
        const QByteArray name = "Leaf" + QByteArray::number(leaf);
        rows += (leaf == 0 ? "" : ", ") + QByteArray(R"(["Unit", "", ")") + name + "\"]";
        leaves += "  \"" + name + R"(": {"@value": 1, "@unitType": "old"},)" + '\n';
    }
    const QByteArray tree =
        "{\n" + leaves + R"(  "Padding": ")" + QByteArray(size.padding, '.') + "\"\n}\n";
    QByteArray links = "[\n";
    for (int number = 0; number < size.instances; ++number) {
        const QString name = QStringLiteral("follower%1").arg(number);
        workspace.write(QStringLiteral("configuration/%1.json").arg(name), tree);
        links += (number == 0 ? "" : ",\n") + QByteArray(R"({"source": "leader", "target": ")") +
                 name.toUtf8() + R"(", "dependency": "follow"})";
    }
    workspace.write(QStringLiteral("links.json"), links + "\n]\n");
    workspace.write(QStringLiteral("configuration/leader.json"), R"({"Unit": "new"})");
    workspace.write(
        QStringLiteral("dependency/follow.json"),
        QByteArray(chainDescription).replace(R"([["Unit", "", "Follower"]])", '[' + rows + ']'));
}

void linkAllTogether(const TestWorkspace& workspace)
{
    workspace.write(QStringLiteral("configuration/first.json"), R"({"Unit": "new"})");
    workspace.write(QStringLiteral("configuration/leader.json"),
                    R"({"Unit": "new", "Leaf0": {"@unitType": "old"}})");
    workspace.write(QStringLiteral("links.json"),
                    workspace.read(QStringLiteral("links.json"))
                        .replace(0, 1,
                                 R"([{"source": "first", "target": "leader", )"
                                 R"("dependency": "follow"},)"));
}

void writeRandomWorkspace(const TestWorkspace& workspace, unsigned seed)
{
    clear(workspace);
    RandomWriter(workspace, seed).write();
}
