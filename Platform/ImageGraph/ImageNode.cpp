#include "Platform/ImageGraph/ImageNode.h"

#include <algorithm>
#include <unordered_set>

namespace qv {

std::shared_ptr<void> Residence::find(std::uint64_t context, int plane) const {
    std::scoped_lock lock(mutex_);
    const auto found = std::ranges::find_if(
        entries_, [&](const Entry& entry) { return entry.context == context && entry.plane == plane; });
    return found == entries_.end() ? nullptr : found->texture;
}

void Residence::add(std::uint64_t context, int plane, std::shared_ptr<void> texture) {
    std::scoped_lock lock(mutex_);
    entries_.push_back({context, plane, std::move(texture)});
}

void Residence::remove(std::uint64_t context) noexcept {
    for (;;) {
        std::shared_ptr<void> released;  // without the lock
        std::scoped_lock lock(mutex_);
        const auto found = std::ranges::find(entries_, context, &Entry::context);
        if (found == entries_.end()) return;
        released = std::move(found->texture);
        entries_.erase(found);
    }
}

MTIImage imageCoveredWithin(const MTIImage& image, std::vector<PixelRect> parts) {
    if (!image) return image;
    const ImageNode& own = *image.node();
    for (PixelRect& part : parts) {
        const int right = std::min(part.x + part.width, own.width);
        const int bottom = std::min(part.y + part.height, own.height);
        part.x = std::max(part.x, 0);
        part.y = std::max(part.y, 0);
        part.width = right - part.x;
        part.height = bottom - part.y;
    }
    std::erase_if(parts, [](const PixelRect& part) { return part.width <= 0 || part.height <= 0; });
    if (parts.empty()) return image;
    auto node = std::make_shared<ImageNode>();
    node->operation = own.operation;
    node->inputs = own.inputs;
    node->width = own.width;
    node->height = own.height;
    node->pixelFormat = own.pixelFormat;
    node->alphaType = own.alphaType;
    node->stock = own.stock;
    node->covered = std::move(parts);
    return MTIImage(std::move(node));
}

std::vector<const ImageNode*> evaluationOrder(const MTIImage& output) {
    struct Visit {
        const ImageNode* node;
        std::size_t nextInput = 0;
    };
    std::vector<const ImageNode*> order;
    std::unordered_set<const ImageNode*> seen;
    std::vector<Visit> open;  // graphs can be deep: no recursion
    auto enter = [&](const MTIImage& image) {
        if (image && seen.insert(image.node().get()).second) open.push_back({image.node().get()});
    };

    enter(output);
    while (!open.empty()) {
        Visit& visit = open.back();
        if (visit.nextInput < visit.node->inputs.size()) {
            enter(visit.node->inputs[visit.nextInput++]);
        } else {
            order.push_back(visit.node);
            open.pop_back();
        }
    }
    return order;
}

}  // namespace qv
