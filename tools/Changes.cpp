#include "tools/Changes.h"

#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "tools/Console.h"
#include "tools/Json.h"
#include "tools/Leaves.h"
#include "tools/Table.h"
#include "tools/Text.h"
#include "tools/Value.h"

#include <algorithm>

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

int commonWidth(const QStringList& texts)
{
    int common = 0;
    for (const QString& text : texts) {
        const int width = displayWidth(text);
        if (width <= widestAlignedBefore) {
            common = std::max(common, width);
        }
    }
    return common;
}

QString totalText(const QList<LeafChange>& changes)
{
    int leaves = 0;
    int instances = 0;
    const LeafChange* last = nullptr;
    for (const LeafChange& change : changes) {
        const bool sameInstance = last != nullptr && last->instance == change.instance;
        instances += sameInstance ? 0 : 1;
        leaves += sameInstance && last->url == change.url ? 0 : 1;
        last = &change;
    }
    return QStringLiteral("%1 changed in %2.\n")
        .arg(counted(leaves, QStringLiteral("leaf"), QStringLiteral("leaves")),
             counted(instances, QStringLiteral("instance"), QStringLiteral("instances")));
}

} // namespace

Changes keepChanges(filehost::Session& session, bool dryRun, Console& console)
{
    Changes changes{session.changes()};
    if (dryRun) {
        return changes;
    }

    changes.allKept = session.commit();
    console.report(session.takeProblems());
    if (!changes.allKept) {
        changes.list = difference(changes.list, session.changes());
    }
    return changes;
}

QString changesText(const QList<LeafChange>& changes, bool color)
{
    if (changes.isEmpty()) {
        return {};
    }

    QStringList before;
    for (const LeafChange& change : changes) {
        before.append(shown(change, change.before));
    }
    const int width = commonWidth(before);

    Table table;
    for (int index = 0; index < changes.size(); ++index) {
        const LeafChange& change = changes.at(index);
        if (index == 0 || !(changes.at(index - 1).instance == change.instance)) {
            table.addHeading(titleOf(change.instance));
        }
        table.addRow({printable(change.url), propertyName(change.property),
                      padded(before.at(index), width) + QStringLiteral(" → ") +
                          shown(change, change.after)});
    }
    return table.toText(color) + totalText(changes);
}

void addChanges(JsonDocument& document, const QList<LeafChange>& changes)
{
    document.addObjects(QStringLiteral("changes"), changes, [&document](const LeafChange& change) {
        document.add(QStringLiteral("instance"), change.instance.name);
        document.add(QStringLiteral("process"), change.instance.kind == filehost::Kind::Process);
        document.add(QStringLiteral("url"), change.url);
        document.add(QStringLiteral("property"), change.property);
        document.add(QStringLiteral("before"), change.before);
        document.add(QStringLiteral("after"), change.after);
    });
}

QString titleOf(const Instance& instance)
{
    return instance.kind == filehost::Kind::Process
               ? printable(instance.name) + QStringLiteral(" (process)")
               : printable(instance.name);
}

} // namespace tools
