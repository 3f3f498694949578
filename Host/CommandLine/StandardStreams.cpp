#include "Host/CommandLine/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include <fmt/format.h>

#include "Host/CommandLine/Failure.h"

namespace qv::host {

void keepStandardStreams() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) >= 0) continue;
        // The lowest number that is free is this one; the wrong direction makes every use of it fail.
        [[maybe_unused]] const int opened =
            ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

void writeStandardOutput(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
        fail(ExitCode::output, "cannot write standard output: {}", std::generic_category().message(errno));
    }
}

void writeStandardError(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

void writeNote(std::string_view line) {
    writeStandardError(fmt::format("qvfilter: note: {}\n", line));
}

}  // namespace qv::host
