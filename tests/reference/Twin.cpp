#include "Twin.h"

#include "Tree.h"

#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>
#include <QRegularExpression>
#include <QVariant>

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

namespace reference {
namespace {

/// Thrown where the engine ends the process.
struct Fatal {};

/// A node of a tree, in every tree alike.
struct Plain {
    QString place;
    QMap<QString, QVariant> properties;
    QMap<QString, std::shared_ptr<Plain>> children;
    QList<int> statuses;
};
using PlainPointer = std::shared_ptr<Plain>;

PlainPointer plainTree(const QString& place, const QJsonValue& json)
{
    auto node = std::make_shared<Plain>();
    node->place = place;
    if (!json.isObject()) {
        node->properties["@val"] = json.toVariant();
    }
    const QJsonObject object = json.toObject();
    for (const QString& key : object.keys()) {
        if (key.startsWith('@')) {
            node->properties[key] = object[key].toVariant();
        } else {
            node->children[key] = plainTree(place + '/' + key, object[key]);
        }
    }
    for (const QJsonValue status : object["@statuses"].toArray()) {
        node->statuses.append(status.toInt());
    }
    return node;
}

PlainPointer find(const PlainPointer& node, const QString& url)
{
    if (node == nullptr || node->children.contains(url) || !url.contains('/')) {
        return node == nullptr ? nullptr : node->children.value(url);
    }
    const int slash = url.indexOf('/');
    return find(node->children.value(url.left(slash)), url.mid(slash + 1));
}

using Rows = QList<QVariantList>;

struct Condition {
    QString type;
    Rows rows;
};

struct Command {
    QString type;
    Rows rows;
};

struct Node;

struct Edge {
    std::vector<Condition> conditions;
    std::shared_ptr<Node> node;
};

struct Node {
    bool isSwitch = false;
    std::vector<Edge> edges;
    std::vector<Command> commands;
};
using NodePointer = std::shared_ptr<Node>;

class Twin {
public:
    Twin(Evaluator& evaluator, const Scenario& scenario)
        : evaluator(evaluator), scenario(scenario), changed(scenario["changed"].toBool()),
          parameters(scenario["parameters"].toArray().toVariantList()),
          hasManipulator(scenario["manipulator"].isArray()),
          manipulatorActions(scenario["manipulator"].toArray())
    {
        if (scenario["source"].isObject()) {
            source = plainTree("source", scenario["source"]);
        }
        if (scenario["target"].isObject()) {
            target = plainTree("target", scenario["target"]);
        }
    }

    Outcome run()
    {
        Outcome outcome;
        try {
            const QString front = scenario["front"].toString();
            outcome.results = front == "walker"  ? runWalker()
                              : front == "trees" ? QList<bool>{resolveTrees()}
                                                 : QList<bool>{resolveInstances()};
        } catch (const Fatal&) {
            outcome.fatal = true;
        }
        outcome.events = events;
        outcome.changed = changed;
        return outcome;
    }

private:
    bool rule(const char* sentence)
    {
        evaluator.rulesMet.insert(sentence);
        return evaluator.brokenRule != sentence;
    }

    // ---- The fronts -----------------------------------------------------------------------------

    QStringList writtenUrls() const
    {
        return QVariant(scenario["urls"].toArray().toVariantList()).toStringList();
    }

    QList<bool> runWalker()
    {
        build(plainTree("description", scenario["description"]));
        events.append("watches " + watchedUrls().join('|'));
        QList<bool> results;
        for (const QString& url : writtenUrls()) {
            results.append(traverse(url));
        }
        return results;
    }

    bool resolveInstances()
    {
        const bool isProcess = scenario["process"].toBool();
        const QString flag = isProcess ? "true" : "false";
        const QString targetFolder = isProcess ? "/base/processes" : "/base/configurations";
        events.append("getDependency(/base/dependencies, name)");
        events.append(
            "getParsedConfigurationProcessDescription(/base/configurations, from, false)");
        events.append("getParsedConfigurationProcessDescription(" + targetFolder + ", to, " + flag +
                      ")");
        if (!resolve()) {
            warn("DependencyResolverBaseClass", 184,
                 "bool DependencyResolverBaseClass::resolveDependency(const QDir&, const QString&, "
                 "const QDir&, const QString&, const QString&, bool&, bool, const QStringList&, "
                 "const QVariantList&, const QSharedPointer<UnitManipulatorBase>&) const",
                 R"(Unable to resolve dependency between "/base/configurations" and ")" +
                     targetFolder + R"(" defined by "name")");
            return false;
        }
        const bool stored = !scenario["refusesStore"].toBool();
        events.append("setParsedConfigurationProcessDescription(" + targetFolder +
                      ", first, second, to, " + (target ? "target" : "null") + ", " + flag +
                      ") -> " + (stored ? "true" : "false"));
        return stored;
    }

