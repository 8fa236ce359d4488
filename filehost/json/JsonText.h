#ifndef UNITFLOW_FILEHOST_JSON_JSONTEXT_H
#define UNITFLOW_FILEHOST_JSON_JSONTEXT_H

#include "filehost/Export.h"
#include "filehost/Problem.h"

#include <QByteArray>
#include <QString>
#include <QStringView>
#include <QVariant>

#include <cstddef>
#include <iterator>
#include <memory>
#include <string_view>
#include <vector>

namespace filehost::json {

/// Where something stands in a text, as people count.
struct Place {
    int line;   ///< from 1
    int column; ///< from 1, in characters
};

/// Half-open range of bytes in a text.
struct Span {
    quint32 begin;
    quint32 end;
};

/// A JSON text that was read: its bytes, and where each value of it stands. Never changes, so any
/// number of trees and threads may share one.
///
/// Values are addressed by their index in document order; a container comes before what it holds,
/// and the root is 0.
class UNITFLOW_FILEHOST_EXPORT JsonText {
public:
    using Index = quint32;

    enum class Kind : quint8 { Object, Array, String, Whole, Decimal, True, False, Null };

    struct Node {
        Kind kind;
        Span key;   ///< the member's key with its quotes; empty for the root and in arrays
        Span value; ///< the whole value, quotes and brackets included
        Index next; ///< the first index behind this value and all it holds
    };

    /// The indexes directly in a container, in document order; nothing for a scalar.
    class Children {
    public:
        class Iterator {
        public:
            using iterator_category = std::forward_iterator_tag;
            using value_type = Index;
            using difference_type = std::ptrdiff_t;
            using pointer = const Index*;
            using reference = Index;

            Iterator(const std::vector<Node>& nodes, Index index) : nodes(&nodes), index(index) {}
            Index operator*() const { return index; }
            Iterator& operator++()
            {
                index = (*nodes)[index].next;
                return *this;
            }
            bool operator==(const Iterator& other) const { return index == other.index; }
            bool operator!=(const Iterator& other) const { return index != other.index; }

        private:
            const std::vector<Node>* nodes;
            Index index;
        };

        Children(const std::vector<Node>& nodes, Index container)
            : nodes(&nodes), container(container)
        {}
        Iterator begin() const { return {*nodes, container + 1}; }
        Iterator end() const { return {*nodes, (*nodes)[container].next}; }
        bool empty() const { return begin() == end(); }

    private:
        const std::vector<Node>* nodes;
        Index container;
    };

    static constexpr Index root = 0;
    static constexpr Index none = 0xFFFFFFFF;

    /// Reads UTF-8 bytes; a byte order mark may lead them. Null with problems added when they are
    /// no JSON or beyond the limits: all problems up to the first one that makes the rest
    /// unreadable, in the order of the text; beyond `limits::problemCount` one more that counts the
    /// others. `file` is what the problems name. Does no input or output and uses no stack that
    /// grows with the text.
    static std::shared_ptr<const JsonText> parse(const QByteArray& bytes, const QString& file,
                                                 QList<Problem>& problems);

    /// What `parse` says of bytes beyond `limits::fileSize`, for those who know without reading.
    static Problem tooLarge(const QString& file);

    const QByteArray& bytes() const { return text; }

    /// What `parse` was told.
    const QString& file() const { return fileName; }

    const Node& node(Index index) const { return nodes[index]; }
    Kind kind(Index index) const { return nodes[index].kind; }
    Children children(Index index) const { return {nodes, index}; }

    /// The bytes of a span, as they stand in the text.
    std::string_view slice(Span span) const
    {
        return {text.constData() + span.begin, span.end - span.begin};
    }

    /// The member of an object under a key; `none` when it has no such member. Looks at one member
    /// after the other.
    Index member(Index object, const QString& key) const { return find(object, key); }
    Index find(Index object, QStringView key) const;

    /// Whether the value is an object's member.
    bool hasKey(Index index) const { return nodes[index].key.end != 0; }

    /// The key of a member, decoded; empty for other values.
    QString key(Index index) const;
    void appendKey(Index index, QString& text) const;

    /// Whether `key` gives just this.
    bool isUnder(Index index, QStringView key) const
    {
        return hasKey(index) ? says(nodes[index].key, key) : key.isEmpty();
    }

    /// Whether `value` gives just this.
    bool isValue(Index index, const QVariant& value) const;

    /// The value, decoded: bool, qlonglong (qulonglong beyond its range), double, QString,
    /// QVariantList or QVariantMap; a null pointer variant for null.
    QVariant value(Index index) const;

    Place place(quint32 offset) const;

    /// A problem at a place of this text.
    Problem problem(Problem::Code code, quint32 offset, const QString& message,
                    const QString& advice) const;

private:
    JsonText(QByteArray bytes, QString file);
    bool says(Span token, QStringView string) const;

    QByteArray text;
    QString fileName;
    std::vector<Node> nodes;
    std::vector<quint32> lineMarks; ///< where every so many lines one begins, to find places fast
};

} // namespace filehost::json

#endif
