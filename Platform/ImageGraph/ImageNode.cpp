#include "Platform/ImageGraph/ImageNode.h"

#include <unordered_set>

namespace qv {

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
