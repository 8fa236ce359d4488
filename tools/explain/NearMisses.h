#ifndef UNITFLOW_TOOLS_EXPLAIN_NEARMISSES_H
#define UNITFLOW_TOOLS_EXPLAIN_NEARMISSES_H

#include <QList>
#include <QString>
#include <QStringList>

namespace tools {

/// A URL or a pattern that a node watches and that nearly means a written URL.
struct NearMiss {
    enum class Kind {
        Url,         ///< it is spelled alike
        OtherCase,   ///< the pattern finds the URL when upper and lower case do not count
        LeadingPart, ///< the pattern finds the URL when its first names are left out
    };

    Kind kind;
    QString node;    ///< the top-level node
    QString watched; ///< without the prefix of patterns
    QString part;    ///< what the pattern finds: the URL, or what is left of it
};

/// What the nodes of a description nearly watch, by their names. What does mean `url` is no near
/// miss, nor is a URL that names another leaf of the source (`sourceUrls`): its author meant that.
QList<NearMiss> nearMisses(const QString& description, const QString& url,
                           const QStringList& sourceUrls);

/// The near miss in words.
QString wordsFor(const NearMiss& miss);

} // namespace tools

#endif
