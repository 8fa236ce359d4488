#include "tools/Program.h"

#include <cstdlib>
#include <iostream>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

bool isColored(int descriptor)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): there is one thread, and nothing changes these
    return tools::wantsColor(isatty(descriptor) == 1, std::getenv("NO_COLOR"), std::getenv("TERM"));
}

/// The columns of a terminal; 0 for anything else.
int widthOf(int descriptor)
{
    constexpr int usualWidth = 80;
    if (isatty(descriptor) != 1) {
        return 0;
    }
    winsize size{};
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): there is no other way to ask
    const bool isKnown = ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : usualWidth;
}

} // namespace

int main(int argc, char* argv[])
{
    const tools::Streams streams{std::cout,
                                 std::cerr,
                                 isColored(STDOUT_FILENO),
                                 isColored(STDERR_FILENO),
                                 isatty(STDOUT_FILENO) == 1,
                                 widthOf(STDERR_FILENO)};
    return static_cast<int>(tools::run({argv + 1, argv + argc}, streams));
}
