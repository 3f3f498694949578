#include "Host/CommandLine/Diagnostics.h"

#include <mutex>

#include "Platform/Foundation/Log.h"

namespace qv::host {

namespace {

struct LastLine {
    std::mutex mutex;
    std::string text;
};

LastLine& lastLine() {
    static LastLine line;
    return line;
}

}  // namespace

void keepLogLines() {
    setLogSink([](std::string_view line) {
        std::scoped_lock lock(lastLine().mutex);
        lastLine().text = line;
    });
}

std::string lastLogLineInBrackets() {
    std::scoped_lock lock(lastLine().mutex);
    return lastLine().text.empty() ? std::string() : " (" + lastLine().text + ")";
}

}  // namespace qv::host
