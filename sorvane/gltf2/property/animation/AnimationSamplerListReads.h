#ifndef SORVANE_GLTF2_PROPERTY_ANIMATION_ANIMATIONSAMPLERLISTREADS_H
#define SORVANE_GLTF2_PROPERTY_ANIMATION_ANIMATIONSAMPLERLISTREADS_H

#include <utility>

#include "sorvane/gltf2/node/animation/AnimationSamplerNodes.h"
#include "sorvane/gltf2/property/ListProperty.h"
#include "sorvane/gltf2/property/animation/AnimationSampler.h"

namespace sorvane::gltf2 {

// The sampler list's accessor with the merged time range of its samplers.
class SORVANE_API AnimationSamplerListReads : public ListProperty<AnimationSamplerNodes, AnimationSampler> {
public:
    using ListProperty::ListProperty;

    std::pair<float, float> getTimeRange() const { return node().getTimeRange(); }
};

} // namespace sorvane::gltf2

#endif
