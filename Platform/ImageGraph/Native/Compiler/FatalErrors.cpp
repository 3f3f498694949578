#include "Platform/ImageGraph/Native/Compiler/FatalErrors.h"

#include <llvm/Support/ErrorHandling.h>

#include <cstdio>
#include <cstdlib>
#include <new>

namespace qv::native {

namespace {

struct FatalError {
    std::string cause;
};

/// How many calls of `survives` this thread is in.
thread_local int guards = 0;

// LLVM calls these on any thread, for whoever else in the process uses it too: to those they do what it does
// by itself. Its frames have no objects that would mind being left, but for what then stays in memory.

void tell(const char* cause) {
    std::fprintf(stderr, "LLVM ERROR: %s\n", cause);
}

void onFatalError(void*, const char* cause, bool) {
    if (guards > 0) throw FatalError{cause};
    tell(cause);  // LLVM ends the process now
}

void onNoMemory(void*, const char* cause, bool) {
    if (guards > 0) throw std::bad_alloc();
    tell(cause);
    std::abort();
}

void installHandlers() {
    static const bool done = [] {
        llvm::install_fatal_error_handler(onFatalError);
        llvm::install_bad_alloc_error_handler(onNoMemory);
        return true;
    }();
    static_cast<void>(done);
}

struct Guard {
    Guard() { ++guards; }
    ~Guard() { --guards; }
};

}  // namespace

bool survives(llvm::function_ref<void()> work, std::string& error) {
    installHandlers();
    const Guard guard;
    try {
        work();
        return true;
    } catch (FatalError& failure) {
        error = std::move(failure.cause);
        return false;
    }
}

}  // namespace qv::native
