#include "Scenario.h"

#include <QJsonArray>

#include <array>
#include <random>
#include <utility>

namespace reference {
namespace {

/// Draws scenarios from a small world, so that most of what they name exists. Kept apart from the
/// standard library's distributions, which differ from one library to the next.
class Generator {
public:
    explicit Generator(std::uint64_t seed) : random(seed) {}

    Scenario scenario()
    {
        const QString front = pick({"walker", "walker", "trees", "instances"});
        Scenario scenario{{"front", front},
                          {"description", description()},
                          {"source", oneIn(40) ? QJsonValue() : QJsonValue(sourceTree())},
                          {"target", oneIn(40) ? QJsonValue() : QJsonValue(targetTree())},
                          {"urls", list(front == "walker" ? 1 : 0, 2, &Generator::sourceUrl)},
                          {"parameters", parameters()},
                          {"manipulator", oneIn(2) ? QJsonValue() : QJsonValue(manipulator())},
                          {"changed", oneIn(4)},
                          {"process", oneIn(2)},
                          {"refusesColumns", oneIn(15)},
                          {"refusesStore", oneIn(8)}};
        return scenario;
    }

private:
    using Draw = QJsonValue (Generator::*)();

    int below(int bound) { return int(random() % std::uint64_t(bound)); }
    bool oneIn(int count) { return below(count) == 0; }
    QJsonValue pick(const QJsonArray& values) { return values.at(below(values.size())); }
    QString pick(std::initializer_list<const char*> texts)
    {
        return QString::fromUtf8(texts.begin()[below(int(texts.size()))]);
    }

    QJsonArray list(int least, int most, Draw draw)
    {
        QJsonArray drawn;
        const int size = least + below(most - least + 1);
        for (int i = 0; i < size; ++i) {
            drawn.append((this->*draw)());
        }
        return drawn;
    }

    // ---- Trees and what leads into them ---------------------------------------------------------

    QJsonValue sourceUrl() { return pick({"a", "b", "d/a", "d/b", "d/e/a", "x/y", "z", "d", ""}); }

    QJsonValue targetUrl()
    {
        return pick({"a", "a", "b", "d/a", "d/b", "d/e/a", "T", "x/y", "missing", "d", "°\"", ""});
    }

    QJsonValue arrayTarget()
    {
        return pick({"T[0]",      "T[1]",       "T[0+1]",  "T[2-1]",   "d/T[ 1 ]",
                     "d/T[1-1]",  "T[1-2]",     "T[x]",    "T",        "T[]",
                     "[0]",       "T[1+1+1]",   "T[-1]",   "T[3-1-1]", "T[2147483647+1]",
                     "a[0]",      "missing[0]", "T[7]",    "T[-1+2]",  "none[0]",
                     "d[0]/T[1]", "T[1]x",      "bare[0]", "T[1+-1]"});
    }

    QJsonValue value()
    {
        return pick(QJsonArray{"K", "m", "K", "m", 5, "5", 1, "1", true, "true", 2.5, "",
                               QJsonValue(), QJsonArray{"K", QJsonArray{"m"}}});
    }

    QJsonValue unit() { return pick(QJsonArray{"K", "m", "bar", "°C", "", 5, QJsonValue()}); }

    QJsonObject sourceTree()
    {
        QJsonObject folder{{"a", value()}, {"b", value()}, {"e", QJsonObject{{"a", value()}}}};
        QJsonObject tree{{"a", value()}, {"b", value()}, {"d", folder}, {"x/y", value()}};
        if (oneIn(3)) {
            tree.insert("", value());
        }
        return tree;
    }

    QJsonObject leaf()
    {
        QJsonObject leaf;
        if (oneIn(2)) {
            leaf.insert("@unit", unit());
        }
        if (oneIn(2)) {
            leaf.insert("@statuses", list(1, 3, &Generator::status));
        }
        return leaf;
    }

    QJsonValue status() { return pick(QJsonArray{0, 0, 1, 1, 2, 3, -1}); }

    QJsonObject arrayLeaf()
    {
        QJsonObject array = leaf();
        array.insert("@dataType", "an array");
        array.insert("@columns", list(2, 4, &Generator::unit));
        return array;
    }

