#include "checker/Description.h"

#include "DependencyWalkerDefinitions.h"
#include "filehost/NearestNames.h"

#include <QStringList>

#include <algorithm>

namespace checker {

using filehost::DescriptionPlaces;
using filehost::json::JsonText;
using Keywords = DependencyWalkerDefinitions;
using JsonKind = JsonText::Kind;
using RowFate = TableDescription::RowFate;
using TypeKind = TypeDescription::Kind;

namespace {

QStringList namesOf(TypeKind kind)
{
    QStringList names;
    for (const TypeDescription& type : TypeCatalog::types(kind)) {
        names.append(type.name);
    }
    return names;
}

QString listed(const QStringList& names)
{
    return QLatin1Char('"') + names.join(QStringLiteral("\", \"")) + QLatin1Char('"');
}

/// How a row of a layout looks, by the names of its columns.
QString shapeOf(const TableDescription& table, const QList<int>& layout)
{
    QStringList names;
    for (const int column : layout) {
        names.append(quoted(table.columns.at(column).name));
    }
    return QLatin1Char('[') + names.join(QStringLiteral(", ")) + QLatin1Char(']');
}

QString shapesOf(const TableDescription& table)
{
    QStringList shapes;
    for (const QList<int>& layout : table.layouts) {
        shapes.append(shapeOf(table, layout));
    }
    return QStringLiteral("a row is ") + shapes.join(QStringLiteral(" or "));
}

QString cells(int count)
{
    return count == 1 ? QStringLiteral("1 cell") : QStringLiteral("%1 cells").arg(count);
}

/// The keyword that a key may have been meant for; empty when it is like none.
QString nearestKeyword(const QString& key)
{
    return filehost::nearestName(key,
                                 {Keywords::getNodeTypeString(), Keywords::getNextNodeKeyword(),
                                  Keywords::getCommandKeyword()});
}

bool startsWithCondition(const QString& key)
{
    return key.startsWith(QLatin1String("Condition"), Qt::CaseInsensitive);
}

class Reader {
public:
    Reader(const DescriptionPlaces& places, Findings& findings)
        : places(places), text(places.text()), findings(findings),
          nodeTypes(namesOf(TypeKind::Node)), commandTypes(namesOf(TypeKind::Command)),
          conditionTypes(namesOf(TypeKind::Condition))
    {}

    std::vector<Node> nodesIn(Index container, bool isTopLevel);

private:
    bool isNodeItself(Index container);
    Node readNode(Index member, bool isTopLevel);
    void readType(Node& node, Index type, const QStringList& others, bool isTopLevel);
    void readCommands(Node& node, Index commands);
    void passOver(Index member, const QString& key, bool lacksType);
    Table readTable(Index member, const TypeDescription& type);
    void readRow(Table& table, Index element);
    void reportLength(const TypeDescription& type, const Row& row);
    QString rewritten(const TableDescription& table, const Row& row) const;
    QString spelled(Index index) const;
    bool isObject(Index member, const QString& what);

