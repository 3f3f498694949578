#pragma once

namespace qv::host {

/// From now on SIGINT, SIGTERM and SIGHUP only set a flag, and a closed pipe is a write error.
void prepareSignals();

/// Whether such a signal has come. Thread-safe.
bool isInterrupted();

/// Fails as interrupted once a signal has come.
void checkInterrupt();

}  // namespace qv::host
