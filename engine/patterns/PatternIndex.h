#ifndef UNITFLOW_PATTERNS_PATTERNINDEX_H
#define UNITFLOW_PATTERNS_PATTERNINDEX_H

#include "patterns/AnswerMemory.h"

#include <QList>
#include <QSharedDataPointer>
#include <QSharedPointer>
#include <QString>

#include <memory>

class NodeBase;

namespace patterns {

/// Which nodes a written URL concerns by their patterns.
///
/// The answer is that of a loop over all patterns in the order in which they were added, each
/// compiled anew. An index that lost a match, or answered from before a change, would be wrong, and
/// no saving excuses it. A pattern is passed over only when a text that each of its matches
/// contains is missing in the URL; one of which no such text is known is always tried.
///
/// A URL that was asked about of late costs a fraction of one match. A new one costs less than one,
/// and one more for each pattern that may match, however many there are; that is to say, whose
/// known text stands in the URL. A pattern is compiled when it is first tried; before that, it
/// takes some hundred bytes. Adding and sealing cost a few microseconds for each pattern.
///
/// One thread at a time. Copies share the patterns, also the compiled ones, and may be asked by
/// different threads; each remembers answers of its own.
class PatternIndex {
public:
    using Nodes = QList<QSharedPointer<NodeBase>>;

    PatternIndex();
    PatternIndex(const PatternIndex& other);
    PatternIndex& operator=(const PatternIndex& other);
    ~PatternIndex();

    /// Adds a pattern, valid or not, with the node that it concerns. Equal patterns share one
    /// expression from the next seal on.
    void add(const QString& pattern, const QSharedPointer<NodeBase>& node);

    /// Makes answers quick. What is added afterwards is tried one by one until the next time.
    void seal();

    void clear();

    /// The nodes whose patterns find a match in `url`, in the order in which they were added; a
    /// node is found once for each of its patterns. None for a URL that is no well-formed UTF-16.
    Nodes matches(const QString& url) const;

private:
    class Patterns;
    Nodes find(const QString& url) const;

    QSharedDataPointer<Patterns> patterns;               // null: none
    mutable std::unique_ptr<AnswerMemory<Nodes>> memory; // null: no answers since the last change
};

} // namespace patterns

#endif
