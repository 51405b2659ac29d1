#ifndef SORVANE_GLTF2_NODE_ANIMATION_ANIMATIONSAMPLERNODEBASE_H
#define SORVANE_GLTF2_NODE_ANIMATION_ANIMATIONSAMPLERNODEBASE_H

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/node/RecordNode.h"

namespace sorvane::gltf2 {

class AnimationSamplerNode;

// The key times (SCALAR FLOAT), the key values (FLOAT, any type) and the
// interpolation of a sampler, "LINEAR" when absent.
SORVANE_API std::tuple<std::vector<float>, std::vector<float>, std::string>
getAnimationSamplerData(const AnimationSamplerNode& sampler);

// The evaluation side of a sampler record, computed from its members.
class SORVANE_API AnimationSamplerNodeBase : public RecordNode {
public:
    // Prepares a track at 30 frames per second on each call.
    void getSample(float* out, long outSize, float time) const;
    // (sampleCount, valueSize); the buffers are filled only when both are given.
    std::pair<long, long> getData(float* times, long timesBytes, float* values, long valuesBytes,
                                  float frameRate) const;
    // Times [sampleCount] and values [sampleCount, valueSize] as Float tensors.
    std::pair<DataTree, DataTree> getTensor(float frameRate) const;
    // The first and the last key time.
    std::pair<float, float> getTimeRange() const;

protected:
    using RecordNode::RecordNode;

private:
    const AnimationSamplerNode& sampler() const;
};

} // namespace sorvane::gltf2

#endif
