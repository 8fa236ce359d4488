#include "Commands/CommandBase.h"
#include "Conditions/ConditionBase.h"
#include "DependencyWalkerFactory.h"
#include "EngineTest.h"
#include "TypeDescription.h"

#include <QRegularExpression>

#include <algorithm>
#include <functional>
#include <string>

using testhost::table;
using Kind = TypeDescription::Kind;
using RowFate = TableDescription::RowFate;

namespace {

constexpr int longestRow = 6;

QStringList namesOf(Kind kind)
{
    QStringList names;
    for (const TypeDescription& type : TypeCatalog::types(kind)) {
        names.append(type.name);
    }
    return names;
}

template <class Factory>
QStringList sortedKeys()
{
    QStringList keys;
    for (const auto& entry : Factory::instance()) {
        keys.append(entry.first);
    }
    keys.sort();
    return keys;
}

QStringList sorted(QStringList names)
{
    names.sort();
    return names;
}

/// The types that have a table.
QList<TypeDescription> tableTypes()
{
    return TypeCatalog::types(Kind::Command) + TypeCatalog::types(Kind::Condition);
}

/// What the class behind a type keeps of these rows, as it prints them.
QString printed(const TypeDescription& type, const QString& rows)
{
    if (type.kind == Kind::Command) {
        QSharedPointer<CommandBase> command;
        DependencyWalkerFactory::generateCommand(type.name, table(rows), command);
        return command->getCommandAsString();
    }
    QSharedPointer<ConditionBase> condition;
    DependencyWalkerFactory::generateConditions(type.name, table(rows), condition);
    return condition->getConditionAsString();
}

/// A row of cells that name themselves: ["r2c0", "r2c1"].
QString rowText(int row, int length)
{
    QStringList cells;
    for (int cell = 0; cell < length; ++cell) {
        cells.append(QStringLiteral("\"r%1c%2\"").arg(row).arg(cell));
    }
    return '[' + cells.join(',') + ']';
}

/// The names of cells in the order in which they are printed.
QStringList cellsIn(const QString& text)
{
    QStringList cells;
    auto found = QRegularExpression("r\\d+c\\d+").globalMatch(text);
    while (found.hasNext()) {
        cells.append(found.next().captured());
    }
    return cells;
}

/// The cells of a row that its layout gives a meaning, in the order of the columns.
QStringList cellsByLayout(const TableDescription& description, int row, int length)
{
    const QList<int>* layout = description.layoutFor(length);
    QStringList cells;
    for (int column = 0; layout != nullptr && column < description.columns.size(); ++column) {
        const int cell = layout->indexOf(column);
        if (cell >= 0) {
            cells.append(QStringLiteral("r%1c%2").arg(row).arg(cell));
        }
    }
    return cells;
}

/// The fates of rows of 0, 1, 2 and so on cells, a letter each.
QString fates(const TableDescription& description)
{
    QString text;
    for (int length = 0; length <= longestRow; ++length) {
        switch (description.fateOf(length)) {
        case RowFate::Kept:
            text += 'K';
            break;
        case RowFate::Truncated:
            text += 'T';
            break;
        case RowFate::Skipped:
            text += 's';
            break;
        case RowFate::Fatal:
            text += '!';
            break;
        }
    }
    return text;
}

class TypeCatalogs : public testhost::EngineTest {};
using TypeCatalogsDeathTest = TypeCatalogs;

TEST_F(TypeCatalogs, list_all_types_in_the_order_of_their_registration)
{
    EXPECT_EQ(namesOf(Kind::Node), (QStringList{"SwitchNode", "CommandNode"}));
    EXPECT_EQ(namesOf(Kind::Command),
              (QStringList{"CommandSetUnitProperties", "CommandSetUnitPropertiesRegExp",
                           "CommandSetUnitByConfigurationParameter",
                           "CommandSetUnitByConfigurationParameterInstRegExp",
                           "CommandSetUnitByConfigurationParameterArray"}));
    EXPECT_EQ(namesOf(Kind::Condition),
              (QStringList{"ConditionValueComparator", "ConditionValueComparatorRegExp",
                           "ConditionWriteOnUrls", "ConditionWriteOnUrlsRegExp"}));
}

TEST_F(TypeCatalogs, describe_what_the_factories_make_and_nothing_else)
{
    using Factory = DependencyWalkerFactory;

    EXPECT_EQ(sorted(namesOf(Kind::Node)), sortedKeys<Factory::NodeFactory>());
    EXPECT_EQ(sorted(namesOf(Kind::Command)), sortedKeys<Factory::CommandFactory>());
    EXPECT_EQ(sorted(namesOf(Kind::Condition)), sortedKeys<Factory::ConditionFactory>());
}

TEST_F(TypeCatalogs, find_a_type_by_its_kind_and_its_exact_name)
{
    for (const Kind kind : {Kind::Node, Kind::Command, Kind::Condition}) {
        for (const QString& name : namesOf(kind)) {
            const TypeDescription* const type = TypeCatalog::find(kind, name);
            ASSERT_NE(type, nullptr) << name.toStdString();
            EXPECT_EQ(type->name, name);
            EXPECT_EQ(type->kind, kind);
            EXPECT_EQ(TypeCatalog::find(kind, name.toLower()), nullptr);
            EXPECT_EQ(TypeCatalog::find(kind, name.toUpper()), nullptr);
            EXPECT_EQ(TypeCatalog::find(kind, name + ' '), nullptr);
        }
    }
    EXPECT_EQ(TypeCatalog::find(Kind::Node, "ConditionWriteOnUrls"), nullptr);
    EXPECT_EQ(TypeCatalog::find(Kind::Command, "SwitchNode"), nullptr);
    EXPECT_EQ(TypeCatalog::find(Kind::Condition, QString()), nullptr);
}

TEST_F(TypeCatalogs, tell_which_node_runs_commands_and_which_asks_conditions)
{
    const TypeDescription* const switchNode = TypeCatalog::find(Kind::Node, "SwitchNode");
    EXPECT_FALSE(switchNode->runsCommands);
    EXPECT_TRUE(switchNode->asksConditions);
    const TypeDescription* const commandNode = TypeCatalog::find(Kind::Node, "CommandNode");
    EXPECT_TRUE(commandNode->runsCommands);
    EXPECT_FALSE(commandNode->asksConditions);
}

TEST_F(TypeCatalogs, explain_each_type_and_each_column)
{
    for (const TypeDescription& type : TypeCatalog::types(Kind::Node) + tableTypes()) {
        EXPECT_TRUE(type.meaning.endsWith('.')) << type.name.toStdString();
        EXPECT_EQ(type.table.columns.isEmpty(), type.kind == Kind::Node) << type.name.toStdString();
        for (const ColumnDescription& column : type.table.columns) {
            EXPECT_FALSE(column.name.isEmpty()) << type.name.toStdString();
            EXPECT_FALSE(column.meaning.isEmpty()) << type.name.toStdString();
            EXPECT_FALSE(column.meaning.endsWith('.')) << type.name.toStdString();
        }
    }
}

TEST_F(TypeCatalogs, lay_rows_out_by_their_columns_the_shortest_first)
{
    for (const TypeDescription& type : tableTypes()) {
        int shorter = 0;
        for (const QList<int>& layout : type.table.layouts) {
            EXPECT_GT(layout.size(), shorter) << type.name.toStdString();
            shorter = layout.size();
            EXPECT_TRUE(std::is_sorted(layout.begin(), layout.end())) << type.name.toStdString();
            EXPECT_GE(layout.first(), 0) << type.name.toStdString();
            EXPECT_LT(layout.last(), type.table.columns.size()) << type.name.toStdString();
        }
        EXPECT_EQ(shorter, type.table.columns.size()) << type.name.toStdString();
    }
}

TEST_F(TypeCatalogs, tell_the_fate_of_a_row_by_its_length)
{
    QStringList table;
    for (const TypeDescription& type : tableTypes()) {
        table.append(fates(type.table) + ' ' + type.name);
    }
    EXPECT_EQ(
        table,
        (QStringList{"!!KKTTT CommandSetUnitProperties", "!!!KKTT CommandSetUnitPropertiesRegExp",
                     "sssKsss CommandSetUnitByConfigurationParameter",
                     "ssKssss CommandSetUnitByConfigurationParameterInstRegExp",
                     "ssKKsss CommandSetUnitByConfigurationParameterArray",
                     "sssKsss ConditionValueComparator", "sssKsss ConditionValueComparatorRegExp",
                     "sKsssss ConditionWriteOnUrls", "sKsssss ConditionWriteOnUrlsRegExp"}));
}

TEST_F(TypeCatalogs, know_which_rows_the_class_keeps_and_where_it_finds_their_cells)
{
    for (const TypeDescription& type : tableTypes()) {
        QStringList rows{"7", "\"text\"", "{\"@val\": [1, 2]}", "null"};
        QList<int> lengths{-1, -1, -1, -1};
        for (int length = 0; length <= longestRow; ++length) {
            if (type.table.fateOf(length) != RowFate::Fatal) {
                rows.append(rowText(rows.size(), length));
                lengths.append(length);
            }
        }
        const QString text = '[' + rows.join(',') + ']';

        QList<int> kept;
        QStringList cells;
        for (int row = 0; row < lengths.size(); ++row) {
            if (lengths.at(row) >= 0 && type.table.layoutFor(lengths.at(row)) != nullptr) {
                kept.append(row);
                cells += cellsByLayout(type.table, row, lengths.at(row));
            }
        }
        const QVariantList content = table(text)->getDataProperty("@val").toList();
        EXPECT_EQ(type.table.keptRows(content), kept) << type.name.toStdString();
        EXPECT_EQ(cellsIn(printed(type, text)), cells) << type.name.toStdString();
    }
}

TEST_F(TypeCatalogsDeathTest, call_those_rows_fatal_that_end_the_process)
{
    int fatal = 0;
    for (const TypeDescription& type : tableTypes()) {
        for (int length = 0; length <= longestRow; ++length) {
            if (type.table.fateOf(length) == RowFate::Fatal) {
                ++fatal;
                EXPECT_DEATH(printed(type, '[' + rowText(0, length) + ']'), "index out of range")
                    << type.name.toStdString() << " with " << length;
            }
        }
    }
    EXPECT_EQ(fatal, 5);
}

} // namespace
