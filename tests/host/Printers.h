#ifndef UNITFLOW_TESTS_HOST_PRINTERS_H
#define UNITFLOW_TESTS_HOST_PRINTERS_H

#include "Tree.h"

#include <QString>
#include <QVariant>

#include <ostream>

// How a failing expectation shows Qt's values.

inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QVariant& value, std::ostream* out)
{
    *out << testhost::describe(value).toStdString();
}

#endif
