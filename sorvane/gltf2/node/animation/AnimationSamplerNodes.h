#ifndef SORVANE_GLTF2_NODE_ANIMATION_ANIMATIONSAMPLERNODES_H
#define SORVANE_GLTF2_NODE_ANIMATION_ANIMATIONSAMPLERNODES_H

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "sorvane/gltf2/node/ItemList.h"
#include "sorvane/gltf2/node/animation/AnimationSamplerNode.h"

namespace sorvane::gltf2 {

// The "samplers" list of an animation.
class SORVANE_API AnimationSamplerNodes : public ItemList<AnimationSamplerNode> {
public:
    explicit AnimationSamplerNodes(const NodeParent& parent);
    ~AnimationSamplerNodes() override;

    using ItemList<AnimationSamplerNode>::add;
    std::shared_ptr<AnimationSamplerNode> add(std::optional<int64_t> input, std::optional<int64_t> output,
                                              const char* interpolation);

    // The smallest start and the largest end over all samplers, from (0, 0):
    // 0 always lies inside, and an empty list gives (0, 0).
    std::pair<float, float> getTimeRange() const;
};

} // namespace sorvane::gltf2

#endif
