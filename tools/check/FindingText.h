#ifndef UNITFLOW_TOOLS_CHECK_FINDINGTEXT_H
#define UNITFLOW_TOOLS_CHECK_FINDINGTEXT_H

#include "checker/Check.h"

#include <QList>
#include <QString>

namespace tools {

class JsonDocument;

// The findings of a run, in each of the forms in which they are written.

/// For people: where, what, the line with a mark below, the way out. At most 80 columns, but for
/// names that are longer.
QString findingsText(const checker::CheckedFile& file, bool color);

/// "2 errors and 1 note in 6 files."
QString findingsSummary(const QList<checker::CheckedFile>& files, bool isAllRead);

/// How many are more than notes.
int mistakesIn(const QList<checker::Finding>& findings);

/// Adds them as members of a document.
void addFindings(JsonDocument& document, const QList<checker::CheckedFile>& files);

/// For programs that read SARIF 2.1.0: one document, in one line. `base` leads to the files.
/// `unread` tells why something was not checked.
QString findingsSarif(const QList<checker::CheckedFile>& files,
                      const QList<filehost::Problem>& unread, const QString& base);

/// Commands for the log of a GitHub workflow, which shows them beside the lines.
QString findingsGithub(const QList<checker::CheckedFile>& files,
                       const QList<filehost::Problem>& unread, const QString& base);

} // namespace tools

#endif
