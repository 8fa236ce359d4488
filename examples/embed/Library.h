#ifndef EMBED_LIBRARY_H
#define EMBED_LIBRARY_H

#include <cstdlib>
#include <dlfcn.h>
#include <iostream>

/// A shared object that stays loaded until the process ends. It is never unloaded on purpose: a
/// text or an object that came from it may still be held somewhere, and refers to it.
class Library {
public:
    /// Loads `file` from where the executable's run path or the system says. Ends the program with
    /// a message when the file is missing, or anything that it needs: RTLD_NOW has a host class
    /// that was forgotten named here, and not when the engine first calls it.
    explicit Library(const char* file) : handle(found(dlopen(file, RTLD_NOW | RTLD_LOCAL))) {}

    /// Ends the program with a message when there is no such function.
    template <class Function>
    Function function(const char* name) const
    {
        return reinterpret_cast<Function>(found(dlsym(handle, name)));
    }

private:
    static void* found(void* result)
    {
        if (result == nullptr) {
            std::cerr << dlerror() << '\n';
            std::exit(EXIT_FAILURE);
        }
        return result;
    }

    void* handle;
};

#endif