    bool resolveTrees()
    {
        events.append("getDependency(/base/dependencies, name)");
        return resolve();
    }

    bool resolve()
    {
        const QJsonValue description = scenario["description"];
        if (description.isNull()) {
            return !rule("a missing description fails");
        }
        if (source == nullptr || target == nullptr) {
            warn("DependencyResolverBaseClass", 296,
                 "bool DependencyResolverBaseClass::resolveDependencyInternal("
                 "const BaseClassSharedPointer&, const BaseClassSharedPointer&, const QString&, "
                 "bool&, const QStringList&, const QVariantList&, "
                 "const QSharedPointer<UnitManipulatorBase>&) const",
                 "Source or target root invalid");
            return rule("a missing tree is no failure");
        }
        bool ok = description.isObject();
        if (description.isObject()) {
            build(plainTree("description", description));
        }
        QStringList urls = writtenUrls();
        if (urls.isEmpty() || !rule("written URLs replace the watched ones")) {
            urls = watchedUrls();
        }
        if (urls.isEmpty() && rule("without any URL there is one run with the empty one")) {
            urls.append("");
        }
        for (const QString& url : urls) {
            ok = traverse(url) && ok;
            if (!ok && !rule("every URL runs, also after one that failed")) {
                return false;
            }
        }
        return ok;
    }

    // ---- Building a graph -----------------------------------------------------------------------

    void build(const PlainPointer& description)
    {
        for (const QString& name : childNames(description)) {
            const NodePointer node = makeNode(description->children[name]);
            if (node == nullptr) {
                continue;
            }
            const QStringList urls = nodeUrls(*node);
            if (urls.isEmpty()) {
                unconditional.push_back(node);
            }
            for (const QString& url : urls) {
                if (url.startsWith("RE:")) {
                    patternWatchers.emplace_back(url.mid(3), node);
                } else {
                    urlWatchers.emplace_back(url, node);
                }
            }
        }
    }

    QStringList childNames(const PlainPointer& node)
    {
        QStringList names = node->children.keys();
        if (!rule("children are taken in ascending order of their names")) {
            std::reverse(names.begin(), names.end());
        }
        return names;
    }

    NodePointer makeNode(const PlainPointer& description)
    {
        const PlainPointer typeLeaf = find(description, "Type");
        const QString type =
            typeLeaf == nullptr ? QString() : typeLeaf->properties["@val"].toString();
        if (type != "SwitchNode" && type != "CommandNode") {
            return nullptr;
        }
        auto node = std::make_shared<Node>();
        node->isSwitch = type == "SwitchNode";
        if (rule("a node is built after what follows it")) {
            makeEdges(*node, description);
            makeCommands(*node, description);
        } else {
            makeCommands(*node, description);
            makeEdges(*node, description);
        }
        return node;
    }

    void makeEdges(Node& node, const PlainPointer& description)
    {
        const PlainPointer next = description->children.value("Next");
        if (next == nullptr) {
            return;
        }
        for (const QString& name : childNames(next)) {
            const PlainPointer successor = next->children[name];
            Edge edge;
            edge.node = makeNode(successor);
            for (const char* type : {"ConditionValueComparator", "ConditionValueComparatorRegExp",
                                     "ConditionWriteOnUrls", "ConditionWriteOnUrlsRegExp"}) {
                const PlainPointer condition = successor->children.value(type);
                if (edge.node != nullptr && condition != nullptr) {
                    edge.conditions.push_back({type, makeConditionRows(type, condition)});
                }
            }
            if (edge.node != nullptr || rule("an edge without a node counts as an edge")) {
                node.edges.push_back(edge);
            }
        }
    }

    Rows makeConditionRows(const QString& type, const PlainPointer& description)
    {
        const int length = type.startsWith("ConditionValue") ? 3 : 1;
        Rows rows;
        for (const QVariantList& cells : table(description)) {
            if (cells.size() == length || !rule("conditions skip rows of another length")) {
                QVariantList row = cells;
                while (row.size() < length) {
                    row.append(QVariant());
                }
                rows.append(row);
            }
        }
        return rows;
    }