    QJsonObject targetTree()
    {
        const QJsonObject folder{
            {"a", leaf()}, {"b", leaf()}, {"T", arrayLeaf()}, {"e", QJsonObject{{"a", leaf()}}}};
        QJsonObject bare = leaf();
        bare.insert("@dataType", "an array");
        QJsonObject none = bare;
        none.insert("@columns", oneIn(2) ? QJsonValue("K") : QJsonValue(5));
        QJsonObject tree{{"a", leaf()},      {"b", leaf()},  {"d", folder},  {"x/y", leaf()},
                         {"T", arrayLeaf()}, {"bare", bare}, {"none", none}, {"°\"", leaf()}};
        if (oneIn(3)) {
            tree.insert("", leaf());
        }
        return tree;
    }

    // ---- Patterns and templates -----------------------------------------------------------------

    QJsonValue pattern()
    {
        return pick({"(?<n>[ab])",
                     "^(?<n>.+)/(?<m>.+)$",
                     "(?<n>.*)",
                     "a",
                     "(",
                     "(?<n>a)(?<n>b)",
                     "()",
                     "(?<n>z)?",
                     "(.)(?<n>.)?",
                     "^d/",
                     "",
                     "[",
                     "(?<m>d)?/?(?<n>[ab])$",
                     "RE:a",
                     "(?<n>^.$)|(?<m>.)$",
                     ".*",
                     "(d)",
                     "(?<m>(?<n>.))",
                     "(?i)(?<n>[AB])$",
                     "(?x) (?<n> [ab] ) # x",
                     "\\Qd/\\E(?<n>.)",
                     "d/(?-i)(?<n>a)?",
                     "(?=(?<n>a))a",
                     "(?<!/)(?<n>[ab])",
                     "(?(DEFINE)(?<m>d))(?<n>.)$",
                     "(?|(?<n>a)|(?<n>b))",
                     "(?:d|(?<n>a))(?:/|$)",
                     "(?<n>a)(*ACCEPT)z",
                     "(?!d)(?<n>.)",
                     "(?<m>.)/(?<n>(?>a|b))$",
                     "(?<n>a)++$",
                     "(?<n>x{0}a)",
                     "a(?<n>)"});
    }

    QJsonValue groupTemplate()
    {
        return pick({"(?<n>)", "(?<n>)", "d/(?<n>)", "(?<m>)/(?<n>)", "(?<m>)", "a", "", "(?<x>)",
                     "d/e/(?<n>)", "(?<n>)(?<n>)", "d/(?<m>)"});
    }

    QJsonValue placeTemplate()
    {
        return pick({"a", "%1/%2", "d/%1", "%1", "%2", "d/%2", "%1%2", "%2/%1", "100%", "%L1", "b",
                     "d/b", "%", "%5%3"});
    }

    QJsonArray parameters()
    {
        QJsonArray drawn = list(0, 3, &Generator::parameter);
        return oneIn(2) ? QJsonArray() : drawn;
    }

    QJsonValue parameter()
    {
        return pick(QJsonArray{"d/", "d", "a", "", "e/", 5, QJsonValue(), QJsonArray{"d"}, "%1"});
    }

    QJsonArray manipulator() { return list(0, 4, &Generator::manipulatorAction); }

    QJsonValue manipulatorAction()
    {
        return oneIn(2) ? QJsonValue() : QJsonValue(QJsonArray{oneIn(2), oneIn(2)});
    }

    // ---- Tables ---------------------------------------------------------------------------------

    QJsonValue fixedRow() { return row({targetUrl(), unit(), "x", "y"}, 2, 2); }
    QJsonValue patternRow() { return row({pattern(), groupTemplate(), unit(), "x", "y"}, 3, 3); }
    QJsonValue parameterRow() { return row({sourceUrl(), "x", placeTemplate(), "y"}, 3, 0); }
    QJsonValue writtenRow() { return row({pattern(), groupTemplate(), "x"}, 2, 0); }
    QJsonValue columnRow()
    {
        return oneIn(2) ? row({sourceUrl(), arrayTarget(), "x"}, 2, 0)
                        : row({sourceUrl(), "x", arrayTarget(), "y"}, 3, 0);
    }
    QJsonValue compareRow() { return row({sourceUrl(), comparator(), value(), "x"}, 3, 0); }
    QJsonValue comparePatternRow() { return row({pattern(), comparator(), value(), "x"}, 3, 0); }
    QJsonValue urlRow() { return row({sourceUrl(), "x"}, 1, 0); }
    QJsonValue urlPatternRow() { return row({pattern(), "x"}, 1, 0); }
    QJsonValue comparator() { return pick({"==", "==", "!=", "!=", "=", "<", ""}); }

