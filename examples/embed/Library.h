#ifndef EMBED_LIBRARY_H
#define EMBED_LIBRARY_H

/// A shared object that stays loaded until the process ends.
///
/// It is never unloaded on purpose: texts in the application's trees, units above all, may be
/// constants of the engine or of a module, and unloading would pull them away from under the trees.
class Library {
public:
    /// Searches like the loader does: beside the executable, where its run path says, in the
    /// system. Ends the program with a message when the file or a symbol that it needs is missing.
    explicit Library(const char* file);

    /// Ends the program with a message when there is no such function.
    template <class Function>
    Function function(const char* name) const
    {
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): what dlsym is made for
        return reinterpret_cast<Function>(address(name));
    }

private:
    void* address(const char* name) const;

    void* handle;
};

#endif
