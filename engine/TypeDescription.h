#ifndef UNITFLOW_TYPEDESCRIPTION_H
#define UNITFLOW_TYPEDESCRIPTION_H

#include "Export.h"

#include <QList>
#include <QString>
#include <QVariantList>

/// What the engine makes of a cell of a parameter table.
enum class CellRole {
    SourceUrl,         ///< a URL below the source root
    TargetUrl,         ///< a URL below the target root, after the link's first parameter
    TargetUrlTemplate, ///< the same, but with "%1" and "%2" for the link's two parameters
    Pattern,           ///< a regular expression, searched in the written URL
    PatternWithGroups, ///< the same; without a capture group its row never applies
    TargetUrlByGroups, ///< a target URL with "(?<name>)" for what groups of the pattern captured
    TargetColumn,      ///< the URL of an array below the target root, and a column: "Table[2+1]"
    Unit,              ///< the unit to set; empty disables the row
    Comparator,        ///< "==" or "!="; any other text makes the comparison fail
    Constant,          ///< what the value of the source is compared with
    Remark,            ///< kept and shown, but without effect
};

/// A column of a parameter table.
struct ColumnDescription {
    QString name;    ///< as in messages and documents: "target URL"
    QString meaning; ///< what a cell is, without a full stop
    CellRole role;
};

/// A parameter table: which columns its rows have.
struct UNITFLOW_EXPORT TableDescription {
    /// What becomes of a row.
    enum class RowFate {
        Kept,
        Truncated, ///< kept without its last cells
        Skipped,   ///< as if it were not there
        Fatal,     ///< an assertion ends the process
    };

    QList<ColumnDescription> columns;
    /// The layouts of a row: indexes of columns, one for each cell; the shortest first. A row
    /// follows the layout that has as many cells.
    QList<QList<int>> layouts;
    /// Whether rows of other lengths are skipped. Otherwise longer ones follow the shortest layout,
    /// and shorter ones end the process.
    bool skipsOtherLengths = true;

    RowFate fateOf(int cellCount) const;
    /// The layout that a row follows, null when it is skipped. A row that ends the process follows
    /// one that asks for more cells than it has.
    const QList<int>* layoutFor(int cellCount) const;
    /// The numbers of those rows that are kept: the place in this list is what an observer calls
    /// the row. A row that is no list is never kept.
    QList<int> keptRows(const QVariantList& rows) const;
};

/// A type that a description of a graph can name.
struct TypeDescription {
    enum class Kind { Node, Command, Condition };

    Kind kind;
    QString name;    ///< as descriptions write it
    QString meaning; ///< one sentence
    /// Of a command or a condition. What a condition's first column holds is what it watches.
    TableDescription table;
    /// Of a node: whether it runs what stands under "Commands".
    bool runsCommands = false;
    /// Of a node: whether it asks the conditions on its edges and follows each edge they allow.
    /// Otherwise it asks none and follows an edge only if it is the only one.
    bool asksConditions = false;
};

/// The engine's own types. What a host registers beside them is not known here.
///
/// Any thread, once the library is loaded.
class UNITFLOW_EXPORT TypeCatalog {
public:
    /// In the order of their registration.
    static QList<TypeDescription> types(TypeDescription::Kind kind);

    /// The type of that name, case included; null when there is none. Valid until the library is
    /// unloaded.
    static const TypeDescription* find(TypeDescription::Kind kind, const QString& name);
};

#endif
