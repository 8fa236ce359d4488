#include "filehost/Problem.h"

#include <QStringList>

namespace filehost {

QString toText(const Problem& problem)
{
    QStringList place;
    if (!problem.file.isEmpty()) {
        place.append(problem.file);
    }
    if (problem.line > 0) {
        place.append(QString::number(problem.line));
        place.append(QString::number(problem.column));
    }
    QString text =
        place.isEmpty() ? QString() : place.join(QLatin1Char(':')) + QStringLiteral(": ");
    text += problem.message;
    if (!problem.advice.isEmpty()) {
        text += QStringLiteral("\n    ") + problem.advice;
    }
    return text;
}

} // namespace filehost
