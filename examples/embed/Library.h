#ifndef EMBED_LIBRARY_H
#define EMBED_LIBRARY_H

#include <cstdlib>
#include <dlfcn.h>
#include <iostream>

/// A shared object that stays loaded until the process ends. It is never unloaded on purpose: texts
/// in the application's trees, units above all, may be constants of the engine or of a module, and
/// would be pulled away from under the trees.
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
