#include "trace/internal/JsonLine.h"

#include <QLocale>
#include <QMetaType>
#include <QVariantList>
#include <QVariantMap>

#include <cmath>

namespace trace::internal {

namespace {

/// Whether a character cannot stand for itself: half a surrogate pair has no UTF-8.
bool isToBeEscaped(const QString& text, int at)
{
    const QChar character = text.at(at);
    if (character.isHighSurrogate()) {
        return at + 1 == text.size() || !text.at(at + 1).isLowSurrogate();
    }
    if (character.isLowSurrogate()) {
        return at == 0 || !text.at(at - 1).isHighSurrogate();
    }
    return character < QLatin1Char(' ') || character == QLatin1Char('"') ||
           character == QLatin1Char('\\');
}

QByteArray jsonOf(const QString& text)
{
    QString escaped;
    escaped.reserve(text.size() + 2);
    escaped += QLatin1Char('"');
    for (int at = 0; at < text.size(); ++at) {
        if (isToBeEscaped(text, at)) {
            escaped += QStringLiteral("\\u%1").arg(text.at(at).unicode(), 4, 16, QLatin1Char('0'));
        } else {
            escaped += text.at(at);
        }
    }
    escaped += QLatin1Char('"');
    return escaped.toUtf8();
}

QByteArray jsonOf(double number)
{
    if (!std::isfinite(number)) {
        return "null";
    }
    QByteArray digits = QByteArray::number(number, 'g', QLocale::FloatingPointShortest);
    const bool looksWhole = !digits.contains('.') && !digits.contains('e');
    return looksWhole ? digits + ".0" : digits;
}

QByteArray jsonOf(const QVariant& value);

QByteArray jsonOf(const QVariantList& list)
{
    QByteArray json;
    for (const QVariant& element : list) {
        json += (json.isEmpty() ? "" : ",") + jsonOf(element);
    }
    return '[' + json + ']';
}

QByteArray jsonOf(const QVariantMap& map)
{
    QByteArray json;
    for (auto member = map.begin(); member != map.end(); ++member) {
        json += (json.isEmpty() ? "" : ",") + jsonOf(member.key()) + ':' + jsonOf(member.value());
    }
    return '{' + json + '}';
}

QByteArray jsonOf(const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        return "null";
    case QMetaType::Bool:
        return value.toBool() ? "true" : "false";
    case QMetaType::Short:
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return QByteArray::number(value.toLongLong());
    case QMetaType::UShort:
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return QByteArray::number(value.toULongLong());
    case QMetaType::Float:
    case QMetaType::Double:
        return jsonOf(value.toDouble());
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return jsonOf(value.toList());
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash:
        return jsonOf(value.toMap());
    default:
        return jsonOf(value.toString());
    }
}

} // namespace

JsonLine& JsonLine::add(QLatin1String key, const QString& text)
{
    return addRaw(key, jsonOf(text));
}

JsonLine& JsonLine::add(QLatin1String key, bool value)
{
    return addRaw(key, value ? "true" : "false");
}

JsonLine& JsonLine::add(QLatin1String key, int number)
{
    return addRaw(key, QByteArray::number(number));
}

JsonLine& JsonLine::addValue(QLatin1String key, const QVariant& value)
{
    return addRaw(key, jsonOf(value));
}

QByteArray JsonLine::finish() const
{
    return '{' + members + "}\n";
}

JsonLine& JsonLine::addRaw(QLatin1String key, const QByteArray& json)
{
    members += members.isEmpty() ? "\"" : ",\"";
    members += key.data();
    members += "\":";
    members += json;
    return *this;
}

} // namespace trace::internal
