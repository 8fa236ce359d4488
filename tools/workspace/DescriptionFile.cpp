#include "tools/workspace/DescriptionFile.h"

#include "DependencyWalkerDefinitions.h"

#include <algorithm>

namespace tools {

namespace {

using filehost::DescriptionPlaces;
using filehost::json::JsonText;
using Kind = TypeDescription::Kind;

const QString& next()
{
    return DependencyWalkerDefinitions::getNextNodeKeyword();
}

/// The first cell of a row, which is what a condition's row watches.
QString firstCell(const QVariant& row)
{
    return row.toList().value(0).toString();
}

bool isAboutPatterns(const TypeDescription& condition)
{
    return condition.table.columns.first().role == CellRole::Pattern;
}

} // namespace

DescriptionFile::DescriptionFile(const filehost::Workspace& workspace, const QString& dependency)
{
    QList<filehost::Problem> known; // whoever runs the description reports them
    places = DescriptionPlaces::read(workspace, dependency, known);
}

QStringList DescriptionFile::successorPath(const QStringList& node, const QString& name,
                                           int index) const
{
    const QStringList edges = node + QStringList{next()};
    if (!name.isEmpty()) {
        return edges + QStringList{name};
    }
    const QStringList names = keysOf(edges);
    return index >= 0 && index < names.size() ? edges + QStringList{names.at(index)}
                                              : QStringList();
}

QStringList DescriptionFile::conditionPath(const QStringList& successor, const QString& type)
{
    return successor + QStringList{type};
}

QStringList DescriptionFile::commandPath(const QStringList& node, const QString& type)
{
    return node + QStringList{DependencyWalkerDefinitions::getCommandKeyword(), type};
}

QString DescriptionFile::placeOf(const QStringList& path) const
{
    return places ? shown(places->key(path)) : QString();
}

DescriptionFile::Row DescriptionFile::row(const QStringList& table, Kind kind, int row) const
{
    const TypeDescription* const type = TypeCatalog::find(kind, table.last());
    if (!places || type == nullptr) {
        return {row + 1, {}, {}};
    }
    const Table& found = read(table, *type);
    const int number = found.kept.value(row, row);
    return {number + 1, found.rows.value(number).toList(), shown(places->row(table, number))};
}

QList<DescriptionFile::Row> DescriptionFile::droppedRows(const QStringList& table, Kind kind) const
{
    QList<Row> dropped;
    const TypeDescription* const type = TypeCatalog::find(kind, table.last());
    if (!places || type == nullptr) {
        return dropped;
    }
    const Table& found = read(table, *type);
    for (int row = 0; row < found.rows.size(); ++row) {
        if (!std::binary_search(found.kept.begin(), found.kept.end(), row)) {
            const QVariant& cells = found.rows.at(row);
            dropped.append({row + 1, cells.toList(), shown(places->row(table, row)),
                            cells.canConvert(QMetaType::QVariantList)});
        }
    }
    return dropped;
}

QString DescriptionFile::cell(const Row& row, Kind kind, const QString& type,
                              std::initializer_list<CellRole> roles)
{
    const TypeDescription* const description = TypeCatalog::find(kind, type);
    const QList<int>* const layout = description == nullptr || row.cells.isEmpty()
                                         ? nullptr
                                         : description->table.layoutFor(row.cells.size());
    if (layout == nullptr) {
        return {};
    }
    for (int at = 0; at < layout->size() && at < row.cells.size(); ++at) {
        const CellRole role = description->table.columns.at(layout->at(at)).role;
        if (std::find(roles.begin(), roles.end(), role) != roles.end()) {
            return row.cells.at(at).toString();
        }
    }
    return {};
}

QString DescriptionFile::placeOfWatched(const QString& topLevelNode, const QString& text,
                                        bool isPattern) const
{
    return places ? watchedBelow({topLevelNode}, text, isPattern) : QString();
}

QString DescriptionFile::shown(const std::optional<DescriptionPlaces::Place>& place) const
{
    return place ? QStringLiteral("%1:%2:%3")
                       .arg(places->text().file(), QString::number(place->line),
                            QString::number(place->column))
                 : QString();
}

QString DescriptionFile::watchedBelow(const QStringList& node, const QString& text,
                                      bool isPattern) const
{
    for (const QString& name : keysOf(node + QStringList{next()})) {
        const QStringList successor = node + QStringList{next(), name};
        for (const TypeDescription& type : TypeCatalog::types(Kind::Condition)) {
            const QStringList table = conditionPath(successor, type.name);
            const QVariantList rows = rowsOf(table);
            const auto row = std::find_if(rows.begin(), rows.end(), [&](const QVariant& cells) {
                return firstCell(cells) == text;
            });
            if (row != rows.end() && isAboutPatterns(type) == isPattern) {
                return shown(places->row(table, static_cast<int>(row - rows.begin())));
            }
        }
        QString place = watchedBelow(successor, text, isPattern);
        if (!place.isEmpty()) {
            return place;
        }
    }
    return {};
}

/// The names of the children, in the order in which the engine meets them.
QStringList DescriptionFile::keysOf(const QStringList& path) const
{
    QStringList keys;
    const Index found = places ? places->find(path) : JsonText::none;
    if (found == JsonText::none || places->text().kind(found) != JsonText::Kind::Object) {
        return keys;
    }
    for (const Index child : places->text().children(found)) {
        const QString key = places->text().key(child);
        if (!key.startsWith(QLatin1Char('@'))) { // a property
            keys.append(key);
        }
    }
    std::sort(keys.begin(), keys.end());
    return keys;
}

const DescriptionFile::Table& DescriptionFile::read(const QStringList& path,
                                                    const TypeDescription& type) const
{
    if (last.path != path) {
        last.path = path;
        last.rows = rowsOf(path);
        last.kept = type.table.keptRows(last.rows);
    }
    return last;
}

QVariantList DescriptionFile::rowsOf(const QStringList& table) const
{
    const Index value = places->leafValue(places->find(table));
    return value == JsonText::none ? QVariantList() : places->text().value(value).toList();
}

} // namespace tools
