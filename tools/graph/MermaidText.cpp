#include "tools/graph/MermaidText.h"

#include "tools/graph/GraphEntries.h"
#include "tools/graph/GraphWords.h"

#include <QStringList>

#include <algorithm>

namespace tools {

namespace {

using Mood = GraphLine::Mood;

/// The classes of what was met, each with its looks.
const char* const classes = R"(  classDef switch fill:#fef3c7,stroke:#b45309,color:#1f2937
  classDef command fill:#e0f2fe,stroke:#0369a1,color:#1f2937,text-align:left
  classDef unknown fill:#fee2e2,stroke:#b91c1c,color:#1f2937
  classDef url fill:#f1f5f9,stroke:#64748b,color:#1f2937
  classDef pattern fill:#f3e8ff,stroke:#7e22ce,color:#1f2937
  classDef every fill:#dcfce7,stroke:#15803d,color:#1f2937
  classDef unreachable fill:#ffffff,stroke:#94a3b8,color:#64748b,stroke-dasharray:5 4
  classDef ran stroke-width:3px
  classDef aside fill:#ffffff,stroke:#cbd5e1,color:#94a3b8
)";

/// What stands between double quotes. The language knows "#35;" and the like for any character.
QString spelled(const QString& text)
{
    const QString harmless = QStringLiteral(" /_-.,()=!'+*?^$~");
    // "\\n" breaks the line even when it is spelled so: something without a shape parts the two.
    const QString wordJoiner = QStringLiteral("#8288;");
    QString label;
    for (const QChar character : text) {
        if (character == QLatin1Char('n') && label.endsWith(QLatin1String("#92;"))) {
            label += wordJoiner;
        }
        const bool isPlain = character.unicode() > 127 || character.isLetterOrNumber() ||
                             harmless.contains(character);
        label += isPlain ? QString(character) : QStringLiteral("#%1;").arg(character.unicode());
    }
    return label;
}

QString spelled(const std::vector<GraphLine>& lines)
{
    QStringList texts;
    for (const GraphLine& line : lines) {
        const QString label = spelled(line.text);
        texts.append(line.mood == Mood::Strong ? QStringLiteral("<b>%1</b>").arg(label) : label);
    }
    return texts.join(QStringLiteral("<br/>"));
}

class MermaidWriter {
public:
    explicit MermaidWriter(const Graph& graph) : graph(graph) {}

    QString write()
    {
        text = QStringLiteral("flowchart LR\n");
        const std::vector<GraphEntry> entries = entriesOf(graph);
        for (const GraphEntry& entry : entries) {
            addEntry(entry);
        }
        int number = 0;
        for (const GraphNode& node : graph.nodes) {
            addNode(node, number++);
        }
        for (const GraphEntry& entry : entries) {
            for (const int target : entry.nodes) {
                const bool ran = entry.ran && graph.node(target).ran;
                text += QStringLiteral("  %1 %2 %3\n")
                            .arg(entry.id, ran ? QStringLiteral("==>") : QStringLiteral("-->"),
                                 nodeId(target));
            }
        }
        number = 0;
        for (const GraphNode& node : graph.nodes) {
            if (!node.isTopLevel()) {
                addEdge(node, number);
            }
            ++number;
        }
        return text + QLatin1String(classes);
    }

private:
    void addEntry(const GraphEntry& entry)
    {
        const QString words =
            entry.isEveryWrite ? QStringLiteral("every write") : spelled(watchText(entry.watch));
        const QString kind = entry.isEveryWrite      ? QStringLiteral("every")
                             : entry.watch.isPattern ? QStringLiteral("pattern")
                                                     : QStringLiteral("url");
        text += QStringLiteral("  %1([\"%2\"])\n").arg(entry.id, words) +
                classed(entry.id, kind, entry.ran);
    }

    void addNode(const GraphNode& node, int number)
    {
        const QString id = nodeId(number);
        const std::vector<GraphLine> lines = nodeLines(node);
        const QString name = QStringLiteral("<b>%1</b>").arg(spelled(nameText(node)));
        const QString label =
            lines.empty() ? name : name + QStringLiteral("<br/>") + spelled(lines);
        const bool isSwitch = node.type != nullptr && node.type->asksConditions;
        text += (isSwitch ? QStringLiteral("  %1{\"%2\"}\n") : QStringLiteral("  %1(\"%2\")\n"))
                    .arg(id, label);
        text += classed(id, kindOf(node), node.ran);
        if (!node.isReachable) {
            text += QStringLiteral("  class %1 unreachable\n").arg(id);
        }
    }

    void addEdge(const GraphNode& node, int number)
    {
        const std::vector<GraphLine> lines = edgeLines(node);
        const QString arrow = node.ran           ? QStringLiteral("==>")
                              : node.isReachable ? QStringLiteral("-->")
                                                 : QStringLiteral("-.->");
        const QString label =
            lines.empty() ? QString() : QStringLiteral("|\"%1\"|").arg(spelled(lines));
        text +=
            QStringLiteral("  %1 %2%3 %4\n").arg(nodeId(node.parent), arrow, label, nodeId(number));
    }

    QString classed(const QString& id, const QString& kind, bool ran) const
    {
        const QString extra = !graph.trace ? QString()
                              : ran        ? QStringLiteral("  class %1 ran\n").arg(id)
                                           : QStringLiteral("  class %1 aside\n").arg(id);
        return QStringLiteral("  class %1 %2\n").arg(id, kind) + extra;
    }

    const Graph& graph;
    QString text;
};

} // namespace

QString mermaidText(const Graph& graph)
{
    return MermaidWriter(graph).write();
}

} // namespace tools
