#pragma once

namespace qv::host {

/// From now on SIGINT, SIGTERM and SIGHUP end the process as interrupted, at once unless a DeferInterrupts
/// lives; and a closed pipe and a file-size limit are write errors.
void prepareSignals();

/// While one lives, a signal only sets a flag, so that an unfinished output can be taken away.
class DeferInterrupts {
  public:
    DeferInterrupts();
    ~DeferInterrupts();
    DeferInterrupts(const DeferInterrupts&) = delete;
    DeferInterrupts& operator=(const DeferInterrupts&) = delete;
};

/// Whether a deferred signal has come. Thread-safe.
bool isInterrupted();

/// Fails as interrupted once a deferred signal has come.
void checkInterrupt();

}  // namespace qv::host
