#include "filehost/DescriptionPlaces.h"

#include "filehost/Files.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"

#include <QDir>

#include <algorithm>
#include <string_view>
#include <utility>

namespace filehost {

using json::JsonText;
using json::Span;

namespace {

QString escaped(QString token)
{
    return token.replace(QLatin1Char('~'), QLatin1String("~0"))
        .replace(QLatin1Char('/'), QLatin1String("~1"));
}

/// A character of a string token: the bytes that spell it, and how many a QString has for it.
struct Spelling {
    std::size_t bytes;
    int units;
};

Spelling firstSpelling(std::string_view token)
{
    constexpr unsigned char twoBytes = 0xC0;
    constexpr unsigned char threeBytes = 0xE0;
    constexpr unsigned char fourBytes = 0xF0;
    if (token.front() == '\\') {
        constexpr std::size_t unicodeEscape = 6; // \u00B0
        return {token[1] == 'u' ? unicodeEscape : 2, 1};
    }
    const auto lead = static_cast<unsigned char>(token.front());
    if (lead >= fourBytes) {
        return {4, 2};
    }
    if (lead >= threeBytes) {
        return {3, 1};
    }
    return {lead >= twoBytes ? std::size_t{2} : std::size_t{1}, 1};
}

/// How many bytes spell the first `units` of a string's characters.
std::size_t spelledBytes(std::string_view characters, int units)
{
    std::size_t bytes = 0;
    while (units > 0 && bytes < characters.size()) {
        const Spelling spelling = firstSpelling(characters.substr(bytes));
        bytes += spelling.bytes;
        units -= spelling.units;
    }
    return bytes;
}

} // namespace

DescriptionPlaces::DescriptionPlaces(std::shared_ptr<const JsonText> text) : json(std::move(text))
{}

std::optional<DescriptionPlaces> DescriptionPlaces::read(const Workspace& workspace,
                                                         const QString& dependency,
                                                         QList<Problem>& problems)
{
    const QString path = workspace.dependencyPath(dependency, problems);
    if (path.isEmpty()) {
        return std::nullopt;
    }
    const auto text =
        readTree({path, QDir(workspace.directory()).relativeFilePath(path)}, problems);
    return text ? std::optional(DescriptionPlaces(text)) : std::nullopt;
}

DescriptionPlaces::Index DescriptionPlaces::find(const QStringList& path) const
{
    Index found = JsonText::root;
    for (const QString& name : path) {
        found = json->kind(found) == JsonText::Kind::Object ? json->member(found, name)
                                                            : JsonText::none;
        if (found == JsonText::none) {
            break;
        }
    }
    return found;
}

DescriptionPlaces::Index DescriptionPlaces::leafValue(Index leaf) const
{
    if (leaf == JsonText::none) {
        return JsonText::none;
    }
    const Index value =
        json->kind(leaf) == JsonText::Kind::Object
            ? json->member(leaf, ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue())
            : leaf;
    const bool isThere = value != JsonText::none && json->kind(value) != JsonText::Kind::Null;
    return isThere ? value : JsonText::none;
}

DescriptionPlaces::Index DescriptionPlaces::element(Index list, int number) const
{
    if (list == JsonText::none || json->kind(list) != JsonText::Kind::Array || number < 0) {
        return JsonText::none;
    }
    for (const Index child : json->children(list)) {
        if (number-- == 0) {
            return child;
        }
    }
    return JsonText::none;
}

std::optional<DescriptionPlaces::Place> DescriptionPlaces::key(const QStringList& path) const
{
    const Index member = find(path);
    return member == JsonText::none || !json->hasKey(member) ? std::nullopt
                                                             : std::optional(keyAt(member));
}

std::optional<DescriptionPlaces::Place> DescriptionPlaces::value(const QStringList& path) const
{
    const Index value = leafValue(find(path));
    return value == JsonText::none ? std::nullopt : std::optional(valueAt(value));
}

std::optional<DescriptionPlaces::Place> DescriptionPlaces::row(const QStringList& path,
                                                               int row) const
{
    const Index found = element(leafValue(find(path)), row);
    return found == JsonText::none ? std::nullopt : std::optional(valueAt(found));
}

std::optional<DescriptionPlaces::Place> DescriptionPlaces::cell(const QStringList& path, int row,
                                                                int cell) const
{
    const Index found = element(element(leafValue(find(path)), row), cell);
    return found == JsonText::none ? std::nullopt : std::optional(valueAt(found));
}

DescriptionPlaces::Place DescriptionPlaces::keyAt(Index member) const
{
    return placeOf(json->node(member).key, member);
}

DescriptionPlaces::Place DescriptionPlaces::valueAt(Index value) const
{
    return placeOf(json->node(value).value, value);
}

DescriptionPlaces::Place DescriptionPlaces::charactersAt(Index string, int first, int count) const
{
    const Span token = json->node(string).value;
    const std::string_view characters = json->slice({token.begin + 1, token.end - 1});
    const std::size_t before = spelledBytes(characters, first);
    const std::size_t bytes = spelledBytes(characters.substr(before), count);
    const auto begin = token.begin + 1 + static_cast<quint32>(before);
    return placeOf({begin, begin + static_cast<quint32>(bytes)}, string);
}

DescriptionPlaces::Place DescriptionPlaces::placeOf(Span bytes, Index value) const
{
    const json::Place begin = json->place(bytes.begin);
    const std::size_t lineEnd = json->slice(bytes).find_first_of("\r\n");
    const quint32 end =
        lineEnd == std::string_view::npos ? bytes.end : bytes.begin + static_cast<quint32>(lineEnd);
    return {begin.line, begin.column, json->place(end).column - begin.column, bytes,
            pointerTo(value)};
}

QString DescriptionPlaces::pointerTo(Index value) const
{
    QString pointer;
    Index at = JsonText::root;
    while (at != value) {
        int number = 0;
        Index below = at;
        for (const Index child : json->children(at)) {
            below = child;
            if (value < json->node(child).next) {
                break;
            }
            ++number;
        }
        at = below;
        pointer += QLatin1Char('/') +
                   (json->hasKey(at) ? escaped(json->key(at)) : QString::number(number));
    }
    return pointer;
}

} // namespace filehost