    void makeCommands(Node& node, const PlainPointer& description)
    {
        const PlainPointer commands = description->children.value("Commands");
        if (node.isSwitch || commands == nullptr) {
            return;
        }
        for (const QString& type : childNames(commands)) {
            const Rows all = table(commands->children[type]);
            if (type == "CommandSetUnitProperties") {
                node.commands.push_back({type, rowsFrom(all, 2)});
            } else if (type == "CommandSetUnitPropertiesRegExp") {
                node.commands.push_back({type, rowsFrom(all, 3)});
            } else if (type == "CommandSetUnitByConfigurationParameter") {
                node.commands.push_back({type, rowsOf(all, {3})});
            } else if (type == "CommandSetUnitByConfigurationParameterInstRegExp") {
                node.commands.push_back({type, rowsOf(all, {2})});
            } else if (type == "CommandSetUnitByConfigurationParameterArray") {
                node.commands.push_back({type, rowsOf(all, {2, 3})});
            } else if (rule("an unknown command is reported")) {
                warn("DependencyWalkerFactory", 63,
                     "static void DependencyWalkerFactory::generateCommand(const QString&, "
                     "const BaseClassSharedPointer&, QSharedPointer<CommandBase>&)",
                     streamed("Unknown command", type));
            }
        }
    }

    /// The rows that are lists.
    static Rows table(const PlainPointer& description)
    {
        Rows rows;
        for (const QVariant& row : description->properties["@val"].toList()) {
            if (row.canConvert(QMetaType::QVariantList)) {
                rows.append(row.toList());
            }
        }
        return rows;
    }

    /// Rows that may be longer than needed, but not shorter.
    static Rows rowsFrom(const Rows& all, int length)
    {
        for (const QVariantList& cells : all) {
            if (cells.size() < length) {
                throw Fatal();
            }
        }
        return all;
    }

    Rows rowsOf(const Rows& all, const QList<int>& lengths)
    {
        Rows rows;
        for (const QVariantList& cells : all) {
            if (lengths.contains(cells.size())) {
                rows.append(cells);
            } else if (!rule("commands skip rows of another length") && cells.size() > 3) {
                rows.append(cells.mid(0, lengths.first()));
            }
        }
        return rows;
    }

    // ---- What a graph watches -------------------------------------------------------------------

    QStringList watchedUrls() const
    {
        QStringList urls;
        for (const auto& [url, node] : urlWatchers) {
            urls.append(url);
        }
        urls.removeDuplicates();
        return urls;
    }

    QStringList nodeUrls(const Node& node)
    {
        QStringList urls;
        for (const Edge& edge : node.edges) {
            if (edge.node != nullptr && rule("what is watched deeper down counts")) {
                urls += nodeUrls(*edge.node);
            }
            for (const Condition& condition : edge.conditions) {
                urls += conditionUrls(condition);
            }
        }
        urls.removeDuplicates();
        return urls;
    }

    static QStringList conditionUrls(const Condition& condition)
    {
        const QString prefix = condition.type.endsWith("RegExp") ? "RE:" : "";
        QStringList urls;
        for (const QVariantList& row : condition.rows) {
            const QString written = row[0].toString();
            if (!urls.contains(written)) {
                urls.append(prefix + written);
            }
        }
        return urls;
    }

    // ---- Running --------------------------------------------------------------------------------

    bool traverse(const QString& url)
    {
        std::vector<NodePointer> byUrl;
        for (const auto& [watched, node] : urlWatchers) {
            if (watched == url) {
                byUrl.push_back(node);
            }
        }
        if (rule("of the nodes that watch a URL the last one built runs first")) {
            std::reverse(byUrl.begin(), byUrl.end());
        }
        std::vector<NodePointer> byPattern;
        for (const auto& [pattern, node] : patternWatchers) {
            if (match(pattern, url).hasMatch()) {
                byPattern.push_back(node);
            }
        }
        std::vector<std::vector<NodePointer>> groups{byUrl, byPattern, unconditional};
        if (!rule("watchers of the URL run before those of a pattern")) {
            std::swap(groups[0], groups[1]);
        }
        if (!rule("unconditional nodes run last")) {
            std::swap(groups[0], groups[2]);
        }
        bool outcome = false;
        for (const std::vector<NodePointer>& group : groups) {
            for (const NodePointer& node : group) {
                if (outcome && !rule("every node runs, also after one that succeeded")) {
                    continue;
                }
                outcome = runNode(*node, url) || outcome;
            }
        }
        return outcome;
    }

