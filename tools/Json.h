#ifndef UNITFLOW_TOOLS_JSON_H
#define UNITFLOW_TOOLS_JSON_H

#include "tools/ExitCode.h"

#include <QString>
#include <QVariant>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <functional>

namespace tools {

/// One line of JSON. Numbers keep their kind: a whole number never gets a fraction, any other
/// always has one or an exponent. An invalid variant is null.
QString toJsonText(const QVariant& value);

/// The one document that a subcommand writes with --json. Members stand in the order in which they
/// are added, behind those that every document begins with.
class JsonDocument {
public:
    /// `command` completes the format's name, "unitflow/<command>".
    JsonDocument(const QString& command, ExitCode exitCode);

    void add(const QString& key, const QVariant& value);
    /// A member that is an object; `members` adds what is in it.
    void addObject(const QString& key, const std::function<void()>& members);
    /// A member that is a list of objects, one for each item.
    template <typename List, typename Members>
    void addObjects(const QString& key, const List& items, const Members& members);

    /// Closes the document and gives its text, ended by a line feed. Nothing can be added then.
    QString finish();

private:
    void writeKey(const QString& key);

    rapidjson::StringBuffer buffer;
    rapidjson::PrettyWriter<rapidjson::StringBuffer> writer;
};

template <typename List, typename Members>
void JsonDocument::addObjects(const QString& key, const List& items, const Members& members)
{
    writeKey(key);
    writer.StartArray();
    for (const auto& item : items) {
        writer.StartObject();
        members(item);
        writer.EndObject();
    }
    writer.EndArray();
}

} // namespace tools

#endif
