#ifndef UNITFLOW_TOOLS_WORKSPACE_DESCRIPTIONFILE_H
#define UNITFLOW_TOOLS_WORKSPACE_DESCRIPTIONFILE_H

#include "TypeDescription.h"
#include "filehost/DescriptionPlaces.h"
#include "filehost/Workspace.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <initializer_list>
#include <optional>

namespace tools {

/// What stands in the file of a description, and where, for those who tell of what runs.
///
/// A node is named by its path: the keys from the root down to it, the keywords included. Places
/// are "file:line:column"; what cannot be found is empty.
class DescriptionFile {
public:
    /// Knows nothing, as when there is only a trace.
    DescriptionFile() = default;
    DescriptionFile(const filehost::Workspace& workspace, const QString& dependency);

    /// The path of an edge's successor: by its name, or else by its number among the edges. Empty
    /// when neither is known.
    QStringList successorPath(const QStringList& node, const QString& name, int index) const;
    static QStringList conditionPath(const QStringList& successor, const QString& type);
    static QStringList commandPath(const QStringList& node, const QString& type);

    QString placeOf(const QStringList& path) const;

    /// A row of a parameter table.
    struct Row {
        int number;         ///< in the file, from 1
        QVariantList cells; ///< none without a file
        QString place;
        bool isList = true; ///< of anything else nothing is kept
    };

    /// The row that an observer calls `row`. Without a file its number is that among the rows that
    /// count.
    Row row(const QStringList& table, TypeDescription::Kind kind, int row) const;

    /// The rows that do not count and so are never told to an observer.
    QList<Row> droppedRows(const QStringList& table, TypeDescription::Kind kind) const;

    /// The cell of a row with that part to play; empty when there is none.
    static QString cell(const Row& row, TypeDescription::Kind kind, const QString& type,
                        std::initializer_list<CellRole> roles);

    /// Where a condition somewhere below a top-level node names a URL or pattern.
    QString placeOfWatched(const QString& topLevelNode, const QString& text, bool isPattern) const;

private:
    using Index = filehost::DescriptionPlaces::Index;

    QString shown(const std::optional<filehost::DescriptionPlaces::Place>& place) const;
    QString watchedBelow(const QStringList& node, const QString& text, bool isPattern) const;
    QStringList keysOf(const QStringList& path) const;
    QVariantList rowsOf(const QStringList& table) const;

    /// A table as it was read last: its rows are asked for one after the other.
    struct Table {
        QStringList path;
        QVariantList rows;
        QList<int> kept;
    };
    const Table& read(const QStringList& path, const TypeDescription& type) const;

    std::optional<filehost::DescriptionPlaces> places;
    mutable Table last;
};

} // namespace tools

#endif
