#include "Library.h"

#include <cstdlib>
#include <dlfcn.h>
#include <iostream>

namespace {

[[noreturn]] void giveUp()
{
    std::cerr << "embed: " << dlerror() << '\n'; // NOLINT(concurrency-mt-unsafe): one thread
    std::exit(EXIT_FAILURE);                     // NOLINT(concurrency-mt-unsafe): one thread
}

} // namespace

// RTLD_NOW: a host class that was forgotten is named here, not when the engine first calls it.
// RTLD_LOCAL is enough: what the engine needs of the host is found in the executable, whose symbols
// are global, and a module finds the engine's through its own list of needed libraries.
Library::Library(const char* file) : handle(dlopen(file, RTLD_NOW | RTLD_LOCAL))
{
    if (handle == nullptr) {
        giveUp();
    }
}

void* Library::address(const char* name) const
{
    void* found = dlsym(handle, name);
    if (found == nullptr) {
        giveUp();
    }
    return found;
}
