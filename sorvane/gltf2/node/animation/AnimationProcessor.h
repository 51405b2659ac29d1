#ifndef SORVANE_GLTF2_NODE_ANIMATION_ANIMATIONPROCESSOR_H
#define SORVANE_GLTF2_NODE_ANIMATION_ANIMATIONPROCESSOR_H

#include <string>
#include <vector>

#include "sorvane/core/Export.h"

namespace sorvane::gltf2 {

class AnimationSamplerNode;

// One keyframe track made ready for evaluation: the key times, the key
// values and the interpolation, with the counts derived from them.
class SORVANE_API AnimationProcessor {
public:
    long inputCount = 0;
    long sampleCount = 0;
    long valueSize = 0;
    std::vector<float> input;
    std::vector<float> output;
    float duration = 0.0f;
    std::string interpolation;

    void prepare(std::vector<float> input, std::vector<float> output, std::string interpolation, float frameRate);
    void prepare(const AnimationSamplerNode& sampler, float frameRate);
    // New key values for the same keys (live data); the size must not change.
    void setOutput(std::vector<float> output);

    void getSample(float* out, long outSize, float time) const;
    // `sampleCount` uniform samples from 0 on; the last key is not reached.
    void getData(float* times, long timesBytes, float* values, long valuesBytes) const;

private:
    void sampleSegment(float* out, long i, float time) const;
};

} // namespace sorvane::gltf2

#endif
