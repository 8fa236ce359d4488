#ifndef UNITFLOW_TOOLS_TYPES_TYPES_H
#define UNITFLOW_TOOLS_TYPES_TYPES_H

#include "TypeDescription.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace tools {

// What users read about the types that a description can name. The types themselves, their columns
// and what becomes of a row come from the engine.

/// Nodes, commands and conditions, each in the order of their registration.
QList<TypeDescription> allTypes();

/// "node", "command", "condition".
QString nameOf(TypeDescription::Kind kind);

/// The heading over the types of a kind: "nodes".
QString headingOf(TypeDescription::Kind kind);

/// Where a description names types of that kind, in one sentence.
QString placeOf(TypeDescription::Kind kind);

/// A small description with the type in it. A resource of the program: <type>.json.
QString exampleOf(const TypeDescription& type);

/// The names of the columns that a layout has.
QStringList columnNames(const TableDescription& table, const QList<int>& layout);

/// What becomes of rows that follow no layout, in one sentence or two.
QString otherRows(const TableDescription& table);

/// A type on the terminal, within 80 columns.
QString typeText(const TypeDescription& type, bool color);

/// All types on the terminal, within 80 columns.
QString typesText(const QList<TypeDescription>& types, bool color);

/// All types as a page of the documents.
QString referencePage(const QList<TypeDescription>& types);

} // namespace tools

#endif
