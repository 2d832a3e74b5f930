#include "cli/Interrupt.h"

#include <atomic>
#include <csignal>

namespace sweeply::interrupt {

namespace {

std::atomic<bool> g_requested{false}; // a signal handler has no other way to tell
static_assert(std::atomic<bool>::is_always_lock_free);

void note(int) { g_requested = true; }

} // namespace

void install() {
    struct sigaction action {};
    action.sa_handler = note;
    action.sa_flags = SA_RESETHAND;
    sigemptyset(&action.sa_mask);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        ::sigaction(signal, &action, nullptr);
}

void request() { g_requested = true; }

bool wasRequested() { return g_requested; }

} // namespace sweeply::interrupt
