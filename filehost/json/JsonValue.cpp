#include "filehost/json/JsonValue.h"

#include <QStringList>
#include <QVariantHash>
#include <QVariantList>
#include <QVariantMap>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <functional>
#include <limits>

namespace filehost::json {

namespace {

std::optional<QVariant> text(const QString& characters)
{
    return characters.isValidUtf16() ? std::optional<QVariant>(characters) : std::nullopt;
}

std::optional<QVariant> number(double value)
{
    return qIsFinite(value) ? std::optional<QVariant>(value) : std::nullopt;
}

QVariant number(qulonglong value)
{
    constexpr auto largest = static_cast<qulonglong>(std::numeric_limits<qlonglong>::max());
    return value <= largest ? QVariant(static_cast<qlonglong>(value)) : QVariant(value);
}

std::optional<QVariant> list(const QVariantList& values, int depth)
{
    if (depth <= 0) {
        return std::nullopt;
    }
    QVariantList result;
    result.reserve(values.size());
    for (const QVariant& value : values) {
        const std::optional<QVariant> element = normalized(value, depth - 1);
        if (!element) {
            return std::nullopt;
        }
        result.append(*element);
    }
    return result;
}

std::optional<QVariant> map(const QVariantMap& values, int depth)
{
    if (depth <= 0) {
        return std::nullopt;
    }
    QVariantMap result;
    for (auto member = values.begin(); member != values.end(); ++member) {
        const std::optional<QVariant> value = normalized(member.value(), depth - 1);
        if (!value || !member.key().isValidUtf16()) {
            return std::nullopt;
        }
        result.insert(member.key(), *value);
    }
    return result;
}

/// Whether a character is written as one byte, itself.
bool isPlain(QChar character)
{
    return character >= QLatin1Char(' ') && character <= QLatin1Char('~') &&
           character != QLatin1Char('"') && character != QLatin1Char('\\');
}

QByteArray writePlain(const QString& text)
{
    QByteArray written(text.size() + 2, '"');
    std::transform(text.begin(), text.end(), written.begin() + 1,
                   [](QChar character) { return character.toLatin1(); });
    return written;
}

QByteArray writeText(const QString& text)
{
    if (std::all_of(text.begin(), text.end(), isPlain)) {
        return writePlain(text);
    }
    const QByteArray utf8 = text.toUtf8();
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    writer.String(utf8.constData(), static_cast<rapidjson::SizeType>(utf8.size()));
    return {buffer.GetString(), static_cast<int>(buffer.GetSize())};
}

} // namespace

std::optional<QVariant> normalized(const QVariant& value, int depth)
{
    switch (value.userType()) {
    case QMetaType::Nullptr:
    case QMetaType::Bool:
        return value;
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::Short:
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return QVariant(value.toLongLong());
    case QMetaType::UChar:
    case QMetaType::UShort:
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return number(value.toULongLong());
    case QMetaType::Float:
    case QMetaType::Double:
        return number(value.toDouble());
    case QMetaType::QChar:
    case QMetaType::QString:
        return text(value.toString());
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
        return list(value.toList(), depth);
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash:
        return map(value.toMap(), depth);
    default:
        return std::nullopt;
    }
}

bool isSame(const QVariant& left, const QVariant& right)
{
    if (left.userType() != right.userType()) {
        return false;
    }
    if (left.userType() == QMetaType::QVariantList) {
        const QVariantList leftList = left.toList();
        const QVariantList rightList = right.toList();
        return std::equal(leftList.begin(), leftList.end(), rightList.begin(), rightList.end(),
                          isSame);
    }
    if (left.userType() == QMetaType::QVariantMap) {
        const QVariantMap leftMap = left.toMap();
        const QVariantMap rightMap = right.toMap();
        return leftMap.keys() == rightMap.keys() &&
               std::equal(leftMap.begin(), leftMap.end(), rightMap.begin(), rightMap.end(), isSame);
    }
    if (left.userType() == QMetaType::Double) {
        // QVariant takes doubles that are nearly equal for equal.
        return std::equal_to<>()(left.toDouble(), right.toDouble());
    }
    return left == right;
}

QByteArray writeScalar(const QVariant& value)
{
    if (value.userType() == QMetaType::QString) {
        return writeText(value.toString());
    }
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    switch (value.userType()) {
    case QMetaType::Bool:
        writer.Bool(value.toBool());
        break;
    case QMetaType::LongLong:
        writer.Int64(value.toLongLong());
        break;
    case QMetaType::ULongLong:
        writer.Uint64(value.toULongLong());
        break;
    case QMetaType::Double:
        writer.Double(value.toDouble());
        break;
    default:
        writer.Null();
        break;
    }
    return {buffer.GetString(), static_cast<int>(buffer.GetSize())};
}

} // namespace filehost::json
