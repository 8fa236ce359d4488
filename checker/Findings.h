#ifndef UNITFLOW_CHECKER_FINDINGS_H
#define UNITFLOW_CHECKER_FINDINGS_H

#include "checker/Codes.h"
#include "filehost/DescriptionPlaces.h"
#include "filehost/Workspace.h"

#include <QHash>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace checker {

using Place = filehost::DescriptionPlaces::Place;

/// Something in a file that the engine would not do as it is written, or at all.
struct Finding {
    Code code;
    QString file;    ///< as the user would name it
    Place place;     ///< a line of 0 when it has none in the file
    QString message; ///< what is wrong, and what the engine does about it without a word
    QString advice;  ///< the way out
    std::optional<filehost::Link> link; ///< the first link for which it is so, if it needs one
    int otherLinks = 0;                 ///< for how many more
};

/// Collects what is found in one description.
class Findings {
public:
    explicit Findings(const filehost::DescriptionPlaces& places);

    void add(Code code, const Place& place, const QString& message, const QString& advice);
    /// The same finding for another link is counted, not added, and its advice not asked for.
    void add(const filehost::Link& link, Code code, const Place& place, const QString& message,
             const std::function<QString()>& advice);

    bool isEmpty() const { return found.isEmpty(); }
    bool contains(Code code) const;

    /// In the order of the text.
    QList<Finding> take();

private:
    const filehost::DescriptionPlaces& places;
    QList<Finding> found;
    QHash<QString, int> ofLinks; ///< by what makes findings the same
};

/// Findings at one place stay in their order.
void sortByPlace(QList<Finding>& findings);

/// What a problem of a file is as a finding; `misshapen` for one that is JSON of another shape.
Finding findingOf(const filehost::Problem& problem, Code misshapen);

/// `text` in double quotes.
QString quoted(const QString& text);

/// "did you mean ...?"; `otherwise` when nothing among the candidates is alike.
QString didYouMean(const QString& name, const QStringList& candidates, const QString& otherwise);

} // namespace checker

#endif
