#include "Host/Edit/Montage.h"

#include <algorithm>

#include "Host/Clips/Clip.h"
#include "Host/Clips/PictureFile.h"
#include "Platform/Foundation/Random.h"
#include "QVFilterExtension/QVFilterRegistry.h"

namespace qv::host {

namespace {

/// The transitions whose names match one of the patterns.
std::vector<const QVFilterClass*> matchingTransitions(const std::vector<std::string>& patterns) {
    std::vector<const QVFilterClass*> found;
    for (const QVFilterClass* each : allFilterClasses()) {
        const bool isWanted =
            patterns.empty() || std::any_of(patterns.begin(), patterns.end(), [&](const auto& pattern) {
                return matchesPattern(each->name, pattern);
            });
        if (each->isTransition() && isWanted) found.push_back(each);
    }
    for (const std::string& pattern : patterns) {
        const bool isUsed = std::any_of(found.begin(), found.end(), [&](const auto* each) {
            return matchesPattern(each->name, pattern);
        });
        if (!isUsed)
            fail(ExitCode::usage,
                 "no transition is called like '{}'; qvfilter list --kind transition names them", pattern);
    }
    return found;
}

/// Seconds that a clip lasts; kUnlimited for a picture, which lasts as long as one likes.
double lengthOf(const std::string& path) {
    if (isPictureFile(path)) return kUnlimited;
    auto clip = openClip(path);
    const ClipInfo info = clip->info();
    if (info.isStillPicture) return kUnlimited;
    const auto start = clip->startTime(), end = clip->endTime();
    return start && end ? secondsOf(info, *end - *start) : ShownFrames(std::move(clip)).end();
}

}  // namespace

std::vector<ProjectClip> montageClips(const MontageChoice& choice) {
    const auto classes = matchingTransitions(choice.transitions);
    SeededRandom random(choice.seed);
    std::vector<ProjectClip> clips;
    double lengthBefore = 0;
    std::size_t last = classes.size();
    for (const std::string& path : choice.paths) {
        const double all = lengthOf(path), length = std::min(all, choice.each);
        ProjectClip clip{.path = path};
        if (all > choice.each) clip.duration = MediaTime{choice.each};
        // Between two brief clips a transition is brief, too: neither is covered for more than half its
        // length.
        const double longest = std::min(length, lengthBefore) / 2;
        const bool isBrief = !choice.overlap.isFrames && choice.overlap.value > longest;
        if (!clips.empty() && choice.overlap.value > 0) {
            // Any but the one before, with the same chance.
            const bool isAny = last == classes.size() || classes.size() == 1;
            const auto drawn = std::size_t(random.next()) % (classes.size() - (isAny ? 0 : 1));
            last = !isAny && drawn >= last ? drawn + 1 : drawn;
            clip.transition = {EffectChoice{classes[last]}, isBrief ? MediaTime{longest} : choice.overlap};
        }
        lengthBefore = length;
        clips.push_back(std::move(clip));
    }
    return clips;
}

}  // namespace qv::host
