#include "sorvane/gltf2/node/animation/AnimationSamplerNodes.h"

#include <algorithm>

namespace sorvane::gltf2 {

AnimationSamplerNodes::AnimationSamplerNodes(const NodeParent& parent_) : ItemList<AnimationSamplerNode>(parent_) {}
AnimationSamplerNodes::~AnimationSamplerNodes() = default;

std::shared_ptr<AnimationSamplerNode> AnimationSamplerNodes::add(std::optional<int64_t> input,
                                                                 std::optional<int64_t> output,
                                                                 const char* interpolation) {
    auto item = std::make_shared<AnimationSamplerNode>(shared_from_this());
    item->init(input, output, interpolation);
    items.push_back(item);
    return item;
}

std::pair<float, float> AnimationSamplerNodes::getTimeRange() const {
    std::pair<float, float> range(0.0f, 0.0f);
    for (const auto& item : items) {
        const auto r = item->getTimeRange();
        range.first = std::min(range.first, r.first);
        range.second = std::max(range.second, r.second);
    }
    return range;
}

} // namespace sorvane::gltf2
