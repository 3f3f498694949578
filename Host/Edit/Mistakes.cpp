#include "Host/Edit/Mistakes.h"

#include <algorithm>
#include <tuple>

#include "Host/CommandLine/StandardStreams.h"
#include "Platform/Foundation/Log.h"

namespace qv::host {

namespace {

std::string lineOf(const DocumentPlace& place, const std::string& text) {
    std::string line = place.file;
    if (place.line > 0) line += fmt::format(":{}", place.line);
    if (!place.path.empty()) line += ": " + place.path;
    return line.empty() ? text : line + ": " + text;
}

}  // namespace

void Mistakes::add(const DocumentPlace& place, ExitCode code, const std::string& text) {
    found_.push_back({place, place.file.empty() ? code : ExitCode::input, text});
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

std::vector<std::string> Mistakes::lines() const {
    std::vector<Mistake> sorted = found_;
    std::stable_sort(sorted.begin(), sorted.end(), [](const Mistake& a, const Mistake& b) {
        return std::tie(a.place.file, a.place.line) < std::tie(b.place.file, b.place.line);
    });
    std::vector<std::string> lines;
    for (const Mistake& each : sorted) lines.push_back(oneLine(lineOf(each.place, each.text)));
    return lines;
}

void Mistakes::check() const {
    if (empty()) return;
    const std::vector<std::string> all = lines();
    for (std::size_t i = 0; i + 1 < all.size(); ++i)
        writeStandardError(fmt::format("qvfilter: {}\n", all[i]));
    throw Failure(found_.front().code, all.back());
}

}  // namespace qv::host