    bool runNode(const Node& node, const QString& url)
    {
        if (source == nullptr) {
            return false;
        }
        return node.isSwitch ? runSwitch(node, url) : runCommands(node, url);
    }

    bool runCommands(const Node& node, const QString& url)
    {
        bool outcome = false;
        for (const Command& command : node.commands) {
            if (!outcome || rule("every command runs, also after one that succeeded")) {
                outcome = runCommand(command, url) || outcome;
            }
        }
        const bool follows = node.edges.size() == 1 ||
                             (node.edges.size() > 1 &&
                              !rule("a command node with several edges follows none of them"));
        if (!follows || node.edges[0].node == nullptr) {
            return outcome;
        }
        const Edge& edge = node.edges[0];
        if (!rule("a command node follows its edge whatever the conditions")) {
            for (const Condition& condition : edge.conditions) {
                if (!holds(condition, url)) {
                    return outcome;
                }
            }
        }
        return runNode(*edge.node, url) || outcome;
    }

    bool runSwitch(const Node& node, const QString& url)
    {
        bool outcome = false;
        for (const Edge& edge : node.edges) {
            int visits = edge.conditions.empty() ? 1 : 0;
            for (const Condition& condition : edge.conditions) {
                if (!holds(condition, url)) {
                    continue;
                }
                ++visits;
                if (edge.node != nullptr &&
                    (visits == 1 || rule("each condition that holds runs the successor"))) {
                    outcome = runNode(*edge.node, url) || outcome;
                }
            }
            if (edge.conditions.empty() && edge.node != nullptr) {
                outcome = runNode(*edge.node, url) || outcome;
            }
        }
        return outcome;
    }

    // ---- Conditions -----------------------------------------------------------------------------

    bool holds(const Condition& condition, const QString& url)
    {
        const bool byPattern = condition.type.endsWith("RegExp");
        bool anyRow = false;
        for (const QVariantList& row : condition.rows) {
            const QString place = row[0].toString();
            const bool here = byPattern ? match(place, url).hasMatch() : place == url;
            if (condition.type.startsWith("ConditionWriteOnUrls")) {
                anyRow = anyRow || here;
            } else if (!byPattern) {
                anyRow = compare(place, row[1].toString(), row[2]) || anyRow;
            } else if (here) {
                anyRow = compare(url, row[1].toString(), row[2]) || anyRow;
            }
        }
        return anyRow;
    }

    bool compare(const QString& url, const QString& comparator, const QVariant& constant)
    {
        const QVariant current = sourceValue(url);
        if (!current.isValid() && rule("a value that is not there makes no comparison hold")) {
            return false;
        }
        if (comparator == "!=") {
            return current != constant;
        }
        if (!rule("only == and != compare")) {
            return current == constant;
        }
        return comparator == "==" && current == constant;
    }

    // ---- Commands -------------------------------------------------------------------------------

    bool runCommand(const Command& command, const QString& url)
    {
        if (command.type == "CommandSetUnitProperties") {
            return setFixedUnits(command.rows);
        }
        if (command.type == "CommandSetUnitPropertiesRegExp") {
            return setFixedUnitsByPattern(command.rows, url);
        }
        if (command.type == "CommandSetUnitByConfigurationParameter") {
            return followParameters(command.rows);
        }
        if (command.type == "CommandSetUnitByConfigurationParameterInstRegExp") {
            return followWrittenValue(command.rows, url);
        }
        return followParametersInColumns(command.rows);
    }

    bool setFixedUnits(const Rows& rows)
    {
        bool result = false;
        for (const QVariantList& row : target == nullptr ? Rows() : rows) {
            QString url = row[0].toString();
            if (!parameters.isEmpty() && parameters[0].canConvert(QMetaType::QString) &&
                rule("the first parameter goes in front of the URL")) {
                url = parameters[0].toString() + url;
            }
            const QString unit = row[1].toString();
            const PlainPointer leaf = targetLeaf(url);
            if (leaf == nullptr || (unit.isEmpty() && rule("an empty unit disables the row"))) {
                continue;
            }
            writeUnit(*leaf, unit, result);
            askManipulator(*leaf, unit, result);
        }
        return result;
    }

