#ifndef UNITFLOW_TESTS_FILEHOST_PRINTERS_H
#define UNITFLOW_TESTS_FILEHOST_PRINTERS_H

#include "filehost/Problem.h"

#include <QByteArray>
#include <QDebug>
#include <QString>
#include <QVariant>

#include <ostream>

// How GoogleTest shows Qt's types and ours when an expectation fails.

inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* out)
{
    *out << '"' << bytes.toStdString() << '"';
}

inline void PrintTo(const QVariant& value, std::ostream* out)
{
    QString shown;
    QDebug(&shown) << value;
    *out << shown.toStdString();
}

namespace filehost {

inline void PrintTo(const Problem& problem, std::ostream* out)
{
    *out << "problem " << static_cast<int>(problem.code) << ' ' << toText(problem).toStdString();
}

} // namespace filehost

#endif
