#include "tools/console/Value.h"

#include "filehost/json/JsonText.h"
#include "tools/console/Json.h"
#include "tools/console/Text.h"

#include <QVariantList>

#include <algorithm>

namespace tools {

namespace {

using filehost::json::JsonText;

constexpr int widestShortValue = 36;
const QLatin1String noValue("(none)");
const QLatin1String argumentName("VALUE"); // stands for the file in problems

bool isSyntaxError(const filehost::Problem& problem)
{
    return problem.code == filehost::Problem::Code::Syntax;
}

/// False for text that is no JSON at the first glance, which spares reading it.
bool mayBeJson(QChar first)
{
    constexpr ushort byteOrderMark = 0xFEFF;
    switch (first.unicode()) {
    case '-':
    case '"':
    case '[':
    case '{':
    case 't':
    case 'f':
    case 'n':
    case byteOrderMark:
        return true;
    default:
        return first.isDigit();
    }
}

/// Whether text can stand without quotes and is still read as itself.
bool meansItself(const QString& text)
{
    const bool isPlain = !text.isEmpty() && text == text.trimmed() && text == printable(text);
    if (!isPlain || text == noValue) {
        return false;
    }
    if (!mayBeJson(text.front())) {
        return true;
    }
    QList<filehost::Problem> problems;
    const QVariant parsed = parseValue(text, problems);
    return parsed.type() == QVariant::String && parsed.toString() == text;
}

/// A shell takes away quotes, so a literal that is meant as text needs two pairs.
QString adviceOnText(const QString& literal)
{
    return QStringLiteral("for the text, write '\"%1\"'").arg(literal.trimmed());
}

} // namespace

QVariant parseValue(const QString& text, QList<filehost::Problem>& problems)
{
    QList<filehost::Problem> found;
    const auto json = JsonText::parse(text.toUtf8(), argumentName, found);
    if (std::any_of(found.begin(), found.end(), isSyntaxError)) {
        return text;
    }
    if (found.size() == 1 && found.first().column == 1) {
        found.first().line = 0; // the whole argument needs no place
        found.first().advice = adviceOnText(text);
    }
    problems += found;
    if (json == nullptr) {
        return {};
    }
    if (json->kind(JsonText::root) == JsonText::Kind::Null) {
        problems.append(
            {filehost::Problem::Code::Shape, argumentName, 0, 0,
             QStringLiteral("null is no value: it stands for a property that is not there"),
             adviceOnText(text)});
        return {};
    }
    return json->value(JsonText::root);
}

QString valueText(const QVariant& value)
{
    if (!value.isValid()) {
        return noValue;
    }
    if (value.type() == QVariant::String) {
        QString text = value.toString();
        if (meansItself(text)) {
            return text;
        }
    }
    return printable(toJsonText(value)); // JSON lets some control characters stand
}

QString shortValueText(const QVariant& value)
{
    QString text = valueText(value);
    if (displayWidth(text) <= widestShortValue) {
        return text;
    }
    return value.type() == QVariant::List ? sizeText(value.toList())
                                          : elided(text, widestShortValue);
}

bool isTable(const QVariant& value)
{
    const QVariantList rows = value.toList();
    return !rows.isEmpty() && std::all_of(rows.begin(), rows.end(), [](const QVariant& row) {
        return row.type() == QVariant::List;
    });
}

QString sizeText(const QVariantList& list)
{
    if (!isTable(list)) {
        return counted(list.size(), QStringLiteral("value"), QStringLiteral("values"));
    }
    int columns = 0;
    for (const QVariant& row : list) {
        columns = std::max(columns, row.toList().size());
    }
    return QStringLiteral("%1 of %2")
        .arg(counted(list.size(), QStringLiteral("row"), QStringLiteral("rows")),
             counted(columns, QStringLiteral("column"), QStringLiteral("columns")));
}

} // namespace tools
