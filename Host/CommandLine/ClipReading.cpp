#include "Host/CommandLine/ClipReading.h"

#include <mutex>
#include <set>

#include <fmt/format.h>

#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/StandardStreams.h"

namespace qv::host {

/// The files that a note was written on. Several threads read.
struct ClipReading::Told {
    std::mutex mutex;
    std::set<std::string> paths;

    bool isFirst(const std::string& path) {
        std::scoped_lock lock(mutex);
        return paths.insert(path).second;
    }
};

ClipReading::ClipReading() : told_(std::make_shared<Told>()) {}

void ClipReading::add(const Command& command) {
    command.choice(
        "--deinterlace", deinterlacing_,
        {{"auto", Deinterlacing::automatic}, {"on", Deinterlacing::all}, {"off", Deinterlacing::none}},
        "Whole pictures of interlaced frames; auto by their flag");
}

ClipReaderOptions ClipReading::optionsFor(const std::string& path) const {
    ClipReaderOptions result{.deinterlacing = deinterlacing_};
    result.onDeinterlacing = [path, told = told_] {
        if (told->isFirst(path)) writeNote(fmt::format("'{}' is deinterlaced", path));
    };
    return result;
}

}  // namespace qv::host
