#include "tools/graph/DotText.h"

#include "tools/console/Text.h"
#include "tools/graph/GraphEntries.h"
#include "tools/graph/GraphWords.h"

namespace tools {

namespace {

using Mood = GraphLine::Mood;

const char* const beginning =
    R"(  graph [rankdir=LR, ranksep=0.45, nodesep=0.22, pad=0.2, bgcolor="white", fontname="Helvetica,Arial,sans-serif"];
  node [fontname="Helvetica,Arial,sans-serif", fontsize=11, style="filled,rounded", shape=box, penwidth=1.1];
  edge [fontname="Helvetica,Arial,sans-serif", fontsize=9, color="#475569", arrowsize=0.7, penwidth=1.1];
)";

/// Colors of something in one of its states.
struct Look {
    const char* fill;
    const char* line;
    const char* text;
};

constexpr Look switchLook{"#fef3c7", "#b45309", "#1f2937"};
constexpr Look commandLook{"#e0f2fe", "#0369a1", "#1f2937"};
constexpr Look unknownLook{"#fee2e2", "#b91c1c", "#1f2937"};
constexpr Look urlLook{"#f1f5f9", "#64748b", "#1f2937"};
constexpr Look patternLook{"#f3e8ff", "#7e22ce", "#1f2937"};
constexpr Look everyWriteLook{"#dcfce7", "#15803d", "#1f2937"};
constexpr Look unreachableLook{"#ffffff", "#94a3b8", "#64748b"};
constexpr Look asideLook{"#ffffff", "#cbd5e1", "#94a3b8"}; ///< what a trace did not run
constexpr const char* badText = "#b91c1c";
constexpr const char* edgeLine = "#475569";

QString inQuotes(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('"'), QLatin1String("\\\""));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

/// A tooltip may have entities and several lines. Its backslashes are resolved twice.
QString tooltipOf(const QStringList& lines)
{
    QString text = lines.join(QLatin1Char('\n'));
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('&'), QLatin1String("&amp;"));
    return inQuotes(text).replace(QLatin1Char('\n'), QLatin1String("\\n"));
}

/// Within a label that is written like HTML, where a backslash has a meaning as well.
QString inHtml(const QString& text)
{
    return text.toHtmlEscaped().replace(QLatin1Char('\\'), QLatin1String("\\\\"));
}

QString font(const QString& html, const char* color, int size)
{
    return QStringLiteral("<FONT COLOR=\"%1\" POINT-SIZE=\"%2\">%3</FONT>")
        .arg(QLatin1String(color))
        .arg(size)
        .arg(html);
}

QString bold(const QString& html)
{
    return QStringLiteral("<B>%1</B>").arg(html);
}

QString lineHtml(const GraphLine& line, const char* color)
{
    constexpr int size = 9;
    const char* const textColor = line.mood == Mood::Bad     ? badText
                                  : line.mood == Mood::Quiet ? asideLook.text
                                                             : color;
    const QString html = inHtml(line.text);
    return font(line.mood == Mood::Strong ? bold(html) : html, textColor, size);
}

class DotWriter {
public:
    explicit DotWriter(const Graph& graph) : graph(graph) {}

    QString write()
    {
        text = QStringLiteral("digraph %1 {\n").arg(inQuotes(printable(graph.description)));
        text += QLatin1String(beginning);
        for (const GraphEntry& entry : entriesOf(graph)) {
            addEntry(entry);
        }
        int number = 0;
        for (const GraphNode& node : graph.nodes) {
            addNode(node, number);
            if (!node.isTopLevel()) {
                addEdge(node, number);
            }
            ++number;
        }
        return text + QStringLiteral("}\n");
    }

private:
    void addEntry(const GraphEntry& entry)
    {
        const QString kind = entry.isEveryWrite      ? QStringLiteral("every")
                             : entry.watch.isPattern ? QStringLiteral("pattern")
                                                     : QStringLiteral("url");
        const Look& look = graph.trace && !entry.ran ? asideLook
                           : entry.isEveryWrite      ? everyWriteLook
                           : entry.watch.isPattern   ? patternLook
                                                     : urlLook;
        const QString words =
            entry.isEveryWrite ? QStringLiteral("every write") : watchText(entry.watch);
        const QString tooltip = entry.isEveryWrite ? QStringLiteral("runs with every write")
                                : entry.watch.isPattern
                                    ? QStringLiteral("a write of a URL that "
                                                     "matches ") +
                                          printable(entry.watch.text)
                                    : QStringLiteral("a write of ") + printable(entry.watch.text);
        text += QStringLiteral("  %1 [id=\"%1\", class=\"entry %2%3\", label=<%4>, tooltip=%5, "
                               "margin=\"0.12,0.04\", height=0.3, %6];\n")
                    .arg(entry.id, kind, entry.ran ? QStringLiteral(" ran") : QString(),
                         font(entry.ran ? bold(inHtml(words)) : inHtml(words), look.text, 10),
                         tooltipOf({tooltip}), drawn(look, false, entry.ran));
        for (const int number : entry.nodes) {
            const bool ran = entry.ran && graph.node(number).ran;
            text += QStringLiteral("  %1 -> %2 [id=\"%1-%2\", class=\"watch%3\", tooltip=%4, "
                                   "%5];\n")
                        .arg(entry.id, nodeId(number), ran ? QStringLiteral(" ran") : QString(),
                             tooltipOf({tooltip}), line(ran, false));
        }
    }

