#include "tools/Program.h"

#include <cstdlib>
#include <iostream>
#include <unistd.h>

namespace {

bool isColored(int descriptor)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): there is one thread, and nothing changes these
    return tools::wantsColor(isatty(descriptor) == 1, std::getenv("NO_COLOR"), std::getenv("TERM"));
}

} // namespace

int main(int argc, char* argv[])
{
    const tools::Streams streams{std::cout, std::cerr, isColored(STDOUT_FILENO),
                                 isColored(STDERR_FILENO)};
    return static_cast<int>(tools::run({argv + 1, argv + argc}, streams));
}
