#include "filehost/Manifest.h"

#include "filehost/Limits.h"
#include "filehost/Names.h"
#include "filehost/json/JsonEdits.h"
#include "filehost/json/JsonValue.h"
#include "host/PropertyManagerConst.h"

#include <QDir>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <vector>

namespace filehost {

namespace {

using json::JsonEdits;
using json::JsonText;
using json::Member;

/// What is to become of an entry.
struct Entry {
    QString instanceName;
    std::vector<Member> members;
};

QString nameKey()
{
    return QStringLiteral("instanceName");
}

/// By instance, in the order in which they are first named.
std::vector<Entry> grouped(const QList<ManifestUpdate>& updates)
{
    std::vector<Entry> entries;
    QHash<QString, std::size_t> places;
    for (const ManifestUpdate& update : updates) {
        if (!places.contains(update.instanceName)) {
            places.insert(update.instanceName, entries.size());
            entries.push_back({update.instanceName, {}});
        }
        std::vector<Member>& members = entries[places.value(update.instanceName)].members;
        const auto known = std::find_if(members.begin(), members.end(), [&](const Member& member) {
            return member.key == update.key;
        });
        if (known == members.end()) {
            members.push_back({update.key, update.value});
        } else {
            known->value = update.value;
        }
    }
    return entries;
}

/// The entries by their names. What is inside a property that is to be updated is none: it may be
/// replaced as a whole.
QHash<QString, JsonText::Index> entriesOf(const JsonText& text, const QSet<QString>& updatedKeys)
{
    QHash<QString, JsonText::Index> found;
    const JsonText::Index end = text.node(JsonText::root).next;
    JsonText::Index index = JsonText::root;
    while (index < end) {
        if (text.hasKey(index) && updatedKeys.contains(text.key(index))) {
            index = text.node(index).next;
            continue;
        }
        if (text.kind(index) == JsonText::Kind::Object) {
            const JsonText::Index name = text.member(index, nameKey());
            if (name != JsonText::none && text.kind(name) == JsonText::Kind::String &&
                !found.contains(text.value(name).toString())) {
                found.insert(text.value(name).toString(), index);
            }
        }
        ++index;
    }
    return found;
}

void editEntry(JsonEdits& edits, const JsonText& text, JsonText::Index entry,
               const std::vector<Member>& members)
{
    std::vector<Member> added;
    for (const Member& member : members) {
        const JsonText::Index present = text.member(entry, member.key);
        if (present == JsonText::none) {
            added.push_back(member);
        } else {
            edits.replace(present, member.value);
        }
    }
    JsonText::Index last = JsonText::none;
    for (const JsonText::Index member : text.children(entry)) {
        last = member;
    }
    edits.insert(entry, last, added);
}

/// A manifest with one entry that has nothing but its name.
std::shared_ptr<const JsonText> freshManifest(const QString& instanceName)
{
    QList<Problem> none;
    return JsonText::parse("[\n    {\n        \"" + nameKey().toUtf8() +
                               "\": " + json::writeScalar(instanceName) + "\n    }\n]\n",
                           {}, none);
}

} // namespace

File manifestFile(const QString& root)
{
    const QString path =
        QDir(PropertyManagerConst::getConfigurationFolderPath(root))
            .absoluteFilePath(PropertyManagerConst::getConfigurationManifestFilename());
    return {path, shownPath(root, path)};
}

bool readManifest(const QString& root, std::shared_ptr<const JsonText>& text,
                  QList<Problem>& problems)
{
    text.reset();
    const File file = manifestFile(root);
    if (const std::optional<Problem> unreadable =
            unreadableFolder(root, QFileInfo(file.path).path())) {
        problems.append(*unreadable);
        return false;
    }
    if (leadsOut(root, file.path)) {
        problems.append(leadingOut(root, file.path, QStringLiteral("the manifest")));
        return false;
    }
    if (!exists(file)) {
        return true;
    }
    std::shared_ptr<const JsonText> read = readJson(file, problems);
    if (!read) {
        return false;
    }
    if (read->kind(JsonText::root) != JsonText::Kind::Array) {
        problems.append(read->problem(
            Problem::Code::Shape, read->node(JsonText::root).value.begin,
            QStringLiteral("the manifest is a list with an object for each instance"),
            QStringLiteral("put the objects in brackets: [{\"instanceName\": ...}]")));
        return false;
    }
    text = std::move(read);
    return true;
}

QByteArray withUpdates(const JsonText* text, const QList<ManifestUpdate>& updates)
{
    if (text == nullptr) {
        return withUpdates(freshManifest(updates.first().instanceName).get(), updates);
    }
    QSet<QString> keys;
    for (const ManifestUpdate& update : updates) {
        keys.insert(update.key);
    }
    const QHash<QString, JsonText::Index> present = entriesOf(*text, keys);
    JsonEdits edits(*text);
    std::vector<std::vector<Member>> added;
    for (const Entry& entry : grouped(updates)) {
        if (present.contains(entry.instanceName)) {
            editEntry(edits, *text, present.value(entry.instanceName), entry.members);
        } else {
            added.push_back({{nameKey(), entry.instanceName}});
            added.back().insert(added.back().end(), entry.members.begin(), entry.members.end());
        }
    }
    edits.append(JsonText::root, added);
    return edits.apply();
}

QVariant valueForManifest(const QString& root, const QString& instanceName, const QString& key,
                          const QVariant& value, QList<Problem>& problems)
{
    constexpr int levelOfEntries = 2;
    const std::optional<QVariant> held = json::normalized(value, limits::depth - levelOfEntries);
    if (held && key.isValidUtf16() && instanceName.isValidUtf16() && key != nameKey()) {
        return *held;
    }
    problems.append(
        {Problem::Code::Shape, manifestFile(root).shown, 0, 0,
         QStringLiteral("the entry of \"%1\" cannot have this value under \"%2\"")
             .arg(instanceName, key),
         QStringLiteral("give a value that JSON can hold, under another key than \"%1\"")
             .arg(nameKey())});
    return {};
}

} // namespace filehost
