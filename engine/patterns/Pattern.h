#ifndef UNITFLOW_PATTERNS_PATTERN_H
#define UNITFLOW_PATTERNS_PATTERN_H

#include <QRegularExpressionMatch>
#include <QString>
#include <QStringList>

#include <atomic>
#include <optional>

namespace patterns {

/// What the groups of a pattern captured in a URL.
struct GroupMatch {
    QStringList groupNames; ///< by group number, empty for an unnamed group
    QRegularExpressionMatch match;
};

/// A pattern that is compiled when it is asked for the first time, and then kept.
///
/// A match is found anywhere in a URL, by default options. An invalid pattern finds nothing, and
/// nobody is told, by Qt neither; nor is anything found in a URL that is no well-formed UTF-16.
///
/// Any number of threads may ask one pattern at a time. Nobody waits: threads that meet compile or
/// match more than once. A pattern that was never asked takes two words; its first question costs
/// tens of microseconds and some kilobytes.
class Pattern {
public:
    explicit Pattern(const QString& text);
    /// Takes over the text alone.
    Pattern(const Pattern& other);
    Pattern(Pattern&& other) noexcept;
    Pattern& operator=(const Pattern&) = delete;
    Pattern& operator=(Pattern&& other) noexcept;
    ~Pattern();

    const QString& text() const { return ownText; }

    bool isValid() const;
    bool hasGroups() const;

    /// Whether there is a match in `url`. The answer for the last URL is remembered.
    bool findsMatch(const QString& url) const;

    /// The match in `url`. A pattern without any capture group has none, even when it matches: it
    /// could not tell one target from another. The answer for the last URL is remembered.
    std::optional<GroupMatch> matchGroups(const QString& url) const;

    /// Whether there is a match in `url`, which must be well-formed; nothing is remembered. For
    /// asking many patterns about one URL, which is checked once instead of for each of them.
    bool findsMatchInWellFormed(const QString& url) const;

private:
    class Expression;
    const Expression& expression() const;

    QString ownText;
    mutable std::atomic<const Expression*> compiled{nullptr};
};

} // namespace patterns

#endif
