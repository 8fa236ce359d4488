#ifndef UNITFLOW_TOOLS_CONSOLE_EXITCODE_H
#define UNITFLOW_TOOLS_CONSOLE_EXITCODE_H

namespace tools {

/// How a run of the program ended, mildest first. Scripts depend on the numbers.
enum class ExitCode {
    Done = 0,
    Unresolved = 1, ///< something did not resolve; everything else was done
    Found = 1,      ///< mistakes were found; everything was looked at
    Failed = 2,     ///< wrong usage, or something could not be read or written
    // As a shell counts a process that a signal ended; here it ended by itself, but early.
    Interrupted = 130, ///< by SIGINT; what was done by then is kept
    Terminated = 143,  ///< the same by SIGTERM
};

} // namespace tools

#endif
