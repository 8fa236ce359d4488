#ifndef UNITFLOW_TOOLS_EXITCODE_H
#define UNITFLOW_TOOLS_EXITCODE_H

namespace tools {

/// How a run of the program ended, mildest first. Scripts depend on the numbers.
enum class ExitCode {
    Done = 0,
    Unresolved = 1, ///< something did not resolve; everything else was done
    Failed = 2,     ///< wrong usage, or something could not be read or written
};

} // namespace tools

#endif
