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

void Mistakes::check() const {
    if (empty()) return;
    std::vector<Mistake> sorted = found_;
    std::stable_sort(sorted.begin(), sorted.end(), [](const Mistake& a, const Mistake& b) {
        return std::tie(a.place.file, a.place.line) < std::tie(b.place.file, b.place.line);
    });
    for (std::size_t i = 0; i + 1 < sorted.size(); ++i)
        writeStandardError(fmt::format("qvfilter: {}\n", oneLine(lineOf(sorted[i].place, sorted[i].text))));
    throw Failure(found_.front().code, lineOf(sorted.back().place, sorted.back().text));
}

}  // namespace qv::host