    void addNode(const GraphNode& node, int number)
    {
        const QString kind = kindOf(node);
        const bool isSwitch = node.type != nullptr && node.type->asksConditions;
        const Look& look = graph.trace && !node.ran ? asideLook
                           : node.type == nullptr   ? unknownLook
                           : !node.isReachable      ? unreachableLook
                           : isSwitch               ? switchLook
                                                    : commandLook;
        QString rows = row(font(bold(inHtml(nameText(node))), look.text, 11), isSwitch);
        for (const GraphLine& each : nodeLines(node)) {
            rows += row(lineHtml(each, look.text), isSwitch);
        }
        text +=
            QStringLiteral("  %1 [id=\"%1\", class=\"%2%3\", label=<%4>, tooltip=%5, %6"
                           "%7];\n")
                .arg(nodeId(number), kind, state(node), table(rows), tooltipOf(nodeTooltip(node)),
                     isSwitch ? QStringLiteral("shape=diamond, margin=\"0.01,0.01\", ")
                              : QStringLiteral("margin=\"0.08,0.05\", "),
                     drawn(look, !node.isReachable, node.ran, isSwitch));
    }

    void addEdge(const GraphNode& node, int number)
    {
        const std::vector<GraphLine> lines = edgeLines(node);
        const char* const color = graph.trace && !node.ran ? asideLook.text
                                  : node.isReachable       ? switchLook.text
                                                           : unreachableLook.text;
        QString rows;
        for (const GraphLine& each : lines) {
            rows += row(lineHtml(each, color), false);
        }
        const QString label =
            lines.empty() ? QString() : QStringLiteral("label=<%1>, ").arg(chip(rows));
        const QString tooltip = tooltipOf(edgeTooltip(node));
        const QString states = state(node).trimmed();
        const QString classes =
            states.isEmpty() ? QString() : QStringLiteral(", class=\"%1\"").arg(states);
        text += QStringLiteral("  %1 -> %2 [id=\"%3\"%4, %5tooltip=%6, "
                               "labeltooltip=%6, %7];\n")
                    .arg(nodeId(node.parent), nodeId(number), edgeId(node), classes, label, tooltip,
                         line(node.ran, !node.isReachable));
    }

    static QString state(const GraphNode& node)
    {
        return (node.isReachable ? QString() : QStringLiteral(" unreachable")) +
               (node.ran ? QStringLiteral(" ran") : QString());
    }

    static QString drawn(const Look& look, bool isDashed, bool isBold, bool isSwitch = false)
    {
        const QString style =
            (isSwitch ? QStringLiteral("filled") : QStringLiteral("filled,rounded")) +
            (isDashed ? QStringLiteral(",dashed") : QString());
        return QStringLiteral("style=\"%1\", fillcolor=\"%2\", color=\"%3\"%4")
            .arg(style, QLatin1String(look.fill), QLatin1String(look.line),
                 isBold ? QStringLiteral(", penwidth=2.4") : QString());
    }

    QString line(bool isBold, bool isDashed) const
    {
        const char* const color = graph.trace && !isBold ? asideLook.line
                                  : isDashed             ? unreachableLook.line
                                                         : edgeLine;
        return QStringLiteral("color=\"%1\"%2%3")
            .arg(QLatin1String(color), isBold ? QStringLiteral(", penwidth=2.4") : QString(),
                 isDashed ? QStringLiteral(", style=dashed") : QString());
    }

    static QString row(const QString& html, bool isCentered)
    {
        return QStringLiteral("<TR><TD ALIGN=\"%1\">%2</TD></TR>")
            .arg(isCentered ? QStringLiteral("CENTER") : QStringLiteral("LEFT"), html);
    }

    static QString table(const QString& rows)
    {
        return QStringLiteral("<TABLE BORDER=\"0\" CELLBORDER=\"0\" CELLSPACING=\"0\" "
                              "CELLPADDING=\"1\">%1</TABLE>")
            .arg(rows);
    }

    /// What stands beside an edge: in a frame of its own, which keeps off the edge.
    static QString chip(const QString& rows)
    {
        return QStringLiteral("<TABLE BORDER=\"0\" CELLBORDER=\"0\" CELLSPACING=\"0\" "
                              "CELLPADDING=\"3\"><TR><TD><TABLE BORDER=\"1\" COLOR=\"#d6d3d1\" "
                              "BGCOLOR=\"#fffbeb\" STYLE=\"ROUNDED\" CELLBORDER=\"0\" "
                              "CELLSPACING=\"0\" CELLPADDING=\"2\">%1</TABLE></TD></TR></TABLE>")
            .arg(rows);
    }

    const Graph& graph;
    QString text;
};

} // namespace

QString dotText(const Graph& graph)
{
    return DotWriter(graph).write();
}

} // namespace tools
