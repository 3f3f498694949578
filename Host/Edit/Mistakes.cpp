#include "Host/Edit/Mistakes.h"

#include "Host/CommandLine/StandardStreams.h"
#include "Platform/Foundation/Log.h"

namespace qv::host {

void Mistakes::add(const DocumentPlace& place, ExitCode code, const std::string& text) {
    if (place.file.empty()) {
        found_.emplace_back(code, text);
        return;
    }
    std::string line = place.file;
    if (place.line > 0) line += fmt::format(":{}", place.line);
    if (!place.path.empty()) line += ": " + place.path;
    found_.emplace_back(ExitCode::input, line + ": " + text);
}

bool Mistakes::guard(const DocumentPlace& place, const std::function<void()>& work) {
    try {
        work();
        return true;
    } catch (const Failure& failure) {
        if (failure.code() == ExitCode::interrupted) throw;
        add(place, failure.code(), failure.what());
        return false;
    }
}

void Mistakes::check() const {
    if (empty()) return;
    for (std::size_t i = 0; i + 1 < found_.size(); ++i)
        writeStandardError(fmt::format("qvfilter: {}\n", oneLine(found_[i].second)));
    throw Failure(found_.front().first, found_.back().second);
}

}  // namespace qv::host
