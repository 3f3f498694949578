#include "Host/Interrupt.h"

#include <atomic>
#include <csignal>

#include "Host/Failure.h"

namespace qv::host {

namespace {
std::atomic<bool> interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "set by a signal handler");
}  // namespace

void prepareSignals() {
    struct sigaction action {};
    action.sa_handler = [](int) { interrupted = true; };
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) ::sigaction(signal, &action, nullptr);
    action.sa_handler = SIG_IGN;
    ::sigaction(SIGPIPE, &action, nullptr);
}

bool isInterrupted() {
    return interrupted;
}

void checkInterrupt() {
    if (isInterrupted()) fail(ExitCode::interrupted, "interrupted");
}

}  // namespace qv::host