    /// A row that mostly has the usual length, sometimes another one from `least` on, and sometimes
    /// is no row at all.
    QJsonValue row(const QJsonArray& cells, int usual, int least)
    {
        if (oneIn(20)) {
            return pick(QJsonArray{"no row", 5, true, QJsonValue(), QJsonObject{{"a", "b"}}});
        }
        int length = usual;
        if (oneIn(8)) {
            length = oneIn(10) ? below(usual) : least + below(cells.size() - least + 1);
        }
        QJsonArray row;
        for (int i = 0; i < length; ++i) {
            row.append(cells.at(i));
        }
        return row;
    }

    QJsonValue table(Draw draw)
    {
        if (oneIn(15)) {
            return pick(QJsonArray{QJsonObject(), QJsonValue(), "no table", 5, QJsonArray(),
                                   QJsonObject{{"@other", 5}}});
        }
        return list(1, 3, draw);
    }

    // ---- The graph ------------------------------------------------------------------------------

    QJsonValue description()
    {
        if (oneIn(40)) {
            return pick(QJsonArray{QJsonValue(), "no tree"});
        }
        return nodes(1, 4, 2);
    }

    QJsonObject nodes(int least, int most, int depth)
    {
        QJsonObject drawn;
        const int size = least + below(most - least + 1);
        for (int i = 0; i < size; ++i) {
            const QString name = pick({"A", "B", "C", "D", "a", "", "É", "Next", "AB"});
            drawn.insert(name, oneIn(15) ? unit() : QJsonValue(node(depth)));
        }
        return drawn;
    }

    QJsonObject node(int depth)
    {
        QJsonObject node{{"Type", nodeType()}};
        if (oneIn(25)) {
            node.remove("Type");
        }
        if (!oneIn(4)) {
            node.insert("Commands", commands());
        }
        if (depth > 0 && !oneIn(3)) {
            node.insert("Next", oneIn(20) ? unit() : QJsonValue(nodes(0, 3, depth - 1)));
        }
        addCondition(node, "ConditionValueComparator", &Generator::compareRow);
        addCondition(node, "ConditionValueComparatorRegExp", &Generator::comparePatternRow);
        addCondition(node, "ConditionWriteOnUrls", &Generator::urlRow);
        addCondition(node, "ConditionWriteOnUrlsRegExp", &Generator::urlPatternRow);
        addCondition(node, "ConditionUnknown", &Generator::urlRow);
        return node;
    }

    QJsonValue nodeType()
    {
        if (oneIn(12)) {
            return pick(QJsonArray{"commandNode", "Unknown", "", 5, QJsonValue(), QJsonArray{"x"},
                                   QJsonObject{{"@val", "SwitchNode"}}, QJsonObject()});
        }
        return pick({"SwitchNode", "SwitchNode", "CommandNode"});
    }

    void addCondition(QJsonObject& node, const char* type, Draw draw)
    {
        if (oneIn(4)) {
            node.insert(type, table(draw));
        }
    }

    QJsonValue commands()
    {
        static const std::array<std::pair<const char*, Draw>, 5> types{
            {{"CommandSetUnitProperties", &Generator::fixedRow},
             {"CommandSetUnitPropertiesRegExp", &Generator::patternRow},
             {"CommandSetUnitByConfigurationParameter", &Generator::parameterRow},
             {"CommandSetUnitByConfigurationParameterInstRegExp", &Generator::writtenRow},
             {"CommandSetUnitByConfigurationParameterArray", &Generator::columnRow}}};
        if (oneIn(30)) {
            return unit();
        }
        QJsonObject drawn;
        for (int count = 1 + below(2); count > 0; --count) {
            const auto& [type, draw] = types.at(std::size_t(below(5)));
            drawn.insert(type, table(draw));
        }
        if (oneIn(8)) {
            drawn.insert(
                pick({"Unknown", "Other", "CommandSetUnitByConfigurationParameterRegExp", ""}), 5);
        }
        return drawn;
    }

    std::mt19937_64 random;
};

} // namespace

Scenario generate(std::uint64_t seed)
{
    return Generator(seed).scenario();
}

} // namespace reference
