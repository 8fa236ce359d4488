#include "filehost/json/JsonText.h"

#include "filehost/Limits.h"
#include "filehost/json/JsonReader.h"
#include "filehost/json/JsonValue.h"

#include <QVariantList>
#include <QVariantMap>

#include <algorithm>
#include <utility>

namespace filehost::json {

namespace {

std::string_view view(const QByteArray& bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

/// Whether a byte of a string stands for itself alone.
bool isPlain(char byte)
{
    return byte != '\\' && static_cast<unsigned char>(byte) < 0x80U;
}

constexpr int linesPerMark = 64; // few marks even for a file of nothing but line breaks

std::vector<quint32> markLines(std::string_view text)
{
    std::vector<quint32> marks{0};
    int line = 0;
    for (auto at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at + 1)) {
        ++line;
        if (line % linesPerMark == 0) {
            marks.push_back(static_cast<quint32>(at + 1));
        }
    }
    return marks;
}

/// Bytes that begin a character, which all but continuation bytes do. An editor does not show a
/// byte order mark, so it does not count.
int countCharacters(std::string_view line)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (line.substr(0, byteOrderMark.size()) == byteOrderMark) {
        line.remove_prefix(byteOrderMark.size());
    }
    return static_cast<int>(std::count_if(line.begin(), line.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    }));
}

Problem leftOut(const QString& file, int count)
{
    return {Problem::Code::Size,
            file,
            0,
            0,
            count == 1 ? QStringLiteral("1 more problem is not listed")
                       : QStringLiteral("%1 more problems are not listed").arg(count),
            QStringLiteral("mend those above, then run this again")};
}

} // namespace

JsonText::JsonText(QByteArray bytes, QString file)
    : text(std::move(bytes)), fileName(std::move(file))
{}

Problem JsonText::tooLarge(const QString& file)
{
    return {Problem::Code::Size,
            file,
            0,
            0,
            QStringLiteral("the file is larger than %1 MiB").arg(limits::fileSize / (1024 * 1024)),
            QStringLiteral("split it into several instances")};
}

std::shared_ptr<const JsonText> JsonText::parse(const QByteArray& bytes, const QString& file,
                                                QList<Problem>& problems)
{
    if (bytes.size() > limits::fileSize) {
        problems.append(tooLarge(file));
        return nullptr;
    }
    const std::shared_ptr<JsonText> json(new JsonText(bytes, file));
    json->lineMarks = markLines(view(json->text));
    const ReadErrors errors = readNodes(view(json->text), json->nodes);
    for (const ReadError& error : errors.list) {
        QString message = error.message;
        if (error.firstOffset != 0) {
            const Place first = json->place(error.firstOffset);
            message += QStringLiteral(", first at %1:%2").arg(first.line).arg(first.column);
        }
        problems.append(json->problem(error.code, error.offset, message, error.advice));
    }
    if (errors.leftOut > 0) {
        problems.append(leftOut(file, errors.leftOut));
    }
    return errors.list.empty() ? json : nullptr;
}

JsonText::Index JsonText::find(Index object, QStringView key) const
{
    for (const Index child : children(object)) {
        if (isUnder(child, key)) {
            return child;
        }
    }
    return none;
}

QString JsonText::key(Index index) const
{
    return hasKey(index) ? decodeString(slice(nodes[index].key)) : QString();
}

/// Whether a string's token stands for a string. Decodes only what is not plain ASCII.
bool JsonText::says(Span token, QStringView string) const
{
    const std::string_view quoted = slice(token);
    const auto length = static_cast<qsizetype>(quoted.size()) - 2;
    if (length < string.size()) {
        return false; // a character takes a byte at least
    }
    const char* byte = quoted.data() + 1;
    if (length == string.size() && length > 0 &&
        string[length - 1] != QLatin1Char(byte[length - 1])) {
        return false; // only plain ASCII is as short as this, and alike names often end differently
    }
    for (const QChar character : string) {
        if (!isPlain(*byte)) {
            return decodeString(quoted) == string;
        }
        if (character != QLatin1Char(*byte)) {
            return false;
        }
        ++byte;
    }
    return length == string.size();
}

void JsonText::appendKey(Index index, QString& text) const
{
    const std::string_view quoted = slice(nodes[index].key);
    if (std::all_of(quoted.begin(), quoted.end(), isPlain)) {
        text += QLatin1String(quoted.data() + 1, static_cast<int>(quoted.size()) - 2);
    } else {
        text += key(index);
    }
}

QVariant JsonText::value(Index index) const
{
    const std::string_view token = slice(nodes[index].value);
    switch (kind(index)) {
    case Kind::Object: {
        QVariantMap map;
        for (const Index child : children(index)) {
            map.insert(key(child), value(child));
        }
        return map;
    }
    case Kind::Array: {
        QVariantList list;
        for (const Index child : children(index)) {
            list.append(value(child));
        }
        return list;
    }
    case Kind::String:
        return decodeString(token);
    case Kind::Whole:
        return decodeWhole(token);
    case Kind::Decimal:
        return decodeDecimal(token);
    case Kind::True:
        return true;
    case Kind::False:
        return false;
    case Kind::Null:
        break;
    }
    return QVariant::fromValue(nullptr);
}

bool JsonText::isValue(Index index, const QVariant& value) const
{
    if (kind(index) == Kind::String) {
        return value.userType() == QMetaType::QString && says(nodes[index].value, value.toString());
    }
    return isSame(this->value(index), value);
}

Place JsonText::place(quint32 offset) const
{
    const auto next = std::upper_bound(lineMarks.begin(), lineMarks.end(), offset);
    std::size_t begin = *std::prev(next);
    int line = static_cast<int>(next - lineMarks.begin() - 1) * linesPerMark + 1;
    for (auto at = view(text).find('\n', begin); at < offset; at = view(text).find('\n', begin)) {
        begin = at + 1;
        ++line;
    }
    return {line, countCharacters(slice({static_cast<quint32>(begin), offset})) + 1};
}

Problem JsonText::problem(Problem::Code code, quint32 offset, const QString& message,
                          const QString& advice) const
{
    const Place at = place(offset);
    return {code, fileName, at.line, at.column, message, advice};
}

} // namespace filehost::json
