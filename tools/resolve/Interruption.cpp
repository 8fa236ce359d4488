#include "tools/resolve/Interruption.h"

#include <atomic>

namespace tools {

namespace {

// A handler can be told nothing, so what it notes can only be found from here.
std::atomic<int> received{0};
static_assert(std::atomic<int>::is_always_lock_free, "a handler must not wait for a lock");

void note(int signal)
{
    received.store(signal);
    struct sigaction standard = {};
    standard.sa_handler = SIG_DFL;
    sigaction(SIGINT, &standard, nullptr);
    sigaction(SIGTERM, &standard, nullptr);
}

} // namespace

Interruption::Interruption() : handled{{{SIGINT, {}}, {SIGTERM, {}}, {SIGPIPE, {}}}}
{
    received.store(0);
    handle(handled[0], note);
    handle(handled[1], note);
    handle(handled[2], SIG_IGN);
}

Interruption::~Interruption()
{
    for (const Handled& each : handled) {
        sigaction(each.signal, &each.before, nullptr);
    }
}

int Interruption::signal() const
{
    return received.load();
}

void Interruption::handle(Handled& each, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(each.signal, nullptr, &each.before);
    if (each.before.sa_handler != SIG_IGN) {
        sigaction(each.signal, &action, nullptr);
    }
}

} // namespace tools
