#include "Platform/Foundation/Log.h"

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <string>
#include <unordered_set>
#include <utility>

namespace qv {

namespace {

struct Log {
    std::mutex mutex;
    LogSink sink;
};

// Never destroyed: a background thread may log while the process ends.
Log& theLog() {
    static auto* log = new Log;
    return *log;
}

}  // namespace

void setLogSink(LogSink sink) {
    auto& log = theLog();
    std::scoped_lock lock(log.mutex);
    log.sink = std::move(sink);
}

std::string oneLine(std::string_view text) {
    std::string line(text);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return line;
}

void logLine(std::string_view line) {
    std::string text = oneLine(line);
    auto& log = theLog();
    std::scoped_lock lock(log.mutex);
    if (log.sink) {
        log.sink(text);
    } else {
        text += '\n';
        std::fwrite(text.data(), 1, text.size(), stderr);
    }
}

void logLineOnce(std::string_view line) {
    static auto& mutex = *new std::mutex;
    static auto& sent = *new std::unordered_set<std::string>;
    {
        std::scoped_lock lock(mutex);
        if (!sent.emplace(line).second) return;
    }
    logLine(line);
}

}  // namespace qv
