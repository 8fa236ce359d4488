#include "tools/workspace/Changes.h"

#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "tools/console/Console.h"
#include "tools/console/Json.h"
#include "tools/console/Names.h"
#include "tools/console/Table.h"
#include "tools/console/Text.h"
#include "tools/console/Value.h"
#include "tools/workspace/Leaves.h"
#include "tools/workspace/Manifest.h"

#include <QStringBuilder>
#include <QVariantMap>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace tools {

namespace {

using filehost::Instance;
using filehost::LeafChange;
using Keys = ConfigurationAndProcessDataDefinitions;

constexpr int widestAlignedBefore = 20;

bool isSame(const LeafChange& left, const LeafChange& right)
{
    return left.instance == right.instance && left.url == right.url &&
           left.property == right.property;
}

/// `all` without those that are in `some`.
QList<LeafChange> difference(const QList<LeafChange>& all, const QList<LeafChange>& some)
{
    QList<LeafChange> rest;
    for (const LeafChange& change : all) {
        const bool found = std::any_of(some.begin(), some.end(), [&](const LeafChange& other) {
            return isSame(change, other);
        });
        if (!found) {
            rest.append(change);
        }
    }
    return rest;
}

QString propertyName(const QString& key)
{
    if (key == Keys::getKeyDataPropertyUnitType()) {
        return QStringLiteral("unit");
    }
    if (key == Keys::getKeyDataPropertyArrayInformation()) {
        return QStringLiteral("columns");
    }
    return key.startsWith(QLatin1Char('@')) ? key.mid(1) : key;
}

QString shown(const LeafChange& change, const QVariant& value)
{
    if (change.property != Keys::getKeyDataPropertyArrayInformation() || !value.isValid()) {
        return shortValueText(value);
    }

    QStringList units;
    for (const Column& column : columnsOf(value)) {
        units.append(column.unit);
    }
    return units.join(QStringLiteral(", "));
}

/// A column whose unit changed.
struct ColumnChange {
    int index;
    QString name;
    QVariant before; ///< invalid when the column had no unit
    QVariant after;
};

/// The columns of an array whose units changed; none when it has got more or fewer columns.
QList<ColumnChange> columnChangesOf(const LeafChange& change)
{
    if (change.property != Keys::getKeyDataPropertyArrayInformation()) {
        return {};
    }
    const QVariantList before = change.before.toList();
    const QVariantList after = change.after.toList();
    if (before.size() != after.size()) {
        return {};
    }

    const QString unitKey = QStringLiteral("unitType");
    QList<ColumnChange> columns;
    for (int index = 0; index < after.size(); ++index) {
        const QVariantMap column = after.at(index).toMap();
        const QVariant unitBefore = before.at(index).toMap().value(unitKey);
        if (column.value(unitKey) != unitBefore) {
            columns.append({index, column.value(QStringLiteral("name")).toString(), unitBefore,
                            column.value(unitKey)});
        }
    }
    return columns;
}

/// One line of a change, cell by cell.
struct Row {
    const Instance* instance;
    QString place;
    QString property;
    QString before;
    QString after;
};

/// A column is named as descriptions name it, by its index, and as people do.
QString placeOf(const LeafChange& change, const ColumnChange& column)
{
    const QString place =
        QStringLiteral("%1[%2]").arg(printable(change.url), QString::number(column.index));
    return column.name.isEmpty() ? place : place + QLatin1Char(' ') + printable(column.name);
}

void addRows(const LeafChange& change, std::vector<Row>& rows)
{
    const QList<ColumnChange> columns = columnChangesOf(change);
    for (const ColumnChange& column : columns) {
        rows.push_back({&change.instance, placeOf(change, column), QStringLiteral("unit"),
                        shortValueText(column.before), shortValueText(column.after)});
    }
    if (columns.isEmpty()) {
        rows.push_back({&change.instance, printable(change.url), propertyName(change.property),
                        shown(change, change.before), shown(change, change.after)});
    }
}

std::vector<Row> rowsOf(const QList<LeafChange>& changes)
{
    std::vector<Row> rows;
    rows.reserve(static_cast<std::size_t>(changes.size()));
    for (const LeafChange& change : changes) {
        addRows(change, rows);
    }
    return rows;
}

int commonWidthOfBefore(const std::vector<Row>& rows)
{
    int common = 0;
    for (const Row& row : rows) {
        const int width = displayWidth(row.before);
        if (width <= widestAlignedBefore) {
            common = std::max(common, width);
        }
    }
    return common;
}

} // namespace