    bool setFixedUnitsByPattern(const Rows& rows, const QString& url)
    {
        const QString name = "CommandSetUnitPropertiesRegExp";
        if (target == nullptr) {
            warnCommand(name, name, 0, "Target root null pointer given");
            return false;
        }
        bool result = false;
        for (const QVariantList& row : rows) {
            QString leafUrl;
            if (!fillGroups(row[0].toString(), url, row[1].toString(), leafUrl)) {
                continue;
            }
            if (leafUrl.isEmpty()) {
                warnCommand(name, name, 0, "Empty target url given");
                continue;
            }
            const QString unit = row[2].toString();
            if (unit.isEmpty() &&
                !rule("a missing leaf is reported before the unit is looked at")) {
                continue;
            }
            const PlainPointer leaf = targetLeaf(leafUrl);
            if (leaf == nullptr) {
                warnCommand(name, name, 0, streamed("Unable to connect to leaf", leafUrl));
            } else if (!unit.isEmpty()) {
                writeUnit(*leaf, unit, result);
                reportManipulator(name, name, 0, "SetUnitPropertiesRegExp.");
            }
        }
        return result;
    }

    bool followParameters(const Rows& rows)
    {
        bool result = false;
        for (const QVariantList& row : target == nullptr ? Rows() : rows) {
            QString url = row[2].toString();
            if ((parameters.size() == 2 ||
                 (parameters.size() > 2 && !rule("exactly two parameters fill the template"))) &&
                parameters[0].canConvert(QMetaType::QString) &&
                parameters[1].canConvert(QMetaType::QString)) {
                url = fillPlace(fillPlace(url, parameters[0]), parameters[1]);
            }
            const PlainPointer leaf = targetLeaf(url);
            const QString parameterUrl = row[0].toString();
            if (leaf == nullptr || (parameterUrl.isEmpty() && rule("no URL disables the row"))) {
                continue;
            }
            const QVariant value = sourceValue(parameterUrl);
            if (value.isValid()) {
                writeUnit(*leaf,
                          rule("a source value is written in its type") ? value : value.toString(),
                          result);
                askManipulator(*leaf, value.toString(), result);
            }
        }
        return result;
    }

    bool followWrittenValue(const Rows& rows, const QString& url)
    {
        bool result = false;
        for (const QVariantList& row : target == nullptr ? Rows() : rows) {
            QString leafUrl;
            if (!fillGroups(row[0].toString(), url, row[1].toString(), leafUrl)) {
                continue;
            }
            const PlainPointer leaf = targetLeaf(leafUrl);
            if (leaf == nullptr && rule("without a leaf the written value is not read")) {
                continue;
            }
            const QVariant value = sourceValue(url);
            if (leaf != nullptr && value.isValid()) {
                writeUnit(*leaf, value, result);
                reportManipulator("CommandSetUnitByConfigurationParameterInstRegExp",
                                  "CommandSetUnitByConfigurationParameterRegExp", 75,
                                  "SetUnitByConfigurationParameterRegExp.");
            }
        }
        return result;
    }

    bool followParametersInColumns(const Rows& rows)
    {
        const QString name = "CommandSetUnitByConfigurationParameterArray";
        const auto report = [&](int line, const char* text, const QString& quoted) {
            warnCommand(name, name, line, streamed(text, quoted));
        };
        if (target == nullptr) {
            warnCommand(name, name, 116, "Target root null pointer given");
            return false;
        }
        bool result = false;
        for (const QVariantList& row : rows) {
            const QString parameterUrl = row.first().toString();
            const QString arrayTarget = row.last().toString();
            QString url;
            int column = 0;
            if (!splitArrayTarget(arrayTarget, url, column)) {
                report(110, "Unable to get Array index and url", arrayTarget);
                continue;
            }
            const PlainPointer leaf = targetLeaf(url);
            if (leaf == nullptr) {
                report(105, "Unable to connect to leaf", arrayTarget);
                continue;
            }
            if (property(*leaf, "@dataType").toString() != "an array") {
                report(100, "Not an array datatype",
                       rule("a leaf that is no array is reported by the parameter") ? parameterUrl
                                                                                    : arrayTarget);
                continue;
            }
            const QVariant information = property(*leaf, "@columns");
            if (information.canConvert(QMetaType::QVariantList)) {
                followInColumn(*leaf, url, information.toList(), column, parameterUrl, result);
            }
        }
        return result;
    }

