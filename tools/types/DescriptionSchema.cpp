#include "tools/types/DescriptionSchema.h"

#include "DependencyWalkerDefinitions.h"
#include "tools/types/Types.h"

#include <QJsonArray>
#include <QStringList>

namespace tools {

namespace {

using Kind = TypeDescription::Kind;
using Keywords = DependencyWalkerDefinitions;

const QString topLevelNode = QStringLiteral("topLevelNode");
const QString successor = QStringLiteral("successor");
const QString valueKey = QStringLiteral("@value");

QJsonObject reference(const QString& definition)
{
    return {{QStringLiteral("$ref"), QStringLiteral("#/definitions/") + definition}};
}

/// What editors offer where the schema stands.
QJsonObject snippet(const QString& label, const QString& description, const QJsonValue& body)
{
    return {{QStringLiteral("label"), label},
            {QStringLiteral("description"), description},
            {QStringLiteral("body"), body}};
}

/// An object whose members are these and, as remarks, any whose key begins with "@".
QJsonObject objectOf(const QJsonObject& members, const QJsonValue& others)
{
    return {
        {QStringLiteral("type"), QStringLiteral("object")},
        {QStringLiteral("properties"), members},
        {QStringLiteral("patternProperties"), QJsonObject{{QStringLiteral("^@"), QJsonObject{}}}},
        {QStringLiteral("additionalProperties"), others}};
}

/// A leaf that is written out: an object with such an "@value".
QJsonObject writtenOut(const QJsonObject& value)
{
    return {{QStringLiteral("required"), QJsonArray{valueKey}},
            {QStringLiteral("properties"), QJsonObject{{valueKey, value}}}};
}

/// Numbers and truth values count as their texts.
QJsonObject textCell()
{
    return {{QStringLiteral("type"), QJsonArray{QStringLiteral("string"), QStringLiteral("number"),
                                                QStringLiteral("boolean")}}};
}

QStringList namesOf(Kind kind)
{
    QStringList names;
    for (const TypeDescription& type : TypeCatalog::types(kind)) {
        names.append(type.name);
    }
    return names;
}

QStringList comparators()
{
    return {QStringLiteral("=="), QStringLiteral("!=")};
}

QJsonObject cellSchema(const ColumnDescription& column)
{
    QJsonObject cell;
    if (column.role == CellRole::Comparator) {
        cell[QStringLiteral("enum")] = QJsonArray::fromStringList(comparators());
    } else if (column.role != CellRole::Constant && column.role != CellRole::Remark) {
        cell = textCell();
    }
    cell[QStringLiteral("title")] = column.name;
    cell[QStringLiteral("description")] = column.meaning;
    return cell;
}

QJsonObject layoutSchema(const TableDescription& table, const QList<int>& layout)
{
    QJsonArray cells;
    for (const int column : layout) {
        cells.append(cellSchema(table.columns.at(column)));
    }
    return {{QStringLiteral("type"), QStringLiteral("array")},
            {QStringLiteral("title"), columnNames(table, layout).join(QStringLiteral(", "))},
            {QStringLiteral("items"), cells},
            {QStringLiteral("minItems"), layout.size()},
            {QStringLiteral("maxItems"), layout.size()}};
}

/// One of these words to choose.
QString choice(int number, const QStringList& words)
{
    return QStringLiteral("${%1|%2|}").arg(number).arg(words.join(QLatin1Char(',')));
}

/// A cell to fill in: the number of the stop and the name of the column.
QString placeholder(int number, const ColumnDescription& column)
{
    return column.role == CellRole::Comparator
               ? choice(number, comparators())
               : QStringLiteral("${%1:%2}").arg(number).arg(column.name);
}

QJsonArray rowBody(const TableDescription& table, const QList<int>& layout)
{
    QJsonArray cells;
    for (const int column : layout) {
        cells.append(placeholder(cells.size() + 1, table.columns.at(column)));
    }
    return cells;
}

/// A row follows one of the layouts.
QJsonObject rowSchema(const TableDescription& table)
{
    QJsonArray layouts;
    QJsonArray snippets;
    for (const QList<int>& layout : table.layouts) {
        const QJsonObject row = layoutSchema(table, layout);
        layouts.append(row);
        snippets.append(snippet(row[QStringLiteral("title")].toString(),
                                QStringLiteral("a row of %1").arg(layout.size()),
                                rowBody(table, layout)));
    }
    // A validator says more about one layout than about all of them.
    QJsonObject schema = layouts.size() == 1 ? layouts.first().toObject()
                                             : QJsonObject{{QStringLiteral("anyOf"), layouts}};
    schema[QStringLiteral("defaultSnippets")] = snippets;
    return schema;
}

/// The definition of a type's rows.
QString rowOf(const TypeDescription& type)
{
    return QStringLiteral("rowOf") + type.name;
}

/// The table of a command or a condition: a list, or a leaf that is written out.
QJsonObject tableSchema(const TypeDescription& type)
{
    const QJsonObject rows = reference(rowOf(type));
    QJsonObject schema = writtenOut(
        {{QStringLiteral("type"), QStringLiteral("array")}, {QStringLiteral("items"), rows}});
    schema[QStringLiteral("type")] = QJsonArray{QStringLiteral("array"), QStringLiteral("object")};
    schema[QStringLiteral("items")] = rows;
    schema[QStringLiteral("title")] = type.name;
    schema[QStringLiteral("description")] = type.meaning + QLatin1Char(' ') + otherRows(type.table);
    schema[QStringLiteral("defaultSnippets")] = QJsonArray{snippet(
        type.name, type.meaning, QJsonArray{rowBody(type.table, type.table.layouts.first())})};
    return schema;
}

/// The name of a node's type: a text, or a leaf that is written out.
QJsonObject typeSchema()
{
    QJsonArray forms;
    for (const TypeDescription& type : TypeCatalog::types(Kind::Node)) {
        forms.append(QJsonObject{{QStringLiteral("const"), type.name},
                                 {QStringLiteral("description"), type.meaning}});
    }
    QJsonObject leaf =
        writtenOut({{QStringLiteral("enum"), QJsonArray::fromStringList(namesOf(Kind::Node))}});
    leaf[QStringLiteral("type")] = QStringLiteral("object");
    forms.append(leaf);
    return {{QStringLiteral("title"), QStringLiteral("the type of the node")},
            {QStringLiteral("anyOf"), forms}};
}

QJsonObject membersOf(Kind kind)
{
    QJsonObject members;
    for (const TypeDescription& type : TypeCatalog::types(kind)) {
        members[type.name] = reference(type.name);
    }
    return members;
}

/// Whether a node is of a type that runs no commands.
QJsonObject runsNoCommands()
{
    QJsonArray names;
    for (const TypeDescription& type : TypeCatalog::types(Kind::Node)) {
        if (!type.runsCommands) {
            names.append(type.name);
        }
    }
    const QJsonObject name{{QStringLiteral("enum"), names}};
    QJsonObject leaf = writtenOut(name);
    leaf[QStringLiteral("type")] = QStringLiteral("object");
    const QJsonObject type{{QStringLiteral("anyOf"), QJsonArray{name, leaf}}};
    return {{QStringLiteral("properties"), QJsonObject{{Keywords::getNodeTypeString(), type}}}};
}

QJsonArray nodeSnippets()
{
    QJsonArray snippets;
    for (const TypeDescription& type : TypeCatalog::types(Kind::Node)) {
        QJsonObject body{{Keywords::getNodeTypeString(), type.name}};
        if (type.runsCommands) {
            body[Keywords::getCommandKeyword()] =
                QJsonObject{{choice(1, namesOf(Kind::Command)), QJsonArray{}}};
        } else {
            const QJsonObject next{{Keywords::getNodeTypeString(), choice(2, namesOf(Kind::Node))}};
            body[Keywords::getNextNodeKeyword()] = QJsonObject{{QStringLiteral("${1:name}"), next}};
        }
        snippets.append(snippet(type.name, type.meaning, body));
    }
    return snippets;
}

QJsonObject nodeSchema(const QString& title, const QJsonObject& conditions)
{
    QJsonObject members = conditions;
    members[Keywords::getNodeTypeString()] = reference(Keywords::getNodeTypeString());
    members[Keywords::getNextNodeKeyword()] = reference(Keywords::getNextNodeKeyword());
    members[Keywords::getCommandKeyword()] = reference(Keywords::getCommandKeyword());

    QJsonObject schema = objectOf(members, false);
    schema[QStringLiteral("title")] = title;
    schema[QStringLiteral("required")] = QJsonArray{Keywords::getNodeTypeString()};
    schema[QStringLiteral("if")] = runsNoCommands();
    schema[QStringLiteral("then")] = QJsonObject{
        {QStringLiteral("properties"), QJsonObject{{Keywords::getCommandKeyword(), false}}}};
    schema[QStringLiteral("defaultSnippets")] = nodeSnippets();
    return schema;
}

QJsonObject described(QJsonObject schema, const QString& title, const QString& description)
{
    schema[QStringLiteral("title")] = title;
    schema[QStringLiteral("description")] = description;
    return schema;
}

QJsonObject definitions()
{
    QJsonObject all{
        {topLevelNode, nodeSchema(QStringLiteral("a top-level node"), {})},
        {successor,
         nodeSchema(QStringLiteral("a node behind an edge, with the conditions of the edge"),
                    membersOf(Kind::Condition))},
        {Keywords::getNodeTypeString(), typeSchema()},
        {Keywords::getNextNodeKeyword(),
         described(objectOf({}, reference(successor)), QStringLiteral("edges"),
                   QStringLiteral("The nodes behind this one, by names of your choice."))},
        {Keywords::getCommandKeyword(),
         described(objectOf(membersOf(Kind::Command), false), QStringLiteral("commands"),
                   QStringLiteral("The commands of the node, one of each type."))}};
    for (const Kind kind : {Kind::Command, Kind::Condition}) {
        for (const TypeDescription& type : TypeCatalog::types(kind)) {
            all[type.name] = tableSchema(type);
            all[rowOf(type)] = rowSchema(type.table);
        }
    }
    return all;
}

} // namespace

QJsonObject descriptionSchema()
{
    const QString schemaKey = QStringLiteral("$schema");
    const QJsonObject schemaOfFile{{QStringLiteral("type"), QStringLiteral("string")}};
    QJsonObject schema =
        described(objectOf({{schemaKey, schemaOfFile}}, reference(topLevelNode)),
                  QStringLiteral("a description"),
                  QStringLiteral("Which units of a target follow when a value of a source is "
                                 "written: top-level nodes, by names of your choice. Keys that "
                                 "begin with \"@\" are remarks."));
    schema[schemaKey] = QStringLiteral("http://json-schema.org/draft-07/schema#");
    schema[QStringLiteral("definitions")] = definitions();
    return schema;
}

} // namespace tools
