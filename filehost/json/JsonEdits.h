#ifndef UNITFLOW_FILEHOST_JSON_JSONEDITS_H
#define UNITFLOW_FILEHOST_JSON_JSONEDITS_H

#include "filehost/Export.h"
#include "filehost/json/JsonText.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <vector>

namespace filehost::json {

/// A member to be written.
struct Member {
    QString key;
    QVariant value; ///< normalized
};

/// Changes to a text that leave every byte alone that needs no change. They are collected on the
/// text as it was read and take effect together in `apply`; each value is edited at most once.
///
/// What is new is written in the style of what stands around it: line breaks, indentation, blanks
/// around colons and behind commas.
class UNITFLOW_FILEHOST_EXPORT JsonEdits {
public:
    using Index = JsonText::Index;

    /// `text` outlives the edits.
    explicit JsonEdits(const JsonText& text);

    /// Makes a value equal to a normalized one. Goes down into lists of the same length and into
    /// maps that lose no member; replaces the token of what differs, and of nothing else.
    void replace(Index index, const QVariant& value);

    /// Adds members to an object, in their order, behind one of its members; in front of all
    /// members when `behind` is `JsonText::none`. The object has no such keys yet.
    /// What is added at the same place later stands behind.
    void insert(Index object, Index behind, const std::vector<Member>& members);

    /// Adds objects of such members behind the last element of an array.
    void append(Index array, const std::vector<std::vector<Member>>& objects);

    /// Turns a value into an object that holds it under `key`, spelled as it is or as `replace`
    /// makes it, followed by other members.
    void wrap(Index index, const QString& key, const std::vector<Member>& members);

    /// The changed text.
    QByteArray apply() const;

private:
    struct Splice {
        Span old;
        QByteArray bytes;
    };

    void replaceByScalar(Index index, const QVariant& value);
    void replaceMembers(Index object, const QVariantMap& values);
    QByteArray colon(Index index) const;
    QByteArray separator(Index container) const;
    QByteArray objectText(const std::vector<Member>& members, Index model) const;
    quint32 beginOf(Index index) const;
    QByteArray memberText(const Member& member, const QByteArray& colon) const;

    const JsonText& text;
    std::vector<Splice> splices;
};

} // namespace filehost::json

#endif
