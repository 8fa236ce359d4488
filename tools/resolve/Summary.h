#ifndef UNITFLOW_TOOLS_RESOLVE_SUMMARY_H
#define UNITFLOW_TOOLS_RESOLVE_SUMMARY_H

#include "tools/workspace/Changes.h"
#include "tools/workspace/Links.h"

#include <QString>

namespace tools {

class JsonDocument;

/// What came of running links.
struct Summary {
    int resolved = 0;
    int unresolved = 0;
    int failed = 0;
    int left = 0; ///< not run, or not kept, because of an interruption
    ChangeCount changed;
    int files = 0; ///< that were written, the manifest included

    int links() const { return resolved + unresolved + failed + left; }
    bool isAllResolved() const { return resolved == links(); }
    void count(Outcome outcome);
};

/// One line about the links and the files.
QString linksText(const Summary& summary);

/// Adds the summary as the member "summary".
void addSummary(JsonDocument& document, const Summary& summary);

} // namespace tools

#endif