    void followInColumn(Plain& leaf, const QString& url, QVariantList columns, int column,
                        const QString& parameterUrl, bool& result)
    {
        const QString name = "CommandSetUnitByConfigurationParameterArray";
        if (!columns.isEmpty()) {
            events.append("Array2dDataTypeWrapper(0 rows, " + testhost::describe(columns) + ')');
        }
        if (parameterUrl.isEmpty()) {
            return;
        }
        const QVariant value = sourceValue(parameterUrl);
        if (!value.isValid() || !value.canConvert(QMetaType::QString)) {
            return;
        }
        events.append("getColumnUnitTypes()");
        if (column >= columns.size()) {
            throw Fatal();
        }
        QStringList units;
        for (const QVariant& unit : columns) {
            units.append(unit.toString());
        }
        units[column] = value.toString();
        const bool taken = !scenario["refusesColumns"].toBool();
        events.append("setColumnUnitTypes(" + units.join('|') + ") -> " +
                      (taken ? "true" : "false"));
        if (taken) {
            columns = QVariant(units).toList();
            const int status = write(leaf, "@columns", columns);
            events.append(QString("setArrayInfoWithStatus(target, %1, %2) -> %3")
                              .arg(url, testhost::describe(columns), QString::number(status)));
            noteStatus(status, result);
        }
        reportManipulator(name, name, 92, "SetUnitByConfigurationParameterArray.");
    }

    bool splitArrayTarget(const QString& arrayTarget, QString& url, int& column)
    {
        const auto report = [&](int line, const char* text) {
            warn("Commands/CommandSetUnitByConfigurationParameterArray", line,
                 "bool CommandSetUnitByConfigurationParameterArray::getArrayUrlAndColumnIndex("
                 "const QString&, QString&, int&)",
                 streamed(text, arrayTarget));
            return false;
        };
        const int close = arrayTarget.lastIndexOf(']');
        const int open = close < 2 ? -1 : arrayTarget.lastIndexOf('[', close - 2);
        if (open < 1) {
            return report(165, "No valid url given");
        }
        url = arrayTarget.left(open);
        column = columnIndex(arrayTarget.mid(open + 1, close - open - 1));
        if (column < 0 && rule("a negative column is rejected")) {
            return report(181, "Array index is no number or expression");
        }
        column = std::abs(column);
        return true;
    }

    int columnIndex(const QString& expression)
    {
        QChar sign;
        if (expression.contains('+') && expression.contains('-')) {
            sign = rule("a sum is looked for before a difference") ? '+' : '-';
        } else if (expression.contains('+') || expression.contains('-')) {
            sign = expression.contains('+') ? '+' : '-';
        }
        if (sign.isNull()) {
            bool ok = false;
            const int number = expression.trimmed().toInt(&ok);
            return ok ? number : -1;
        }
        const QStringList parts = expression.split(sign);
        if (parts.size() != 2) {
            warn("Commands/CommandSetUnitByConfigurationParameterArray", sign == '+' ? 211 : 225,
                 "int CommandSetUnitByConfigurationParameterArray::evalArrayIndexExpression("
                 "const QString&)",
                 streamed("Unable to parse array index string", expression));
            return -1;
        }
        bool leftOk = false;
        bool rightOk = false;
        const qint64 left = parts[0].trimmed().toInt(&leftOk);
        const qint64 right = parts[1].trimmed().toInt(&rightOk);
        const qint64 value = sign == '+' ? left + right : left - right;
        const bool fits = value == qBound<qint64>(std::numeric_limits<int>::min(), value,
                                                  std::numeric_limits<int>::max());
        return leftOk && rightOk && fits ? int(value) : -1;
    }

    // ---- Patterns and templates -----------------------------------------------------------------

    static QRegularExpressionMatch match(const QString& pattern, const QString& text)
    {
        const QRegularExpression expression(pattern);
        return expression.isValid() ? expression.match(text) : QRegularExpressionMatch();
    }

    /// False when the pattern does not apply to the URL.
    bool fillGroups(const QString& pattern, const QString& url, const QString& urlTemplate,
                    QString& filled)
    {
        const QRegularExpression expression(pattern);
        const QRegularExpressionMatch found = match(pattern, url);
        if (!found.hasMatch() ||
            (expression.captureCount() == 0 && rule("a pattern without a group never applies"))) {
            return false;
        }
        filled = urlTemplate;
        for (const QString& group : expression.namedCaptureGroups()) {
            if (!group.isEmpty()) {
                filled = filled.split("(?<" + group + ">)").join(found.captured(group));
            }
        }
        return true;
    }

