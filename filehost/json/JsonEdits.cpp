#include "filehost/json/JsonEdits.h"

#include "filehost/json/JsonValue.h"

#include <QVariantList>
#include <QVariantMap>

#include <algorithm>
#include <string_view>
#include <utility>

namespace filehost::json {

namespace {

using Kind = JsonText::Kind;

QByteArray toBytes(std::string_view text)
{
    return {text.data(), static_cast<int>(text.size())};
}

bool isContainer(const QVariant& value)
{
    return value.userType() == QMetaType::QVariantList ||
           value.userType() == QMetaType::QVariantMap;
}

/// Texts without a blank behind their colons have none behind their commas either.
QByteArray comma(const QByteArray& colon)
{
    return colon.endsWith(':') ? QByteArrayLiteral(",") : QByteArrayLiteral(", ");
}

/// Writes on one line. The recursion is bounded by the depth of normalized values.
void appendValue(QByteArray& out, const QVariant& value, const QByteArray& colon)
{
    QByteArray separator;
    if (value.userType() == QMetaType::QVariantList) {
        out += '[';
        const QVariantList elements = value.toList();
        for (const QVariant& element : elements) {
            out += separator;
            appendValue(out, element, colon);
            separator = comma(colon);
        }
        out += ']';
    } else if (value.userType() == QMetaType::QVariantMap) {
        out += '{';
        const QVariantMap members = value.toMap();
        for (auto member = members.begin(); member != members.end(); ++member) {
            out += separator + writeScalar(member.key()) + colon;
            appendValue(out, member.value(), colon);
            separator = comma(colon);
        }
        out += '}';
    } else {
        out += writeScalar(value);
    }
}

} // namespace

JsonEdits::JsonEdits(const JsonText& text) : text(text) {}

void JsonEdits::replace(Index index, const QVariant& value)
{
    if (!isContainer(value)) {
        replaceByScalar(index, value);
        return;
    }
    const auto children = text.children(index);
    if (text.kind(index) == Kind::Array && value.userType() == QMetaType::QVariantList &&
        std::distance(children.begin(), children.end()) == value.toList().size()) {
        const QVariantList elements = value.toList();
        auto element = elements.begin();
        for (const Index child : children) {
            replace(child, *element++);
        }
        return;
    }
    if (text.kind(index) == Kind::Object && value.userType() == QMetaType::QVariantMap) {
        const QVariantMap members = value.toMap();
        if (std::all_of(children.begin(), children.end(),
                        [&](Index child) { return members.contains(text.key(child)); })) {
            replaceMembers(index, members);
            return;
        }
    }
    if (children.empty() && text.isValue(index, value)) {
        return;
    }
    Splice splice{text.node(index).value, {}};
    appendValue(splice.bytes, value, colon(index));
    splices.push_back(std::move(splice));
}

void JsonEdits::replaceByScalar(Index index, const QVariant& value)
{
    if (!text.isValue(index, value)) {
        splices.push_back({text.node(index).value, writeScalar(value)});
    }
}

void JsonEdits::replaceMembers(Index object, const QVariantMap& values)
{
    QVariantMap added = values;
    Index last = JsonText::none;
    for (const Index child : text.children(object)) {
        replace(child, added.take(text.key(child)));
        last = child;
    }
    std::vector<Member> members;
    for (auto member = added.begin(); member != added.end(); ++member) {
        members.push_back({member.key(), member.value()});
    }
    insert(object, last, members);
}

void JsonEdits::insert(Index object, Index behind, const std::vector<Member>& members)
{
    if (members.empty()) {
        return;
    }
    const QByteArray colonText = colon(object);
    const QByteArray between = ',' + separator(object);
    QByteArrayList written;
    for (const Member& member : members) {
        written.append(memberText(member, colonText));
    }
    if (behind != JsonText::none) {
        const quint32 end = text.node(behind).value.end;
        splices.push_back({{end, end}, between + written.join(between)});
        return;
    }
    const auto children = text.children(object);
    const quint32 begin = children.empty() ? text.node(object).value.begin + 1
                                           : text.node(*children.begin()).key.begin;
    splices.push_back(
        {{begin, begin}, written.join(between) + (children.empty() ? QByteArray() : between)});
}

void JsonEdits::append(Index array, const std::vector<std::vector<Member>>& objects)
{
    Index last = JsonText::none;
    for (const Index element : text.children(array)) {
        last = element;
    }
    const QByteArray between = ',' + separator(array);
    QByteArrayList written;
    for (const std::vector<Member>& members : objects) {
        written.append(objectText(members, last));
    }
    if (written.isEmpty()) {
        return;
    }
    const bool isFirst = last == JsonText::none;
    const quint32 end = isFirst ? text.node(array).value.begin + 1 : text.node(last).value.end;
    splices.push_back({{end, end}, (isFirst ? QByteArray() : between) + written.join(between)});
}

void JsonEdits::wrap(Index index, const QString& key, const std::vector<Member>& members)
{
    const Span value = text.node(index).value;
    const QByteArray colonText = colon(index);
    splices.push_back({{value.begin, value.begin}, '{' + writeScalar(key) + colonText});
    QByteArray rest;
    for (const Member& member : members) {
        rest += comma(colonText) + memberText(member, colonText);
    }
    splices.push_back({{value.end, value.end}, rest + '}'});
}

/// An object laid out like another one; on one line when that is no object or holds nothing.
QByteArray JsonEdits::objectText(const std::vector<Member>& members, Index model) const
{
    const bool hasModel = model != JsonText::none && text.kind(model) == Kind::Object &&
                          !text.children(model).empty();
    const QByteArray colonText = colon(hasModel ? model : JsonText::root);
    const QByteArray between = hasModel ? ',' + separator(model) : comma(colonText);
    QByteArrayList written;
    for (const Member& member : members) {
        written.append(memberText(member, colonText));
    }
    if (!hasModel) {
        return '{' + written.join(between) + '}';
    }
    const Span whole = text.node(model).value;
    quint32 lastEnd = whole.begin + 1;
    for (const Index child : text.children(model)) {
        lastEnd = text.node(child).value.end;
    }
    const quint32 firstBegin = beginOf(*text.children(model).begin());
    return '{' + toBytes(text.slice({whole.begin + 1, firstBegin})) + written.join(between) +
           toBytes(text.slice({lastEnd, whole.end}));
}

/// Where a member begins with its key, or an element.
quint32 JsonEdits::beginOf(Index index) const
{
    const JsonText::Node& node = text.node(index);
    return text.hasKey(index) ? node.key.begin : node.value.begin;
}

QByteArray JsonEdits::memberText(const Member& member, const QByteArray& colon) const
{
    QByteArray written = writeScalar(member.key) + colon;
    appendValue(written, member.value, colon);
    return written;
}

/// The colon and the blanks around it: as an object's first member has them, else as the value's
/// own key has them, else as the text's first member does (in the first element, for a list).
QByteArray JsonEdits::colon(Index index) const
{
    Index model = index;
    if (text.kind(index) == Kind::Object && !text.children(index).empty()) {
        model = *text.children(index).begin();
    } else if (!text.hasKey(index)) {
        model = JsonText::root;
        while (!text.hasKey(model) && !text.children(model).empty()) {
            model = *text.children(model).begin();
        }
    }
    if (!text.hasKey(model)) {
        return QByteArrayLiteral(": ");
    }
    const std::string_view found =
        text.slice({text.node(model).key.end, text.node(model).value.begin});
    return found.find_first_of("\r\n") == std::string_view::npos ? toBytes(found)
                                                                 : QByteArrayLiteral(": ");
}

/// What stands between a comma and the next member or element of a container: from the last line
/// break on, so that blank lines are not repeated, or the blanks of a container on one line.
QByteArray JsonEdits::separator(Index container) const
{
    quint32 end = text.node(container).value.begin + 1;
    bool isFirst = true;
    for (const Index child : text.children(container)) {
        std::string_view gap = text.slice({end, beginOf(child)});
        gap.remove_prefix(isFirst ? 0 : gap.find(',') + 1);
        const std::size_t lineFeed = gap.rfind('\n');
        if (lineFeed != std::string_view::npos) {
            const bool isPair = lineFeed > 0 && gap[lineFeed - 1] == '\r';
            return toBytes(gap.substr(isPair ? lineFeed - 1 : lineFeed));
        }
        if (!isFirst) {
            return toBytes(gap);
        }
        isFirst = false;
        end = text.node(child).value.end;
    }
    return comma(colon(container)).mid(1);
}

QByteArray JsonEdits::apply() const
{
    std::vector<const Splice*> ordered;
    ordered.reserve(splices.size());
    int added = 0;
    for (const Splice& splice : splices) {
        ordered.push_back(&splice);
        added += splice.bytes.size();
    }
    // Where one place has both, what is inserted goes in front of what is replaced.
    const auto isBefore = [](const Splice* left, const Splice* right) {
        return std::pair(left->old.begin, left->old.end) <
               std::pair(right->old.begin, right->old.end);
    };
    if (!std::is_sorted(ordered.begin(), ordered.end(), isBefore)) {
        std::stable_sort(ordered.begin(), ordered.end(), isBefore);
    }
    QByteArray result;
    result.reserve(text.bytes().size() + added);
    quint32 copied = 0;
    const auto copyUpTo = [&](quint32 end) {
        result.append(text.bytes().constData() + copied, static_cast<int>(end - copied));
    };
    for (const Splice* splice : ordered) {
        copyUpTo(splice->old.begin);
        result += splice->bytes;
        copied = splice->old.end;
    }
    copyUpTo(static_cast<quint32>(text.bytes().size()));
    return result;
}

} // namespace filehost::json
