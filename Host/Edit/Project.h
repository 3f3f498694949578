#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Host/Clips/FrameFit.h"
#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/EffectChoice.h"
#include "Host/Edit/Mistakes.h"
#include "Platform/Geometry/UIColor.h"
#include "Platform/Media/ClipInfo.h"

/// What is to be rendered, as a user says it: clips and pictures one after another, with everything that
/// happens to them. All drawing commands make one; a project file is one.
namespace qv::host {

/// An effect over a clip, or over everything.
struct ProjectEffect {
    EffectChoice choice;
    DocumentPlace place = {};
};

/// How a clip follows the one before: they overlap by `duration`.
struct ProjectTransition {
    EffectChoice choice;
    MediaTime duration{1};
    DocumentPlace place = {};
};

/// A clip or a picture, or a part of a clip.
struct ProjectClip {
    std::string path;                       ///< of a file; empty: a plane of `color`
    UIColor color = UIColor::blackColor();  ///< without a file
    /// The part of the clip that is shown, of its own frames where frames are counted; `to` and `duration`
    /// are not both given. A picture and a plane have a duration only, in frames of the output.
    std::optional<MediaTime> from = {}, to = {}, duration = {};
    std::optional<Fit> fit = {};  ///< the project's without
    std::string mask = {};        ///< of the subject, as --mask has it
    double gain = 1;              ///< of its sound; 0 is mute
    std::vector<ProjectEffect> effects = {};
    std::optional<ProjectTransition> transition = {};  ///< from the clip before; a cut without
    DocumentPlace place = {};
};

/// A file's sound under everything.
struct ProjectSound {
    std::string path;
    MediaTime from = {}, offset = {};        ///< where it begins in the file, and on the timeline
    std::optional<MediaTime> duration = {};  ///< to the end without
    double gain = 1;
    MediaTime fadeIn = {}, fadeOut = {};
    DocumentPlace place = {};
};

/// All of it. Frames are counted at the output's rate, but for the parts of clips.
struct Project {
    std::optional<PixelSize> size = {};  ///< of the output, pixels are square then; the first clip's without
    Rational rate = {};                  ///< frames a second of the output; 0: the first clip's
    Fit fit = Fit::cover;
    std::vector<ProjectClip> clips;
    std::vector<ProjectEffect> effects = {};  ///< over everything
    std::optional<ProjectSound> sound = {};
    bool clipSound = true;  ///< whether clips are heard
    DocumentPlace place = {};
};

/// A factor from "0.5", or from decibels as "-6dB". `option` names it in the error. Fails as usage.
double parseGain(const std::string& option, const std::string& text);

}  // namespace qv::host