    /// Qt complains of a text without a place; nobody is to hear of it.
    static QString fillPlace(const QString& text, const QVariant& value)
    {
        const auto silence = [](QtMsgType, const QMessageLogContext&, const QString&) {};
        const QtMessageHandler handler = qInstallMessageHandler(silence);
        QString filled = text.arg(value.toString());
        qInstallMessageHandler(handler);
        return filled;
    }

    // ---- The host -------------------------------------------------------------------------------

    PlainPointer targetLeaf(const QString& url)
    {
        events.append("getChildData(target, " + url + ')');
        return find(target, url);
    }

    QVariant sourceValue(const QString& url)
    {
        events.append("extractConfigValue(" + url + ", source)");
        const PlainPointer leaf = find(source, url);
        return leaf == nullptr ? QVariant() : leaf->properties.value("@val");
    }

    QVariant property(const Plain& leaf, const QString& key)
    {
        events.append("getDataProperty(" + leaf.place + ", " + key + ')');
        return leaf.properties.value(key);
    }

    static int write(Plain& leaf, const QString& key, const QVariant& value)
    {
        const QVariant before = leaf.properties.value(key);
        int status = before.userType() == value.userType() && before == value ? 1 : 0;
        if (!leaf.statuses.isEmpty()) {
            status = leaf.statuses.takeFirst();
        }
        if (status == 0) {
            leaf.properties[key] = value;
        }
        return status;
    }

    void writeUnit(Plain& leaf, const QVariant& unit, bool& result)
    {
        const int status = write(leaf, "@unit", unit);
        events.append(QString("setDataProperty(%1, @unit, %2) -> %3")
                          .arg(leaf.place, testhost::describe(unit), QString::number(status)));
        noteStatus(status, result);
    }

    void noteStatus(int status, bool& result)
    {
        if (status == 0 || (status == 1 && rule("an accepted write is a success"))) {
            result = true;
        }
        if (status == 0 || (status == 1 && !rule("a write without change leaves the flag alone"))) {
            changed = true;
        }
        if (status > 1 && !rule("another status changes neither flag")) {
            result = false;
        }
    }

    void askManipulator(const Plain& leaf, const QString& unit, bool& result)
    {
        if (!hasManipulator) {
            return;
        }
        events.append(manipulatorEvent(leaf.place, unit, result, changed));
        const QJsonValue action =
            manipulatorActions.isEmpty() ? QJsonValue() : manipulatorActions.takeAt(0);
        if (action.isArray() && rule("the manipulator may turn both flags")) {
            result = action.toArray()[0].toBool();
            changed = action.toArray()[1].toBool();
        }
    }

    void reportManipulator(const QString& file, const QString& name, int line, const char* command)
    {
        if (hasManipulator && rule("a manipulator that is not asked is reported")) {
            warnCommand(file, name, line,
                        QString("Manipulate unit is not implemented for command ") + command);
        }
    }

    void warnCommand(const QString& file, const QString& name, int line, const QString& text)
    {
        warn("Commands/" + file, line,
             "virtual bool " + name +
                 "::executeCommand(const BaseClassSharedPointer&, const BaseClassSharedPointer&, "
                 "const QString&, QVariantList&, bool&, const QVariantList&, "
                 "const QSharedPointer<UnitManipulatorBase>&)",
             text);
    }

    void warn(const QString& file, int line, const QString& function, const QString& text)
    {
        events.append(messageEvent(file, line, function, "default", text));
    }

    static QString streamed(const char* text, const QString& quoted)
    {
        QString line;
        QDebug(&line) << text << quoted;
        return line.chopped(1); // the blank after the last piece
    }

    Evaluator& evaluator;
    const Scenario& scenario;
    PlainPointer source;
    PlainPointer target;
    bool changed;
    QVariantList parameters;
    bool hasManipulator;
    QJsonArray manipulatorActions;
    QStringList events;

    std::vector<std::pair<QString, NodePointer>> urlWatchers; // in build order, as those below
    std::vector<std::pair<QString, NodePointer>> patternWatchers;
    std::vector<NodePointer> unconditional;
};

} // namespace

Outcome Evaluator::evaluate(const Scenario& scenario)
{
    return Twin(*this, scenario).run();
}

} // namespace reference
