#include "checker/ColumnTarget.h"

#include <QRegularExpression>
#include <QStringList>

#include <limits>

namespace checker {

namespace {

constexpr QLatin1Char plus('+');
constexpr QLatin1Char minus('-');

/// The column of an expression, or a complaint about it.
void evaluate(const QString& expression, ColumnTarget& target)
{
    const QChar sign = expression.contains(plus) ? plus : minus;
    const QStringList operands = expression.split(sign);
    if (operands.size() > 2) {
        target.complaint = QStringLiteral("a column has at most two numbers");
        return;
    }
    qint64 value = 0;
    for (int i = 0; i < operands.size(); ++i) {
        bool isNumber = false;
        const int number = operands.at(i).trimmed().toInt(&isNumber);
        if (!isNumber) {
            target.complaint =
                QStringLiteral("\"%1\" is no whole number").arg(operands.at(i).trimmed());
            return;
        }
        value += i == 1 && sign == minus ? -qint64{number} : qint64{number};
    }
    if (value > std::numeric_limits<int>::max()) {
        target.complaint = QStringLiteral("the column %1 is beyond all arrays").arg(value);
    } else if (value < 0) {
        target.complaint = QStringLiteral("the column %1 is below zero").arg(value);
    } else {
        target.column = static_cast<int>(value);
    }
}

} // namespace

ColumnTarget readColumnTarget(const QString& target)
{
    static const QRegularExpression form(QStringLiteral(R"((.+)\[(.+)\])"));
    const QRegularExpressionMatch match = form.match(target);
    ColumnTarget read;
    read.arrayUrl = match.captured(1);
    if (read.arrayUrl.isEmpty()) {
        read.complaint = QStringLiteral("there is no URL followed by a column in brackets");
    } else {
        evaluate(match.captured(2), read);
    }
    return read;
}

} // namespace checker
