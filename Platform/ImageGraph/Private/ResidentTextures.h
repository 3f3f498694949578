#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Platform/ImageGraph/ImageNode.h"

namespace qv {

/// The textures that one context has made of sources: each lives as long as its node and the context. One
/// thread at a time.
class ResidentTextures {
  public:
    ResidentTextures();
    ~ResidentTextures() { clear(); }
    ResidentTextures(const ResidentTextures&) = delete;
    ResidentTextures& operator=(const ResidentTextures&) = delete;

    /// What the context made of the plane; nil when it has not.
    std::shared_ptr<void> find(const ImageNode& node, int plane) const {
        return node.residence.find(number_, plane);
    }
    /// Keeps a texture that is filled. Where there is no memory to note it, it is filled again when it is
    /// wanted next.
    void add(const ImageNode& node, int plane, std::shared_ptr<void> texture) noexcept;
    /// Lets go of all.
    void clear() noexcept;

  private:
    const std::uint64_t number_;  ///< unlike the context's address, never another one's
    /// The nodes that hold a texture of this context, and others that have gone since there were half as
    /// many.
    std::vector<std::weak_ptr<const ImageNode>> nodes_;
    std::size_t sweepAt_ = 64;
};

}  // namespace qv
