#ifndef UNITFLOW_INTERNAL_PARAMETERTABLE_H
#define UNITFLOW_INTERNAL_PARAMETERTABLE_H

#include "TypeDescription.h"
#include "host/ConfigurationAndProcessDataBase.h"

#include <QVarLengthArray>
#include <QVariant>
#include <QVariantList>

#include <utility>

namespace internal {

/// A row of a parameter table, by its columns.
class ParameterRow {
public:
    ParameterRow() = default;
    ParameterRow(QVariantList cells, const QList<int>& layout)
        : cells(std::move(cells)), layout(&layout)
    {}

    /// Invalid when the row has no such column.
    QVariant cell(int column) const
    {
        const int position = layout->indexOf(column);
        return position < 0 ? QVariant() : cells.at(position);
    }
    QString text(int column) const { return cell(column).toString(); }

private:
    QVariantList cells;
    const QList<int>* layout = nullptr;
};

using ParameterRows = QVarLengthArray<ParameterRow, 4>; // most tables are short

/// The rows of the parameter table that a command's or condition's description holds, but for those
/// that are skipped and those that are no lists. Empty when `description` is null or has no value.
/// `table` must outlive the rows.
ParameterRows parameterRows(const BaseClassSharedPointer& description,
                            const TableDescription& table);

} // namespace internal

#endif
