#ifndef UNITFLOW_TOOLS_CONSOLE_STREAMS_H
#define UNITFLOW_TOOLS_CONSOLE_STREAMS_H

#include <iosfwd>

namespace tools {

/// Where a run writes, and what may be written there. Everything is UTF-8.
struct Streams {
    std::ostream& out; ///< data
    std::ostream& err; ///< diagnostics
    bool outColor = false;
    bool errColor = false;
    bool outIsTerminal = false;
    int errWidth = 0; ///< the columns of the terminal that `err` is; 0 when it is none
};

/// Whether a stream gets color. `noColor` and `term` are the environment variables NO_COLOR and
/// TERM, null when they are not set.
bool wantsColor(bool isTerminal, const char* noColor, const char* term);

} // namespace tools

#endif
