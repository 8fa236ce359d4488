#include "tools/console/Json.h"

#include <QByteArray>
#include <QMetaType>

#include <cmath>
#include <cstddef>

namespace tools {

namespace {

template <typename Writer>
void writeString(Writer& writer, const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    writer.String(utf8.constData(), static_cast<rapidjson::SizeType>(utf8.size()));
}

template <typename Writer>
void writeDouble(Writer& writer, double number)
{
    // JSON has no word for these.
    if (std::isfinite(number)) {
        writer.Double(number);
    } else {
        writer.Null();
    }
}

template <typename Writer>
void writeValue(Writer& writer, const QVariant& value)
{
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        writer.Null();
        return;
    case QMetaType::Bool:
        writer.Bool(value.toBool());
        return;
    case QMetaType::Int:
    case QMetaType::LongLong:
        writer.Int64(value.toLongLong());
        return;
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        writer.Uint64(value.toULongLong());
        return;
    case QMetaType::Double:
        writeDouble(writer, value.toDouble());
        return;
    case QMetaType::QStringList:
    case QMetaType::QVariantList: {
        writer.StartArray();
        const QVariantList items = value.toList();
        for (const QVariant& item : items) {
            writeValue(writer, item);
        }
        writer.EndArray();
        return;
    }
    case QMetaType::QVariantMap: {
        writer.StartObject();
        const QVariantMap members = value.toMap();
        for (auto member = members.begin(); member != members.end(); ++member) {
            writeString(writer, member.key());
            writeValue(writer, member.value());
        }
        writer.EndObject();
        return;
    }
    default:
        writeString(writer, value.toString());
    }
}

} // namespace

QString toJsonText(const QVariant& value)
{
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    writeValue(writer, value);
    return QString::fromUtf8(buffer.GetString(), static_cast<int>(buffer.GetSize()));
}

JsonDocument::JsonDocument(const QString& command, int version) : writer(buffer)
{
    writer.SetIndent(' ', 2);
    writer.StartObject();
    add(QStringLiteral("format"), QStringLiteral("unitflow/") + command);
    add(QStringLiteral("version"), version);
}

void JsonDocument::add(const QString& key, const QVariant& value)
{
    writeKey(key);
    writeValue(writer, value);
}

void JsonDocument::addObject(const QString& key, const std::function<void()>& members)
{
    writeKey(key);
    writer.StartObject();
    members();
    writer.EndObject();
}

void JsonDocument::beginList(const QString& key)
{
    writeKey(key);
    writer.StartArray();
}

void JsonDocument::addItem(const std::function<void()>& members)
{
    writer.StartObject();
    members();
    writer.EndObject();
}

void JsonDocument::endList()
{
    writer.EndArray();
}

void JsonDocument::addItems(const QString& items)
{
    const QByteArray utf8 = items.toUtf8();
    writer.RawValue(utf8.constData(), static_cast<std::size_t>(utf8.size()),
                    rapidjson::kObjectType);
}

QString JsonDocument::take()
{
    QString text = QString::fromUtf8(buffer.GetString(), static_cast<int>(buffer.GetSize()));
    buffer.Clear();
    return text;
}

QString JsonDocument::finish(ExitCode exitCode)
{
    add(QStringLiteral("exitCode"), static_cast<int>(exitCode));
    writer.EndObject();
    return take() + QLatin1Char('\n');
}

void JsonDocument::writeKey(const QString& key)
{
    const QByteArray utf8 = key.toUtf8();
    writer.Key(utf8.constData(), static_cast<rapidjson::SizeType>(utf8.size()));
}

} // namespace tools