    const DescriptionPlaces& places;
    const JsonText& text;
    Findings& findings;
    const QStringList nodeTypes;
    const QStringList commandTypes;
    const QStringList conditionTypes;
};

std::vector<Node> Reader::nodesIn(Index container, bool isTopLevel)
{
    std::vector<Node> nodes;
    if (isNodeItself(container)) {
        if (!isTopLevel) {
            nodes.emplace_back().member = container; // an edge all the same
        }
        return nodes;
    }
    for (const Index member : text.children(container)) {
        const bool isSchema =
            isTopLevel && text.isUnder(member, u"$schema") && text.kind(member) == JsonKind::String;
        if (!isSchema && !text.key(member).startsWith(QLatin1Char('@'))) {
            nodes.push_back(readNode(member, isTopLevel));
        }
    }
    return nodes;
}

/// Whether there is a node where nodes by name belong, which is told.
bool Reader::isNodeItself(Index container)
{
    const QString keyword = Keywords::getNodeTypeString();
    const Index type = text.member(container, keyword);
    const Index value = type == JsonText::none ? type : places.leafValue(type);
    if (value == JsonText::none || text.kind(value) != JsonKind::String) {
        return false;
    }
    findings.add(Code::MissingType, places.keyAt(type),
                 QStringLiteral("a node stands here without a name, so the engine takes %1 and its "
                                "neighbors for nodes, and finds no type in them")
                     .arg(quoted(keyword)),
                 QStringLiteral("write { \"name\": { \"Type\": ... } }"));
    return true;
}

Node Reader::readNode(Index member, bool isTopLevel)
{
    Node node;
    node.member = member;
    Index type = JsonText::none;
    std::vector<Index> others;
    QStringList otherKeys;
    if (text.kind(member) == JsonKind::Object) {
        for (const Index child : text.children(member)) {
            const QString key = text.key(child);
            if (key.startsWith(QLatin1Char('@'))) {
                continue;
            }
            if (key == Keywords::getNodeTypeString()) {
                type = child;
            } else if (key == Keywords::getNextNodeKeyword()) {
                node.next = child;
            } else if (key == Keywords::getCommandKeyword()) {
                node.ownCommands = child;
            } else if (const auto* condition = TypeCatalog::find(TypeKind::Condition, key)) {
                node.conditions.push_back(readTable(child, *condition));
            } else {
                others.push_back(child);
                otherKeys.append(key);
            }
        }
    }
    readType(node, type, otherKeys, isTopLevel);
    for (std::size_t i = 0; i < others.size(); ++i) {
        passOver(others[i], otherKeys.at(static_cast<int>(i)), type == JsonText::none);
    }
    if (node.ownCommands != JsonText::none) {
        readCommands(node, node.ownCommands);
    }
    if (node.next != JsonText::none && isObject(node.next, Keywords::getNextNodeKeyword())) {
        node.successors = nodesIn(node.next, false);
    }
    return node;
}

/// `others` are keys of the node that mean nothing to the engine.
void Reader::readType(Node& node, Index type, const QStringList& others, bool isTopLevel)
{
    const QString consequence =
        isTopLevel ? QStringLiteral("the engine leaves it out, with everything in it")
                   : QStringLiteral("its edge leads nowhere, but counts as one");
    const QString keyword = Keywords::getNodeTypeString();
    if (type == JsonText::none) {
        const auto similar = std::find_if(others.begin(), others.end(), [&](const QString& key) {
            return nearestKeyword(key) == keyword;
        });
        findings.add(
            Code::MissingType, places.keyAt(node.member),
            QStringLiteral("the node %1 has no %2; %3")
                .arg(quoted(text.key(node.member)), quoted(keyword), consequence),
            similar != others.end()
                ? QStringLiteral("write %1 instead of %2; case counts")
                      .arg(quoted(keyword), quoted(*similar))
                : QStringLiteral("write %1: with one of %2; a remark has a key that begins "
                                 "with \"@\"")
                      .arg(quoted(keyword), listed(nodeTypes)));
        return;
    }
    const Index value = places.leafValue(type);
    const QString name = value == JsonText::none ? QString() : textOf(places, value);
    node.type = TypeCatalog::find(TypeKind::Node, name);
    if (node.type == nullptr) {
        findings.add(
            Code::UnknownNodeType,
            value == JsonText::none ? places.keyAt(type) : places.valueAt(value),
            QStringLiteral("there is no node type %1; %2").arg(quoted(name), consequence),
            didYouMean(name, nodeTypes, QStringLiteral("the types are ") + listed(nodeTypes)));
    }
}

/// Says what becomes of a member of a node that the engine does not look at.
void Reader::passOver(Index member, const QString& key, bool lacksType)
{
    const Place place = places.keyAt(member);
    const QString nearestCondition = filehost::nearestName(key, conditionTypes);
    const QString keyword = nearestKeyword(key);
    if (startsWithCondition(key)) {
        findings.add(Code::UnknownCondition, place,
                     QStringLiteral("there is no condition %1; the engine does not look at it, and "
                                    "without another one the edge is always followed")
                         .arg(quoted(key)),
                     nearestCondition.isEmpty()
                         ? QStringLiteral("the conditions are ") + listed(conditionTypes)
                         : QStringLiteral("did you mean %1?").arg(quoted(nearestCondition)));
        return;
    }
    if (lacksType && keyword == Keywords::getNodeTypeString()) {
        return; // what is said of the missing type covers it
    }
    QString advice =
        QStringLiteral("a remark has a key that begins with \"@\", as in \"@comment\"");
    if (commandTypes.contains(key)) {
        advice = QStringLiteral("commands stand under \"Commands\"");
    } else if (text.kind(member) == JsonKind::Object &&
               text.member(member, Keywords::getNodeTypeString()) != JsonText::none) {
        advice = QStringLiteral("successors stand under \"Next\"");
    } else if (!keyword.isEmpty()) {
        advice = QStringLiteral("did you mean %1?").arg(quoted(keyword));
    }
    findings.add(Code::IgnoredMember, place,
                 QStringLiteral("%1 means nothing in a node; the engine does not look at it")
                     .arg(quoted(key)),
                 advice);
}

void Reader::readCommands(Node& node, Index commands)
{
    if (!isObject(commands, Keywords::getCommandKeyword())) {
        return;
    }
    for (const Index child : text.children(commands)) {
        const QString key = text.key(child);
        if (key.startsWith(QLatin1Char('@'))) {
            continue;
        }
        if (const TypeDescription* type = TypeCatalog::find(TypeKind::Command, key)) {
            node.commands.push_back(readTable(child, *type));
            continue;
        }
        findings.add(
            Code::UnknownCommand, places.keyAt(child),
            QStringLiteral("there is no command %1; the engine leaves it out").arg(quoted(key)),
            conditionTypes.contains(key)
                ? QStringLiteral("conditions stand in the node itself, beside \"Commands\"")
                : didYouMean(key, commandTypes,
                             QStringLiteral("the commands are ") + listed(commandTypes)));
    }
}

bool Reader::isObject(Index member, const QString& what)
{
    if (text.kind(member) == JsonKind::Object) {
        return true;
    }
    findings.add(
        Code::NotAnObject, places.valueAt(member),
        QStringLiteral("%1 is no object; the engine finds nothing in it").arg(quoted(what)),
        QStringLiteral("write { \"name\": ... }"));
    return false;
}

Table Reader::readTable(Index member, const TypeDescription& type)
{
    Table table{member, &type, {}};
    const Index value = places.leafValue(member);
    const bool isList = value != JsonText::none && text.kind(value) == JsonKind::Array;
    const bool isCommand = type.kind == TypeKind::Command;
    const QString consequence = isCommand ? QStringLiteral("the command does nothing")
                                          : QStringLiteral("the condition never holds");
    if (value != JsonText::none && !isList) {
        findings.add(
            Code::TableNotAList, places.valueAt(value),
            QStringLiteral("the table of %1 is no list; %2").arg(quoted(type.name), consequence),
            QStringLiteral("write a list of rows; ") + shapesOf(type.table));
        return table;
    }
    if (!isList || text.children(value).empty()) {
        findings.add(Code::EmptyTable, places.keyAt(member),
                     QStringLiteral("%1 has no rows; %2").arg(quoted(type.name), consequence),
                     shapesOf(type.table));
        return table;
    }
    for (const Index element : text.children(value)) {
        readRow(table, element);
    }
    return table;
}

void Reader::readRow(Table& table, Index element)
{
    const TableDescription& columns = table.type->table;
    if (text.kind(element) != JsonKind::Array) {
        findings.add(Code::RowNotAList, places.valueAt(element),
                     QStringLiteral("a row of %1 is no list; the engine passes over it")
                         .arg(quoted(table.type->name)),
                     text.kind(element) == JsonKind::String && columns.layouts.first().size() == 1
                         ? QStringLiteral("write [%1]").arg(spelled(element))
                         : shapesOf(columns));
        return;
    }
    Row row{element, {}, nullptr};
    for (const Index cell : text.children(element)) {
        row.cells.push_back(cell);
    }
    const int count = static_cast<int>(row.cells.size());
    row.layout = columns.layoutFor(count);
    const RowFate fate = columns.fateOf(count);
    if (fate != RowFate::Kept) {
        reportLength(*table.type, row);
    }
    if (fate == RowFate::Kept || fate == RowFate::Truncated) {
        table.rows.push_back(std::move(row));
    }
}

void Reader::reportLength(const TypeDescription& type, const Row& row)
{
    const int count = static_cast<int>(row.cells.size());
    const QString subject =
        QStringLiteral("a row of %1 has %2").arg(quoted(type.name), cells(count));
    const QString better = rewritten(type.table, row);
    const QString advice = better.isEmpty()
                               ? shapesOf(type.table)
                               : QStringLiteral("write %1; %2").arg(better, shapesOf(type.table));
    const Place place = places.valueAt(row.index);
    switch (type.table.fateOf(count)) {
    case RowFate::Truncated:
        findings.add(Code::RowTruncated, place,
                     QStringLiteral("%1; the engine takes the first %2 and drops the others")
                         .arg(subject)
                         .arg(type.table.layouts.first().size()),
                     advice);
        break;
    case RowFate::Skipped:
        findings.add(Code::RowSkipped, place, subject + QStringLiteral("; the engine skips it"),
                     advice);
        break;
    case RowFate::Fatal:
        findings.add(Code::RowFatal, place,
                     subject + QStringLiteral("; the engine ends the process when it reads it"),
                     advice);
        break;
    case RowFate::Kept:
        break;
    }
}

/// The row as it was probably meant: without what is dropped, or with the remark that it lacks.
QString Reader::rewritten(const TableDescription& table, const Row& row) const
{
    const int count = static_cast<int>(row.cells.size());
    if (table.fateOf(count) == RowFate::Truncated) {
        QStringList kept;
        for (int i = 0; i < table.layouts.first().size(); ++i) {
            kept.append(spelled(row.cells[static_cast<std::size_t>(i)]));
        }
        return QLatin1Char('[') + kept.join(QStringLiteral(", ")) + QLatin1Char(']');
    }
    for (const QList<int>& layout : table.layouts) {
        QStringList filled;
        std::size_t next = 0;
        for (const int column : layout) {
            if (table.columns.at(column).role == CellRole::Remark) {
                filled.append(QStringLiteral("\"\""));
            } else if (next < row.cells.size()) {
                filled.append(spelled(row.cells[next++]));
            }
        }
        if (next == row.cells.size() && filled.size() == layout.size()) {
            return QLatin1Char('[') + filled.join(QStringLiteral(", ")) + QLatin1Char(']');
        }
    }
    return {};
}

QString Reader::spelled(Index index) const
{
    const std::string_view bytes = text.slice(text.node(index).value);
    return QString::fromUtf8(bytes.data(), static_cast<int>(bytes.size()));
}

} // namespace

Index Row::cell(const TableDescription& table, CellRole role) const
{
    for (int i = 0; i < layout->size(); ++i) {
        if (table.columns.at(layout->at(i)).role == role) {
            return cells[static_cast<std::size_t>(i)];
        }
    }
    return JsonText::none;
}

QString textOf(const DescriptionPlaces& places, Index cell)
{
    return places.text().value(cell).toString();
}

std::vector<Node> readDescription(const DescriptionPlaces& places, Findings& findings)
{
    return Reader(places, findings).nodesIn(JsonText::root, true);
}

} // namespace checker