Changes keepChanges(filehost::Session& session, bool dryRun, Console& console,
                    const std::optional<filehost::Instance>& leader)
{
    Changes changes{session.changes(), 0, true};
    changes.allKept = updateManifest(session.workspace(), session, console);
    if (dryRun) {
        return changes;
    }

    const bool allWritten = session.commit(leader);
    changes.files = session.writtenFiles();
    console.report(session.takeProblems());
    if (!allWritten) {
        changes.allKept = false;
        changes.list = difference(changes.list, session.changes());
    }
    return changes;
}

QString changesText(const QList<LeafChange>& changes, bool color)
{
    return changes.isEmpty() ? QString()
                             : changeLines(changes, color) + totalText(countOf(changes));
}

QString changeLines(const QList<LeafChange>& changes, bool color)
{
    const std::vector<Row> rows = rowsOf(changes);
    const int width = commonWidthOfBefore(rows);

    Table table;
    const Instance* last = nullptr;
    for (const Row& row : rows) {
        if (last == nullptr || !(*last == *row.instance)) {
            table.addHeading(titleOf(*row.instance));
        }
        last = row.instance;
        const QString blanks(std::max(0, width - displayWidth(row.before)), QLatin1Char(' '));
        table.addRow({row.place, row.property},
                     row.before % blanks % QStringLiteral(" → ") % row.after);
    }
    return table.toText(color);
}

QString totalText(const ChangeCount& count)
{
    return QStringLiteral("%1 changed in %2.\n")
        .arg(counted(count.leaves, QStringLiteral("leaf"), QStringLiteral("leaves")),
             counted(count.instances, QStringLiteral("instance"), QStringLiteral("instances")));
}

ChangeCount countOf(const QList<LeafChange>& changes)
{
    ChangeCount count;
    const LeafChange* last = nullptr;
    for (const LeafChange& change : changes) {
        const bool sameInstance = last != nullptr && last->instance == change.instance;
        count.instances += sameInstance ? 0 : 1;
        count.leaves += sameInstance && last->url == change.url ? 0 : 1;
        last = &change;
    }
    return count;
}

void addChanges(JsonDocument& document, const QList<LeafChange>& changes)
{
    document.addObjects(QStringLiteral("changes"), changes,
                        [&](const LeafChange& change) { addChange(document, change); });
}

void addChange(JsonDocument& document, const LeafChange& change)
{
    document.add(QStringLiteral("instance"), change.instance.name);
    document.add(QStringLiteral("process"), change.instance.kind == filehost::Kind::Process);
    document.add(QStringLiteral("url"), change.url);
    document.add(QStringLiteral("property"), change.property);
    document.add(QStringLiteral("before"), change.before);
    document.add(QStringLiteral("after"), change.after);
    document.addObjects(QStringLiteral("columns"), columnChangesOf(change),
                        [&document](const ColumnChange& column) {
                            document.add(QStringLiteral("index"), column.index);
                            document.add(QStringLiteral("name"), column.name);
                            document.add(QStringLiteral("before"), column.before);
                            document.add(QStringLiteral("after"), column.after);
                        });
}

QString changeItems(const QList<LeafChange>& changes)
{
    JsonDocument document{QString()};
    document.beginList(QStringLiteral("changes"));
    document.take();
    for (const LeafChange& change : changes) {
        document.addItem([&] { addChange(document, change); });
    }
    return document.take().trimmed();
}

} // namespace tools
