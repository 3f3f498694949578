#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "Host/Edit/EditFrames.h"
#include "Host/Edit/EditRequest.h"

/// One film on many machines: a plan divides it into parts, each rendered by a command of its own, and joined
/// without encoding anything again. See Docs/farm.md.
namespace qv::host {

/// A piece of the film: pictures in a row, or all of the sound.
struct FarmPart {
    int index = 0;
    bool isSound = false;
    std::string file;                    ///< its name in the plan's folder
    std::int64_t start = 0, frames = 0;  ///< of the film
    double seconds = 0;                  ///< when it begins
    std::string command;                 ///< that renders it, as a shell takes it
};

/// A film in parts. Everything that a part's pixels depend on is in it, or has its hash in it.
struct FarmPlan {
    std::string tool, resources;     ///< version, and hash of the shaders
    std::string projectFile;         ///< absolute
    std::string project;             ///< hash, with the files that it names
    std::vector<std::string> words;  ///< options of `edit` that hold for every part
    std::string container;           ///< of the film
    std::string codec, pixelFormat;  ///< of the pictures
    std::string settings;            ///< hash of the five before
    std::string rate, size;          ///< frames a second, WIDTHxHEIGHT
    std::int64_t frames = 0, ownFrames = 0;
    double slotsBegin = 0, end = 0;  ///< as EditFrames has them
    std::vector<FarmPart> parts;

    /// Hash of what parts are checked against.
    std::string hash() const;
    const FarmPart* soundPart() const;
};

/// Where a plan lies: in its folder, unless another file is given.
std::filesystem::path planPath(const std::filesystem::path& folder, const std::string& given = {});

/// "part 7 (part_007.mkv)", "the sound (sound.mp4)": for messages.
std::string nameOf(const FarmPart& part);

std::string planText(const FarmPlan& plan);
/// Fails as input.
FarmPlan readPlan(const std::filesystem::path& file);

/// What the plan's parts are rendered from, with options that only concern this machine. Fails as input where
/// the tool or the project are not those of the plan. `project` empty: the plan's own.
EditRequest requestOf(const FarmPlan& plan, const std::string& project,
                      const std::vector<std::string>& machineWords = {});

}  // namespace qv::host
