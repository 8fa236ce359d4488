#ifndef UNITFLOW_TOOLS_PROGRAM_H
#define UNITFLOW_TOOLS_PROGRAM_H

#include "tools/console/ExitCode.h"
#include "tools/console/Streams.h"

#include <string>
#include <vector>

namespace tools {

/// The program as a function: reads its command line (UTF-8, without the program's name), does
/// what it says and writes to `streams` only. It changes nothing else in this process, so it may be
/// called any number of times.
ExitCode run(const std::vector<std::string>& arguments, const Streams& streams);

} // namespace tools

#endif
