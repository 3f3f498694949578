#include "Platform/ImageGraph/Private/ResidentTextures.h"

#include <algorithm>
#include <atomic>
#include <new>

namespace qv {

namespace {

std::uint64_t nextContextNumber() {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

}  // namespace

ResidentTextures::ResidentTextures() : number_(nextContextNumber()) {}

void ResidentTextures::add(const ImageNode& node, int plane, std::shared_ptr<void> texture) noexcept {
    try {
        // The node first: a texture that the context does not know of would stay when the context goes.
        if (nodes_.size() >= sweepAt_) {
            std::erase_if(nodes_, [](const auto& resident) { return resident.expired(); });
            sweepAt_ = std::max<std::size_t>(64, 2 * nodes_.size());
        }
        nodes_.push_back(node.weak_from_this());
        node.residence.add(number_, plane, std::move(texture));
    } catch (const std::bad_alloc&) {
    }
}

void ResidentTextures::clear() noexcept {
    for (const auto& resident : nodes_) {
        if (const auto node = resident.lock()) node->residence.remove(number_);
    }
    nodes_.clear();
}

}  // namespace qv
