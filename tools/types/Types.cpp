#include "tools/types/Types.h"

#include "tools/console/Style.h"
#include "tools/console/Text.h"

#include <QFile>

#include <algorithm>

// The macro declares a function, which must not happen inside a namespace. It is needed because
// nothing else refers to the resource in this static library.
static void registerTypeExamples()
{
    Q_INIT_RESOURCE(examples);
}

namespace tools {

namespace {

using Kind = TypeDescription::Kind;
using RowFate = TableDescription::RowFate;

const char* const pageStart = R"(# All types of a description

<!-- Written by "unitflow types --markdown"; change the engine or tools/types/Types.cpp instead. -->

What `unitflow types` shows, on one page: each type that a description can name, the columns of its
table, and an example that works with the trees of [examples/oven-line](../examples/oven-line).
[Writing a description](writing-descriptions.md) explains how they play together,
[semantics.md](semantics.md) has every rule.

Names are exact, case included. A table is a list of rows, a row a list of cells; what is no list in
a table is passed over.
)";

QString block(const QString& text, int indentation)
{
    return wrapped(text, lineWidth, indentation);
}

/// `term` and, beside it, what it means.
QString entry(const QString& term, int termWidth, const QString& meaning)
{
    const int indentation = termWidth + 4;
    return QStringLiteral("  ") + padded(term, termWidth) + QStringLiteral("  ") +
           block(meaning, indentation).mid(indentation);
}

QString layoutText(const TableDescription& table, const QList<int>& layout)
{
    return QLatin1Char('[') + columnNames(table, layout).join(QStringLiteral(", ")) +
           QLatin1Char(']');
}

/// The table of a type: its rows, its columns and what becomes of other rows.
QString tableText(const TableDescription& table, bool color)
{
    QString text = styled(QStringLiteral("rows"), Style::Heading, color) + QLatin1Char('\n');
    for (const QList<int>& layout : table.layouts) {
        text += QStringLiteral("  ") + layoutText(table, layout) + QLatin1Char('\n');
    }
    text += block(otherRows(table), 2);

    text += styled(QStringLiteral("columns"), Style::Heading, color) + QLatin1Char('\n');
    int width = 0;
    for (const ColumnDescription& column : table.columns) {
        width = std::max(width, displayWidth(column.name));
    }
    for (const ColumnDescription& column : table.columns) {
        text += entry(column.name, width, column.meaning);
    }
    return text;
}

QString indented(const QString& text, int indentation)
{
    QString lines;
    for (const QString& line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        lines += QString(indentation, QLatin1Char(' ')) + line + QLatin1Char('\n');
    }
    return lines;
}

/// The first letter large.
QString capitalized(const QString& text)
{
    return text.left(1).toUpper() + text.mid(1);
}

/// The anchor that a heading gets.
QString linkTo(const QString& heading)
{
    return QStringLiteral("[%1](#%2)").arg(heading, heading.toLower());
}

QString sectionStart(const QList<TypeDescription>& types, Kind kind)
{
    QStringList links;
    for (const TypeDescription& type : types) {
        if (type.kind == kind) {
            links.append(linkTo(type.name));
        }
    }
    return QStringLiteral("\n## %1\n\n%2\n\n%3\n")
        .arg(capitalized(headingOf(kind)), placeOf(kind), links.join(QStringLiteral(" ·\n")));
}

QString pageTable(const TableDescription& table)
{
    QString text = QStringLiteral("\nRows:\n\n");
    for (const QList<int>& layout : table.layouts) {
        text += QStringLiteral("- `%1`\n").arg(layoutText(table, layout));
    }
    text += QStringLiteral("\n%1\n\n| Column | What it holds |\n|---|---|\n").arg(otherRows(table));
    for (const ColumnDescription& column : table.columns) {
        text += QStringLiteral("| %1 | %2 |\n").arg(column.name, column.meaning);
    }
    return text;
}

QString pageSection(const TypeDescription& type)
{
    return QStringLiteral("\n### %1\n\n%2\n").arg(type.name, type.meaning) +
           (type.table.columns.isEmpty() ? QString() : pageTable(type.table)) +
           QStringLiteral("\n```json tools/types/examples/%1.json\n%2```\n")
               .arg(type.name, exampleOf(type));
}

} // namespace

QList<TypeDescription> allTypes()
{
    return TypeCatalog::types(Kind::Node) + TypeCatalog::types(Kind::Command) +
           TypeCatalog::types(Kind::Condition);
}

QString nameOf(Kind kind)
{
    switch (kind) {
    case Kind::Node:
        return QStringLiteral("node");
    case Kind::Command:
        return QStringLiteral("command");
    case Kind::Condition:
        return QStringLiteral("condition");
    }
    return {};
}

QString headingOf(Kind kind)
{
    return nameOf(kind) + QLatin1Char('s');
}

QString placeOf(Kind kind)
{
    switch (kind) {
    case Kind::Node:
        return QStringLiteral("The \"Type\" of a node: of a top-level one, or of one in the "
                              "\"Next\" of another.");
    case Kind::Command:
        return QStringLiteral("A key in the \"Commands\" of a command node. Its table is its "
                              "value.");
    case Kind::Condition:
        return QStringLiteral("A key in the node that an edge leads to. Its table is its value.");
    }
    return {};
}

QString exampleOf(const TypeDescription& type)
{
    registerTypeExamples();
    QFile file(QStringLiteral(":/examples/%1.json").arg(type.name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList columnNames(const TableDescription& table, const QList<int>& layout)
{
    QStringList names;
    for (const int column : layout) {
        names.append(table.columns.at(column).name);
    }
    return names;
}

QString otherRows(const TableDescription& table)
{
    const int shortest = table.layouts.first().size();
    if (table.fateOf(shortest - 1) == RowFate::Skipped) {
        return QStringLiteral("A row of any other length is skipped.");
    }
    return QStringLiteral("Of a longer row the first %1 cells count. A shorter row ends the "
                          "process.")
        .arg(shortest);
}

QString typeText(const TypeDescription& type, bool color)
{
    const auto heading = [color](const QString& text) {
        return styled(text, Style::Heading, color) + QLatin1Char('\n');
    };
    return heading(type.name) + block(type.meaning, 2) + block(placeOf(type.kind), 2) +
           (type.table.columns.isEmpty() ? QString() : tableText(type.table, color)) +
           heading(QStringLiteral("example")) + indented(exampleOf(type), 2);
}

QString typesText(const QList<TypeDescription>& types, bool color)
{
    QString text;
    for (int index = 0; index < types.size(); ++index) {
        const TypeDescription& type = types.at(index);
        if (index == 0 || types.at(index - 1).kind != type.kind) {
            text += styled(headingOf(type.kind), Style::Heading, color) + QLatin1Char('\n');
        }
        text += QStringLiteral("  %1\n").arg(type.name) + block(type.meaning, 4);
        for (const QList<int>& layout : type.table.layouts) {
            text += QStringLiteral("    %1\n").arg(layoutText(type.table, layout));
        }
    }
    return text;
}

QString referencePage(const QList<TypeDescription>& types)
{
    QString page = QString::fromUtf8(pageStart);
    for (int index = 0; index < types.size(); ++index) {
        const TypeDescription& type = types.at(index);
        if (index == 0 || types.at(index - 1).kind != type.kind) {
            page += sectionStart(types, type.kind);
        }
        page += pageSection(type);
    }
    return page;
}

} // namespace tools
