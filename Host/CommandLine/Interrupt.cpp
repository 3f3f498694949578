#include "Host/CommandLine/Interrupt.h"

#include <unistd.h>

#include <atomic>
#include <csignal>
#include <string_view>

#include "Host/CommandLine/Failure.h"

namespace qv::host {

namespace {

std::atomic<bool> interrupted{false};
std::atomic<int> deferring{0};
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free,
              "used by a signal handler");

void onSignal(int) {
    interrupted = true;
    if (deferring > 0) return;
    constexpr std::string_view kLine = "qvfilter: interrupted\n";
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, kLine.data(), kLine.size());
    ::_exit(int(ExitCode::interrupted));
}

}  // namespace

void prepareSignals() {
    struct sigaction action {};
    action.sa_handler = onSignal;
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) ::sigaction(signal, &action, nullptr);
    action.sa_handler = SIG_IGN;
    for (int signal : {SIGPIPE, SIGXFSZ}) ::sigaction(signal, &action, nullptr);
}

DeferInterrupts::DeferInterrupts() {
    ++deferring;
}

DeferInterrupts::~DeferInterrupts() {
    --deferring;
}

bool isInterrupted() {
    return interrupted;
}

void checkInterrupt() {
    if (isInterrupted()) fail(ExitCode::interrupted, "interrupted");
}

}  // namespace qv::host
