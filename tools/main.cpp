#include "tools/Program.h"

#include <QTextCodec>

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
    // Names of instances are names of files: UTF-8, whatever the locale says.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));

    const tools::Streams streams{std::cout, std::cerr, isColored(STDOUT_FILENO),
                                 isColored(STDERR_FILENO)};
    return static_cast<int>(tools::run({argv + 1, argv + argc}, streams));
}
