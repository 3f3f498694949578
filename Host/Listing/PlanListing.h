#pragma once

#include <string>

#include "Host/Listing/GraphListing.h"

/// What a context draws for an image, as text: every pass with the functions that it joins, and why others
/// are passes of their own.
namespace qv::host {

/// {passes: [{id, functions: [{name, selectors, uniforms}], inputs: [{texture, size, …}], values, words,
/// sprites, output}], kept: [{pass, reads, reason}], plainPasses, peakTextureBytes}. Ids are those of the
/// textures that passes write. `gpuWays` plans as for a GPU, otherwise as for a processor.
Json planToJSON(const MTIImage& output, const NamedImages& sources, bool gpuWays);

/// A few lines a pass.
std::string planToText(const Json& plan);

/// For `dot`.
std::string planToDot(const Json& plan, const std::string& title);

}  // namespace qv::host
