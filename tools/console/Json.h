#ifndef UNITFLOW_TOOLS_CONSOLE_JSON_H
#define UNITFLOW_TOOLS_CONSOLE_JSON_H

#include "tools/console/ExitCode.h"

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
/// are added, between those that every document begins and ends with.
class JsonDocument {
public:
    /// `command` completes the format's name, "unitflow/<command>".
    explicit JsonDocument(const QString& command, int version = 1);

    void add(const QString& key, const QVariant& value);
    /// A member that is an object; `members` adds what is in it.
    void addObject(const QString& key, const std::function<void()>& members);
    /// A member that is a list of objects, one for each item.
    template <typename List, typename Members>
    void addObjects(const QString& key, const List& items, const Members& members);

    /// A member that is a list of objects which come in over time: between these two, `addItem`
    /// adds one after the other, and nothing else may be added.
    void beginList(const QString& key);
    void addItem(const std::function<void()>& members);
    void endList();
    /// Adds one or more items that another document took from a list of its own, without the blanks
    /// around them.
    void addItems(const QString& items);

    /// The text since the last call. A document that is written as it grows needs no memory.
    QString take();

    /// Closes the document and gives the rest of its text, ended by a line feed. Nothing can be
    /// added then.
    QString finish(ExitCode exitCode);

private:
    void writeKey(const QString& key);

    rapidjson::StringBuffer buffer;
    rapidjson::PrettyWriter<rapidjson::StringBuffer> writer;
};

template <typename List, typename Members>
void JsonDocument::addObjects(const QString& key, const List& items, const Members& members)
{
    beginList(key);
    for (const auto& item : items) {
        addItem([&] { members(item); });
    }
    endList();
}

} // namespace tools

#endif
