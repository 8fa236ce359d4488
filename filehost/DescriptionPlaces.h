#ifndef UNITFLOW_FILEHOST_DESCRIPTIONPLACES_H
#define UNITFLOW_FILEHOST_DESCRIPTIONPLACES_H

#include "filehost/Export.h"
#include "filehost/Workspace.h"
#include "filehost/json/JsonText.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace filehost {

/// Where the nodes, tables and cells of a description stand in its file.
///
/// A path is the names from the root down, those of the keywords included:
/// "Units", "Next", "Pressure", "Commands", "CommandSetUnitProperties". The value of what it names
/// is that of a leaf: what stands under "@value", or the member itself when it is written the short
/// way. Nothing is found for what is not there.
///
/// Looking up a path looks at one member after the other of each object in the way.
class UNITFLOW_FILEHOST_EXPORT DescriptionPlaces {
public:
    using Index = json::JsonText::Index;

    struct Place {
        int line;         ///< from 1
        int column;       ///< from 1, in characters, as problems count them
        int length;       ///< in characters; of something longer than a line, those on its first
        json::Span bytes; ///< in the file
        QString pointer;  ///< the JSON Pointer of the value, also when the place is that of its key
    };

    explicit DescriptionPlaces(std::shared_ptr<const json::JsonText> text);

    /// Reads the file of a description; nothing with problems when that cannot be done.
    static std::optional<DescriptionPlaces>
    read(const Workspace& workspace, const QString& dependency, QList<Problem>& problems);

    const json::JsonText& text() const { return *json; }

    /// A key with its quotes.
    std::optional<Place> key(const QStringList& path) const;
    /// A value with its quotes or brackets.
    std::optional<Place> value(const QStringList& path) const;
    /// A row of a table, by its number among all elements of the list.
    std::optional<Place> row(const QStringList& path, int row) const;
    std::optional<Place> cell(const QStringList& path, int row, int cell) const;

    // The same for those who walk the text themselves.

    /// What a path names; `JsonText::none` when it names nothing.
    Index find(const QStringList& path) const;
    /// The value of a leaf; `JsonText::none` when it has none.
    Index leafValue(Index leaf) const;
    /// An element of a list; `JsonText::none` when it is no list or has no such element.
    Index element(Index list, int number) const;
    Place keyAt(Index member) const;
    Place valueAt(Index value) const;
    /// Where some of a string's characters stand, those that it has when its escapes are resolved,
    /// counted as a QString counts. The end of the string when it has no such characters.
    Place charactersAt(Index string, int first, int count) const;

private:
    Place placeOf(json::Span bytes, Index value) const;
    QString pointerTo(Index value) const;

    std::shared_ptr<const json::JsonText> json;
};

} // namespace filehost

#endif
