#ifndef UNITFLOW_TOOLS_RESOLVE_INTERRUPTION_H
#define UNITFLOW_TOOLS_RESOLVE_INTERRUPTION_H

#include <array>
#include <csignal>

namespace tools {

/// Lets a long run end well. While it lives, the first SIGINT or SIGTERM is only noted, for the run
/// to ask; the next one ends the process at once, as it does without this. A signal that the
/// process ignores stays ignored. Nobody reading the output any more is no signal either: writing
/// fails, and the run goes on.
///
/// Signals belong to the process, so there is one of these at a time. `signal` may be asked by any
/// thread.
class Interruption {
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// SIGINT or SIGTERM, 0 before one came.
    int signal() const;

private:
    struct Handled {
        int signal;
        struct sigaction before;
    };

    static void handle(Handled& each, void (*handler)(int));

    std::array<Handled, 3> handled;
};

} // namespace tools

#endif
